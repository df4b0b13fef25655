// The demo's pictures: drawn with GDI into 8-bit sections of one palette, then packed.
#include "widgets/demo/demo_art.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>

#include "graphics/himage_ops.h"

namespace qv::demo {

namespace {

struct Ramp {
  int first;
  int last;
  int r0, g0, b0, r1, g1, b1;
};

// Wood, brass, parchment, felt, grey, red and blue ramps between black (0) and white (255).
constexpr Ramp kRamps[] = {
    {1, 63, 40, 22, 12, 196, 140, 86},       {64, 127, 70, 50, 10, 255, 232, 150},
    {128, 159, 196, 180, 146, 255, 250, 236}, {160, 191, 8, 46, 28, 92, 168, 112},
    {192, 223, 22, 22, 22, 238, 238, 238},    {224, 239, 96, 12, 10, 250, 96, 76},
    {240, 254, 12, 30, 92, 126, 176, 252},
};

int Lerp(int a, int b, int i, int n) { return n == 0 ? a : a + (b - a) * i / n; }

int RampIndex(const Ramp& r, double t) {
  t = std::clamp(t, 0.0, 1.0);
  return r.first + static_cast<int>(std::lround(t * (r.last - r.first)));
}

int Wood(double t) { return RampIndex(kRamps[0], t); }
int Brass(double t) { return RampIndex(kRamps[1], t); }
int Cream(double t) { return RampIndex(kRamps[2], t); }
int Felt(double t) { return RampIndex(kRamps[3], t); }
int Grey(double t) { return RampIndex(kRamps[4], t); }
int Red(double t) { return RampIndex(kRamps[5], t); }
int Blue(double t) { return RampIndex(kRamps[6], t); }

COLORREF Colour(int index) {
  const RGBQUAD q = PaletteColour(index);
  return RGB(q.rgbRed, q.rgbGreen, q.rgbBlue);
}

// An 8-bit bottom-up DIB section in the demo palette: GDI draws into it and maps every colour
// to the nearest entry; its rows are laid out exactly as a packed picture's.
class Canvas {
 public:
  Canvas(int width, int height) : width_(width), height_(height) {
    struct {
      BITMAPINFOHEADER header;
      RGBQUAD colours[256];
    } info{};
    info.header.biSize = sizeof(BITMAPINFOHEADER);
    info.header.biWidth = width;
    info.header.biHeight = height;
    info.header.biPlanes = 1;
    info.header.biBitCount = 8;
    info.header.biClrUsed = 256;
    for (int i = 0; i < 256; ++i) info.colours[i] = PaletteColour(i);
    dc_ = CreateCompatibleDC(nullptr);
    bitmap_ = CreateDIBSection(dc_, reinterpret_cast<BITMAPINFO*>(&info), DIB_RGB_COLORS, &bits_,
                               nullptr, 0);
    previous_ = SelectObject(dc_, bitmap_);
    SetBkMode(dc_, TRANSPARENT);
  }
  ~Canvas() {
    SelectObject(dc_, previous_);
    DeleteObject(bitmap_);
    DeleteDC(dc_);
  }
  Canvas(const Canvas&) = delete;
  Canvas& operator=(const Canvas&) = delete;

  HDC dc() const { return dc_; }

