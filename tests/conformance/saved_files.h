// The files below a folder, to be put back as they were. That is done after each of thousands of requests, most of which
// change nothing: what has the status that it had is not read again.
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <sys/stat.h>

class SavedFiles {
public:
    explicit SavedFiles(const std::filesystem::path& folder);

    // Writes what was changed or removed, and removes what has come.
    void restore();

private:
    // What a change of a file, or of a folder's entries, changes.
    struct Status {
        bool isKnown = false; // differs from all others unless it is
        ino_t number = 0;
        off_t size = 0;
        timespec changed = {};
        mode_t mode = 0;
    };
    struct File {
        std::string content;
        mode_t mode = 0;
        Status last;
    };

    static Status statusOf(const std::string& path);
    static Status settledStatusOf(const std::string& path);
    static bool isSame(const Status& left, const Status& right);
    void save(const std::filesystem::path& folder);
    void removeNewFiles(const std::filesystem::path& folder);

    std::map<std::string, File> files_;
    std::map<std::string, Status> folders_;
};
