// Note lists for the game's music: a compact text form, chord arpeggios, and the checks they pass.
#include "assets/music_notes.h"

#include <algorithm>
#include <cstdlib>
#include <map>
#include <sstream>
#include <utility>

namespace qv::assets {
namespace {

constexpr int kLowestKey = 21;    // the piano's A0
constexpr int kHighestKey = 108;  // and its C8
constexpr int kLongestNote = 64 * 4 * kTicksPerQuarter;

std::vector<std::string> Split(const std::string& text, char separator) {
  std::vector<std::string> parts;
  std::string part;
  std::istringstream in(text);
  while (std::getline(in, part, separator)) parts.push_back(part);
  return parts;
}

std::vector<std::string> Words(const std::string& text) {
  std::vector<std::string> words;
  std::istringstream in(text);
  std::string word;
  while (in >> word) words.push_back(word);
  return words;
}

bool ParsePitch(const std::string& name, int& pitch) {
  static const int kSemitones[] = {9, 11, 0, 2, 4, 5, 7};  // A B C D E F G
  if (name.size() < 2 || name[0] < 'A' || name[0] > 'G') return false;
  int semitone = kSemitones[name[0] - 'A'];
  std::size_t i = 1;
  for (; i < name.size() && (name[i] == '#' || name[i] == 'b') && i < 3; ++i)
    semitone += name[i] == '#' ? 1 : -1;
  if (i + 1 != name.size() || name[i] < '0' || name[i] > '8') return false;
  pitch = 12 * (name[i] - '0' + 1) + semitone;
  return pitch >= kLowestKey && pitch <= kHighestKey;
}

// "4", "8.", "2.*4", "2.+2": ticks, or 0 when the text is not a length.
int ParseLength(const std::string& text) {
  int total = 0;
  for (const std::string& term : Split(text, '+')) {
    std::size_t i = 0;
    int denominator = 0;
    while (i < term.size() && term[i] >= '0' && term[i] <= '9' && denominator < 100) {
      denominator = denominator * 10 + (term[i++] - '0');
    }
    if (denominator != 1 && denominator != 2 && denominator != 4 && denominator != 8 && denominator != 16 &&
        denominator != 32) {
      return 0;
    }
    int ticks = 4 * kTicksPerQuarter / denominator;
    for (int added = ticks / 2; i < term.size() && term[i] == '.' && added > 0; ++i, added /= 2)
      ticks += added;
    if (i < term.size() && term[i] == '*') {
      int times = 0;
      for (++i; i < term.size() && term[i] >= '0' && term[i] <= '9' && times < 1000; ++i)
        times = times * 10 + (term[i] - '0');
      if (times == 0) return 0;
      ticks *= times;
    }
    if (i != term.size()) return 0;
    total += ticks;
    if (total > kLongestNote) return 0;
  }
  return total;
}

std::string Where(int tick, int ticksPerBar, const std::string& token) {
  return "bar " + std::to_string(tick / std::max(1, ticksPerBar) + 1) + ", '" + token + "'";
}

}  // namespace

bool AddVoice(const std::string& text, int channel, int ticksPerBar, int start, std::vector<MusicNote>& notes,
              std::string& error) {
  int position = start;
  int length = kTicksPerQuarter;
  int velocity = 64;
  for (const std::string& token : Words(text)) {
    if (token == "|") {
      if (ticksPerBar <= 0 || position % ticksPerBar != 0) {
        error = Where(position, ticksPerBar, token) + ": the bar line falls " +
                std::to_string(position % std::max(1, ticksPerBar)) + " ticks into a bar";
        return false;
      }
      continue;
    }
    if (token[0] == '!') {
      velocity = std::atoi(token.c_str() + 1);
      if (velocity < 1 || velocity > 127 || token.size() > 4) {
        error = Where(position, ticksPerBar, token) + ": a velocity is 1 to 127";
        return false;
      }
      continue;
    }
    const std::size_t slash = token.find('/');
    const std::string what = token.substr(0, slash);
    if (slash != std::string::npos) {
      length = ParseLength(token.substr(slash + 1));
      if (length <= 0) {
        error = Where(position, ticksPerBar, token) + ": not a length";
        return false;
      }
    }
    std::vector<int> pitches;
    if (what.size() > 2 && what.front() == '[' && what.back() == ']') {
      for (const std::string& name : Split(what.substr(1, what.size() - 2), ',')) {
        int pitch = 0;
        if (!ParsePitch(name, pitch)) {
          error = Where(position, ticksPerBar, token) + ": not a key of the piano";
          return false;
        }
        pitches.push_back(pitch);
      }
    } else if (what != "r") {
      int pitch = 0;
      if (!ParsePitch(what, pitch)) {
        error = Where(position, ticksPerBar, token) + ": not a key of the piano";
        return false;
      }
      pitches.push_back(pitch);
    }
    for (int pitch : pitches) notes.push_back({pitch, position, length, velocity, channel});
    position += length;
  }
  return true;
}

bool AddArpeggios(const std::string& chords, int spanTicks, int stepTicks, const std::vector<int>& tones,
                  const std::vector<int>& velocities, int channel, int start, std::vector<MusicNote>& notes,
                  std::string& error) {
  if (spanTicks <= 0 || stepTicks <= 0 || tones.empty() || velocities.empty()) {
    error = "an arpeggio needs a span, a step, tones and velocities";
    return false;
  }
  const int steps = spanTicks / stepTicks;
  int spanStart = start;
  int index = 0;
  for (const std::string& chordText : Split(chords, '|')) {
    ++index;
    std::vector<int> chord;
    for (const std::string& name : Words(chordText)) {
      int pitch = 0;
      if (!ParsePitch(name, pitch)) {
        error = "chord " + std::to_string(index) + ", '" + name + "': not a key of the piano";
        return false;
      }
      chord.push_back(pitch);
    }
    if (chord.empty()) continue;
    for (int s = 0; s < steps; ++s) {
      const int tone = tones[s % tones.size()];
      if (tone < 0) continue;
      if (tone >= static_cast<int>(chord.size())) {
        error = "chord " + std::to_string(index) + " has no tone " + std::to_string(tone);
        return false;
      }
      int until = steps;
      for (int later = s + 1; later < steps; ++later) {
        if (tones[later % tones.size()] == tone) {
          until = later;
          break;
        }
      }
      notes.push_back({chord[tone], spanStart + s * stepTicks, (until - s) * stepTicks,
                       velocities[s % velocities.size()], channel});
    }
    spanStart += spanTicks;
  }
  return true;
}

std::string CheckPiece(const MusicPiece& piece) {
  if (piece.tempo.empty() || piece.tempo.front().tick != 0) return "no tempo at the start";
  for (const TempoMark& mark : piece.tempo) {
    if (mark.quartersPerMinute < 20 || mark.quartersPerMinute > 240) return "a tempo out of range";
  }
  std::map<std::pair<int, int>, std::vector<const MusicNote*>> byKey;
  for (const MusicNote& note : piece.notes) {
    const std::string at = "key " + std::to_string(note.pitch) + " at tick " + std::to_string(note.start);
    if (note.pitch < kLowestKey || note.pitch > kHighestKey) return at + ": not a key of the piano";
    if (note.duration <= 0 || note.start < 0) return at + ": no length";
    if (note.velocity < 1 || note.velocity > 127) return at + ": velocity out of range";
    if (note.channel < 0 || note.channel > 15 || note.channel == 9) return at + ": not a melodic channel";
    if (note.channel >= static_cast<int>(piece.programs.size()) || piece.programs[note.channel] < 0 ||
        piece.programs[note.channel] > 127) {
      return at + ": its channel has no instrument";
    }
    byKey[{note.channel, note.pitch}].push_back(&note);
  }
  for (auto& [key, list] : byKey) {
    std::sort(list.begin(), list.end(),
              [](const MusicNote* a, const MusicNote* b) { return a->start < b->start; });
    for (std::size_t i = 1; i < list.size(); ++i) {
      if (list[i]->start < list[i - 1]->start + list[i - 1]->duration) {
        return "key " + std::to_string(key.second) + " on channel " + std::to_string(key.first) +
               " is struck at tick " + std::to_string(list[i]->start) + " while it still sounds";
      }
    }
  }
  return "";
}

int PieceEnd(const MusicPiece& piece) {
  int end = 0;
  for (const MusicNote& note : piece.notes) end = std::max(end, note.start + note.duration);
  return end;
}

double SecondsAt(const MusicPiece& piece, int tick) {
  double seconds = 0;
  for (std::size_t i = 0; i < piece.tempo.size() && piece.tempo[i].tick < tick; ++i) {
    const int next = i + 1 < piece.tempo.size() ? std::min(tick, piece.tempo[i + 1].tick) : tick;
    seconds += (next - piece.tempo[i].tick) * 60.0 / (kTicksPerQuarter * piece.tempo[i].quartersPerMinute);
  }
  return seconds;
}

}  // namespace qv::assets
