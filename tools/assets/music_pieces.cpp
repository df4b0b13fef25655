// The game's four pieces of music: public-domain works held here as note lists.
#include "assets/music_pieces.h"

#include <sstream>

namespace qv::assets {
namespace {

// General MIDI instruments.
constexpr int kPiano = 0;
constexpr int kNylonGuitar = 24;
constexpr int kCello = 42;
constexpr int kHarp = 46;
constexpr int kFlute = 73;

struct Credit {
  const char* title;
  const char* composer;
};

const Credit kCredits[kMusicPieceCount] = {
    {"Prelude in C major, BWV 846 (The Well-Tempered Clavier, Book I)", "Johann Sebastian Bach (1685-1750)"},
    {"Gymnopedie No. 1, first part with its first ending", "Erik Satie (1866-1925)"},
    {"Canon in D, the opening of the canon over its ground bass", "Johann Pachelbel (1653-1706)"},
    {"Greensleeves, verse and refrain played twice", "Traditional English tune (16th century), anonymous"},
};

std::string Repeat(const std::string& text, int times) {
  std::string out;
  for (int i = 0; i < times; ++i) out += text;
  return out;
}

// One chord a bar, its five notes struck bass first and the upper three twice in each half bar:
// the figure the whole prelude keeps until its last three bars.
bool Prelude(MusicPiece& piece, std::string& error) {
  piece.ticksPerBar = 4 * kTicksPerQuarter;
  piece.programs = {kPiano};
  const int bar = piece.ticksPerBar;
  piece.tempo = {{0, 63}, {31 * bar, 60}, {32 * bar, 56}, {33 * bar, 50}, {34 * bar, 42}};
  const std::string chords =
      "C4 E4 G4 C5 E5 | C4 D4 A4 D5 F5 | B3 D4 G4 D5 F5 | C4 E4 G4 C5 E5 |"
      "C4 E4 A4 E5 A5 | C4 D4 F#4 A4 D5 | B3 D4 G4 D5 G5 | B3 C4 E4 G4 C5 |"
      "A3 C4 E4 G4 C5 | D3 A3 D4 F#4 C5 | G3 B3 D4 G4 B4 | G3 Bb3 E4 G4 C#5 |"
      "F3 A3 D4 A4 D5 | F3 Ab3 D4 F4 B4 | E3 G3 C4 G4 C5 | E3 F3 A3 C4 F4 |"
      "D3 F3 A3 C4 F4 | G2 D3 G3 B3 F4 | C3 E3 G3 C4 E4 | C3 G3 Bb3 C4 E4 |"
      "F2 F3 A3 C4 E4 | F#2 C3 A3 C4 Eb4 | Ab2 F3 B3 C4 D4 | G2 F3 G3 B3 D4 |"
      "G2 E3 G3 C4 E4 | G2 D3 G3 C4 F4 | G2 D3 G3 B3 F4 | G2 Eb3 A3 C4 F#4 |"
      "G2 E3 G3 C4 G4 | G2 D3 G3 C4 F4 | G2 D3 G3 B3 F4 | C2 C3 G3 Bb3 E4";
  const int coda = 32 * bar;
  return AddArpeggios(chords, bar, kTicksPerQuarter / 4, {0, 1, 2, 3, 4, 2, 3, 4},
                      {54, 46, 44, 42, 45, 40, 42, 43}, 0, 0, piece.notes, error) &&
         AddVoice("!50 C2/1 | C2/1 | C2/1 |", 0, bar, coda, piece.notes, error) &&
         AddVoice("!44 r/16 C3/16*15 | r/16 B2/16*15 | C3/1 |", 0, bar, coda, piece.notes, error) &&
         AddVoice("!44 r/8 F3/16 A3 C4 F4 C4 A3 C4 A3 F3 A3 F3 D3 F3 D3 |"
                  " r/8 G4/16 B4 D5 F5 D5 B4 D5 B4 G4 B4 D4 F4 E4 D4 |"
                  " !40 [E4,G4,C5]/1 |",
                  0, bar, coda, piece.notes, error);
}

// The bass on the first beat, a soft chord on the second, the tune above. Where the score holds
// a key that a later chord strikes again (the F sharp of bars 9-12, the bass D under chords
// with a low D), the note is let go when the chord strikes, as the player's hand must.
bool Gymnopedie(MusicPiece& piece, std::string& error) {
  piece.ticksPerBar = 3 * kTicksPerQuarter;
  piece.programs = {kPiano};
  const int bar = piece.ticksPerBar;
  piece.tempo = {{0, 66}, {36 * bar, 60}, {37 * bar, 54}, {38 * bar, 48}};
  const std::string tune =
      "!58 r/2. | r/2. | r/2. | r/2. |"
      " r/4 F#5/4 A5 | G5 F#5 C#5 | B4 C#5 D5 | A4/2. |"
      " !62 F#4/4 r/2 | r/2. | r/2. | r/2. |"
      " !56 r/4 F#5/4 A5 | G5 F#5 C#5 | B4 C#5 D5 | A4/2. |"
      " C#5/2. | F#5/2. | E4/2.*3 |"
      " !54 A4/4 B4 C5 | E5 D5 B4 | D5 C5 B4 | D5/2.+2 D5/4 |"
      " E5 F5 G5 | A5 C5 D5 | E5 D5 B4 | D5/2.+2 D5/4 |"
      " !60 G5/2. | F#5/2. | B4/4 A4 B4 | C#5 D5 E5 | C#5 D5 E5 | !54 F#4/2. |"
      " !50 [C4,E4,A4,C5]/2. | !46 [D4,F#4,A4,D5]/2. |";
  const std::string chords =
      "!36" + Repeat(" r/4 [B3,D4,F#4]/2 | r/4 [A3,C#4,F#4]/2 |", 8) +
      " r/4 [A3,C#4,F#4]/2 | r/4 [B3,D4,F#4]/2 | r/4 [G3,B3]/2 | r/4 [B3,D4,G4]/2 |"
      " r/4 [F3,A3,D4]/2 | r/4 [A3,C4,E4]/2 | r/4 [G3,B3,E4]/2 | r/4 [D3,G3,B3,E4]/2 |"
      " r/4 [C3,E3,A3,D4]/2 | r/4 [C3,F#3,A3,D4]/2 | r/4 [A3,C4,F4]/2 | r/4 [A3,C4,E4]/2 |"
      " r/4 [D3,G3,B3,E4]/2 | r/4 [C3,E3,A3,D4]/2 | r/4 [C3,F#3,A3,D4]/2 |"
      " r/4 [B3,E4,G4]/2 | r/4 [A3,C#4,F#4]/2 | r/4 [B3,D4,F#4]/2 | r/4 [C#4,E4,A4]/2 |"
      " r/4 [A3,C#4,F#4,A4]/2 | r/4 [A3,D4]/4 [B3,D4,G4]/4 |";
  const std::string bass =
      "!46" + Repeat(" G2/2. | D3/2. |", 8) +
      " F#3/2. | B2/2. | E3/2. | E3/2. | D3/2. | A2/2. | D3/2. | D3/4 r/2 | D3/2. | D3/2. |"
      " D3/2. | D3/2. | D3/4 r/2 | D3/2. | D3/2. |"
      " E3/2. | F#3/2. | B2/2. | E3/2. | E3/2. | E2/2. | [A2,G3]/2. | [D2,A2,D3]/2. |";
  return AddVoice(tune, 0, bar, 0, piece.notes, error) && AddVoice(chords, 0, bar, 0, piece.notes, error) &&
         AddVoice(bass, 0, bar, 0, piece.notes, error) &&
         AddVoice("!40 r/4 B2/4 E3/4 |", 0, bar, 36 * bar, piece.notes, error);
}

// The ground bass repeats every two bars; three voices play one line, each two bars after the
// one before, so that every pair of bars fits the same eight chords. The voices stop together
// (the first after sixteen bars of the line, the others after fourteen and twelve) on a last
// chord of D major.
bool Canon(MusicPiece& piece, std::string& error) {
  piece.ticksPerBar = 4 * kTicksPerQuarter;
  piece.programs = {kHarp, kHarp, kHarp, kCello};
  const int bar = piece.ticksPerBar;
  piece.tempo = {{0, 54}, {16 * bar, 51}, {17 * bar, 47}, {18 * bar, 42}};
  const char* line[16] = {
      "F#5/4 E5 D5 C#5 |",
      "B4/4 A4 B4 C#5 |",
      "D5/4 C#5 B4 A4 |",
      "G4/4 F#4 G4 E4 |",
      "D4/8 F#4 A4 G4 F#4 D4 F#4 E4 |",
      "D4/8 B3 D4 A4 G4 B4 A4 G4 |",
      "F#4/8 D4 E4 C#5 D5 F#5 A5 A4 |",
      "B4/8 G4 A4 F#4 D4 D5 D5/8. C#5/16 |",
      "D5/16 C#5 D5 D4 C#4 A4 E4 F#4 D4 D5 C#5 B4 C#5 F#5 A5 B5 |",
      "G5/16 F#5 E5 G5 F#5 E5 D5 C#5 B4 A4 G4 F#4 E4 G4 F#4 E4 |",
      "D4/16 E4 F#4 G4 A4 E4 A4 G4 F#4 B4 A4 G4 A4 G4 F#4 E4 |",
      "D4/16 B3 B4 C#5 D5 C#5 B4 A4 G4 F#4 E4 B4 A4 B4 A4 G4 |",
      "F#4/8 F#5 E5/4 r/8 D5 F#5/4 |",
      "B5/4 A5 B5 C#6 |",
      "D6/8 D5 C#5/4 r/8 B4 D5/4 |",
      "D5/4. D5/8 D5 G5 E5 A5 |",
  };
  auto voice = [&](int bars, const char* velocity, const char* last) {
    std::string text = velocity;
    for (int i = 0; i < bars; ++i) text += std::string(" ") + line[i];
    return text + " " + last + "/1 |";
  };
  return AddVoice(voice(16, "!64", "A5"), 0, bar, 2 * bar, piece.notes, error) &&
         AddVoice(voice(14, "!58", "D6"), 1, bar, 4 * bar, piece.notes, error) &&
         AddVoice(voice(12, "!56", "F#4"), 2, bar, 6 * bar, piece.notes, error) &&
         AddVoice("!62" + Repeat(" D3/4 A2 B2 F#2 | G2 D2 G2 A2 |", 9) + " D2/1 |", 3, bar, 0, piece.notes,
                  error);
}

// A flute over a nylon-string guitar's broken chords: one bar of guitar, then the verse and the
// refrain twice, and the guitar's last chord.
bool Greensleeves(MusicPiece& piece, std::string& error) {
  piece.ticksPerBar = 3 * kTicksPerQuarter;
  piece.programs = {kFlute, kNylonGuitar};
  const int bar = piece.ticksPerBar;
  piece.tempo = {{0, 84}, {63 * bar, 76}, {64 * bar, 66}, {65 * bar, 56}};
  const std::string verse =
      " C5/2 D5/4 | E5/4. F5/8 E5/4 | D5/2 B4/4 | G4/4. A4/8 B4/4 | C5/2 A4/4 | A4/4. G#4/8 A4/4 |"
      " B4/2 G#4/4 | E4/2 A4/4 | C5/2 D5/4 | E5/4. F5/8 E5/4 | D5/2 B4/4 | G4/4. A4/8 B4/4 |"
      " C5/4. B4/8 A4/4 | G#4/4. F#4/8 G#4/4 | A4/2.*2 |";
  const std::string refrain =
      " G5/2. | G5/4. F#5/8 E5/4 | D5/2 B4/4 | G4/4. A4/8 B4/4 | C5/2 A4/4 | A4/4. G#4/8 A4/4 |"
      " B4/2 G#4/4 | E4/2. | G5/2. | G5/4. F#5/8 E5/4 | D5/2 B4/4 | G4/4. A4/8 B4/4 |"
      " C5/4. B4/8 A4/4 | G#4/4. F#4/8 G#4/4 |";
  const std::string tune = "!70 r/2 A4/4 |" + verse + refrain + " A4/2. | r/2 A4/4 | !64" + verse + refrain +
                           " A4/2.*2 |";
  const std::string am = "A2 E3 A3 C4 E4 |", c = "C3 G3 C4 E4 G4 |", g = "G2 D3 G3 B3 D4 |",
                    em = "E2 B2 E3 G3 B3 |", e = "E2 B2 E3 G#3 B3 |";
  const std::string verseChords = am + c + g + em + am + am + e + e + am + c + g + em + am + e + am + am;
  const std::string refrainChords = c + c + g + em + am + am + e + e + c + c + g + em + am + e + am + am;
  const std::string chords = am + verseChords + refrainChords + verseChords + refrainChords;
  return AddVoice(tune, 0, bar, 0, piece.notes, error) &&
         AddArpeggios(chords, bar, kTicksPerQuarter / 2, {0, 1, 2, 3, 4, 3}, {58, 44, 46, 48, 46, 42}, 1, 0,
                      piece.notes, error) &&
         AddVoice("!52 [A2,E3,A3,C4,E4]/2. |", 1, bar, 65 * bar, piece.notes, error);
}

}  // namespace

bool MakeMusicPiece(int number, MusicPiece& piece, std::string& error) {
  piece = MusicPiece();
  piece.number = number;
  bool ok = false;
  switch (number) {
    case 1: ok = Prelude(piece, error); break;
    case 2: ok = Gymnopedie(piece, error); break;
    case 3: ok = Canon(piece, error); break;
    case 4: ok = Greensleeves(piece, error); break;
    default: error = "there is no piece " + std::to_string(number); return false;
  }
  if (ok) {
    piece.title = kCredits[number - 1].title;
    piece.composer = kCredits[number - 1].composer;
    error = CheckPiece(piece);
    ok = error.empty();
  }
  if (!ok) error = "piece " + std::to_string(number) + ": " + error;
  return ok;
}

std::string MusicCreditsText() {
  std::ostringstream out;
  out << "\r\nQuorvex Puzzle: the music\r\n\r\n"
         "The four pieces in Music\\ are old works in the public domain, written out note by note\r\n"
         "for this game and rendered at build time with FluidSynth and the FluidR3_GM SoundFont.\r\n";
  for (int i = 0; i < kMusicPieceCount; ++i) {
    out << "\r\nMusic\\" << i + 1 << ".wav: " << kCredits[i].title << "\r\n"
        << "  Composer: " << kCredits[i].composer << "\r\n"
        << "  Public domain; arrangement and rendering by the Quorvex Puzzle project.\r\n";
  }
  out << "\r\nThe instruments: FluidR3_GM SoundFont (Debian package fluid-soundfont-gm)\r\n"
         "  Copyright (c) 2000-2002, 2008 Frank Wen\r\n"
         "  Copyright (c) 2008 Toby Smithe\r\n"
         "  Contributors named by its author: Suren M. Seron, Scott Hanan, Steve Aupperle, Chris\r\n"
         "  Gillman, Alex Taubr, Chris Prola, Andrew Klenk, Winfried Hubbe, Dylan, Tim, Gort, Uros\r\n"
         "  Katic, Ethan Winer.\r\n"
         "  Released under the MIT licence:\r\n\r\n"
         "  Permission is hereby granted, free of charge, to any person obtaining a copy of this\r\n"
         "  software and associated documentation files (the \"Software\"), to deal in the Software\r\n"
         "  without restriction, including without limitation the rights to use, copy, modify, merge,\r\n"
         "  publish, distribute, sublicense, and/or sell copies of the Software, and to permit persons\r\n"
         "  to whom the Software is furnished to do so, subject to the following conditions:\r\n\r\n"
         "  The above copyright notice and this permission notice shall be included in all copies or\r\n"
         "  substantial portions of the Software.\r\n\r\n"
         "  THE SOFTWARE IS PROVIDED \"AS IS\", WITHOUT WARRANTY OF ANY KIND, EXPRESS OR IMPLIED,\r\n"
         "  INCLUDING BUT NOT LIMITED TO THE WARRANTIES OF MERCHANTABILITY, FITNESS FOR A PARTICULAR\r\n"
         "  PURPOSE AND NONINFRINGEMENT. IN NO EVENT SHALL THE AUTHORS OR COPYRIGHT HOLDERS BE LIABLE\r\n"
         "  FOR ANY CLAIM, DAMAGES OR OTHER LIABILITY, WHETHER IN AN ACTION OF CONTRACT, TORT OR\r\n"
         "  OTHERWISE, ARISING FROM, OUT OF OR IN CONNECTION WITH THE SOFTWARE OR THE USE OR OTHER\r\n"
         "  DEALINGS IN THE SOFTWARE.\r\n";
  return out.str();
}

}  // namespace qv::assets
