// Renders the game's music: a MIDI file through Debian's fluidsynth, then levelled and faded.
#pragma once

#include <string>
#include <vector>

#include "assets/music_notes.h"

namespace qv::assets {

constexpr const char* kDefaultSoundFont = "/usr/share/sounds/sf2/FluidR3_GM.sf2";
constexpr const char* kMusicPackages = "fluidsynth and fluid-soundfont-gm";

// Mono samples in [-1, 1] at kSoundRate: the piece as `fluidsynth` plays it with `soundFont`
// (no chorus; its reverb is a fixed filter, so the same notes give the same samples), brought to
// one loudness and faded at both ends so that the track can loop without a click.
bool RenderPiece(const MusicPiece& piece, const std::string& soundFont, std::vector<double>& samples,
                 std::string& error);

// The levelling and fades, on their own: a common loudness with the peaks kept below full scale,
// the silent end cut off, 10 ms of fade-in and `fadeSeconds` of fade-out ending on silence.
void FinishTrack(std::vector<double>& samples, double fadeSeconds);

}  // namespace qv::assets
