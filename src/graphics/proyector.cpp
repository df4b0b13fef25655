// Proyector: frame arithmetic, masked drawing, background saving and erasing.
#include "graphics/proyector.h"

#include "graphics/himage_draw.h"
#include "graphics/himage_ops.h"
#include "system/assert.h"

namespace qv {

Proyector::Proyector() = default;
Proyector::~Proyector() = default;

bool Proyector::Destino(HWND window) {
  if (!QV_CHECK(window != nullptr, "Proyector::Destino: Se declaró un Hwnd nulo")) return false;
  destinationWindow_ = window;
  return true;
}

bool Proyector::Destino(HDC dc) {
  if (!QV_CHECK(dc != nullptr, "Proyector:Destino: Se declaró un Hdc nulo")) return false;
  destinationDc_ = dc;
  destinationImage_ = nullptr;
  destinationIsContext_ = true;
  return true;
}

bool Proyector::Destino(HIMAGE image) {
  if (!QV_CHECK(image != nullptr, "Proyector:Destino: Se declaró un Hdc nulo")) return false;
  destinationImage_ = image;
  destinationDc_ = nullptr;
  destinationIsContext_ = false;
  return true;
}

void Proyector::ComputeFrameSize() {
  if (!HasStrip()) return;
  const int width = stripIsContext_ ? stripWidth_ : ImageWidth(strip_);
  const int height = stripIsContext_ ? stripHeight_ : ImageHeight(strip_);
  frameWidth_ = width / columns_;
  frameHeight_ = height / (rows_ * (masked_ ? 2 : 1));
}

bool Proyector::LoadStrip(std::uint32_t identifier, bool masked) {
  if (!ownStrip_) ownStrip_ = std::make_unique<ControlDC>();
  if (!ownStrip_->LoadById(identifier)) return false;
  masked_ = masked;
  strip_ = ownStrip_->Dib();
  stripDc_ = nullptr;
  stripIsContext_ = false;
  ComputeFrameSize();
  return true;
}

bool Proyector::DeclararTiraExterna(HIMAGE strip, bool masked) {
  if (!QV_CHECK(strip != nullptr, "Proyector::DeclararTiraExterna: HdcExterno NULO")) {
    return false;
  }
  strip_ = strip;
  stripDc_ = nullptr;
  stripIsContext_ = false;
  masked_ = masked;
  ComputeFrameSize();
  return true;
}

bool Proyector::DeclararTiraExterna(HDC strip, int width, int height, bool masked) {
  if (!QV_CHECK(strip != nullptr && width > 0 && height > 0,
                "Proyector::DeclararTiraExterna: HdcExterno NULO")) {
    return false;
  }
  stripDc_ = strip;
  strip_ = nullptr;
  stripWidth_ = width;
  stripHeight_ = height;
  stripIsContext_ = true;
  masked_ = masked;
  ComputeFrameSize();
  return true;
}

bool Proyector::CambiarNumCol(int columns) {
  if (!QV_CHECK(columns >= 1, "Proyector:CambiarNumCol: numero de columnas invalido")) {
    return false;
  }
  if (!QV_CHECK(!stripIsContext_, "no se puede si el origen no es gdi")) return false;
  columns_ = columns;
  ComputeFrameSize();
  return true;
}

bool Proyector::CambiarNumFil(int rows) {
  if (!QV_CHECK(rows >= 1, "Proyector:CambiarNumFil: numero de filas invalido")) return false;
  if (!QV_CHECK(!stripIsContext_, "no se puede si el origen no es gdi")) return false;
  rows_ = rows;
  ComputeFrameSize();
  return true;
}

POINT Proyector::FramePosition(int frame) const {
  return POINT{frameWidth_ * (frame % columns_),
               (masked_ ? 2 : 1) * frameHeight_ * (frame / columns_)};
}

void Proyector::SaveBackground(int x, int y) {
  if (!background_) background_ = std::make_unique<ControlDC>(destinationIsContext_);
  x_ = x;
  y_ = y;
  background_->AjustarTamaño(frameWidth_, frameHeight_, false);
  if (destinationIsContext_) {
    BitBlt(background_->Dc(), 0, 0, frameWidth_, frameHeight_, destinationDc_, x, y, SRCCOPY);
  } else {
    ImageCopyColourTable(destinationImage_, background_->Dib());
    ImageRasterCopy(background_->Dib(), 0, 0, frameWidth_, frameHeight_, destinationImage_, x,
                    y, kRopSrcCopy);
  }
  drawn_ = true;
}

bool Proyector::CopyFromStrip(int x, int y, int sx, int sy, std::uint32_t rop) {
  if (!destinationIsContext_) {
    if (!QV_CHECK(!stripIsContext_, "operacion invalida")) return false;
    return ImageRasterCopy(destinationImage_, x, y, frameWidth_, frameHeight_, strip_, sx, sy,
                           rop);
  }
  if (stripIsContext_) {
    return BitBlt(destinationDc_, x, y, frameWidth_, frameHeight_, stripDc_, sx, sy, rop) !=
           FALSE;
  }
  // Drawing a picture to a context knows only the plain copy; transparent sprites are
  // drawn onto pictures in memory instead.
  return ImageDrawToContext(destinationDc_, x, y, frameWidth_, frameHeight_, strip_, sx, sy,
                            rop);
}

bool Proyector::Invalidate(int x, int y, int width, int height, bool erase,
                           const char* message) {
  if (!QV_CHECK(destinationWindow_ != nullptr, message)) return false;
  const RECT rect{x, y, x + width, y + height};
  InvalidateRect(destinationWindow_, &rect, erase ? TRUE : FALSE);
  return true;
}

bool Proyector::Transparencia(int frame, int x, int y, bool invalidate, bool erase,
                              bool saveBackground) {
  if (!QV_CHECK(HasDestination(),
                "Proyector:Transparencia: El Hdc destino es invalido o no ha sido declarado")) {
    return false;
  }
  if (!QV_CHECK(HasStrip() && frame >= 0 && frame < rows_ * columns_,
                "Proyector::Transparencia:el numero de cuadro enviado es invalido")) {
    return false;
  }
  if (!QV_CHECK(masked_,
                "Proyector:Transparencia: esta función no puede ser llamada con una tira "
                "incompleta")) {
    return false;
  }
  if (saveBackground) SaveBackground(x, y);
  const POINT at = FramePosition(frame);
  // The mask is black where the sprite is opaque and the frame black where it is
  // transparent, so AND then XOR leaves the background showing through.
  const bool drawn = CopyFromStrip(x, y, at.x, at.y + frameHeight_, kRopSrcAnd) &&
                     CopyFromStrip(x, y, at.x, at.y, kRopSrcInvert);
  if (invalidate &&
      !Invalidate(x, y, frameWidth_, frameHeight_, erase,
                  "Proyector::Transparencia: El Hwnd destino es invalido o no ha sido "
                  "declarado")) {
    return false;
  }
  return drawn;
}

bool Proyector::TransparenciaParcial(int frame, int x, int y, bool invalidate, bool erase,
                                     bool saveBackground, std::uint32_t rop) {
  if (!QV_CHECK(HasDestination(),
                "Proyector:Transparencia: El Hdc destino es invalido o no ha sido declarado")) {
    return false;
  }
  if (!QV_CHECK(HasStrip() && frame >= 0 && frame < rows_ * columns_,
                "Proyector::TransparenciaParcial: el numero de cuadro enviado es invalido")) {
    return false;
  }
  if (saveBackground) SaveBackground(x, y);
  const POINT at = FramePosition(frame);
  const bool drawn = CopyFromStrip(x, y, at.x, at.y, rop);
  if (invalidate &&
      !Invalidate(x, y, frameWidth_, frameHeight_, erase,
                  "Proyector::Transparencia: El Hwnd destino es invalido o no ha sido "
                  "declarado")) {
    return false;
  }
  return drawn;
}

bool Proyector::Borrar(bool invalidate, bool erase) {
  if (!QV_CHECK(HasDestination(), "Proyector::Borrar:Hdc Destino no declarado")) return false;
  if (drawn_) {
    drawn_ = false;
    if (!QV_CHECK(background_ != nullptr,
                  "Proyector::Borrar: se mando a borrar sin haber creado la clase FondoDC")) {
      return false;
    }
    const int width = background_->Width();
    const int height = background_->Height();
    if (destinationIsContext_) {
      BitBlt(destinationDc_, x_, y_, width, height, background_->Dc(), 0, 0, SRCCOPY);
    } else {
      ImageRasterCopy(destinationImage_, x_, y_, width, height, background_->Dib(), 0, 0,
                      kRopSrcCopy);
    }
  }
  if (invalidate) {
    const int width = background_ ? background_->Width() : 0;
    const int height = background_ ? background_->Height() : 0;
    return Invalidate(x_, y_, width, height, erase, "Proyector::Borrar: Hwnd Destino no declarado");
  }
  return true;
}

void Proyector::RealizePalettes() {
  if (background_ && background_->IsGdiMode()) background_->RealizePalette();
  if (ownStrip_ && ownStrip_->IsGdiMode()) ownStrip_->RealizePalette();
}

}  // namespace qv
