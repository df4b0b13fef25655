// Standard MIDI Files of the game's music, for the synthesiser that renders them at build time.
#pragma once

#include <cstdint>
#include <vector>

#include "assets/music_notes.h"

namespace qv::assets {

// A format-0 file: one track with the tempo marks, each channel's instrument and reverb send, the
// notes, and an end `tailSeconds` after the last note so that the synthesiser renders the
// release and the room's echo.
std::vector<std::uint8_t> EncodeMidi(const MusicPiece& piece, double tailSeconds);

}  // namespace qv::assets
