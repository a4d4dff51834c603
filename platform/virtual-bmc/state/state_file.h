// The state file: one machine for all processes that open it.
#pragma once

#include "virtual-bmc/state/file_handle.h"
#include "virtual-bmc/state/state.h"

#include <concepts>
#include <filesystem>
#include <sys/stat.h>

namespace vbmc {

// A lock that one process at a time holds, and within it one StateFile.
class Lock {
public:
    Lock(const FileHandle& file, const std::filesystem::path& stateFile);
    ~Lock();
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;

private:
    int descriptor_;
};

// All throw Error that begins with the file's name. Belongs to the process that made it: a child of fork
// opens its own.
class StateFile {
public:
    explicit StateFile(std::filesystem::path path);
    ~StateFile();
    StateFile(const StateFile&) = delete;
    StateFile& operator=(const StateFile&) = delete;

    // Writes a machine of its own over whatever is there, or only where nothing is.
    static void create(const std::filesystem::path& path, State& state, Existing existing);

    // Runs `work(State&)` on the present state, alone, and writes what it has edited. When it throws nothing
    // is changed. The file is read only if somebody else wrote it since the last transaction.
    template <std::invocable<State&> Work>
    void transact(Work&& work) {
        const Lock lock(lock_, path_);
        refresh();
        try {
            state_.settle();
            work(state_);
            if (state_.isEdited())
                save();
        } catch (...) {
            state_.undo();
            throw;
        }
    }

private:
    void refresh();
    void save();

    std::filesystem::path path_;
    State state_;
    FileHandle lock_; // of a file beside it, because the state file itself is replaced
    // The file that `state_` was read from or written to. It is held open, so that its inode number is not
    // given to a file that replaces it: a new number means a new state.
    FileHandle loaded_;
    struct stat loadedStatus_ = {};
};

} // namespace vbmc
