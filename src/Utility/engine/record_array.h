// The heap arrays of data records that class families hand to their callers.
#pragma once

#include "Utility/engine/property.h"

#include <cstddef>
#include <span>

namespace ph {

// Frees the heap strings that a record holds.
void cleanRecord(std::span<const Property> properties, void* record);

// A caller's array while records are appended to it: memory of malloc, because the caller frees it. Records
// start zeroed. What was appended goes again unless commit() is called.
class RecordStore {
public:
    // Continues the caller's array of `count` records, which release() hands back.
    RecordStore(void* records, int count, std::size_t recordSize, std::span<const Property> properties);
    ~RecordStore();
    RecordStore(const RecordStore&) = delete;
    RecordStore& operator=(const RecordStore&) = delete;

    // Appends a zeroed record; nullptr when memory is short. The other records move.
    void* append();
    void* at(int index) const { return records_ + recordSize_ * static_cast<std::size_t>(index); }
    int count() const { return count_; }
    int committed() const { return kept_; }
    // Takes the last appended record off again.
    void removeLast();
    // Leaves only record `index` of the appended ones.
    void keepOnly(int index);
    void commit() { kept_ = count_; }
    // Hands the array over to the caller, with what was committed; nullptr when it holds nothing.
    void* release();

private:
    void truncate(int count);

    char* records_;
    int count_;
    int kept_;
    int capacity_;
    std::size_t recordSize_;
    std::span<const Property> properties_;
};

// The typed view that a class sees.
template <class Record>
class RecordArray {
public:
    explicit RecordArray(RecordStore& store) : store_(store) {}
    // Appends a zeroed record, which is valid until the next append; nullptr when memory is short.
    Record* append() { return static_cast<Record*>(store_.append()); }
    void removeLast() { store_.removeLast(); }
    // Counts the caller's array, including the records that it had before.
    int count() const { return store_.count(); }

private:
    RecordStore& store_;
};

} // namespace ph
