// Note lists for the game's music: a compact text form, chord arpeggios, and the checks they pass.
#pragma once

#include <string>
#include <vector>

namespace qv::assets {

constexpr int kTicksPerQuarter = 480;

struct MusicNote {
  int pitch;     // MIDI key, 60 = middle C
  int start;     // ticks
  int duration;  // ticks
  int velocity;  // 1..127
  int channel;   // 0..15, never 9 (the drums)
};

struct TempoMark {
  int tick;
  double quartersPerMinute;
};

struct MusicPiece {
  int number = 0;  // n of Music\n.wav
  std::string title;
  std::string composer;
  int ticksPerBar = 4 * kTicksPerQuarter;
  std::vector<int> programs;  // General MIDI instrument of each channel used, by channel
  std::vector<TempoMark> tempo;
  std::vector<MusicNote> notes;
};

// Adds the notes of one voice written as text, starting at `start`. Tokens, separated by blanks:
//   C4/4   a note and its length: C D E F G A B, then # or b, then the octave (C4 = middle C)
//   [C4,E4,G4]/2   a chord; r/8 a rest; a token without /LENGTH keeps the previous length
//   lengths: 1 2 4 8 16 32, each with optional dots, *N repeats and + joins: 2.+2 is five beats
//   !NN    the velocity of the following notes
//   |      a bar line: the voice must stand on a bar boundary there, which catches a wrong length
// Returns false with the token and bar named in `error`; `notes` may then hold part of the voice.
bool AddVoice(const std::string& text, int channel, int ticksPerBar, int start, std::vector<MusicNote>& notes,
              std::string& error);

// Broken chords, one chord per span of `spanTicks` from `start`; chords are blank-separated
// pitches between bar lines ("C4 E4 G4 | B3 D4 G4"). In every span, step s plays the chord's
// tone tones[s % tones.size()] (−1 for silence) with velocities[s % velocities.size()], one
// step every `stepTicks`. Each note rings until its tone is struck again or the span ends, as a
// pianist's pedal would hold it.
bool AddArpeggios(const std::string& chords, int spanTicks, int stepTicks, const std::vector<int>& tones,
                  const std::vector<int>& velocities, int channel, int start, std::vector<MusicNote>& notes,
                  std::string& error);

// What is wrong with a piece, or "" when nothing is: a note outside the piano's keys, with no
// length or velocity, on the drum channel or a channel without an instrument; the same key
// sounding twice at once on one channel; no tempo at tick 0.
std::string CheckPiece(const MusicPiece& piece);

// The tick after the last note ends.
int PieceEnd(const MusicPiece& piece);

// Seconds from the start to `tick` under the piece's tempo marks.
double SecondsAt(const MusicPiece& piece, int tick);

}  // namespace qv::assets
