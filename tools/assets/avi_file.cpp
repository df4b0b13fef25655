// Uncompressed 8-bit AVI files: the container written byte by byte, one palette per clip.
#include "assets/avi_file.h"

#include <cstring>

namespace qv::assets {
namespace {

constexpr std::uint32_t kHasIndex = 0x10;     // AVIF_HASINDEX
constexpr std::uint32_t kKeyFrame = 0x10;     // AVIIF_KEYFRAME
constexpr int kLargestSide = 4096;
// A RIFF size is 32 bits; staying well below 1 GB keeps every offset and size exact.
constexpr std::size_t kLargestFile = std::size_t{1} << 30;

class Writer {
 public:
  explicit Writer(std::vector<std::uint8_t>& out) : out_(out) {}
  void U16(std::uint32_t v) {
    out_.push_back(static_cast<std::uint8_t>(v));
    out_.push_back(static_cast<std::uint8_t>(v >> 8));
  }
  void U32(std::uint32_t v) {
    U16(v & 0xFFFF);
    U16(v >> 16);
  }
  void Tag(const char* four) { out_.insert(out_.end(), four, four + 4); }
  // Starts a chunk (or a list, with its type); returns where its size goes.
  std::size_t Open(const char* tag, const char* listType = nullptr) {
    Tag(tag);
    const std::size_t at = out_.size();
    U32(0);
    if (listType != nullptr) Tag(listType);
    return at;
  }
  void Close(std::size_t sizeAt) {
    const auto size = static_cast<std::uint32_t>(out_.size() - sizeAt - 4);
    for (int i = 0; i < 4; ++i) out_[sizeAt + i] = static_cast<std::uint8_t>(size >> (8 * i));
    if (size % 2 != 0) out_.push_back(0);  // chunks start on even offsets
  }
  std::size_t Size() const { return out_.size(); }
  std::vector<std::uint8_t>& bytes() { return out_; }

