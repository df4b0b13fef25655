// A scratch folder for one test, removed with everything in it when the test ends.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <string>

namespace qv::assets::test {

class TempFolder {
 public:
  TempFolder() {
    const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
    path_ = std::filesystem::temp_directory_path() /
            ("qv-assets-" + std::to_string(::getpid()) + "-" + info->test_suite_name() + "-" +
             info->name());
    std::filesystem::remove_all(path_);
    std::filesystem::create_directories(path_);
  }
  ~TempFolder() {
    std::error_code ec;
    std::filesystem::remove_all(path_, ec);
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  std::string operator/(const std::string& name) const { return (path_ / name).string(); }
  std::string str() const { return path_.string(); }

 private:
  std::filesystem::path path_;
};

}  // namespace qv::assets::test
