#include "platform/file/file_calls.h"

#include <atomic>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace qvr::file {
namespace {

FileCalls systemCalls;
std::atomic<FileCalls*> inUse{&systemCalls};

} // namespace

int FileCalls::open(const char* path, int flags, mode_t mode) {
    return ::open(path, flags, mode);
}
ssize_t FileCalls::read(int fd, void* data, std::size_t size) {
    return ::read(fd, data, size);
}
ssize_t FileCalls::write(int fd, const void* data, std::size_t size) {
    return ::write(fd, data, size);
}
int FileCalls::fsync(int fd) {
    return ::fsync(fd);
}
int FileCalls::close(int fd) {
    return ::close(fd);
}
int FileCalls::rename(const char* from, const char* to) {
    return ::rename(from, to);
}

int FileCalls::unlink(const char* path) {
    return ::unlink(path);
}
int FileCalls::mkdir(const char* path, mode_t mode) {
    return ::mkdir(path, mode);
}

FileCalls& FileCalls::current() {
    return *inUse.load();
}

FileCalls::Scope::Scope(FileCalls& calls) : former_(inUse.exchange(&calls)) {}
FileCalls::Scope::~Scope() {
    inUse.store(former_);
}

} // namespace qvr::file