  void Box(int x, int y, int w, int h, int index) {
    HBRUSH brush = CreateSolidBrush(Colour(index));
    const RECT r{x, y, x + w, y + h};
    FillRect(dc_, &r, brush);
    DeleteObject(brush);
  }
  void Shape(bool ellipse, int x, int y, int w, int h, int fill, int edge, int round = 0) {
    HBRUSH brush = CreateSolidBrush(Colour(fill));
    HPEN pen = CreatePen(PS_SOLID, 1, Colour(edge));
    HGDIOBJ oldBrush = SelectObject(dc_, brush);
    HGDIOBJ oldPen = SelectObject(dc_, pen);
    if (ellipse) {
      Ellipse(dc_, x, y, x + w, y + h);
    } else {
      RoundRect(dc_, x, y, x + w, y + h, round, round);
    }
    SelectObject(dc_, oldBrush);
    SelectObject(dc_, oldPen);
    DeleteObject(brush);
    DeleteObject(pen);
  }
  void Line(int x0, int y0, int x1, int y1, int width, int index) {
    HPEN pen = CreatePen(PS_SOLID, width, Colour(index));
    HGDIOBJ old = SelectObject(dc_, pen);
    MoveToEx(dc_, x0, y0, nullptr);
    LineTo(dc_, x1, y1);
    SelectObject(dc_, old);
    DeleteObject(pen);
  }
  void Polygon3(POINT a, POINT b, POINT c, int index) {
    const POINT points[3] = {a, b, c};
    HBRUSH brush = CreateSolidBrush(Colour(index));
    HPEN pen = CreatePen(PS_SOLID, 1, Colour(index));
    HGDIOBJ oldBrush = SelectObject(dc_, brush);
    HGDIOBJ oldPen = SelectObject(dc_, pen);
    Polygon(dc_, points, 3);
    SelectObject(dc_, oldBrush);
    SelectObject(dc_, oldPen);
    DeleteObject(brush);
    DeleteObject(pen);
  }
  void Text(const char* text, RECT area, int height, int weight, int index, UINT format) {
    HFONT font = CreateFontA(height, 0, 0, 0, weight, 0, 0, 0, DEFAULT_CHARSET, 0, 0,
                             NONANTIALIASED_QUALITY, 0, "Arial");
    HGDIOBJ old = SelectObject(dc_, font);
    SetTextColor(dc_, Colour(index));
    DrawTextA(dc_, text, -1, &area, format | DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX);
    SelectObject(dc_, old);
    DeleteObject(font);
  }

  PackedDib Take() const {
    GdiFlush();
    PackedDib picture;
    if (!picture.Allocate(width_, height_)) return picture;
    DibHeader(picture.get())->biClrUsed = 256;
    for (int i = 0; i < 256; ++i) {
      const RGBQUAD q = PaletteColour(i);
      DibColours(picture.get())[i] = RgbQuad{q.rgbBlue, q.rgbGreen, q.rgbRed, 0};
    }
    std::memcpy(DibPixels(picture.get()), bits_, DibHeader(picture.get())->biSizeImage);
    return picture;
  }

 private:
  int width_;
  int height_;
  HDC dc_ = nullptr;
  HBITMAP bitmap_ = nullptr;
  HGDIOBJ previous_ = nullptr;
  void* bits_ = nullptr;
};

// One raised brass plate: the look of a button in a state (0 disabled, 1 normal, 2 hover,
// 3 pressed), on felt, with its label.
void Plate(Canvas& c, int y, int w, int h, int look, const char* label) {
  c.Box(0, y, w, h, Felt(0.45));
  const double light = look == 0 ? 0.0 : look == 2 ? 0.78 : look == 3 ? 0.38 : 0.6;
  const int face = look == 0 ? Grey(0.55) : Brass(light);
  const int edge = look == 0 ? Grey(0.3) : Wood(0.1);
  const int sink = look == 3 ? 2 : 0;
  c.Shape(false, 1, y + 1, w - 2, h - 2, edge, edge, 12);
  c.Shape(false, 2, y + 2, w - 4, h - 4, look == 0 ? Grey(0.7) : Brass(light + 0.15), edge, 10);
  c.Shape(false, 4 + sink, y + 4 + sink, w - 7 - sink, h - 7 - sink, face, face, 8);
  if (look == 2) c.Shape(false, 3, y + 3, w - 6, h - 6, face, Cream(1.0), 9);
  const RECT area{sink, y + sink, w + sink, y + h + sink};
  c.Text(label, area, h / 2 + 2, FW_BOLD, look == 0 ? Grey(0.35) : Wood(0.05), DT_CENTER);
}

}  // namespace

RGBQUAD PaletteColour(int index) {
  if (index <= 0) return RGBQUAD{0, 0, 0, 0};
  if (index >= 255) return RGBQUAD{255, 255, 255, 0};
  for (const Ramp& r : kRamps) {
    if (index >= r.first && index <= r.last) {
      const int i = index - r.first;
      const int n = r.last - r.first;
      return RGBQUAD{static_cast<BYTE>(Lerp(r.b0, r.b1, i, n)),
                     static_cast<BYTE>(Lerp(r.g0, r.g1, i, n)),
                     static_cast<BYTE>(Lerp(r.r0, r.r1, i, n)), 0};
    }
  }
  return RGBQUAD{0, 0, 0, 0};
}

PackedDib Background(int width, int height) {
  Canvas c(width, height);
  PackedDib picture = c.Take();
  HIMAGE p = picture.get();
  if (!p) return picture;
  // Walnut grain: slow waves across the board, fine streaks along it.
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      const double grain = 0.42 + 0.12 * std::sin(x * 0.012 + 3.0 * std::sin(y * 0.018)) +
                           0.05 * std::sin(y * 0.37 + x * 0.003);
      *ImagePixel(p, x, y) = static_cast<std::uint8_t>(Wood(grain));
    }
  }
  // The felt panel with a brass rim.
  const int left = 40, top = 90, right = width - 40, bottom = height - 40;
  for (int y = top - 4; y < bottom + 4; ++y) {
    for (int x = left - 4; x < right + 4; ++x) {
      const bool inside = x >= left && x < right && y >= top && y < bottom;
      const double t = 0.45 + 0.04 * std::sin(x * 0.9 + y * 1.7);
      *ImagePixel(p, x, y) = static_cast<std::uint8_t>(inside ? Felt(t) : Brass(0.55));
    }
  }
  return picture;
}

