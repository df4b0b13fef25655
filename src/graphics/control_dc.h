// ControlDC: the one image object, a resource-file picture (DIB mode) or a memory DC (GDI mode).
#pragma once

#include <windows.h>

#include <cstdint>

#include "graphics/packed_dib.h"

namespace qv {

class ControlDC {
 public:
  ControlDC();                       // DIB mode
  explicit ControlDC(bool gdiMode);  // GDI mode when true
  ~ControlDC();
  ControlDC(const ControlDC&) = delete;
  ControlDC& operator=(const ControlDC&) = delete;

  // DIB mode: the picture of that identifier from the resource file. GDI mode: the bitmap
  // resource of the running module named by the identifier's low 16 bits.
  bool LoadById(std::uint32_t identifier);
  bool LoadFromResource(HINSTANCE module, std::uint32_t identifier);  // GDI mode
  bool LoadFromFile(const char* path);                                 // GDI mode
  bool AttachBitmap(HBITMAP bitmap, bool deletePrevious);              // GDI mode
  void SelectPaletteInto(HPALETTE palette);                            // GDI mode

  bool AjustarTamaño(int width, int height, bool force);

  bool IsGdiMode() const { return gdiMode_; }
  int Width() const;
  int Height() const;
  int AllocatedWidth() const { return allocatedWidth_; }
  int AllocatedHeight() const { return allocatedHeight_; }

  HDC Dc() const;            // GDI mode
  HIMAGE Dib() const;        // DIB mode
  HPALETTE Palette() const;  // GDI mode: the palette now selected in the DC
  HBITMAP Bitmap() const;    // GDI mode: the bitmap now selected in the DC
  UINT RealizePalette() const;  // GDI mode

 private:
  bool RequireGdiMode() const;
  bool RequireGdiModeForLoad() const;
  bool BuildPalette(const BITMAP& info);
  void AdoptDefaultBitmap(HGDIOBJ previous, bool deletePrevious);

  HDC dc_ = nullptr;
  HBITMAP defaultBitmap_ = nullptr;
  HPALETTE defaultPalette_ = nullptr;
  int allocatedWidth_ = 1;
  int allocatedHeight_ = 1;
  int width_ = 1;
  int height_ = 1;
  std::uint8_t reserved_ = 0;
  bool paletteIsExternal_ = false;
  bool gdiMode_ = false;
  PackedDib dib_;
};

}  // namespace qv
