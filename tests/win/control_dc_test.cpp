// ControlDC under Windows: module and file bitmaps, attaching at several depths, palettes,
// resizing in both modes, and pictures from the resource file.
#include "graphics/control_dc.h"

#include <gtest/gtest.h>

#include <cstring>
#include <fstream>

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

UINT PaletteSize(HPALETTE palette) { return GetPaletteEntries(palette, 0, 0, nullptr); }

TEST(ControlDcGdi, LoadsAModuleBitmapWithItsColoursAndPalette) {
  ControlDC image(true);
  ASSERT_TRUE(image.LoadById(IDB_PALETTE8));
  EXPECT_EQ(image.Width(), 5);
  EXPECT_EQ(image.Height(), 3);
  HPALETTE palette = image.Palette();
  ASSERT_NE(palette, GetStockObject(DEFAULT_PALETTE));
  EXPECT_EQ(PaletteSize(palette), 256u);
  PALETTEENTRY entry{};
  GetPaletteEntries(palette, 10, 1, &entry);
  EXPECT_EQ(entry.peRed, 10);
  EXPECT_EQ(entry.peGreen, 245);
  EXPECT_EQ(entry.peBlue, 5);
  // The file's last stored row is the top one: indices 255..251; its first row is 0..4.
  EXPECT_EQ(GetPixel(image.Dc(), 0, 0), RGB(255, 0, 127));
  EXPECT_EQ(GetPixel(image.Dc(), 4, 2), RGB(4, 251, 2));

  AssertRecorder rec;
  EXPECT_FALSE(image.LoadById(999));
  EXPECT_EQ(rec.only(),
            "esta imagen no pudo ser cargada, posiblemente no existe en el archivo de recursos");
  EXPECT_EQ(image.Width(), 5) << "a failed load keeps the previous picture";
}

TEST(ControlDcGdi, LoadsABmpFileAndRefusesAMissingOne) {
  // A 3 x 2 24-bit file written here: bottom row blue, top row red.
  const std::string path = test::TempPath("qv_control_dc_24.bmp");
  {
    std::vector<std::uint8_t> bytes(54 + 2 * 12, 0);
    bytes[0] = 'B';
    bytes[1] = 'M';
    const std::uint32_t fileSize = static_cast<std::uint32_t>(bytes.size()), offset = 54;
    std::memcpy(&bytes[2], &fileSize, 4);
    std::memcpy(&bytes[10], &offset, 4);
    BitmapInfoHeader h{40, 3, 2, 1, 24, 0, 24, 0, 0, 0, 0};
    std::memcpy(&bytes[14], &h, 40);
    for (int x = 0; x < 3; ++x) {
      bytes[54 + x * 3] = 0xFF;           // bottom row: blue
      bytes[54 + 12 + x * 3 + 2] = 0xFF;  // top row: red
    }
    std::ofstream(path, std::ios::binary).write(reinterpret_cast<char*>(bytes.data()),
                                                static_cast<std::streamsize>(bytes.size()));
  }
  ControlDC image(true);
  ASSERT_TRUE(image.LoadFromFile(path.c_str()));
  EXPECT_EQ(image.Width(), 3);
  EXPECT_EQ(image.Height(), 2);
  EXPECT_EQ(GetPixel(image.Dc(), 1, 0), RGB(255, 0, 0));
  EXPECT_EQ(GetPixel(image.Dc(), 1, 1), RGB(0, 0, 255));
  EXPECT_EQ(image.Palette(), GetStockObject(DEFAULT_PALETTE)) << "24 bits make no palette";
  EXPECT_FALSE(image.LoadFromFile(nullptr));
  EXPECT_FALSE(image.LoadFromFile((path + ".missing").c_str()));
  EXPECT_EQ(image.Width(), 3);
  DeleteFileA(path.c_str());
}

TEST(ControlDcGdi, AttachMakesAPaletteOnlyForIndexedDepths) {
  ControlDC image(true);
  ASSERT_TRUE(image.AttachBitmap(MakeDibSection(7, 5, 4, 16), true));
  EXPECT_EQ(PaletteSize(image.Palette()), 16u);
  PALETTEENTRY entry{};
  GetPaletteEntries(image.Palette(), 3, 1, &entry);
  EXPECT_EQ(entry.peRed, 200);
  EXPECT_EQ(entry.peGreen, 3);
  EXPECT_EQ(entry.peBlue, 6);
  EXPECT_EQ(image.Width(), 7);
  EXPECT_EQ(image.AllocatedHeight(), 5);

  ASSERT_TRUE(image.AttachBitmap(MakeDibSection(9, 4, 8, 256), true));
  EXPECT_EQ(PaletteSize(image.Palette()), 256u);

  HPALETTE indexed = image.Palette();
  ASSERT_TRUE(image.AttachBitmap(MakeDibSection(6, 6, 24, 0), true));
  EXPECT_EQ(image.Palette(), indexed) << "no palette work for 24 bits";
  EXPECT_EQ(image.Width(), 6);

  EXPECT_FALSE(image.AttachBitmap(nullptr, true));
}

TEST(ControlDcGdi, TwoBitBitmapsAreReported) {
  HBITMAP twoBit = CreateBitmap(8, 8, 1, 2, nullptr);
  BITMAP info{};
  if (!twoBit || !GetObject(twoBit, sizeof info, &info) || info.bmBitsPixel != 2) {
    if (twoBit) DeleteObject(twoBit);
    GTEST_SKIP() << "this system cannot make a 2-bit bitmap";
  }
  ControlDC image(true);
  AssertRecorder rec;
  EXPECT_FALSE(image.AttachBitmap(twoBit, true));
  EXPECT_EQ(rec.only(), "que pasa con este Bitmap?");
}

TEST(ControlDcGdi, ResizeGrowsWithoutForceAndIsExactWithIt) {
  ControlDC surface(true);
  ASSERT_TRUE(surface.AjustarTamaño(40, 30, false));
  HBITMAP first = surface.Bitmap();
  ASSERT_TRUE(surface.AjustarTamaño(20, 10, false));
  EXPECT_EQ(surface.Bitmap(), first) << "a smaller size keeps the bitmap";
  EXPECT_EQ(surface.Width(), 20);
  EXPECT_EQ(surface.Height(), 10);
  EXPECT_EQ(surface.AllocatedWidth(), 40);

  ASSERT_TRUE(surface.AjustarTamaño(50, 10, false));
  BITMAP grown{};
  GetObject(surface.Bitmap(), sizeof grown, &grown);
  EXPECT_EQ(grown.bmWidth, 50);
  EXPECT_EQ(grown.bmHeight, 30) << "the allocation takes the larger of each side";

  ASSERT_TRUE(surface.AjustarTamaño(20, 10, true));
  BITMAP exact{};
  GetObject(surface.Bitmap(), sizeof exact, &exact);
  EXPECT_EQ(exact.bmWidth, 20);
  EXPECT_EQ(exact.bmHeight, 10);

  AssertRecorder rec;
  EXPECT_FALSE(surface.AjustarTamaño(0, 10, false));
  EXPECT_EQ(rec.only(), "ControlDC:AjustarTamaño:tamaños nuevos invalidos");
  EXPECT_EQ(surface.Width(), 20);
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
