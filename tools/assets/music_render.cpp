// Renders the game's music: a MIDI file through Debian's fluidsynth, then levelled and faded.
#include "assets/music_render.h"

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "assets/file_io.h"
#include "assets/midi_file.h"
#include "assets/sounds.h"

namespace qv::assets {
namespace {

constexpr double kTailSeconds = 3.0;  // the last chord's release and the room's echo
constexpr double kFadeSeconds = 2.0;
constexpr double kTargetRms = 0.1;   // -20 dBFS: the four pieces sound equally loud
constexpr double kPeakLimit = 0.89;  // -1 dBFS
constexpr double kSilence = 0.001;   // -60 dBFS

std::string Quoted(const std::string& text) {
  std::string out = "'";
  for (char c : text) out += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return out + "'";
}

// A scratch folder that goes away with everything in it.
class ScratchFolder {
 public:
  ScratchFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "qv-music-XXXXXX").string();
    if (::mkdtemp(pattern.data()) != nullptr) path_ = pattern;
  }
  ~ScratchFolder() {
    std::error_code ec;
    if (!path_.empty()) std::filesystem::remove_all(path_, ec);
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;
  const std::string& path() const { return path_; }

 private:
  std::string path_;
};

}  // namespace

void FinishTrack(std::vector<double>& samples, double fadeSeconds) {
  if (samples.empty()) return;
  double sumSquares = 0, peak = 0;
  for (double v : samples) {
    sumSquares += v * v;
    peak = std::max(peak, std::fabs(v));
  }
  const double rms = std::sqrt(sumSquares / samples.size());
  if (peak > 0) {
    const double gain = std::min(kTargetRms / std::max(rms, 1e-9), kPeakLimit / peak);
    for (double& v : samples) v *= gain;
  }
  // The synthesiser renders past the point where the echo has died away; seconds of silence
  // before the loop starts again would sound like a gap.
  std::size_t audible = samples.size();
  while (audible > 0 && std::fabs(samples[audible - 1]) < kSilence) --audible;
  samples.resize(std::min(samples.size(), audible + kSoundRate / 4));
  const std::size_t fadeIn = std::min<std::size_t>(samples.size(), kSoundRate / 100);
  for (std::size_t i = 0; i < fadeIn; ++i) samples[i] *= static_cast<double>(i) / fadeIn;
  const std::size_t fadeOut =
      std::min<std::size_t>(samples.size(), static_cast<std::size_t>(fadeSeconds * kSoundRate));
  for (std::size_t i = 0; i < fadeOut; ++i) {
    // A raised cosine from 1 to exactly 0 on the last sample.
    const double left = static_cast<double>(i) / std::max<std::size_t>(1, fadeOut - 1);
    samples[samples.size() - 1 - i] *= 0.5 - 0.5 * std::cos(M_PI * left);
  }
}

bool RenderPiece(const MusicPiece& piece, const std::string& soundFont, std::vector<double>& samples,
                 std::string& error) {
  const std::string problem = CheckPiece(piece);
  if (!problem.empty()) {
    error = "piece " + std::to_string(piece.number) + ": " + problem;
    return false;
  }
  if (!std::filesystem::is_regular_file(soundFont)) {
    error = "no SoundFont at " + soundFont + " (install " + kMusicPackages + ")";
    return false;
  }
  ScratchFolder scratch;
  if (scratch.path().empty()) {
    error = "cannot make a scratch folder";
    return false;
  }
  const std::string midi = scratch.path() + "/piece.mid";
  const std::string raw = scratch.path() + "/piece.raw";
  const std::string log = scratch.path() + "/fluidsynth.log";
  if (!WriteFileReplacing(midi, EncodeMidi(piece, kTailSeconds), error)) return false;
  // Raw 32-bit floats, so that no dither noise (which differs from run to run) is added and
  // nothing clips before the levelling; reverb on, chorus off (its modulation is not needed).
  const std::string command = "fluidsynth -n -i -q -R 1 -C 0 -g 0.4 -r " + std::to_string(kSoundRate) +
                              " -T raw -O float -E little -F " + Quoted(raw) + " " + Quoted(soundFont) + " " +
                              Quoted(midi) + " >" + Quoted(log) + " 2>&1";
  const int status = std::system(command.c_str());
  if (status == -1 || !WIFEXITED(status) || WEXITSTATUS(status) != 0) {
    std::vector<std::uint8_t> said;
    std::string ignored;
    ReadWholeFile(log, said, ignored);
    const bool missing = WIFEXITED(status) && WEXITSTATUS(status) == 127;
    error = missing ? std::string("fluidsynth is not installed (install ") + kMusicPackages + ")"
                    : "fluidsynth failed on piece " + std::to_string(piece.number) + ": " +
                          std::string(said.begin(), said.begin() + std::min<std::size_t>(said.size(), 400));
    return false;
  }
  std::vector<std::uint8_t> bytes;
  if (!ReadWholeFile(raw, bytes, error)) return false;
  const std::size_t frames = bytes.size() / 8;
  if (frames < static_cast<std::size_t>(kSoundRate)) {
    error = "fluidsynth rendered almost nothing for piece " + std::to_string(piece.number);
    return false;
  }
  static_assert(std::endian::native == std::endian::little, "fluidsynth is asked for little-endian floats");
  samples.assign(frames, 0.0);
  for (std::size_t i = 0; i < frames; ++i) {
    float left = 0, right = 0;
    std::memcpy(&left, &bytes[8 * i], 4);
    std::memcpy(&right, &bytes[8 * i + 4], 4);
    samples[i] = 0.5 * (static_cast<double>(left) + static_cast<double>(right));
  }
  FinishTrack(samples, kFadeSeconds);
  return true;
}

}  // namespace qv::assets