void DrawGroove(PackedDib& background, POINT from, POINT to) {
  HIMAGE p = background.get();
  if (!p) return;
  const int steps = std::max(std::abs(to.x - from.x), std::abs(to.y - from.y));
  for (int ring = 4; ring >= 0; ring -= 4) {
    const int index = ring ? Brass(0.35) : Wood(0.02);
    const int half = ring ? 4 : 2;
    for (int i = 0; i <= steps; ++i) {
      const int cx = from.x + (to.x - from.x) * i / std::max(steps, 1);
      const int cy = from.y + (to.y - from.y) * i / std::max(steps, 1);
      for (int y = cy - half; y <= cy + half; ++y) {
        for (int x = cx - half; x <= cx + half; ++x) {
          if (x >= 0 && y >= 0 && x < ImageWidth(p) && y < ImageHeight(p)) {
            *ImagePixel(p, x, y) = static_cast<std::uint8_t>(index);
          }
        }
      }
    }
  }
}

PackedDib PushStrip(int width, int height, const char* label) {
  Canvas c(width, height * 4);
  for (int look = 0; look < 4; ++look) Plate(c, look * height, width, height, look, label);
  return c.Take();
}

PackedDib CheckStrip(int width, int height, const char* label, bool radio) {
  Canvas c(width, height * 4);
  for (int state = 0; state < 4; ++state) {
    const int y = state * height;
    const bool checked = state >= 2;
    const bool hover = state % 2 == 1;
    c.Box(0, y, width, height, Felt(0.45));
    const int box = height - 8;
    const int top = y + 4;
    c.Shape(radio, 3, top, box, box, Cream(hover ? 1.0 : 0.7), hover ? Brass(0.9) : Wood(0.1), 4);
    if (checked && radio) c.Shape(true, 3 + box / 4, top + box / 4, box / 2, box / 2, Wood(0.05),
                                  Wood(0.05));
    if (checked && !radio) {
      c.Line(6, top + box / 2, 3 + box / 2 - 1, top + box - 4, 3, Red(0.4));
      c.Line(3 + box / 2 - 1, top + box - 4, box, top + 3, 3, Red(0.4));
    }
    const RECT area{box + 10, y, width, y + height};
    c.Text(label, area, height / 2 + 4, hover ? FW_BOLD : FW_NORMAL, Cream(hover ? 1.0 : 0.8),
           DT_LEFT);
  }
  return c.Take();
}

