// ControlDC: loading, attaching, palettes and resizing in both modes.
#include "graphics/control_dc.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include "graphics/resource_file.h"
#include "system/assert.h"

namespace qv {

namespace {

constexpr char kDibModeOnly[] = "este objeto fue inicializado para cargar imagenes desde un .rf";
constexpr char kWrongMode[] = "ControlDC: accessor used in the other mode";

HDC CreateScreenCompatibleDc() {
  HDC screen = GetDC(nullptr);
  HDC dc = CreateCompatibleDC(screen);
  ReleaseDC(nullptr, screen);
  return dc;
}

// Reads the colour table of a 4- or 8-bit bitmap that is selected into dc.
bool ReadColourTable(HDC dc, HBITMAP bitmap, int colours, std::vector<RGBQUAD>& table) {
  table.assign(static_cast<std::size_t>(colours), RGBQUAD{});
  if (GetDIBColorTable(dc, 0, static_cast<UINT>(colours), table.data()) > 0) return true;
  // Device-dependent bitmaps have no DIB colour table; ask GetDIBits for one instead.
  std::vector<std::uint8_t> info(sizeof(BITMAPINFOHEADER) + sizeof(RGBQUAD) * 256);
  auto* header = reinterpret_cast<BITMAPINFOHEADER*>(info.data());
  header->biSize = sizeof(BITMAPINFOHEADER);
  BITMAP bm{};
  GetObject(bitmap, sizeof bm, &bm);
  header->biWidth = bm.bmWidth;
  header->biHeight = bm.bmHeight;
  header->biPlanes = 1;
  header->biBitCount = bm.bmBitsPixel;
  HDC screen = GetDC(nullptr);
  const int lines = GetDIBits(screen, bitmap, 0, 0, nullptr,
                              reinterpret_cast<BITMAPINFO*>(info.data()), DIB_RGB_COLORS);
  ReleaseDC(nullptr, screen);
  if (lines == 0) return false;
  std::memcpy(table.data(), info.data() + sizeof(BITMAPINFOHEADER),
              sizeof(RGBQUAD) * static_cast<std::size_t>(colours));
  return true;
}

}  // namespace

ControlDC::ControlDC() : ControlDC(false) {}

ControlDC::ControlDC(bool gdiMode) : dc_(CreateScreenCompatibleDc()), gdiMode_(gdiMode) {}

ControlDC::~ControlDC() {
  if (gdiMode_ && dc_) {
    if (defaultBitmap_) {
      HGDIOBJ selected = SelectObject(dc_, defaultBitmap_);
      if (selected) DeleteObject(selected);
    }
    if (defaultPalette_) {
      HPALETTE selected = SelectPalette(dc_, defaultPalette_, TRUE);
      if (selected && !paletteIsExternal_) DeleteObject(selected);
    }
  }
  // The DIB mode never draws through its DC, but it is deleted all the same: a DC per
  // picture would otherwise leak for every screen opened.
  if (dc_) DeleteDC(dc_);
}

bool ControlDC::RequireGdiMode() const {
  return QV_CHECK(gdiMode_, kWrongMode);
}

bool ControlDC::RequireGdiModeForLoad() const { return QV_CHECK(gdiMode_, kDibModeOnly); }

int ControlDC::Width() const {
  if (!gdiMode_ && dib_) return dib_.width();
  return width_;
}

int ControlDC::Height() const {
  if (!gdiMode_ && dib_) return dib_.height();
  return height_;
}

HDC ControlDC::Dc() const { return RequireGdiMode() ? dc_ : nullptr; }

HIMAGE ControlDC::Dib() const { return QV_CHECK(!gdiMode_, kWrongMode) ? dib_.get() : nullptr; }

HPALETTE ControlDC::Palette() const {
  return RequireGdiMode() ? static_cast<HPALETTE>(GetCurrentObject(dc_, OBJ_PAL)) : nullptr;
}

HBITMAP ControlDC::Bitmap() const {
  return RequireGdiMode() ? static_cast<HBITMAP>(GetCurrentObject(dc_, OBJ_BITMAP)) : nullptr;
}

UINT ControlDC::RealizePalette() const {
  return RequireGdiMode() ? ::RealizePalette(dc_) : 0;
}

bool ControlDC::LoadById(std::uint32_t identifier) {
  if (!gdiMode_) return TheResourceFile().LoadPicture(identifier, dib_);
  return LoadFromResource(GetModuleHandle(nullptr), identifier);
}

bool ControlDC::LoadFromResource(HINSTANCE module, std::uint32_t identifier) {
  if (!RequireGdiModeForLoad()) return false;
  // Not LR_SHARED: this object deletes the bitmaps it replaces, so it must own a copy.
  HANDLE image = LoadImageA(module, MAKEINTRESOURCEA(identifier & 0xFFFF), IMAGE_BITMAP, 0, 0,
                            LR_CREATEDIBSECTION);
  if (!QV_CHECK(image != nullptr,
                "esta imagen no pudo ser cargada, posiblemente no existe en el archivo de "
                "recursos")) {
    return false;
  }
  return AttachBitmap(static_cast<HBITMAP>(image), true);
}

bool ControlDC::LoadFromFile(const char* path) {
  if (!RequireGdiModeForLoad() || !path) return false;
  HANDLE image =
      LoadImageA(nullptr, path, IMAGE_BITMAP, 0, 0, LR_LOADFROMFILE | LR_CREATEDIBSECTION);
  if (!image) return false;
  return AttachBitmap(static_cast<HBITMAP>(image), true);
}

void ControlDC::AdoptDefaultBitmap(HGDIOBJ previous, bool deletePrevious) {
  if (!defaultBitmap_) {
    defaultBitmap_ = static_cast<HBITMAP>(previous);
  } else if (deletePrevious && previous) {
    DeleteObject(previous);
  }
}

bool ControlDC::AttachBitmap(HBITMAP bitmap, bool deletePrevious) {
  if (!RequireGdiModeForLoad() || !bitmap) return false;
  BITMAP info{};
  if (GetObject(bitmap, sizeof info, &info) == 0) return false;

  HGDIOBJ previous = SelectObject(dc_, bitmap);
  if (!previous || previous == HGDI_ERROR) {
    if (deletePrevious) DeleteObject(bitmap);
    return false;
  }
  allocatedWidth_ = width_ = info.bmWidth;
  allocatedHeight_ = height_ = info.bmHeight;
  AdoptDefaultBitmap(previous, deletePrevious);

  switch (info.bmBitsPixel) {
    case 1:
    case 16:
    case 24:
    case 32:
      return true;
    case 4:
    case 8:
      return BuildPalette(info);
    default:
      QV_FAIL("que pasa con este Bitmap?");
      return false;
  }
}

bool ControlDC::BuildPalette(const BITMAP& info) {
  const int colours = info.bmBitsPixel == 4 ? 16 : 256;
  std::vector<RGBQUAD> table;
  if (!ReadColourTable(dc_, static_cast<HBITMAP>(GetCurrentObject(dc_, OBJ_BITMAP)), colours,
                       table)) {
    return false;
  }
  std::vector<std::uint8_t> storage(sizeof(LOGPALETTE) + sizeof(PALETTEENTRY) * 256);
  auto* logical = reinterpret_cast<LOGPALETTE*>(storage.data());
  logical->palVersion = 0x300;
  logical->palNumEntries = static_cast<WORD>(colours);
  for (int i = 0; i < colours; ++i) {
    logical->palPalEntry[i] = PALETTEENTRY{table[i].rgbRed, table[i].rgbGreen,
                                           table[i].rgbBlue, 0};
  }
  HPALETTE palette = CreatePalette(logical);
  if (!palette) return false;
  HPALETTE previous = SelectPalette(dc_, palette, TRUE);
  ::RealizePalette(dc_);
  if (!defaultPalette_) {
    defaultPalette_ = previous;
  } else if (previous && !paletteIsExternal_) {
    DeleteObject(previous);
  }
  paletteIsExternal_ = false;
  return true;
}

void ControlDC::SelectPaletteInto(HPALETTE palette) {
  if (!RequireGdiModeForLoad()) return;
  HPALETTE previous = SelectPalette(dc_, palette, TRUE);
  if (defaultPalette_) {
    if (previous && !paletteIsExternal_) DeleteObject(previous);
  } else {
    defaultPalette_ = previous;
  }
  paletteIsExternal_ = true;
}

bool ControlDC::AjustarTamaño(int width, int height, bool force) {
  if (!QV_CHECK(width >= 1 && height >= 1, "ControlDC:AjustarTamaño:tamaños nuevos invalidos")) {
    return false;
  }
  if (!gdiMode_) {
    // The DIB mode always makes a new picture of exactly the size asked for.
    if (!dib_.Allocate(width, height)) return false;
    allocatedWidth_ = width_ = width;
    allocatedHeight_ = height_ = height;
    return true;
  }
  int newWidth = width;
  int newHeight = height;
  if (!force) {
    // Without force the surface only ever grows, so repeated resizes cost nothing.
    newWidth = std::max(width, allocatedWidth_);
    newHeight = std::max(height, allocatedHeight_);
    if (newWidth == allocatedWidth_ && newHeight == allocatedHeight_) {
      width_ = width;
      height_ = height;
      return true;
    }
  }
  HDC screen = GetDC(nullptr);
  HBITMAP bitmap = CreateCompatibleBitmap(screen, newWidth, newHeight);
  ReleaseDC(nullptr, screen);
  if (!bitmap) return false;
  HGDIOBJ previous = SelectObject(dc_, bitmap);
  if (!previous || previous == HGDI_ERROR) {
    DeleteObject(bitmap);
    return false;
  }
  AdoptDefaultBitmap(previous, true);
  allocatedWidth_ = newWidth;
  allocatedHeight_ = newHeight;
  width_ = width;
  height_ = height;
  return true;
}

}  // namespace qv
