#pragma once
// A fresh folder for one test's files, removed afterwards.

#include <filesystem>
#include <fstream>
#include <string>

#include <gtest/gtest.h>

namespace zv::testing {

class TempFolder {
public:
    TempFolder()
    {
        const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
        path_ = std::filesystem::temp_directory_path()
            / ("zv-core-" + std::string(info->test_suite_name()) + "-" + info->name() + "-"
                + std::to_string(::getpid()));
        std::filesystem::remove_all(path_);
        std::filesystem::create_directories(path_);
    }
    ~TempFolder() { std::filesystem::remove_all(path_); }

    [[nodiscard]] std::string file(const std::string& name) const { return (path_ / name).string(); }
    [[nodiscard]] const std::filesystem::path& path() const { return path_; }

    std::string write(const std::string& name, const std::string& content) const
    {
        std::ofstream(file(name), std::ios::binary) << content;
        return file(name);
    }
    [[nodiscard]] std::string read(const std::string& name) const
    {
        std::ifstream in(file(name), std::ios::binary);
        return { std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>() };
    }

private:
    std::filesystem::path path_;
};

} // namespace zv::testing
