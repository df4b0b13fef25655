// ImageDrawToContext and ImageFill: packed DIBs to the screen through DrawDib.
#include "graphics/himage_draw.h"

#include <vfw.h>

#include "graphics/himage_ops.h"
#include "system/assert.h"

namespace qv {

namespace {

constexpr char kOnlyCopy[] = "otro rop distinto a este no es soportado en el modo no gdi";

// One DrawDib handle for the length of one draw.
class DrawDibHandle {
 public:
  DrawDibHandle() : handle_(DrawDibOpen()) {}
  ~DrawDibHandle() {
    if (handle_) DrawDibClose(handle_);
  }
  DrawDibHandle(const DrawDibHandle&) = delete;
  DrawDibHandle& operator=(const DrawDibHandle&) = delete;
  HDRAWDIB get() const { return handle_; }

 private:
  HDRAWDIB handle_;
};

bool Draw(HDC dc, int x, int y, int width, int height, HIMAGE source, int sx, int sy,
          bool background) {
  DrawDibHandle drawDib;
  if (!drawDib.get()) return false;
  DrawDibRealize(drawDib.get(), dc, background ? TRUE : FALSE);
  const BOOL drawn = DrawDibDraw(drawDib.get(), dc, x, y, width, height,
                                 reinterpret_cast<LPBITMAPINFOHEADER>(source), DibPixels(source),
                                 sx, sy, width, height, 0);
  return QV_CHECK(drawn != FALSE,
                  "la funcion a fallado, probablemente por que el hdc de destino no es de "
                  "pantalla");
}

}  // namespace

bool ImageDrawToContext(HDC dc, int x, int y, int width, int height, HIMAGE source, int sx,
                        int sy, std::uint32_t rop) {
  QV_CHECK(rop == kRopSrcCopy, kOnlyCopy);
  if (width == 0 || height == 0) return true;
  if (!QV_CHECK(dc && source, "manipuladores invalidos")) return false;
  return Draw(dc, x, y, width, height, source, sx, sy, true);
}

bool ImageFill(HDC dc, const RECT& rect, HIMAGE picture, std::uint32_t rop) {
  const int width = rect.right - rect.left;
  const int height = rect.bottom - rect.top;
  if (!picture) return PatBlt(dc, rect.left, rect.top, width, height, rop) != FALSE;
  if (!QV_CHECK(rop == kRopSrcCopy, kOnlyCopy)) return false;
  if (width <= 0 || height <= 0) return true;
  return Draw(dc, rect.left, rect.top, width, height, picture, rect.left, rect.top, false);
}

}  // namespace qv
