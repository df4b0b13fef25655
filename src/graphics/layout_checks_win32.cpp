// Compile-time proof that the portable layout structs and constants match the Windows ones.
#include <windows.h>

#include <cstddef>

#include "graphics/dib_layout.h"
#include "graphics/himage_ops.h"

namespace qv {

#define QV_SAME_FIELD(ours, theirs, field)                              \
  static_assert(offsetof(ours, field) == offsetof(theirs, field) &&     \
                    sizeof(ours::field) == sizeof(theirs::field),       \
                #field " must match the Windows layout")

static_assert(sizeof(BitmapInfoHeader) == sizeof(BITMAPINFOHEADER));
QV_SAME_FIELD(BitmapInfoHeader, BITMAPINFOHEADER, biSize);
QV_SAME_FIELD(BitmapInfoHeader, BITMAPINFOHEADER, biWidth);
QV_SAME_FIELD(BitmapInfoHeader, BITMAPINFOHEADER, biHeight);
QV_SAME_FIELD(BitmapInfoHeader, BITMAPINFOHEADER, biPlanes);
QV_SAME_FIELD(BitmapInfoHeader, BITMAPINFOHEADER, biBitCount);
QV_SAME_FIELD(BitmapInfoHeader, BITMAPINFOHEADER, biCompression);
QV_SAME_FIELD(BitmapInfoHeader, BITMAPINFOHEADER, biSizeImage);
QV_SAME_FIELD(BitmapInfoHeader, BITMAPINFOHEADER, biXPelsPerMeter);
QV_SAME_FIELD(BitmapInfoHeader, BITMAPINFOHEADER, biYPelsPerMeter);
QV_SAME_FIELD(BitmapInfoHeader, BITMAPINFOHEADER, biClrUsed);
QV_SAME_FIELD(BitmapInfoHeader, BITMAPINFOHEADER, biClrImportant);

static_assert(sizeof(RgbQuad) == sizeof(RGBQUAD));
QV_SAME_FIELD(RgbQuad, RGBQUAD, rgbBlue);
QV_SAME_FIELD(RgbQuad, RGBQUAD, rgbGreen);
QV_SAME_FIELD(RgbQuad, RGBQUAD, rgbRed);
QV_SAME_FIELD(RgbQuad, RGBQUAD, rgbReserved);

static_assert(kBiRgb == BI_RGB && kBiBitfields == BI_BITFIELDS);
static_assert(kRopSrcCopy == SRCCOPY && kRopSrcAnd == SRCAND && kRopSrcInvert == SRCINVERT &&
              kRopMergeCopy == MERGECOPY && kRopBlackness == BLACKNESS);

#undef QV_SAME_FIELD

}  // namespace qv
