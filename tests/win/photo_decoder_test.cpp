// DecodePhoto against ImageMagick: every format and depth the Open dialog offers, written by
// ImageMagick (make-test-photos.sh) and compared with ImageMagick's own decoding, then bad files.
#include "graphics/photo_decoder.h"

#include <windows.h>
#include <objbase.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <string>
#include <vector>

#include "photo_test_files.h"

namespace qv {
namespace {

// The table colour the script composes transparency over: #1e5aa0.
constexpr RgbQuad kTable{0xa0, 0x5a, 0x1e, 0};

std::wstring PhotoPath(const std::string& name) {
  return L"photos\\" + std::wstring(name.begin(), name.end());
}

// The largest difference of any channel between the decoded picture and the reference, or -1
// when the sizes differ.
int LargestDifference(const PackedDib& picture, const Reference& ref) {
  if (picture.width() != ref.width || picture.height() != ref.height) return -1;
  const std::int64_t rowBytes = DibRowBytes(ref.width, 24);
  int largest = 0;
  for (int y = 0; y < ref.height; ++y) {
    const std::uint8_t* row = DibPixels(picture.get()) + (ref.height - 1 - y) * rowBytes;
    for (int x = 0; x < ref.width; ++x) {
      for (int c = 0; c < 3; ++c) {
        const int decoded = row[x * 3 + 2 - c];
        const int expected = ref.rgb[(static_cast<std::size_t>(y) * ref.width + x) * 3 + c];
        largest = std::max(largest, std::abs(decoded - expected));
      }
    }
  }
  return largest;
}

struct Case {
  const char* file;
  int tolerance;  // JPEG decoders may round their colour conversion differently (1 here)
};

class PhotoMatchesImageMagick : public testing::TestWithParam<Case> {};

TEST_P(PhotoMatchesImageMagick, PixelForPixel) {
  const Case& c = GetParam();
  const DecodedPhoto photo = DecodePhoto(PhotoPath(c.file), kTable);
  ASSERT_EQ(photo.error, PhotoError::kNone) << c.file;
  const BitmapInfoHeader* header = DibHeader(photo.picture.get());
  EXPECT_EQ(header->biBitCount, 24);
  EXPECT_EQ(header->biSizeImage, DibRowBytes(header->biWidth, 24) * header->biHeight);
  EXPECT_EQ(photo.picture.blockBytes(), kDibPixelOffset + header->biSizeImage);
  const Reference ref = ReadPpm(std::string("photos/") + c.file + ".ppm");
  ASSERT_GT(ref.width, 0) << "no reference for " << c.file;
  const int difference = LargestDifference(photo.picture, ref);
  EXPECT_GE(difference, 0) << c.file << " is " << photo.picture.width() << "x"
                           << photo.picture.height() << ", ImageMagick says " << ref.width << "x"
                           << ref.height;
  EXPECT_LE(difference, c.tolerance) << c.file;
}

INSTANTIATE_TEST_SUITE_P(
    EveryFormat, PhotoMatchesImageMagick,
    testing::Values(Case{"rgb8.png", 0}, Case{"rgb16.png", 0}, Case{"palette.png", 0},
                    Case{"grey8.png", 0}, Case{"grey16.png", 0}, Case{"alpha8.png", 0},
                    Case{"alpha16.png", 0}, Case{"animated.gif", 0}, Case{"rgb8.tif", 0},
                    Case{"rgb16.tif", 0}, Case{"rgb24.bmp", 0}, Case{"palette.bmp", 0},
                    Case{"photo.jpg", 1}, Case{"cmyk.jpg", 1}, Case{"TopRight.jpg", 1},
                    Case{"BottomRight.jpg", 1}, Case{"BottomLeft.jpg", 1}, Case{"LeftTop.jpg", 1},
                    Case{"RightTop.jpg", 1}, Case{"RightBottom.jpg", 1},
                    Case{"LeftBottom.jpg", 1}, Case{"one.png", 0}),
    [](const testing::TestParamInfo<Case>& param) {
      std::string name = param.param.file;
      for (char& ch : name) {
        if (!std::isalnum(static_cast<unsigned char>(ch))) ch = '_';
      }
      return name;
    });

// Stated outright, whatever ImageMagick does: a landscape picture taken with the camera on its
// side (orientations 6 and 8) comes out portrait.
TEST(PhotoOrientation, CameraTurnedOnItsSideComesOutUpright) {
  const DecodedPhoto stored = DecodePhoto(PhotoPath("photo.jpg"), kTable);
  const DecodedPhoto right = DecodePhoto(PhotoPath("RightTop.jpg"), kTable);
  const DecodedPhoto left = DecodePhoto(PhotoPath("LeftBottom.jpg"), kTable);
  ASSERT_EQ(stored.error, PhotoError::kNone);
  ASSERT_EQ(right.error, PhotoError::kNone);
  ASSERT_EQ(left.error, PhotoError::kNone);
  EXPECT_GT(stored.picture.width(), stored.picture.height());
  EXPECT_EQ(right.picture.width(), stored.picture.height());
  EXPECT_EQ(right.picture.height(), stored.picture.width());
  EXPECT_EQ(left.picture.width(), stored.picture.height());
  EXPECT_EQ(left.picture.height(), stored.picture.width());
}

// A 24-bit BMP whose header claims width x height but which holds only a few pixels.
std::vector<std::uint8_t> BmpClaiming(std::uint32_t width, std::uint32_t height) {
  std::vector<std::uint8_t> file(54 + 96, 0x7f);
  auto put = [&file](std::size_t at, std::uint32_t value) {
    for (int i = 0; i < 4; ++i) file[at + i] = static_cast<std::uint8_t>(value >> (8 * i));
  };
  const std::uint32_t pixelBytes = (width * 3 + 3) / 4 * 4 * height;
  file[0] = 'B';
  file[1] = 'M';
  put(2, 54 + pixelBytes);
  put(6, 0);
  put(10, 54);
  put(14, 40);
  put(18, width);
  put(22, height);
  put(26, 1 | 24 << 16);  // one plane, 24 bits
  put(30, 0);
  put(34, pixelBytes);
  put(38, 2835);
  put(42, 2835);
  put(46, 0);
  put(50, 0);
  return file;
}

TEST(PhotoBadInput, EachEndsInItsOwnError) {
  CreateDirectoryW(L"photos\\bad", nullptr);
  EXPECT_EQ(DecodePhoto(L"photos\\bad\\vanished.jpg", kTable).error, PhotoError::kNotFound);
  EXPECT_EQ(DecodePhoto(L"photos\\no-such-folder\\x.png", kTable).error, PhotoError::kNotFound);

  WriteBytes("photos/bad/empty.jpg", {});
  EXPECT_EQ(DecodePhoto(L"photos\\bad\\empty.jpg", kTable).error, PhotoError::kEmpty);

  const std::string text = "Shopping list: eggs, milk, bread.\r\n";
  WriteBytes("photos/bad/text.png", std::vector<std::uint8_t>(text.begin(), text.end()));
  EXPECT_EQ(DecodePhoto(L"photos\\bad\\text.png", kTable).error, PhotoError::kNotAPicture);

  // A camera file cut short inside its headers, and one whose frame header is overwritten.
  const std::vector<std::uint8_t> jpeg = ReadBytes("photos/photo.jpg");
  ASSERT_GT(jpeg.size(), 400u);
  WriteBytes("photos/bad/cut.jpg", std::vector<std::uint8_t>(jpeg.begin(), jpeg.begin() + 120));
  EXPECT_EQ(DecodePhoto(L"photos\\bad\\cut.jpg", kTable).error, PhotoError::kDamaged);
  std::vector<std::uint8_t> scrambled = jpeg;
  for (std::size_t i = 2; i < 400; ++i) scrambled[i] = static_cast<std::uint8_t>(i * 37);
  WriteBytes("photos/bad/scrambled.jpg", scrambled);
  EXPECT_EQ(DecodePhoto(L"photos\\bad\\scrambled.jpg", kTable).error, PhotoError::kDamaged);

  // 20,000 x 6,000 is 120 megapixels: refused from the header, whatever the file holds.
  WriteBytes("photos/bad/huge.bmp", BmpClaiming(20000, 6000));
  EXPECT_EQ(DecodePhoto(L"photos\\bad\\huge.bmp", kTable).error, PhotoError::kTooLarge);
  // Some decoders allocate the whole picture on opening it; this header is refused before that.
  WriteBytes("photos/bad/huge.png", PngClaiming(12000, 12000));
  EXPECT_EQ(DecodePhoto(L"photos\\bad\\huge.png", kTable).error, PhotoError::kTooLarge);
  // Just under the limit but with almost no pixels behind the header: damaged, not a crash.
  WriteBytes("photos/bad/hollow.bmp", BmpClaiming(10000, 9999));
  EXPECT_EQ(DecodePhoto(L"photos\\bad\\hollow.bmp", kTable).error, PhotoError::kDamaged);
}

TEST(PhotoBadInput, AFileAnotherProgramHoldsIsLocked) {
  HANDLE held = CreateFileW(L"photos\\photo.jpg", GENERIC_READ | GENERIC_WRITE, 0, nullptr,
                            OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  ASSERT_NE(held, INVALID_HANDLE_VALUE);
  EXPECT_EQ(DecodePhoto(L"photos\\photo.jpg", kTable).error, PhotoError::kLocked);
  CloseHandle(held);
  EXPECT_EQ(DecodePhoto(L"photos\\photo.jpg", kTable).error, PhotoError::kNone);
}

// The game's thread may have COM already, in either model; decoding works in both and leaves
// the thread's own initialisation as it was.
TEST(PhotoCom, DecodesInsideTheCallersApartment) {
  ASSERT_EQ(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), S_OK);
  EXPECT_EQ(DecodePhoto(PhotoPath("rgb8.png"), kTable).error, PhotoError::kNone);
  EXPECT_EQ(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), S_FALSE);  // still ours
  CoUninitialize();
  CoUninitialize();
}

}  // namespace
}  // namespace qv
