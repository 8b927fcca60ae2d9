// The system calls by which a saved document or a copied file reaches the disk. Saving and copying
// make them through this one interface, so that a test can stand in for the system and make any
// step fail as a full disk, a failing device or a folder nobody may write would; the program
// itself always uses the system's calls.
#pragma once

#include <cstddef>

#include <sys/types.h>

namespace qvr::file {

class FileCalls {
public:
    virtual ~FileCalls() = default;
    // Each answers as the system call of its name does: -1 with errno set on failure.
    virtual int open(const char* path, int flags, mode_t mode);
    virtual ssize_t read(int fd, void* data, std::size_t size);
    virtual ssize_t write(int fd, const void* data, std::size_t size);
    virtual int fsync(int fd);
    virtual int close(int fd);
    virtual int rename(const char* from, const char* to);
    virtual int unlink(const char* path);
    virtual int mkdir(const char* path, mode_t mode);

    // The calls in use: the system's, unless a Scope put others in their place.
    static FileCalls& current();

    // Puts `calls` in use for the life of the object (the former ones come back after it).
    class Scope {
    public:
        explicit Scope(FileCalls& calls);
        ~Scope();
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;

    private:
        FileCalls* former_;
    };
};

} // namespace qvr::file
