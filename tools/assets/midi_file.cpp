// Standard MIDI Files of the game's music, for the synthesiser that renders them at build time.
#include "assets/midi_file.h"

#include <algorithm>
#include <cmath>
#include <tuple>

namespace qv::assets {
namespace {

struct Event {
  int tick;
  int order;  // at one tick: meta and set-up first, then the notes that end, then those that start
  std::vector<std::uint8_t> bytes;
};

void PutVariableLength(std::vector<std::uint8_t>& out, std::uint32_t value) {
  std::uint8_t groups[5];
  int count = 0;
  do {
    groups[count++] = static_cast<std::uint8_t>(value & 0x7F);
    value >>= 7;
  } while (value != 0 && count < 5);
  while (count > 1) out.push_back(static_cast<std::uint8_t>(groups[--count] | 0x80));
  out.push_back(groups[0]);
}

void PutBigEndian(std::vector<std::uint8_t>& out, std::uint32_t value, int bytes) {
  for (int i = bytes - 1; i >= 0; --i) out.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
}

}  // namespace

std::vector<std::uint8_t> EncodeMidi(const MusicPiece& piece, double tailSeconds) {
  auto byte = [](int value) { return static_cast<std::uint8_t>(value & 0xFF); };
  std::vector<Event> events;
  for (const TempoMark& mark : piece.tempo) {
    const auto us = static_cast<int>(std::lround(60e6 / mark.quartersPerMinute));  // a quarter's length
    events.push_back({mark.tick, 0, {0xFF, 0x51, 0x03, byte(us >> 16), byte(us >> 8), byte(us)}});
  }
  for (std::size_t channel = 0; channel < piece.programs.size() && channel < 16; ++channel) {
    const int c = static_cast<int>(channel);
    events.push_back({0, 1, {byte(0xC0 | c), byte(piece.programs[channel] & 0x7F)}});
    events.push_back({0, 1, {byte(0xB0 | c), 91, 48}});  // a moderate room
    events.push_back({0, 1, {byte(0xB0 | c), 93, 0}});   // no chorus
  }
  for (const MusicNote& note : piece.notes) {
    const int c = note.channel & 0x0F;
    events.push_back({note.start, 3, {byte(0x90 | c), byte(note.pitch & 0x7F), byte(note.velocity & 0x7F)}});
    events.push_back({note.start + note.duration, 2, {byte(0x80 | c), byte(note.pitch & 0x7F), 0}});
  }
  std::stable_sort(events.begin(), events.end(), [](const Event& a, const Event& b) {
    return std::tie(a.tick, a.order) < std::tie(b.tick, b.order);
  });
  const int end = PieceEnd(piece);
  const double lastTempo = piece.tempo.empty() ? 120.0 : piece.tempo.back().quartersPerMinute;
  const int tailTicks = static_cast<int>(std::lround(tailSeconds * lastTempo / 60.0 * kTicksPerQuarter));
  events.push_back({end + std::max(0, tailTicks), 9, {0xFF, 0x2F, 0x00}});

  std::vector<std::uint8_t> track;
  int previous = 0;
  for (const Event& e : events) {
    PutVariableLength(track, static_cast<std::uint32_t>(e.tick - previous));
    track.insert(track.end(), e.bytes.begin(), e.bytes.end());
    previous = e.tick;
  }
  std::vector<std::uint8_t> out = {'M', 'T', 'h', 'd'};
  PutBigEndian(out, 6, 4);
  PutBigEndian(out, 0, 2);  // format 0
  PutBigEndian(out, 1, 2);  // one track
  PutBigEndian(out, kTicksPerQuarter, 2);
  out.insert(out.end(), {'M', 'T', 'r', 'k'});
  PutBigEndian(out, static_cast<std::uint32_t>(track.size()), 4);
  out.insert(out.end(), track.begin(), track.end());
  return out;
}

}  // namespace qv::assets
