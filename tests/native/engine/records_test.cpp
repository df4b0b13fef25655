// Tests of the honour roll store: repair on load, the place rule, names, and safe writing.
#include "screens/records.h"

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "graphics/himage_ops.h"
#include "screens/honour_logic.h"
#include "support/assert_recorder.h"

namespace qv {
namespace {

namespace fs = std::filesystem;
using Bytes = std::vector<char>;
const std::string kEmptyName(23, '-');

// A well-formed file: the given scores, names "p0" ... "p9".
Bytes FileWithScores(const std::vector<std::int32_t>& scores, std::int32_t count = 10) {
  HonourRoll roll;
  ResetRecords(roll);
  roll.header.count = count;
  for (std::size_t i = 0; i < 10; ++i) {
    std::snprintf(roll.entries[i].name, kRecordNameBytes, "p%zu", i);
    roll.entries[i].score = i < scores.size() ? scores[i] : 0;
  }
  const char* bytes = reinterpret_cast<const char*>(&roll);
  return {bytes, bytes + sizeof roll};
}

std::vector<std::int32_t> ScoresOf(const HonourRoll& roll) {
  std::vector<std::int32_t> scores;
  for (const RecordEntry& entry : roll.entries) scores.push_back(entry.score);
  return scores;
}

class RecordsTest : public ::testing::Test {
 protected:
  void SetUp() override {
    folder_ = fs::temp_directory_path() / ("qv_records_" + std::to_string(std::random_device{}()));
    fs::create_directories(folder_);
    programFolder_ = folder_.string() + "/";
  }
  void TearDown() override { fs::remove_all(folder_); }

