// ControlDC under Windows in the mode the game uses (pictures from the resource file, resized
// in memory), and the other mode's operations refused in it. The game never makes a GDI-mode
// object, so that mode is not tested for its own sake.
#include "graphics/control_dc.h"

#include <gtest/gtest.h>

#include <cstring>

#include "graphics/resource_file.h"
#include "support/assert_recorder.h"
#include "support/rf_writer.h"
#include "test_resource_ids.h"
#include "win_test_support.h"

namespace qv {
namespace {

using test::AssertRecorder;

HBITMAP MakeDibSection(int width, int height, int bitCount, int colours) {
  std::vector<std::uint8_t> storage(sizeof(BITMAPINFOHEADER) + 256 * sizeof(RGBQUAD));
  auto* info = reinterpret_cast<BITMAPINFO*>(storage.data());
  info->bmiHeader.biSize = sizeof(BITMAPINFOHEADER);
  info->bmiHeader.biWidth = width;
  info->bmiHeader.biHeight = height;
  info->bmiHeader.biPlanes = 1;
  info->bmiHeader.biBitCount = static_cast<WORD>(bitCount);
  info->bmiHeader.biClrUsed = static_cast<DWORD>(colours);
  for (int i = 0; i < colours; ++i) {
    info->bmiColors[i] = RGBQUAD{static_cast<BYTE>(i * 2), static_cast<BYTE>(i), 200, 0};
  }
  void* bits = nullptr;
  return CreateDIBSection(nullptr, info, DIB_RGB_COLORS, &bits, nullptr, 0);
}

TEST(ControlDcDib, ResizeMakesAnEightBitPictureWithPaddedRows) {
  ControlDC picture;
  ASSERT_TRUE(picture.AjustarTamaño(5, 2, false));
  const BitmapInfoHeader* h = DibHeader(picture.Dib());
  EXPECT_EQ(h->biSizeImage, 16u);
  EXPECT_EQ(h->biBitCount, 8);
  EXPECT_EQ(picture.Width(), 5);
  EXPECT_EQ(picture.Height(), 2);
}

TEST(ControlDcDib, GdiOperationsAndAccessorsOfTheOtherModeAreRefused) {
  ControlDC picture;
  ControlDC surface(true);
  AssertRecorder rec;
  const char* dibOnly = "este objeto fue inicializado para cargar imagenes desde un .rf";
  EXPECT_FALSE(picture.LoadFromFile("x.bmp"));
  EXPECT_EQ(rec.only(), dibOnly);
  rec.clear();
  EXPECT_FALSE(picture.AttachBitmap(MakeDibSection(2, 2, 24, 0), true));
  EXPECT_EQ(rec.only(), dibOnly);
  rec.clear();
  EXPECT_FALSE(picture.LoadFromResource(GetModuleHandle(nullptr), IDB_PALETTE8));
  EXPECT_EQ(rec.only(), dibOnly);
  rec.clear();
  picture.SelectPaletteInto(static_cast<HPALETTE>(GetStockObject(DEFAULT_PALETTE)));
  EXPECT_EQ(rec.only(), dibOnly);
  rec.clear();
  EXPECT_EQ(picture.Dc(), nullptr);
  EXPECT_EQ(surface.Dib(), nullptr);
  EXPECT_EQ(rec.count(), 2u);
}

// The process-wide resource file opens once; DIB-mode objects then load by identifier.
TEST(ControlDcDib, LoadsPicturesFromTheResourceFileOnce) {
  const std::vector<test::RfPicture> pictures = {test::PatternPicture(5000, 11, 7, 8, 256),
                                                 test::PatternPicture(6000, 4, 4, 24, 0)};
  const std::string path = test::TempPath("qv_control_dc.rf");
  test::WriteBytes(path, test::BuildResourceFile(pictures));

  AssertRecorder rec;
  ControlDC picture;
  EXPECT_FALSE(picture.LoadById(5000));
  EXPECT_EQ(rec.only(), "no ha sido declarado el .rf");
  rec.clear();
  ASSERT_TRUE(OpenResourceFile(path.c_str()));
  EXPECT_FALSE(OpenResourceFile(path.c_str()));
  EXPECT_EQ(rec.only(), "el path debe ser declarado una vez");

  for (const auto& p : pictures) {
    ASSERT_TRUE(picture.LoadById(p.identifier));
    EXPECT_EQ(picture.Width(), p.width);
    EXPECT_EQ(picture.Height(), p.height);
    EXPECT_EQ(0, std::memcmp(DibPixels(picture.Dib()), p.pixels.data(), p.pixels.size()));
  }
}

}  // namespace
}  // namespace qv
