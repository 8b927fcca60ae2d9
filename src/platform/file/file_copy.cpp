#include "platform/file/file_copy.h"

#include <cerrno>
#include <memory>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/file/file_calls.h"
#include "platform/file/replacing_write.h"

namespace qvr::file {
namespace {

constexpr std::size_t kChunk = 1 << 16;

// Closes a descriptor on every road out.
struct OpenFile {
    FileCalls& calls;
    int fd;
    ~OpenFile() {
        if (fd >= 0) calls.close(fd);
    }
};

// Reads all of `from` into `to`; the number of bytes read goes to `copied`.
int pour(FileCalls& calls, int from, ReplacingWrite& to, off_t* copied) {
    const auto buffer = std::make_unique<char[]>(kChunk);
    for (;;) {
        const ssize_t got = calls.read(from, buffer.get(), kChunk);
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) return errno;
        if (got == 0) return 0;
        if (int error = to.write(buffer.get(), static_cast<std::size_t>(got))) return error;
        *copied += got;
    }
}

} // namespace

CopyResult copyFile(const std::string& source, const std::string& destination, bool overwrite,
                    bool durable) {
    FileCalls& calls = FileCalls::current();
    struct stat from {
    }, to{};
    if (::stat(source.c_str(), &from) != 0) return {CopyOutcome::Failed, errno};
    if (S_ISDIR(from.st_mode)) return {CopyOutcome::Failed, EISDIR};
    if (::stat(destination.c_str(), &to) == 0) {
        if (to.st_dev == from.st_dev && to.st_ino == from.st_ino) return {CopyOutcome::SameFile};
        if (!overwrite) return {CopyOutcome::KeptExisting};
    }
    OpenFile in{calls, calls.open(source.c_str(), O_RDONLY | O_CLOEXEC, 0)};
    if (in.fd < 0) return {CopyOutcome::Failed, errno};
    ReplacingWrite out(destination);
    int error = out.begin(!overwrite);
    if (error == EEXIST && !overwrite) return {CopyOutcome::KeptExisting};
    // A read-only source gives a copy that its owner may write.
    const mode_t mode = (from.st_mode & 0222) == 0 ? from.st_mode | S_IWUSR : from.st_mode;
    if (!error) error = out.setMode(mode);
    off_t copied = 0;
    if (!error) error = pour(calls, in.fd, out, &copied);
    // A copy is complete when it has every byte the source had when the copy began.
    struct stat after {};
    if (!error &&
        (::fstat(in.fd, &after) != 0 || after.st_size != from.st_size || copied != from.st_size))
        error = EIO;
    if (!error) error = out.commit(durable);
    if (error) return {CopyOutcome::Failed, error};
    return {CopyOutcome::Copied};
}

int makeDirectories(const std::string& path) {
    FileCalls& calls = FileCalls::current();
    // Every folder from the top down; those that exist already are passed.
    for (std::size_t end = path.find('/', 1);; end = path.find('/', end + 1)) {
        const std::string folder = path.substr(0, end);
        struct stat info {};
        if (!folder.empty() && ::stat(folder.c_str(), &info) != 0) {
            if (errno != ENOENT || (calls.mkdir(folder.c_str(), 0777) != 0 && errno != EEXIST))
                return errno;
        } else if (!folder.empty() && !S_ISDIR(info.st_mode)) {
            return ENOTDIR;
        }
        if (end == std::string::npos) return 0;
    }
}

int flushFileSystem(const std::string& path) {
    FileCalls& calls = FileCalls::current();
    OpenFile folder{calls, calls.open(path.c_str(), O_RDONLY | O_CLOEXEC, 0)};
    if (folder.fd < 0) return errno;
    return ::syncfs(folder.fd) == 0 ? 0 : errno;
}

bool exists(const std::string& path) {
    struct stat info {};
    return ::stat(path.c_str(), &info) == 0;
}

bool sameFile(const std::string& a, const std::string& b) {
    struct stat x {
    }, y{};
    return ::stat(a.c_str(), &x) == 0 && ::stat(b.c_str(), &y) == 0 && x.st_dev == y.st_dev &&
           x.st_ino == y.st_ino;
}

int removeFile(const std::string& path) {
    return FileCalls::current().unlink(path.c_str()) == 0 ? 0 : errno;
}

std::uint32_t systemErrorOf(int error) {
    struct Pair {
        int error;
        std::uint32_t system;
    };
    static constexpr Pair pairs[] = {
        {ENOENT, 2},         {ENOTDIR, 3}, {EMFILE, 4},  {EACCES, 5},   {EPERM, 5},    {EROFS, 19},
        {EBUSY, 32},         {EEXIST, 80}, {EINVAL, 87}, {ENOSPC, 112}, {EDQUOT, 112}, {EISDIR, 5},
        {ENAMETOOLONG, 206}, {EIO, 1117},  {ENOMEM, 8},  {ELOOP, 1921},
    };
    for (const Pair& pair : pairs)
        if (pair.error == error) return pair.system;
    return 31; // a device attached to the system is not functioning
}

} // namespace qvr::file
