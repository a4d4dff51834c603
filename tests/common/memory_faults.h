// Allocations that fail, wherever they are made: malloc and operator new of the program, of its libraries and
// of the C library. Link with ph_test_memory_faults.
#pragma once

// While it lives, the nth allocation of this thread fails, counted from 1; 0: none does.
class MemoryFault {
public:
    explicit MemoryFault(unsigned nth);
    ~MemoryFault();
    MemoryFault(const MemoryFault&) = delete;
    MemoryFault& operator=(const MemoryFault&) = delete;

    bool hasStruck() const;
    unsigned allocations() const; // so far
};

// Blocks that this thread has allocated less those that it has freed.
long liveBlocks();
