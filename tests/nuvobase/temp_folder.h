// A fresh folder for each test, removed again behind it, for the tests that work on real files.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <unistd.h>

namespace nuvobase_test {

class TempFolder : public testing::Test {
protected:
    void SetUp() override {
        const testing::TestInfo* test = testing::UnitTest::GetInstance()->current_test_info();
        folder = testing::TempDir() + "nuvobase_" + std::to_string(getpid()) + "_" + test->test_suite_name() +
                 "_" + test->name() + "/";
        std::filesystem::remove_all(folder);
        std::filesystem::create_directories(folder);
    }
    void TearDown() override { std::filesystem::remove_all(folder); }

    std::string Path(const std::string& name) const { return folder + name; }
    void Write(const std::string& name, const std::string& bytes) const {
        std::ofstream(Path(name), std::ios::binary) << bytes;
    }
    std::string Read(const std::string& name) const {
        std::ifstream in(Path(name), std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(in), {});
    }

    std::string folder; // ends with '/'
};

} // namespace nuvobase_test
