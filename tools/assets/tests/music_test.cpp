// The game's music: the note lists, the MIDI file fluidsynth reads, and the WAVE files MCI plays.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "assets/file_io.h"
#include "assets/midi_file.h"
#include "assets/music_pieces.h"
#include "assets/music_render.h"
#include "assets/sounds.h"
#include "assets/tests/temp_folder.h"

namespace qv::assets {
namespace {

std::uint32_t U32(const std::vector<std::uint8_t>& b, std::size_t at) {
  return b[at] | b[at + 1] << 8 | b[at + 2] << 16 | static_cast<std::uint32_t>(b[at + 3]) << 24;
}
std::uint16_t U16(const std::vector<std::uint8_t>& b, std::size_t at) {
  return static_cast<std::uint16_t>(b[at] | b[at + 1] << 8);
}
std::uint32_t BigEndian(const std::vector<std::uint8_t>& b, std::size_t at, int bytes) {
  std::uint32_t v = 0;
  for (int i = 0; i < bytes; ++i) v = v << 8 | b[at + i];
  return v;
}

TEST(MusicPieces, AreWellFormedCalmAndSmallEnough) {
  double totalSeconds = 0;
  for (int n = 1; n <= kMusicPieceCount; ++n) {
    MusicPiece piece;
    std::string error;
    ASSERT_TRUE(MakeMusicPiece(n, piece, error)) << error;  // includes CheckPiece
    EXPECT_FALSE(piece.title.empty());
    EXPECT_FALSE(piece.composer.empty());
    for (const TempoMark& mark : piece.tempo) EXPECT_LE(mark.quartersPerMinute, 90) << n;
    const double seconds = SecondsAt(piece, PieceEnd(piece));
    EXPECT_GE(seconds, 60) << n;
    EXPECT_LE(seconds, 170) << n;  // with the echo's few seconds, still under three minutes
    totalSeconds += seconds + 3;
  }
  EXPECT_LT(totalSeconds * kSoundRate * 2, 25e6);  // 16-bit mono
  MusicPiece none;
  std::string error;
  EXPECT_FALSE(MakeMusicPiece(0, none, error));
  EXPECT_FALSE(MakeMusicPiece(kMusicPieceCount + 1, none, error));
  const std::string credits = MusicCreditsText();
  for (const char* name :
       {"Bach", "Satie", "Pachelbel", "Greensleeves", "FluidR3_GM", "Frank Wen",
        "Permission is hereby granted", "arrangement and rendering by the Quorvex Puzzle project"}) {
    EXPECT_NE(credits.find(name), std::string::npos) << name;
  }
}

TEST(MusicNotes, TextGivesKeysAndLengthsAndRefusesMistakes) {
  std::vector<MusicNote> notes;
  std::string error;
  ASSERT_TRUE(AddVoice("!70 C4/4 F#5 Bb3/8. r/16 | [A2,E3]/2.+2. |", 2, 1440, 0, notes, error)) << error;
  ASSERT_EQ(notes.size(), 5u);
  EXPECT_EQ(notes[0].pitch, 60);
  EXPECT_EQ(notes[1].pitch, 78);
  EXPECT_EQ(notes[1].duration, 480);  // the length carries over
  EXPECT_EQ(notes[2].pitch, 58);
  EXPECT_EQ(notes[2].duration, 360);
  EXPECT_EQ(notes[3].start, 1440);
  EXPECT_EQ(notes[4].pitch, 52);
  EXPECT_EQ(notes[4].duration, 2880);
  EXPECT_EQ(notes[4].velocity, 70);
  EXPECT_EQ(notes[4].channel, 2);
  for (const char* bad : {"C4/4 |", "C4/3", "C4/4*0", "H4/4", "C9/4", "A0/4 Cb0/4", "!0 C4", "!200 C4",
                          "[C4,X]/4", "C4/4..x", "[]/4", "C4/1*999+1*999"}) {
    std::vector<MusicNote> ignored;
    error.clear();
    EXPECT_FALSE(AddVoice(bad, 0, 1920, 0, ignored, error)) << bad;
    EXPECT_FALSE(error.empty()) << bad;
  }
  std::vector<MusicNote> ignored;
  EXPECT_FALSE(AddVoice("C4/4 |", 0, 0, 0, ignored, error));  // no bar length: refused, no division by zero
}

TEST(MusicNotes, ArpeggiosRingUntilStruckAgainAndChecksFindClashes) {
  MusicPiece piece;
  piece.programs = {0};
  piece.tempo = {{0, 60}};
  std::string error;
  ASSERT_TRUE(AddArpeggios("C3 G3 E4 | D3 A3 F4", 1920, 240, {0, 1, 2, 1, 2, 1, 2, 1}, {50}, 0, 0,
                           piece.notes, error));
  ASSERT_EQ(piece.notes.size(), 16u);
  EXPECT_EQ(piece.notes[0].duration, 1920);     // the bass, struck once, rings through the bar
  EXPECT_EQ(piece.notes[1].duration, 2 * 240);  // G3 until it is struck again
  EXPECT_EQ(piece.notes[8].pitch, 50);          // the second chord starts a bar later
  EXPECT_EQ(piece.notes[8].start, 1920);
  EXPECT_EQ(CheckPiece(piece), "");
  EXPECT_NEAR(SecondsAt(piece, PieceEnd(piece)), 8.0, 1e-9);
  EXPECT_FALSE(AddArpeggios("C3 G3", 1920, 240, {0, 2}, {50}, 0, 0, piece.notes, error));

  MusicPiece clash = piece;
  clash.notes.push_back({55, 480, 240, 50, 0});  // G3 while the arpeggio's G3 still sounds
  EXPECT_NE(CheckPiece(clash).find("still sounds"), std::string::npos);
  for (MusicNote wrong :
       {MusicNote{60, 0, 0, 50, 0}, MusicNote{60, 0, 10, 50, 9}, MusicNote{60, 0, 10, 50, 1},
        MusicNote{60, 0, 10, 0, 0}, MusicNote{110, 0, 10, 50, 0}}) {
    MusicPiece bad = piece;
    bad.notes.push_back(wrong);
    EXPECT_NE(CheckPiece(bad), "") << wrong.pitch << " " << wrong.duration << " " << wrong.channel;
  }
  MusicPiece noTempo = piece;
  noTempo.tempo.clear();
  EXPECT_NE(CheckPiece(noTempo), "");
}

// Walks the file as a reader would: chunk lengths, delta times, every event's size.
TEST(MusicMidi, FileReadsBackWithEveryNoteAndTheTempo) {
  MusicPiece piece;
  std::string error;
  ASSERT_TRUE(MakeMusicPiece(3, piece, error)) << error;
  const std::vector<std::uint8_t> midi = EncodeMidi(piece, 2.0);
  ASSERT_GE(midi.size(), 22u);
  EXPECT_EQ(std::memcmp(midi.data(), "MThd", 4), 0);
  EXPECT_EQ(BigEndian(midi, 4, 4), 6u);
  EXPECT_EQ(BigEndian(midi, 8, 2), 0u);
  EXPECT_EQ(BigEndian(midi, 10, 2), 1u);
  EXPECT_EQ(BigEndian(midi, 12, 2), static_cast<std::uint32_t>(kTicksPerQuarter));
  EXPECT_EQ(std::memcmp(midi.data() + 14, "MTrk", 4), 0);
  ASSERT_EQ(BigEndian(midi, 18, 4), midi.size() - 22);
  std::size_t at = 22, ons = 0, offs = 0;
  std::uint64_t tick = 0;
  std::uint32_t firstTempo = 0;
  bool ended = false;
  while (at < midi.size() && !ended) {
    std::uint32_t delta = 0;
    int groups = 0;
    do {
      ASSERT_LT(at, midi.size());
      delta = delta << 7 | (midi[at] & 0x7F);
      ++groups;
    } while (midi[at++] & 0x80);
    ASSERT_LE(groups, 4);
    tick += delta;
    ASSERT_LT(at, midi.size());
    const std::uint8_t status = midi[at];
    ASSERT_TRUE(status & 0x80) << "running status at " << at;
    if (status == 0xFF) {
      const std::uint8_t type = midi[at + 1], length = midi[at + 2];
      if (type == 0x51 && firstTempo == 0) firstTempo = BigEndian(midi, at + 3, 3);
      ended = type == 0x2F;
      at += 3 + length;
    } else {
      const int kind = status & 0xF0;
      ASSERT_NE(status & 0x0F, 9);
      ons += kind == 0x90;
      offs += kind == 0x80;
      at += kind == 0xC0 ? 2 : 3;
    }
  }
  EXPECT_TRUE(ended);
  EXPECT_EQ(at, midi.size());
  EXPECT_EQ(ons, piece.notes.size());
  EXPECT_EQ(offs, piece.notes.size());
  EXPECT_GT(tick, static_cast<std::uint64_t>(PieceEnd(piece)));  // the tail for the echo
  EXPECT_EQ(firstTempo, static_cast<std::uint32_t>(std::lround(60e6 / piece.tempo[0].quartersPerMinute)));
}

bool CanRender() {
  return std::filesystem::exists(kDefaultSoundFont) &&
         std::system("fluidsynth --version >/dev/null 2>&1") == 0;
}

// One short render: fluidsynth takes the file, gives the same samples twice, and the WAVE file
// holds what the waveaudio device needs.
TEST(MusicRender, ShortPieceIsAPlainPcmWaveThatLoopsWithoutAClick) {
  if (!CanRender()) GTEST_SKIP() << "needs " << kMusicPackages;
  MusicPiece piece;
  piece.number = 9;
  piece.programs = {0};
  piece.tempo = {{0, 90}};
  std::string error;
  ASSERT_TRUE(AddVoice("!80 C4/4 E4 G4 C5 | [C4,E4,G4]/1 |", 0, 1920, 0, piece.notes, error)) << error;
  std::vector<double> first, second;
  ASSERT_TRUE(RenderPiece(piece, kDefaultSoundFont, first, error)) << error;
  ASSERT_TRUE(RenderPiece(piece, kDefaultSoundFont, second, error)) << error;
  EXPECT_EQ(first, second);
  double peak = 0, squares = 0;
  for (double v : first) {
    peak = std::max(peak, std::fabs(v));
    squares += v * v;
  }
  EXPECT_LE(peak, 0.9);
  EXPECT_GT(std::sqrt(squares / first.size()), 0.02);  // the notes are there
  EXPECT_EQ(first.front(), 0.0);
  EXPECT_EQ(first.back(), 0.0);
  EXPECT_GT(first.size(), static_cast<std::size_t>(5 * kSoundRate));   // 5.3 s of notes ...
  EXPECT_LT(first.size(), static_cast<std::size_t>(10 * kSoundRate));  // ... and a short echo

  const std::vector<std::uint8_t> wav = EncodeWave(first);
  ASSERT_EQ(wav.size(), 44 + 2 * first.size());
  EXPECT_EQ(std::memcmp(wav.data(), "RIFF", 4), 0);
  EXPECT_EQ(U32(wav, 4), wav.size() - 8);
  EXPECT_EQ(std::memcmp(wav.data() + 8, "WAVEfmt ", 8), 0);
  EXPECT_EQ(U32(wav, 16), 16u);
  EXPECT_EQ(U16(wav, 20), 1);  // WAVE_FORMAT_PCM
  EXPECT_EQ(U16(wav, 22), 1);
  EXPECT_EQ(U32(wav, 24), static_cast<std::uint32_t>(kSoundRate));
  EXPECT_EQ(U32(wav, 28), static_cast<std::uint32_t>(2 * kSoundRate));  // bytes a second
  EXPECT_EQ(U16(wav, 32), 2);                                           // block align
  EXPECT_EQ(U16(wav, 34), 16);
  EXPECT_EQ(std::memcmp(wav.data() + 36, "data", 4), 0);
  EXPECT_EQ(U32(wav, 40), wav.size() - 44);
}

TEST(MusicRender, WithoutTheSoundFontTheToolStopsNamingThePackagesAndWritesNothing) {
  test::TempFolder folder;
  const std::string command = std::string(QV_ASSET_TOOL) + " music " + (folder / "dist") + " " +
                              (folder / "missing.sf2") + " 2>" + (folder / "err");
  const int status = std::system(command.c_str());
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 1);
  std::vector<std::uint8_t> said;
  std::string error;
  ASSERT_TRUE(ReadWholeFile(folder / "err", said, error)) << error;
  EXPECT_NE(std::string(said.begin(), said.end()).find("fluid-soundfont-gm"), std::string::npos);
  EXPECT_FALSE(std::filesystem::exists(folder / "dist"));
}

}  // namespace
}  // namespace qv::assets