 private:
  std::vector<std::uint8_t>& out_;
};

bool CheckClip(const AviClip& clip, std::string& error) {
  if (clip.width < 1 || clip.height < 1 || clip.width > kLargestSide || clip.height > kLargestSide) {
    error = "a clip must be 1 to 4096 pixels on each side";
  } else if (clip.framesPerSecond < 1 || clip.framesPerSecond > 120) {
    error = "a clip must run at 1 to 120 frames a second";
  } else if (clip.palette.empty() || clip.palette.size() > 256) {
    error = "a clip's palette must hold 1 to 256 colours";
  } else if (clip.frames.empty()) {
    error = "a clip needs at least one frame";
  } else if (clip.frames.size() * (AviFrameBytes(clip.width, clip.height) + 24) > kLargestFile) {
    error = "the clip is too long for one file";
  } else {
    const std::size_t pixels = static_cast<std::size_t>(clip.width) * clip.height;
    for (std::size_t i = 0; i < clip.frames.size(); ++i) {
      if (clip.frames[i].size() != pixels) {
        error = "frame " + std::to_string(i) + " is not the clip's size";
        return false;
      }
      for (std::uint8_t p : clip.frames[i]) {
        if (p >= clip.palette.size()) {
          error = "frame " + std::to_string(i) + " uses a colour outside the palette";
          return false;
        }
      }
    }
    return true;
  }
  return false;
}

void MainHeader(Writer& w, const AviClip& clip, std::uint32_t frameBytes) {
  const std::size_t at = w.Open("avih");
  w.U32(static_cast<std::uint32_t>(1000000 / clip.framesPerSecond));  // microseconds a frame
  w.U32(frameBytes * static_cast<std::uint32_t>(clip.framesPerSecond));  // bytes a second
  w.U32(0);                                                            // padding granularity
  w.U32(kHasIndex);
  w.U32(static_cast<std::uint32_t>(clip.frames.size()));
  w.U32(0);  // initial frames
  w.U32(1);  // streams
  w.U32(frameBytes + 8);  // suggested buffer: one chunk with its header
  w.U32(static_cast<std::uint32_t>(clip.width));
  w.U32(static_cast<std::uint32_t>(clip.height));
  for (int i = 0; i < 4; ++i) w.U32(0);
  w.Close(at);
}

void StreamHeader(Writer& w, const AviClip& clip, std::uint32_t frameBytes) {
  const std::size_t at = w.Open("strh");
  w.Tag("vids");
  w.Tag("DIB ");
  w.U32(0);  // flags
  w.U16(0);  // priority
  w.U16(0);  // language
  w.U32(0);  // initial frames
  w.U32(1);  // scale: rate / scale frames a second
  w.U32(static_cast<std::uint32_t>(clip.framesPerSecond));
  w.U32(0);  // start
  w.U32(static_cast<std::uint32_t>(clip.frames.size()));
  w.U32(frameBytes);
  w.U32(0xFFFFFFFF);  // quality: the default
  w.U32(0);           // sample size: varies (one frame a chunk)
  w.U16(0);
  w.U16(0);
  w.U16(static_cast<std::uint32_t>(clip.width));
  w.U16(static_cast<std::uint32_t>(clip.height));
  w.Close(at);
}

void StreamFormat(Writer& w, const AviClip& clip, std::uint32_t frameBytes) {
  const std::size_t at = w.Open("strf");
  w.U32(40);  // BITMAPINFOHEADER
  w.U32(static_cast<std::uint32_t>(clip.width));
  w.U32(static_cast<std::uint32_t>(clip.height));  // positive: bottom-up rows
  w.U16(1);   // planes
  w.U16(8);   // bits per pixel
  w.U32(0);   // BI_RGB
  w.U32(frameBytes);
  w.U32(0);
  w.U32(0);
  w.U32(static_cast<std::uint32_t>(clip.palette.size()));
  w.U32(0);  // all colours important
  for (const Rgb& c : clip.palette) {
    w.bytes().insert(w.bytes().end(), {c.b, c.g, c.r, 0});
  }
  w.Close(at);
}

}  // namespace

std::size_t AviFrameBytes(int width, int height) {
  return static_cast<std::size_t>((width + 3) / 4 * 4) * static_cast<std::size_t>(height);
}

bool EncodeAvi(const AviClip& clip, std::vector<std::uint8_t>& out, std::string& error) {
  if (!CheckClip(clip, error)) return false;
  const std::size_t stride = (static_cast<std::size_t>(clip.width) + 3) / 4 * 4;
  const auto frameBytes = static_cast<std::uint32_t>(AviFrameBytes(clip.width, clip.height));
  std::vector<std::uint8_t> bytes;
  bytes.reserve(clip.frames.size() * (frameBytes + 24) + 2048);
  Writer w(bytes);
  const std::size_t riff = w.Open("RIFF", "AVI ");
  const std::size_t headers = w.Open("LIST", "hdrl");
  MainHeader(w, clip, frameBytes);
  const std::size_t stream = w.Open("LIST", "strl");
  StreamHeader(w, clip, frameBytes);
  StreamFormat(w, clip, frameBytes);
  w.Close(stream);
  w.Close(headers);

  const std::size_t movie = w.Open("LIST", "movi");
  const std::size_t movieData = movie + 4;  // index offsets count from the 'movi' type
  std::vector<std::uint32_t> offsets;
  std::vector<std::uint8_t> row(stride, 0);
  for (const std::vector<std::uint8_t>& frame : clip.frames) {
    offsets.push_back(static_cast<std::uint32_t>(w.Size() - movieData));
    const std::size_t chunk = w.Open("00db");
    for (int y = clip.height - 1; y >= 0; --y) {
      std::memcpy(row.data(), frame.data() + static_cast<std::size_t>(y) * clip.width, clip.width);
      bytes.insert(bytes.end(), row.begin(), row.end());
    }
    w.Close(chunk);
  }
  w.Close(movie);

  const std::size_t index = w.Open("idx1");
  for (std::uint32_t offset : offsets) {
    w.Tag("00db");
    w.U32(kKeyFrame);
    w.U32(offset);
    w.U32(frameBytes);
  }
  w.Close(index);
  w.Close(riff);
  out = std::move(bytes);
  return true;
}

}  // namespace qv::assets
