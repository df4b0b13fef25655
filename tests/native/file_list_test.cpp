// FileExists and FileList on a temporary folder of empty files.
#include "graphics/file_list.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

namespace qv {
namespace {

namespace fs = std::filesystem;

class FileListTest : public ::testing::Test {
 protected:
  void SetUp() override {
    dir_ = fs::temp_directory_path() / ("qv_file_list_" + std::to_string(std::random_device{}()));
    fs::create_directories(dir_);
    for (const char* name : {"a.epf", "B.EPF", "c.epf", "d.bmp", "notes"}) Touch(name);
  }
  void TearDown() override {
    std::error_code ignored;
    fs::remove_all(dir_, ignored);
  }
  void Touch(const std::string& name) { std::ofstream(dir_ / name).put('x'); }
  std::string Pattern(const std::string& name) const { return (dir_ / name).string(); }

  static std::vector<std::string> Sorted(std::vector<std::string> names) {
    std::sort(names.begin(), names.end());
    return names;
  }

  fs::path dir_;
};

TEST_F(FileListTest, ThreeMatchesMakeThreeRecordsAndAFinalZero) {
  FileList list;
  ASSERT_TRUE(list.Build(Pattern("*.epf").c_str()));
  EXPECT_TRUE(list.IsValid());
  EXPECT_EQ(list.Count(), 3);
  const std::uint8_t* record = list.Block();
  std::vector<std::string> names;
  for (int i = 0; i < 3; ++i) {
    const std::string name(reinterpret_cast<const char*>(record + 1));
    EXPECT_EQ(record[0], name.size() + 2);  // length byte covers itself and the terminator
    names.push_back(name);
    record += record[0];
  }
  EXPECT_EQ(record[0], 0);
  EXPECT_EQ(Sorted(names), (std::vector<std::string>{"B.EPF", "a.epf", "c.epf"}));
  EXPECT_EQ(list.Names(), names);
}

TEST_F(FileListTest, BlockGrowsForManyNamesAndIsReusedByTheNextListing) {
  std::vector<std::string> expected;
  for (int i = 0; i < 40; ++i) {
    expected.push_back("picture_number_" + std::to_string(i) + ".bmp");
    Touch(expected.back());
  }
  expected.push_back("d.bmp");
  FileList list;
  ASSERT_TRUE(list.Build(Pattern("*.BMP").c_str()));
  EXPECT_EQ(Sorted(list.Names()), Sorted(expected));
  ASSERT_TRUE(list.Build(Pattern("?.bmp").c_str()));
  EXPECT_EQ(list.Names(), std::vector<std::string>{"d.bmp"});
}

TEST_F(FileListTest, WildcardsFollowWindowsRules) {
  EXPECT_TRUE(FileExists(Pattern("a.epf").c_str()));
  EXPECT_TRUE(FileExists(Pattern("b.e?f").c_str()));
  EXPECT_TRUE(FileExists(Pattern("notes.*").c_str()));  // ".*" also matches no extension
  EXPECT_FALSE(FileExists(Pattern("*.ep").c_str()));
  EXPECT_FALSE(FileExists(Pattern("??.epf").c_str()));
  EXPECT_FALSE(FileExists(Pattern("nowhere/*").c_str()));
  EXPECT_FALSE(FileExists(nullptr));
  // Backslashes separate folders too, so Windows-style paths work on every system.
  std::string windowsStyle = Pattern("c.epf");
  std::replace(windowsStyle.begin(), windowsStyle.end(), '/', '\\');
  EXPECT_TRUE(FileExists(windowsStyle.c_str()));

  FileList list;
  EXPECT_FALSE(list.Build(Pattern("*.xyz").c_str()));
  EXPECT_FALSE(list.IsValid());
}

TEST_F(FileListTest, OverlongNamesAbandonTheListing) {
  FileList list;
  const std::string name254 = std::string(252, 'n') + ".z";
  Touch(name254 + "z");  // 255 characters
  EXPECT_FALSE(list.Build(Pattern("*.z*").c_str()));
  fs::remove(dir_ / (name254 + "z"));
  Touch(name254);  // 254: its length byte would wrap to 0 and end the walk
  EXPECT_FALSE(list.Build(Pattern("*.z").c_str()));
  EXPECT_FALSE(list.IsValid());
  fs::rename(dir_ / name254, dir_ / name254.substr(1));  // 253 still fits
  ASSERT_TRUE(list.Build(Pattern("*.z").c_str()));
  EXPECT_EQ(list.Block()[0], 255);
}

}  // namespace
}  // namespace qv
