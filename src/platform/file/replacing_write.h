// A file written so that no reader ever sees it half done: the bytes go to a temporary file beside
// the target, which is flushed to the disk, closed, and only then renamed over the target, so that
// a failure or a crash at any step leaves the old file or the new one, whole. Saving a document
// and copying a referenced file both write this way, through FileCalls.
#pragma once

#include <cstddef>
#include <string>

#include <sys/stat.h>

#include "platform/file/file_calls.h"

namespace qvr::file {

// Every step answers 0 or the errno of its failure; the first failure ends the write, and the
// temporary file goes when the object does unless the write was committed.
class ReplacingWrite {
public:
    explicit ReplacingWrite(std::string target);
    ~ReplacingWrite();
    ReplacingWrite(const ReplacingWrite&) = delete;
    ReplacingWrite& operator=(const ReplacingWrite&) = delete;

    // Finds the target (a symbolic link is followed to the file it names, which is replaced; the
    // link stays), refuses a folder and an existing file that nobody may write, and opens the
    // temporary file. With `keepExisting` an existing target is refused with EEXIST. The new file
    // takes the owner and permissions of the file it replaces.
    int begin(bool keepExisting = false);
    int write(const void* data, std::size_t size);
    // Gives the new file the permission bits `mode` instead.
    int setMode(mode_t mode);
    // Flushes and closes the temporary file, renames it over the target, and flushes the folder
    // so that the rename itself is on the disk before the write answers. Without `durable`
    // nothing is flushed: the file is whole for every reader at once, and on the disk when the
    // system gets to it (or at flushFileSystem).
    int commit(bool durable = true);

    // What the last failure adds to its errno ("the file is read-only"), or null.
    const char* detail() const { return detail_; }

private:
    int fail(int error, const char* detail = nullptr) {
        detail_ = detail;
        return error;
    }
    int findTarget();
    int checkTarget(bool keepExisting);
    int openTemporary();

    FileCalls& calls_;
    std::string target_;
    std::string folder_;
    std::string temporary_;
    struct stat existing_ {};
    bool exists_ = false;
    int fd_ = -1;
    const char* detail_ = nullptr;
};

} // namespace qvr::file
