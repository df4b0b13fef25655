// The symbols on the interface buttons: bold, one colour, readable at 40 pixels.
#pragma once

#include <string>

#include "assets/die_shapes.h"
#include "assets/ui_style.h"

namespace qv::assets {

enum class Icon {
  kCross, kMinimise, kCheck, kPlus, kMinus, kQuestion, kInfo, kExclaim, kNext, kPlay, kReplay,
  kGlobe, kPrinter, kEye, kMagnifier, kBulb, kNote, kTrophy, kSolve, kExit, kBin, kPencil,
  kSpeaker, kWave, kStop, kPicture, kPiece, kSwatch, kOpenFolder, kSaveBox,
};

// Draws the symbol centred in the box, in `ink` over a dark drop shadow.
void DrawIcon(cairo_t* cr, Icon icon, const Box& box, const Shade& ink);

// A short glyph string (a digit, a letter) drawn the same way as the symbols.
void DrawGlyph(cairo_t* cr, const std::string& glyph, const Box& box, const Shade& ink);

// The outline of one puzzle piece of the given style, centred at (cx, cy), its square `side`
// pixels wide; tabs out on the top and bottom, and sockets on the left and right unless
// `tabsAllRound` (which shows the style four times, for the shape pickers).
void PiecePath(cairo_t* cr, TabStyle style, double cx, double cy, double side, bool tabsAllRound = false);

}  // namespace qv::assets