PackedDib DialStrip(int size) {
  Canvas c(size * 10, size);
  for (int f = 0; f < 10; ++f) {
    const int x = f * size;
    c.Box(x, 0, size, size, Felt(0.45));
    c.Shape(true, x + 3, 3, size - 6, size - 6, Brass(0.55), Wood(0.1));
    c.Shape(true, x + 8, 8, size - 16, size - 16, Cream(0.9), Brass(0.3));
    const double angle = f * 2.0 * 3.14159265 / 10.0;
    const int cx = x + size / 2;
    const int cy = size / 2;
    const int r = size / 2 - 12;
    c.Line(cx, cy, cx + static_cast<int>(r * std::sin(angle)),
           cy - static_cast<int>(r * std::cos(angle)), 3, Red(0.35));
    c.Shape(true, cx - 3, cy - 3, 7, 7, Wood(0.05), Wood(0.05));
  }
  return c.Take();
}

PackedDib BallStrip(int size) {
  Canvas c(size * 8, size * 2);
  c.Box(0, 0, size * 8, size, 0);
  c.Box(0, size, size * 8, size, 255);
  for (int f = 0; f < 8; ++f) {
    const int x = f * size;
    const double phase = std::fabs(std::sin(f * 3.14159265 / 8.0));
    const int d = size / 2;
    const int top = static_cast<int>((size - d - 2) * (1.0 - phase));
    c.Shape(true, x + size / 4, top, d, d, Red(0.55), Red(0.2));
    c.Shape(true, x + size / 4 + d / 5, top + d / 6, d / 4, d / 4, Red(1.0), Red(1.0));
    c.Shape(true, x + size / 4, size + top, d, d, 0, 0);
  }
  return c.Take();
}

PackedDib ScrollPicture(int width, int top, int middle, int bottom) {
  const int sizes[3] = {top, middle, bottom};
  Canvas c(width, 3 * (top + middle + bottom));
  int y = 0;
  for (int part = 0; part < 3; ++part) {
    for (int look = 1; look <= 3; ++look) {
      const int h = sizes[part];
      Plate(c, y, width, h, look, "");
      const int cx = width / 2;
      const int sink = look == 3 ? 2 : 0;
      if (part == 0) {
        c.Polygon3({cx - 9 + sink, y + h - 9 + sink}, {cx + 9 + sink, y + h - 9 + sink},
                   {cx + sink, y + 8 + sink}, Wood(0.05));
      } else if (part == 2) {
        c.Polygon3({cx - 9 + sink, y + 9 + sink}, {cx + 9 + sink, y + 9 + sink},
                   {cx + sink, y + h - 8 + sink}, Wood(0.05));
      } else {
        for (int k = -2; k <= 2; ++k) {
          const int ly = y + h / 2 + k * 6 + sink;
          c.Line(10 + sink, ly, width - 10 + sink, ly, 2, Wood(0.15));
        }
      }
      y += h;
    }
  }
  return c.Take();
}

PackedDib KnobStrip(int width, int height) {
  Canvas c(width, height * 2);
  c.Box(0, 0, width, height, 0);
  c.Box(0, height, width, height, 255);
  c.Shape(false, 0, 0, width, height, Brass(0.65), Wood(0.1), 8);
  c.Line(width / 2, 4, width / 2, height - 4, 2, Wood(0.1));
  c.Shape(false, 0, height, width, height, 0, 0, 8);
  return c.Take();
}

PackedDib MessageFace() {
  Canvas c(500, 305);
  c.Box(0, 0, 500, 305, Wood(0.3));
  c.Box(4, 4, 492, 297, Brass(0.6));
  c.Box(8, 8, 484, 289, Cream(0.85));
  c.Box(8, 8, 484, 44, Cream(0.6));
  c.Text("Quorvex Puzzle", RECT{64, 8, 480, 52}, 26, FW_BOLD, Wood(0.08), DT_LEFT);
  return c.Take();
}

PackedDib MessageIcon() {
  Canvas c(40, 40);
  c.Box(0, 0, 40, 40, Cream(0.6));
  c.Shape(true, 2, 2, 36, 36, Blue(0.5), Blue(0.2));
  c.Text("i", RECT{0, 0, 40, 40}, 30, FW_BOLD, 255, DT_CENTER);
  return c.Take();
}

}  // namespace qv::demo
