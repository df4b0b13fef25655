// The asset tool as the build runs it: the same bytes on every run, and clear refusals.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "assets/file_io.h"
#include "assets/tests/temp_folder.h"

namespace qv::assets {
namespace {

int RunTool(const std::string& arguments, const std::string& errorFile) {
  const std::string command = std::string(QV_ASSET_TOOL) + " " + arguments + " 2>" + errorFile;
  const int status = std::system(command.c_str());
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::vector<std::uint8_t> Bytes(const std::string& path) {
  std::vector<std::uint8_t> bytes;
  std::string error;
  EXPECT_TRUE(ReadWholeFile(path, bytes, error)) << error;
  return bytes;
}

// The build packed one resource file already; this run must give the same bytes.
TEST(AssetTool, TwoRunsWriteTheSameResourceFileAndModuleFiles) {
  test::TempFolder a, b;
  ASSERT_EQ(RunTool("rf " + (a / "Quorvex.rf"), a / "err"), 0);
  const std::vector<std::uint8_t> built = Bytes(QV_BUILT_RF);
  EXPECT_FALSE(built.empty());
  EXPECT_EQ(Bytes(a / "Quorvex.rf"), built);
  ASSERT_EQ(RunTool("module " + (a / "module"), a / "err"), 0);
  ASSERT_EQ(RunTool("module " + (b / "module"), b / "err"), 0);
  for (const char* name : {"hover.wav", "click.wav", "join.wav", "drop.cur", "quorvex.ico"}) {
    EXPECT_EQ(Bytes(a / "module/" + name), Bytes(b / "module/" + name)) << name;
  }
}

TEST(AssetTool, WithoutTheBundlesItStopsNamingThePackageAndWritesNothing) {
  test::TempFolder folder;
  std::filesystem::create_directories(folder / "no-bundles");
  EXPECT_EQ(RunTool("pictures " + (folder / "no-bundles") + " " + (folder / "dist"), folder / "err"), 1);
  const std::vector<std::uint8_t> message = Bytes(folder / "err");
  const std::string text(message.begin(), message.end());
  EXPECT_NE(text.find("gcompris-qt-data"), std::string::npos) << text;
  EXPECT_FALSE(std::filesystem::exists(folder / "dist"));
}

TEST(AssetTool, UnknownCommandsShowTheUsage) {
  test::TempFolder folder;
  EXPECT_EQ(RunTool("paint everything", folder / "err"), 2);
  const std::vector<std::uint8_t> message = Bytes(folder / "err");
  EXPECT_NE(std::string(message.begin(), message.end()).find("usage"), std::string::npos);
}

}  // namespace
}  // namespace qv::assets
