// Decisions of the text widget (CMWTXT): value checks, sizing, the paint plan and mouse handling.
#pragma once

#include <cstdint>

#include "widgets/widget_effects.h"

namespace qv {

// Colours travel as the window system's 0x00BBGGRR values.
constexpr std::uint32_t ColourRgb(int r, int g, int b) {
  return static_cast<std::uint32_t>(r & 0xFF) | (static_cast<std::uint32_t>(g & 0xFF) << 8) |
         (static_cast<std::uint32_t>(b & 0xFF) << 16);
}

constexpr int kCaptionLimit = 200;   // a caption is shorter than this
constexpr int kFaceNameLimit = 100;  // a face name is shorter than this

struct TextWidget {
  bool enabled = true;
  bool hover = false;
  bool captured = false;
  bool shadow = false;
  int fontHeight = 10;
  std::uint32_t shadowColour = ColourRgb(0, 0, 0);
  std::uint32_t textColour = ColourRgb(255, 255, 255);
  std::uint32_t disabledColour = ColourRgb(160, 160, 164);
  int shadowOffset = 2;
  bool ready = false;
  int normalWeight = 400;
  int hoverWeight = 700;
};

// Length of a terminated string counted up to limit: limit when no terminator comes sooner,
// so an unterminated buffer is never read past limit characters.
int BoundedLength(const char* text, int limit);

// The checks of the setters; each reports its message and answers false.
bool CaptionValid(const char* text);
bool FaceNameValid(const char* face);
bool ShadowOffsetValid(int offset);
bool FontHeightValid(int height);
bool FontWeightValid(int weight);

struct TextExtent {
  int width = 0;
  int height = 0;
};

// The window's size from the caption measured in both fonts: the larger width and height,
// plus the shadow offset both ways whether or not the shadow is drawn. Not ready (size left
// alone) when either is below 2 or there is no background.
struct TextSizing {
  bool ready = false;
  int windowWidth = 0;
  int windowHeight = 0;
};
TextSizing TextWindowSize(TextExtent normal, TextExtent hover, int shadowOffset,
                          bool hasBackground);

// How one paint draws the caption.
struct TextPaintPlan {
  bool drawShadow = false;
  int shadowX = 0;
  int shadowY = 0;
  int textX = 0;
  int textY = 0;
  bool hoverFont = false;
  std::uint32_t textColour = 0;
};
TextPaintPlan PlanTextPaint(const TextWidget& t);

bool TextTakesMouse(const TextWidget& t);
Effects TextMouseMove(TextWidget& t, bool pointerOverThis);
Effects TextButtonDown(TextWidget& t);
Effects TextButtonUp(TextWidget& t, bool pointerOverThis);
Effects TextHoverTimer(TextWidget& t, bool pointerOverThis);
Effects TextSetEnabled(TextWidget& t, bool enable);

}  // namespace qv
