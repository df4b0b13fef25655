// ImportPhoto on ImageMagick's photographs (make-test-photos.sh): each becomes an 8-bit picture
// that the game's own reader takes, close to the photograph and named after it; a bad photograph
// or a folder that cannot be written ends in its own error and leaves the folder as it was.
#include "photo/photo_import.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

#include "core/resource_ids.h"
#include "graphics/bitmap_file.h"
#include "photo_test_files.h"

namespace qv {
namespace {

constexpr RgbQuad kTable{0xa0, 0x5a, 0x1e, 0};

// Every name in the folder, sorted; temporary files included.
std::vector<std::string> Listing(const std::string& folder) {
  std::vector<std::string> names;
  WIN32_FIND_DATAA found{};
  HANDLE search = FindFirstFileA((folder + "*").c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) return names;
  do {
    const std::string name = found.cFileName;
    if (name != "." && name != "..") names.push_back(name);
  } while (FindNextFileA(search, &found));
  FindClose(search);
  std::sort(names.begin(), names.end());
  return names;
}

// An empty folder under photos\, its name ending in '\'.
std::string EmptyFolder(const std::string& name) {
  const std::string folder = "photos\\" + name + "\\";
  CreateDirectoryA(folder.c_str(), nullptr);
  for (const std::string& file : Listing(folder)) DeleteFileA((folder + file).c_str());
  return folder;
}

// How far a picture is from its reference: the mean difference of a colour channel pixel by
// pixel, and the same over the averages of 4 x 4 blocks, which the dithering keeps close.
struct Difference {
  double pixels = -1;
  double blocks = -1;
};

// Reads the picture with the game's reader and checks what every imported picture must be: 8
// bits a pixel with a full colour table, of the reference's size. Negative differences when it
// is not.
Difference DifferenceFrom(const std::string& path, const Reference& ref) {
  BitmapFile file;
  BitmapInfoHeader header{};
  if (!file.Open(path.c_str()) || !file.GetHeader(&header)) return {};
  EXPECT_EQ(header.biBitCount, 8) << path;
  EXPECT_EQ(file.ColourCount(), 256) << path;
  EXPECT_EQ(header.biWidth, ref.width) << path;
  EXPECT_EQ(header.biHeight, ref.height) << path;  // bottom-up rows, as the game writes them
  if (header.biBitCount != 8 || file.ColourCount() != 256 || header.biWidth != ref.width ||
      header.biHeight != ref.height) {
    return {};
  }
  RgbQuad colours[256];
  std::vector<std::uint8_t> pixels(static_cast<std::size_t>(BitmapFile::ImageSize(header)));
  if (!file.ReadColours(0, 256, colours) || !file.ReadPixels(pixels.data())) return {};
  const std::size_t rowBytes = static_cast<std::size_t>(DibRowBytes(ref.width, 8));
  const int blocksAcross = ref.width / 4;
  const int blocksDown = ref.height / 4;
  std::vector<int> blockSums(static_cast<std::size_t>(blocksAcross) * blocksDown * 3);
  double sum = 0;
  for (int y = 0; y < ref.height; ++y) {
    const std::uint8_t* row = pixels.data() + (ref.height - 1 - y) * rowBytes;
    for (int x = 0; x < ref.width; ++x) {
      const RgbQuad& c = colours[row[x]];
      const std::uint8_t* want = &ref.rgb[(static_cast<std::size_t>(y) * ref.width + x) * 3];
      const int got[3] = {c.rgbRed, c.rgbGreen, c.rgbBlue};
      for (int k = 0; k < 3; ++k) {
        sum += std::abs(got[k] - want[k]);
        if (x / 4 < blocksAcross && y / 4 < blocksDown) {
          const std::size_t block = static_cast<std::size_t>(y / 4) * blocksAcross + x / 4;
          blockSums[block * 3 + k] += got[k] - want[k];
        }
      }
    }
  }
  double blockSum = 0;
  for (int blockDifference : blockSums) blockSum += std::abs(blockDifference) / 16.0;
  return {sum / (3.0 * ref.width * ref.height), blockSum / static_cast<double>(blockSums.size())};
}

// Bounds for a 256-colour picture of a colourful photograph: each pixel is a few levels off, the
// dithering's noise, but a small area keeps its colour; a wrong colour table or a shifted or
// mirrored row is far past both.
void ExpectClose(const std::string& path, const Reference& ref) {
  const Difference difference = DifferenceFrom(path, ref);
  std::printf("%s: mean channel difference %.2f by pixel, %.2f by 4 x 4 block\n", path.c_str(),
              difference.pixels, difference.blocks);
  EXPECT_GE(difference.pixels, 0) << path;
  EXPECT_LE(difference.pixels, 8.0) << path;
  EXPECT_LE(difference.blocks, 2.5) << path;
}

TEST(PhotoImport, ACameraPhotoBecomesAnEightBitPictureOfTheBuiltInSize) {
  const std::string folder = EmptyFolder("import-camera");
  const PhotoImportResult result = ImportPhoto(L"photos\\camera.jpg", folder, kTable);
  ASSERT_EQ(result.error, PhotoImportError::kNone);
  EXPECT_EQ(result.pictureFile, "camera.bmp");
  // 1280 x 960 fitted to a long side of 1024, compared with ImageMagick's area-averaged reduction.
  const Reference fitted = ReadPpm("photos/camera.jpg.fit.ppm");
  ASSERT_EQ(fitted.width, 1024);
  ExpectClose(folder + result.pictureFile, fitted);
  EXPECT_EQ(Listing(folder), std::vector<std::string>{"camera.bmp"});
}

TEST(PhotoImport, ASmallPhotoKeepsItsSizeAndASecondImportTakesTheNextName) {
  const std::string folder = EmptyFolder("import-small");
  const PhotoImportResult first = ImportPhoto(L"photos\\small.png", folder, kTable);
  const PhotoImportResult second = ImportPhoto(L"photos\\small.png", folder, kTable);
  ASSERT_EQ(first.error, PhotoImportError::kNone);
  ASSERT_EQ(second.error, PhotoImportError::kNone);
  EXPECT_EQ(first.pictureFile, "small.bmp");
  EXPECT_EQ(second.pictureFile, "small (2).bmp");
  const Reference source = ReadPpm("photos/small.png.ppm");
  ASSERT_EQ(source.width, 300);
  ExpectClose(folder + first.pictureFile, source);
  EXPECT_EQ(ReadBytes(folder + first.pictureFile), ReadBytes(folder + second.pictureFile));
  EXPECT_EQ(Listing(folder), (std::vector<std::string>{"small (2).bmp", "small.bmp"}));
}

// The game opens pictures with the ANSI functions: a photograph named in any script gets a name
// they open, its characters outside the code page turned into '_'.
TEST(PhotoImport, AUnicodeFileNameBecomesANameTheGameCanOpen) {
  const std::string folder = EmptyFolder("import-unicode");
  const std::wstring photo = L"photos\\\u03a9 cat \u732b\U0001F431.png";
  ASSERT_TRUE(CopyFileW(L"photos\\small.png", photo.c_str(), FALSE));
  const PhotoImportResult result = ImportPhoto(photo, folder, kTable);
  DeleteFileW(photo.c_str());
  ASSERT_EQ(result.error, PhotoImportError::kNone);
  EXPECT_NE(result.pictureFile.find(" cat "), std::string::npos) << result.pictureFile;
  EXPECT_EQ(result.pictureFile.find('?'), std::string::npos) << result.pictureFile;
  // In Western Windows' code page none of the three is held; the cat face is one character.
  if (GetACP() == 1252) {
    EXPECT_EQ(result.pictureFile, "_ cat __.bmp");
  }
  BitmapFile file;
  EXPECT_TRUE(file.Open((folder + result.pictureFile).c_str())) << result.pictureFile;
  EXPECT_EQ(Listing(folder), std::vector<std::string>{result.pictureFile});
}

TEST(PhotoImport, EachBadPhotoOrFolderEndsInItsErrorAndLeavesTheFolderAsItWas) {
  const std::string bad = EmptyFolder("import-bad-photos");
  WriteBytes(bad + "empty.jpg", {});
  const std::string text = "Shopping list: eggs, milk, bread.\r\n";
  WriteBytes(bad + "text.png", std::vector<std::uint8_t>(text.begin(), text.end()));
  const std::vector<std::uint8_t> jpeg = ReadBytes("photos/camera.jpg");
  ASSERT_GT(jpeg.size(), 400u);
  WriteBytes(bad + "cut.jpg", std::vector<std::uint8_t>(jpeg.begin(), jpeg.begin() + 120));
  const std::ptrdiff_t half = static_cast<std::ptrdiff_t>(jpeg.size() / 2);
  WriteBytes(bad + "half.jpg", std::vector<std::uint8_t>(jpeg.begin(), jpeg.begin() + half));
  WriteBytes(bad + "huge.png", PngClaiming(12000, 12000));  // 144 megapixels claimed
  WriteBytes(bad + "held.png", ReadBytes("photos/small.png"));
  HANDLE held = CreateFileA((bad + "held.png").c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr,
                            OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  ASSERT_NE(held, INVALID_HANDLE_VALUE);

  // The pictures folder already holds a picture, which must stay the only file.
  const std::string pictures = EmptyFolder("import-bad");
  WriteBytes(pictures + "1.bmp", ReadBytes("photos/rgb24.bmp"));
  const std::vector<std::string> before = Listing(pictures);

  struct Case {
    const wchar_t* photo;
    std::string folder;
    PhotoImportError expected;
  };
  const Case cases[] = {
      {L"photos\\import-bad-photos\\empty.jpg", pictures, PhotoImportError::kEmpty},
      {L"photos\\import-bad-photos\\text.png", pictures, PhotoImportError::kNotAPicture},
      {L"photos\\import-bad-photos\\cut.jpg", pictures, PhotoImportError::kDamaged},
      {L"photos\\import-bad-photos\\half.jpg", pictures, PhotoImportError::kDamaged},
      {L"photos\\one.png", pictures, PhotoImportError::kTooSmall},
      {L"photos\\narrow.png", pictures, PhotoImportError::kTooSmall},
      {L"photos\\import-bad-photos\\huge.png", pictures, PhotoImportError::kTooLarge},
      {L"photos\\import-bad-photos\\vanished.png", pictures, PhotoImportError::kNotFound},
      {L"photos\\no-such-folder\\small.png", pictures, PhotoImportError::kNotFound},
      {L"photos\\import-bad-photos\\held.png", pictures, PhotoImportError::kLocked},
      // Writing fails: the pictures folder is gone, or is a file.
      {L"photos\\small.png", "photos\\no-such-folder\\", PhotoImportError::kWriteFailed},
      {L"photos\\small.png", "photos\\small.png\\", PhotoImportError::kWriteFailed},
  };
  for (const Case& c : cases) {
    const std::wstring& photo = c.photo;
    const std::string shown(photo.begin(), photo.end());
    const PhotoImportResult result = ImportPhoto(photo, c.folder, kTable);
    EXPECT_EQ(result.error, c.expected) << shown << " into " << c.folder;
    EXPECT_EQ(result.pictureFile, "") << shown;
    EXPECT_EQ(Listing(pictures), before) << shown;
  }
  CloseHandle(held);
  EXPECT_EQ(GetFileAttributesA("photos\\no-such-folder"), INVALID_FILE_ATTRIBUTES);
}

// Every error but kNone has its message in each of the six languages, no two alike; kNone, and
// a value outside the list, has none.
TEST(PhotoImport, EveryErrorHasItsOwnMessageInEveryLanguage) {
  for (unsigned language = 0; language < 6; ++language) {
    std::vector<std::string> messages;
    for (int value = 1; value <= 10; ++value) {
      char text[512] = {};
      const unsigned id = PhotoImportMessage(static_cast<PhotoImportError>(value)) + language;
      EXPECT_EQ(id, IDS_PHOTO_IMPORT_ERROR + 10u * value + language);
      EXPECT_GT(LoadStringA(GetModuleHandleA(nullptr), id, text, sizeof text), 20) << id;
      messages.push_back(text);
    }
    std::sort(messages.begin(), messages.end());
    EXPECT_EQ(std::unique(messages.begin(), messages.end()), messages.end()) << language;
  }
  for (int value : {0, 11, -1}) {
    char text[64] = {};
    const unsigned id = PhotoImportMessage(static_cast<PhotoImportError>(value));
    EXPECT_EQ(id, unsigned{IDS_PHOTO_IMPORT_ERROR});
    EXPECT_EQ(LoadStringA(GetModuleHandleA(nullptr), id, text, sizeof text), 0);
  }
}

}  // namespace
}  // namespace qv
