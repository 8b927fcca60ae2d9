#include "platform/file/replacing_write.h"

#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace qvr::file {

ReplacingWrite::ReplacingWrite(std::string target)
    : calls_(FileCalls::current()), target_(std::move(target)) {}

ReplacingWrite::~ReplacingWrite() {
    if (fd_ >= 0) calls_.close(fd_);
    if (!temporary_.empty()) calls_.unlink(temporary_.c_str());
}

int ReplacingWrite::begin(bool keepExisting) {
    if (int error = findTarget()) return error;
    if (int error = checkTarget(keepExisting)) return error;
    return openTemporary();
}

int ReplacingWrite::findTarget() {
    struct stat info {};
    if (::lstat(target_.c_str(), &info) != 0 || !S_ISLNK(info.st_mode)) return 0;
    std::error_code error;
    const auto named = std::filesystem::weakly_canonical(target_, error);
    if (error) return fail(error.value());
    target_ = named.string();
    return 0;
}

// An existing file that nobody may write (no write permission at all, as a read-only file has)
// is refused even where the system would let its folder be changed.
int ReplacingWrite::checkTarget(bool keepExisting) {
    if (::stat(target_.c_str(), &existing_) != 0) {
        if (errno != ENOENT) return fail(errno);
        exists_ = false;
        return 0;
    }
    exists_ = true;
    if (S_ISDIR(existing_.st_mode)) return fail(EISDIR);
    if (keepExisting) return fail(EEXIST);
    if ((existing_.st_mode & 0222) == 0) return fail(EACCES, "the file is read-only");
    if (::access(target_.c_str(), W_OK) != 0) return fail(errno);
    return 0;
}

// Beside the target, named for what it is: ".catalog.xml.qvr-save-Ab12Cd".
int ReplacingWrite::openTemporary() {
    const std::filesystem::path target(target_);
    folder_ = target.parent_path().string();
    if (folder_.empty()) folder_ = ".";
    static std::atomic<unsigned> counter{0};
    static constexpr char letters[] =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789";
    std::uint64_t seed =
        (static_cast<std::uint64_t>(::getpid()) << 32) ^
        static_cast<std::uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count());
    for (int attempt = 0; attempt < 64; ++attempt) {
        std::uint64_t mix = (seed + counter.fetch_add(1)) * 0x9E3779B97F4A7C15ull;
        std::string name = "." + target.filename().string() + ".qvr-save-";
        for (int i = 0; i < 6; ++i, mix /= 62) name += letters[mix % 62];
        const std::string path = (std::filesystem::path(folder_) / name).string();
        fd_ = calls_.open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (fd_ >= 0) {
            temporary_ = path;
            break;
        }
        if (errno != EEXIST) return fail(errno);
    }
    if (fd_ < 0) return fail(EEXIST);
    if (exists_) {
        // The new file takes the place of the old one with its owner and its mode; an owner that
        // this process may not give stays its own.
        (void)::fchown(fd_, existing_.st_uid, existing_.st_gid);
        (void)::fchmod(fd_, existing_.st_mode & 07777);
    }
    return 0;
}

int ReplacingWrite::write(const void* data, std::size_t size) {
    const auto* bytes = static_cast<const char*>(data);
    std::size_t written = 0;
    while (written < size) {
        const ssize_t put = calls_.write(fd_, bytes + written, size - written);
        if (put < 0 && errno == EINTR) continue;
        if (put < 0) return fail(errno);
        if (put == 0) return fail(ENOSPC);
        written += static_cast<std::size_t>(put);
    }
    return 0;
}

int ReplacingWrite::setMode(mode_t mode) {
    return ::fchmod(fd_, mode & 07777) == 0 ? 0 : fail(errno);
}

int ReplacingWrite::commit(bool durable) {
    if (durable && calls_.fsync(fd_) != 0) return fail(errno);
    if (calls_.close(std::exchange(fd_, -1)) != 0) return fail(errno);
    if (calls_.rename(temporary_.c_str(), target_.c_str()) != 0) return fail(errno);
    temporary_.clear();
    if (!durable) return 0;
    const int fd = calls_.open(folder_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC, 0);
    if (fd < 0) return fail(errno);
    const bool flushed = calls_.fsync(fd) == 0 || errno == EINVAL; // EINVAL: not supported
    const int error = errno;
    calls_.close(fd);
    return flushed ? 0 : fail(error);
}

} // namespace qvr::file
