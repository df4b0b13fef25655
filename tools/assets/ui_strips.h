// Cutting a widget's states into one strip: each frame is drawn on its own canvas and placed.
#pragma once

#include <array>
#include <functional>

#include "assets/ui_style.h"

namespace qv::assets {

// Draws one frame on a canvas of the frame's size.
using FrameDraw = std::function<void(cairo_t* cr, int width, int height, int frame)>;

// Frames stacked top to bottom (push buttons: normal, hover, pressed; check buttons: unchecked,
// unchecked + hover, checked, checked + hover).
RgbImage ColumnStrip(int width, int height, int frames, const FrameDraw& draw);

// Frames side by side in one row (animated buttons, plain strips).
RgbImage RowStrip(int width, int height, int frames, const FrameDraw& draw);

// A scroll bar: three blocks stacked (top, middle, bottom part), each holding the part's normal,
// hover and pressed versions. `draw` gets the part index times 3 plus the version as its frame.
RgbImage ScrollStrip(int width, const std::array<int, 3>& parts, const FrameDraw& draw);

// A transparent sprite: the frames in a row, then their masks in a row below. `shape` draws
// (in any colour) where the sprite is opaque; the mask is black there and white elsewhere, and
// the frame is made black wherever the mask is white.
RgbImage SpriteStrip(int width, int height, int frames, const FrameDraw& draw, const FrameDraw& shape);

// Push faces in strip order.
inline constexpr Face kPushFaces[3] = {Face::kNormal, Face::kHover, Face::kPressed};

}  // namespace qv::assets
