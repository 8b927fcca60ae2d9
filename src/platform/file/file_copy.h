// Copying, removing and making the files and folders that a catalog refers to. A copy is written
// as a save is (platform/file/replacing_write.h): the destination is either its former self or
// the whole copy, never half of it. Every call goes through FileCalls.
#pragma once

#include <cstdint>
#include <string>

namespace qvr::file {

enum class CopyOutcome {
    Copied,       // the destination holds the whole copy, on the disk
    KeptExisting, // the destination existed and was to be kept: nothing was written
    SameFile,     // source and destination are one file (by any spelling or link): nothing done
    Failed,       // `error` tells why; the destination is as it was
};

struct CopyResult {
    CopyOutcome outcome;
    int error = 0; // the errno of the failing step
};

// Copies `source` to `destination`. An existing destination is replaced only with `overwrite`.
// The copy has the source's permissions, and a source that nobody may write (read-only) gives a
// copy its owner may write. A source whose size changes while it is read fails with EIO.
CopyResult copyFile(const std::string& source, const std::string& destination, bool overwrite);

// Makes the folder `path` and every missing folder above it. 0 or the errno of the failure.
int makeDirectories(const std::string& path);

// Removes the file `path`. 0 or errno.
int removeFile(const std::string& path);

// The system error number (of the platform whose statuses the library carries) that stands for
// `error`, for statuses of the form 0x80070000 | number.
std::uint32_t systemErrorOf(int error);

} // namespace qvr::file
