// Proyector: draws frames of a sprite strip transparently and erases them from a saved background.
#pragma once

#include <windows.h>

#include <cstdint>
#include <memory>

#include "graphics/control_dc.h"

namespace qv {

class Proyector {
 public:
  Proyector();
  ~Proyector();
  Proyector(const Proyector&) = delete;
  Proyector& operator=(const Proyector&) = delete;

  bool Destino(HWND window);
  bool Destino(HDC dc);
  bool Destino(HIMAGE image);

  // Loads the strip by identifier from the resource file; masked strips carry a row of masks
  // under every row of frames.
  bool LoadStrip(std::uint32_t identifier, bool masked);
  bool DeclararTiraExterna(HIMAGE strip, bool masked);
  // A strip held in a drawing context (for example a GDI-mode ControlDC) of this size.
  bool DeclararTiraExterna(HDC strip, int width, int height, bool masked);
  bool CambiarNumCol(int columns);
  bool CambiarNumFil(int rows);
  int Columns() const { return columns_; }
  int Rows() const { return rows_; }
  int FrameWidth() const { return frameWidth_; }
  int FrameHeight() const { return frameHeight_; }

  bool Transparencia(int frame, int x, int y, bool invalidate, bool erase, bool saveBackground);
  bool TransparenciaParcial(int frame, int x, int y, bool invalidate, bool erase,
                            bool saveBackground, std::uint32_t rop);
  bool Borrar(bool invalidate, bool erase);
  void RealizePalettes();

  // The saved background, for tests and callers that repaint around a sprite.
  const ControlDC* FondoDC() const { return background_.get(); }

 private:
  bool HasDestination() const { return destinationIsContext_ ? destinationDc_ != nullptr
                                                               : destinationImage_ != nullptr; }
  bool HasStrip() const { return stripIsContext_ ? stripDc_ != nullptr : strip_ != nullptr; }
  void ComputeFrameSize();
  POINT FramePosition(int frame) const;
  void SaveBackground(int x, int y);
  bool CopyFromStrip(int x, int y, int sx, int sy, std::uint32_t rop);
  bool Invalidate(int x, int y, int width, int height, bool erase, const char* message);

  HWND destinationWindow_ = nullptr;
  HDC destinationDc_ = nullptr;
  HIMAGE destinationImage_ = nullptr;
  HIMAGE strip_ = nullptr;
  HDC stripDc_ = nullptr;
  int stripWidth_ = 0;
  int stripHeight_ = 0;
  std::unique_ptr<ControlDC> ownStrip_;
  std::unique_ptr<ControlDC> background_;
  int x_ = 0;
  int y_ = 0;
  int rows_ = 1;
  int columns_ = 1;
  bool drawn_ = false;
  bool masked_ = false;
  int frameWidth_ = 0;
  int frameHeight_ = 0;
  bool stripIsContext_ = false;
  bool destinationIsContext_ = false;
};

}  // namespace qv
