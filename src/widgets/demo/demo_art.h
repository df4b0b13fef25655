// The widget demo's own pictures, drawn at start-up: strips for every widget in one palette.
#pragma once

#include <windows.h>

#include "graphics/packed_dib.h"

namespace qv::demo {

// One 256-colour palette for every picture of the demo, so that the pixel operations may
// combine any two of them. Index 0 is black and 255 white (the masks' colours).
RGBQUAD PaletteColour(int index);

// The window's background: walnut wood with a felt panel, width x height.
PackedDib Background(int width, int height);
// Cuts the groove of a slider's track into a background, from one point to the other.
void DrawGroove(PackedDib& background, POINT from, POINT to);
// A push-button strip with a disabled frame: disabled, normal, hover, pressed.
PackedDib PushStrip(int width, int height, const char* label);
// A check-box or radio-button strip: unchecked, unchecked hover, checked, checked hover.
PackedDib CheckStrip(int width, int height, const char* label, bool radio);
// Ten frames side by side of a brass dial whose hand turns a tenth each frame.
PackedDib DialStrip(int size);
// Eight frames of a bouncing ball over transparent ground, each row followed by its masks.
PackedDib BallStrip(int size);
// The scroll: up arrow, grip and down arrow blocks, three versions each.
PackedDib ScrollPicture(int width, int top, int middle, int bottom);
// The slider's knob: one frame and its mask.
PackedDib KnobStrip(int width, int height);
// The message box's face, its OK and Cancel strips and its icon.
PackedDib MessageFace();
PackedDib MessageIcon();

}  // namespace qv::demo
