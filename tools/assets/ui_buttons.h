// The interface's buttons and knobs, as finished strips ready for reduction.
#pragma once

#include <array>
#include <string>

#include "assets/die_shapes.h"
#include "assets/ui_icons.h"
#include "assets/ui_style.h"

namespace qv::assets {

// What lies behind a button on its screen, so that its round corners blend in.
enum class Backdrop { kWood, kTitleBar, kBars };

// Push strips (normal, hover, pressed) with a symbol or a short glyph.
RgbImage IconPush(int width, int height, Icon icon, Backdrop backdrop);
RgbImage GlyphPush(int width, int height, const std::string& glyph, Backdrop backdrop);

// The piece-box buttons: a crate whose number (and, when full, its pieces) sit in the left
// half, which is all that shows at the screen's edge.
RgbImage BoxPush(int number, bool full);
// The information button at the screen's right edge, read from its left half likewise.
RgbImage EdgeInfoPush();

// Ten frames: closed, seven steps of opening, fully open, hover.
RgbImage Anim10(int side, Icon icon);

// Check strips for the piece shapes and the six-frame shape cycler.
RgbImage ShapeCheck(TabStyle style);
RgbImage ShapeCycler();

// Scroll bars: up button, track, down button (parts heights from top to bottom).
RgbImage ScrollBar(int width, const std::array<int, 3>& parts);

// Sprites over the music screen: volume indicators (off, on) and the slider knob.
RgbImage VolumeIndicator(Icon icon);
RgbImage SliderKnob();

}  // namespace qv::assets
