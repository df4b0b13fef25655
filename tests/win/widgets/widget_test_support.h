// Window tests of the widgets: a parent that records notifications, real mouse input, strips.
#pragma once

#include <windows.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "graphics/himage_ops.h"
#include "graphics/packed_dib.h"
#include "widgets/widget_classes.h"
#include "widgets/widget_window.h"
#include "win/support/real_input.h"

namespace qv::test {

// Every picture of these tests shares one palette: entry i is a colour no other entry has.
inline RgbQuad PaletteEntry(int i) {
  return RgbQuad{static_cast<std::uint8_t>(255 - i), static_cast<std::uint8_t>((i * 37) & 0xFF),
                 static_cast<std::uint8_t>(i), 0};
}
inline std::uint32_t ColourOfIndex(int i) {
  const RgbQuad q = PaletteEntry(i);
  return (std::uint32_t{q.rgbRed} << 16) | (std::uint32_t{q.rgbGreen} << 8) | q.rgbBlue;
}

// An 8-bit picture of the shared palette filled with one index.
PackedDib SolidPicture(int width, int height, int index);
void FillRect8(HIMAGE picture, int x, int y, int width, int height, int index);

// A vertical strip of `frames` frames; frame k is filled with index base + k and its pixel (1, 1)
// carries index 200 + k, so a frame read one row off shows.
PackedDib VerticalStrip(int width, int frameHeight, int frames, int base);

// ---- The parent ----------------------------------------------------------------------------

struct Note {
  HWND from;
  int code;
};

// A top-level window at a fixed place that records every MWM_NOTIFY it is sent.
class TestParent {
 public:
  TestParent();
  ~TestParent();
  TestParent(const TestParent&) = delete;
  TestParent& operator=(const TestParent&) = delete;

  HWND hwnd() const { return window_; }
  HWND AddChild(const char* className, int x, int y, int width = 10, int height = 10);
  // The codes one child sent, in order.
  std::vector<int> CodesFrom(HWND child) const;
  void Clear();
  static std::vector<Note>& Notes();

  static constexpr int kLeft = 60;
  static constexpr int kTop = 60;
  static constexpr int kNeutralX = 1010;  // a point of the screen outside the parent
  static constexpr int kNeutralY = 700;

 private:
  HWND window_ = nullptr;
};

// The whole client area of a window, painted through WM_PRINTCLIENT into a 32-bit surface.
class Snapshot {
 public:
  explicit Snapshot(HWND window);
  std::uint32_t At(int x, int y) const;  // 0x00RRGGBB
  int width() const { return width_; }
  int height() const { return height_; }

 private:
  int width_ = 0;
  int height_ = 0;
  std::vector<std::uint32_t> pixels_;
};

SIZE ClientSize(HWND window);
RECT RectInParent(HWND window);

// Records the sounds the widgets ask for during a test.
class SoundLog {
 public:
  SoundLog();
  ~SoundLog();
  SoundLog(const SoundLog&) = delete;
  SoundLog& operator=(const SoundLog&) = delete;
  static std::vector<int>& Played();
};

}  // namespace qv::test
