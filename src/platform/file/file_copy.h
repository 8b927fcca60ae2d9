// Copying, removing and making the files and folders that a catalog refers to. A copy is written
// as a save is (platform/file/replacing_write.h): the destination is either its former self or
// the whole copy, never half of it. Every call goes through FileCalls.
#pragma once

#include <cstdint>
#include <string>

#include <qvr/com.h>

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
// `durable`: the copy is on the disk before the call answers, as it must be before its source
// may be removed; without it the copy is whole for every reader but reaches the disk later.
CopyResult copyFile(const std::string& source, const std::string& destination, bool overwrite,
                    bool durable);

// Puts everything written to the file system that holds `path` on the disk: the one flush
// after many copies that were not durable. 0 or errno.
int flushFileSystem(const std::string& path);

// Makes the folder `path` and every missing folder above it. 0 or the errno of the failure.
int makeDirectories(const std::string& path);

// Whether something exists at `path`; whether `a` and `b` are one file (by any name or link).
bool exists(const std::string& path);
bool sameFile(const std::string& a, const std::string& b);

// Removes the file `path`. 0 or errno.
int removeFile(const std::string& path);

// The system error number (of the platform whose statuses the library carries) that stands for
// `error`, and the status that carries it (0x80070000 | number).
std::uint32_t systemErrorOf(int error);
inline HRESULT statusOf(int error) {
    return HRESULT_FROM_WIN32(systemErrorOf(error));
}

} // namespace qvr::file
