// A fixture with a folder of its own under the system's temporary folder, removed after the test.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace qvr::testing {

class TempFiles : public ::testing::Test {
protected:
    std::filesystem::path dir =
        std::filesystem::temp_directory_path() /
        ("qvr-" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()) + "-" +
         ::testing::UnitTest::GetInstance()->current_test_info()->test_suite_name() + "-" +
         ::testing::UnitTest::GetInstance()->current_test_info()->name());
    void SetUp() override { std::filesystem::create_directories(dir); }
    void TearDown() override { std::filesystem::remove_all(dir); }
    std::string file(const char* name) const { return (dir / name).string(); }
    // Writes `text` to the file `name` of the folder; gives its path.
    std::string write(const char* name, const std::string& text) const {
        std::ofstream(file(name), std::ios::binary) << text;
        return file(name);
    }
    static std::string read(const std::string& path) {
        std::ifstream in(path, std::ios::binary);
        std::stringstream s;
        s << in.rdbuf();
        return s.str();
    }
};

} // namespace qvr::testing
