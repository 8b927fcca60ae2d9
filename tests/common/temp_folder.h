// A fresh folder below the system's temporary directory for the tests that write files, removed
// with everything in it when the test ends.
#pragma once

#include <unistd.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace qvr::testing {

class TempFolder {
public:
    TempFolder() {
        static std::atomic<int> counter{0};
        const std::string name = "qvr-test-" + std::to_string(::getpid()) + "-" +
                                 std::to_string(counter++) + "-" +
                                 std::to_string(reinterpret_cast<std::uintptr_t>(this));
        path_ = std::filesystem::temp_directory_path() / name;
        std::filesystem::remove_all(path_);
        std::filesystem::create_directories(path_);
    }
    ~TempFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    // The folder with a trailing "/", as a catalog takes its base.
    std::string base() const { return path_.string() + "/"; }
    // A file or folder inside.
    std::string operator/(const std::string& relative) const { return (path_ / relative).string(); }
    bool holds(const std::string& relative) const {
        return std::filesystem::exists(path_ / relative);
    }
    std::string read(const std::string& relative) const {
        std::ifstream in(path_ / relative);
        std::stringstream text;
        text << in.rdbuf();
        return text.str();
    }

private:
    std::filesystem::path path_;
};

} // namespace qvr::testing