  const char* Folder() const { return programFolder_.c_str(); }
  fs::path File() const { return folder_ / kRecordsFileName; }
  void Write(const Bytes& b) const {
    std::ofstream(File(), std::ios::binary).write(b.data(), std::streamsize(b.size()));
  }
  Bytes Read() const {
    std::ifstream in(File(), std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
  }
  // The entry procedure from the finished game's score to the name box's answer.
  HonourNameResult Enter(std::int32_t score, bool accepted, const char* name, HonourRoll& shown) {
    HonourEntry pending;
    BeginHonourEntry(Folder(), score, pending);
    return FinishHonourEntry(Folder(), pending, accepted, name, shown);
  }

  fs::path folder_;
  std::string programFolder_;
};

TEST_F(RecordsTest, MissingOrMalformedFileGivesTheEmptyRollAndIsDeleted) {
  Bytes headerOnly = FileWithScores({50});
  headerOnly.resize(16);
  for (const Bytes& bytes :
       {FileWithScores({50}, 9), FileWithScores({50}, 11), headerOnly, Bytes{}}) {
    Write(bytes);
    HonourRoll roll;
    EXPECT_FALSE(LoadRecords(Folder(), roll));
    EXPECT_FALSE(fs::exists(File()));  // deleted, and the empty roll is not written back
    EXPECT_EQ(std::memcmp(roll.header.magic, "MwRecords", 9), 0);
    EXPECT_EQ(roll.header.count, 10);
    for (const RecordEntry& entry : roll.entries) EXPECT_EQ(RecordNameText(entry), kEmptyName);
    EXPECT_EQ(ScoresOf(roll), std::vector<std::int32_t>(10, 0));
  }
  Write(FileWithScores({50}));
  HonourRoll roll;
  ClearRecords(Folder(), roll);  // the clear button: gone until the next entry
  EXPECT_FALSE(fs::exists(File()));
  EXPECT_EQ(RecordNameText(roll.entries[0]), kEmptyName);
}

TEST_F(RecordsTest, WrongMagicAndShortEntriesAreReadAsTheyStand) {
  Bytes bytes = FileWithScores({77, 66, 55});
  std::memcpy(bytes.data(), "NotRecord", 9);
  std::memset(bytes.data() + 16, 'N', 24);  // a name without its zero
  bytes.resize(16 + 28 + 10);               // entry 1 cut inside its name
  Write(bytes);
  HonourRoll roll;
  EXPECT_TRUE(LoadRecords(Folder(), roll));
  EXPECT_EQ(ScoresOf(roll), std::vector<std::int32_t>({77, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(RecordNameText(roll.entries[0]), std::string(24, 'N'));
  EXPECT_EQ(RecordNameText(roll.entries[2]), kEmptyName);
}

TEST(HonourPlaceRule, EqualScoresGoBelow) {
  HonourRoll roll;
  ResetRecords(roll);
  EXPECT_EQ(HonourPlace(roll, 1), 0);  // the empty roll takes any positive score first
  EXPECT_EQ(HonourPlace(roll, 0), 10);
  const std::int32_t scores[] = {100, 90, 70, 70, 70, 50, 40, 30, 20, 10};
  for (int i = 0; i < 10; ++i) roll.entries[i].score = scores[i];
  EXPECT_EQ(HonourPlace(roll, 70), 5);  // equal to rows 3 to 5: row 6
  EXPECT_EQ(HonourPlace(roll, 71), 2);
  EXPECT_EQ(HonourPlace(roll, 101), 0);
  EXPECT_EQ(HonourPlace(roll, 11), 9);
  EXPECT_EQ(HonourPlace(roll, 10), 10);  // equal to the tenth earns nothing
}

TEST(HonourScreen, RowsAndButtonsSitWhereTheScreenSizeSays) {
  const HonourLayout small = HonourScreenLayout(800, 600);
  EXPECT_EQ(small.placeX, 80 + 30);
  EXPECT_EQ(small.nameX, 80 + 60);
  EXPECT_EQ(small.scoreX, 80 + 420);
  EXPECT_EQ(small.rowY[0], 60 + 63);
  EXPECT_EQ(small.rowY[9], 60 + 63 + 270);
  EXPECT_EQ(small.clearButton.x, 593);
  EXPECT_EQ(small.clearButton.y, 501);
  EXPECT_EQ(small.closeButton.x, 691);
  const HonourLayout large = HonourScreenLayout(1920, 1080);
  EXPECT_EQ(large.area.x, 640);
  EXPECT_EQ(large.rowY[0], 300 + 63);
  EXPECT_EQ(large.clearButton.x, 1424);  // 1424.998 truncated
  EXPECT_EQ(large.clearButton.y, 902);
  EXPECT_EQ(large.closeButton.x, 1659);

  HonourRoll roll;
  ResetRecords(roll);
  roll.entries[9].score = -42;
  std::memcpy(roll.entries[9].name, "Zoe\0tail", 9);
  const HonourRowText last = HonourRow(roll, 9);
  EXPECT_EQ(last.place, "10");
  EXPECT_EQ(last.name, "Zoe");
  EXPECT_EQ(last.score, "-42");
  EXPECT_EQ(HonourRow(roll, 0).name, kEmptyName);
  EXPECT_EQ(HonourRow(roll, 0).score, "0");
  EXPECT_EQ(HonourRow(roll, 10).place, "");
}

// An 8-bit picture whose every pixel is its column (mod 256), coloured red = index through a
// table that also tells the pictures apart by blue.
PackedDib IndexedPicture(int width, int height, std::uint8_t blue) {
  PackedDib picture;
  EXPECT_TRUE(picture.Allocate(width, height));
  DibHeader(picture.get())->biClrUsed = 256;
  for (int i = 0; i < 256; ++i) DibColours(picture.get())[i] = {blue, 0, std::uint8_t(i), 0};
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) *ImagePixel(picture.get(), x, y) = std::uint8_t(x + y);
  }
  return picture;
}

std::uint32_t PixelAt(HIMAGE image, int x, int y) {
  const std::uint8_t* p = ImagePixel(image, x, y);
  return std::uint32_t(p[2]) << 16 | std::uint32_t(p[1]) << 8 | p[0];
}

TEST(HonourScreen, BackgroundTilesEvery80PixelsAndCentresTheTitle) {
  const PackedDib tile = IndexedPicture(90, 90, 7);  // larger than a step: cut to 80 x 80
  const PackedDib title = IndexedPicture(50, 20, 9);
  PackedDib background;
  ASSERT_TRUE(ComposeHonourBackground(250, 170, tile.get(), title.get(), background));
  ASSERT_EQ(ImageBitCount(background.get()), 24);
  ASSERT_EQ(ImageWidth(background.get()), 250);
  EXPECT_EQ(PixelAt(background.get(), 0, 30), 30u << 16 | 7);
  EXPECT_EQ(PixelAt(background.get(), 79, 79), 158u << 16 | 7);
  EXPECT_EQ(PixelAt(background.get(), 80 + 5, 160 + 3), 8u << 16 | 7);  // a new tile starts
  EXPECT_EQ(PixelAt(background.get(), 249, 169), 18u << 16 | 7);  // cut at the edge
  // The title at x = (250 - 50) / 2 = 100, y = 0, in its own colours.
  EXPECT_EQ(PixelAt(background.get(), 100, 0), 0u << 16 | 9);
  EXPECT_EQ(PixelAt(background.get(), 149, 19), 68u << 16 | 9);
  EXPECT_EQ(PixelAt(background.get(), 150, 19), 89u << 16 | 7);

  // Missing pictures leave black; a surface that cannot be had is refused.
  ASSERT_TRUE(ComposeHonourBackground(30, 20, nullptr, nullptr, background));
  EXPECT_EQ(PixelAt(background.get(), 29, 19), 0u);
  EXPECT_FALSE(ComposeHonourBackground(0, 600, tile.get(), title.get(), background));
}

TEST_F(RecordsTest, NewEntryIsWrittenInPlaceAndKeepsTheOldNameTail) {
  HonourRoll shown;
  ASSERT_EQ(Enter(1234, true, "Ana", shown), HonourNameResult::kRecordedAndWritten);
  Bytes first = Read();
  ASSERT_EQ(first.size(), 296u);
  EXPECT_EQ(std::string(first.data(), 9), "MwRecords");
  EXPECT_EQ(std::string(first.data() + 16), "Ana");
  EXPECT_EQ(std::string(first.data() + 44), kEmptyName);
  EXPECT_FALSE(fs::exists(File().string() + ".tmp"));

  Bytes bytes = FileWithScores({90, 80, 70, 60, 50, 40, 30, 20, 10, 5});
  std::memcpy(bytes.data() + 16 + 28 * 2, "Bartholomew", 12);
  bytes[9] = 'u';  // the header's unset bytes travel as read
  Write(bytes);
  ASSERT_EQ(Enter(75, true, "Bo", shown), HonourNameResult::kRecordedAndWritten);
  const Bytes after = Read();
  EXPECT_EQ(after[9], 'u');
  // Place 2 was Bartholomew's: he moves down whole and "Bo" lands over his old field's start.
  EXPECT_EQ(std::string(after.data() + 16 + 28 * 2, 12), std::string("Bo\0tholomew\0", 12));
  EXPECT_EQ(std::string(after.data() + 16 + 28 * 3), "Bartholomew");
  EXPECT_EQ(ScoresOf(shown), std::vector<std::int32_t>({90, 80, 75, 70, 60, 50, 40, 30, 20, 10}));
  EXPECT_EQ(RecordNameText(shown.entries[2]), "Bo");
}

TEST_F(RecordsTest, CancelledEmptyOrRefusedNamesChangeNothing) {
  test::AssertRecorder rec;
  const Bytes original = FileWithScores({50, 40});
  Write(original);
  HonourRoll shown{};
  EXPECT_EQ(Enter(45, false, "Ana", shown), HonourNameResult::kNothingRecorded);
  EXPECT_EQ(Enter(45, true, "", shown), HonourNameResult::kNothingRecorded);
  EXPECT_TRUE(rec.empty());
  EXPECT_EQ(Enter(45, true, std::string(24, 'x').c_str(), shown),
            HonourNameResult::kNothingRecorded);
  EXPECT_EQ(Enter(-1, true, "Ana", shown), HonourNameResult::kNothingRecorded);  // earned no place
  EXPECT_EQ(rec.messages(),
            std::vector<std::string>({"esta entrada del inputbox es mas grande de lo esperado",
                                      "esta posicion en este caso es invalida"}));
  EXPECT_EQ(Read(), original);
  EXPECT_EQ(shown.header.count, 0);  // the screen was given nothing new

  fs::create_directory(File().string() + ".tmp");  // now the temporary file cannot be made
  EXPECT_EQ(Enter(45, true, std::string(23, 'x').c_str(), shown),
            HonourNameResult::kRecordedNotWritten);
  EXPECT_EQ(Read(), original);
  EXPECT_EQ(RecordNameText(shown.entries[1]), std::string(23, 'x'));  // but the screen shows it
}

}  // namespace
}  // namespace qv
