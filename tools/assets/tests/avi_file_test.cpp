// The AVI writer read back field by field, its refusals, and the clips' formats and drawing.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "assets/avi_file.h"
#include "assets/quantize.h"
#include "assets/video_clips.h"
#include "screens/video_layout.h"

namespace qv::assets {
namespace {

std::uint32_t U32(const std::vector<std::uint8_t>& b, std::size_t at) {
  return b[at] | (b[at + 1] << 8) | (b[at + 2] << 16) | (std::uint32_t{b[at + 3]} << 24);
}
std::uint16_t U16(const std::vector<std::uint8_t>& b, std::size_t at) {
  return static_cast<std::uint16_t>(b[at] | (b[at + 1] << 8));
}
std::string Tag(const std::vector<std::uint8_t>& b, std::size_t at) {
  return std::string(reinterpret_cast<const char*>(b.data() + at), 4);
}

// Finds a chunk (or a list of the given type) among the chunks in [from, to).
std::size_t Find(const std::vector<std::uint8_t>& b, std::size_t from, std::size_t to, const std::string& tag,
                 const std::string& listType = "") {
  for (std::size_t at = from; at + 8 <= to; at += 8 + ((U32(b, at + 4) + 1) & ~1u)) {
    if (Tag(b, at) == tag && (listType.empty() || Tag(b, at + 8) == listType)) return at;
  }
  ADD_FAILURE() << "no " << tag << " " << listType;
  return to;
}

// A 5 x 3 clip (rows padded to 8 bytes) whose pixels encode frame, row and column.
AviClip SmallClip(int frames) {
  AviClip clip;
  clip.width = 5;
  clip.height = 3;
  clip.framesPerSecond = 12;
  for (int i = 0; i < 40; ++i) clip.palette.push_back({static_cast<std::uint8_t>(i), 100, static_cast<std::uint8_t>(200 - i)});
  for (int f = 0; f < frames; ++f) {
    std::vector<std::uint8_t> pixels;
    for (int y = 0; y < 3; ++y)
      for (int x = 0; x < 5; ++x) pixels.push_back(static_cast<std::uint8_t>(f * 15 + y * 5 + x) % 40);
    clip.frames.push_back(pixels);
  }
  return clip;
}

TEST(AviFile, HeadersDescribeOnePalettisedBottomUpVideoStream) {
  std::vector<std::uint8_t> b;
  std::string error;
  ASSERT_TRUE(EncodeAvi(SmallClip(3), b, error)) << error;
  ASSERT_GE(b.size(), 12u);
  EXPECT_EQ(Tag(b, 0), "RIFF");
  EXPECT_EQ(U32(b, 4), b.size() - 8);
  EXPECT_EQ(Tag(b, 8), "AVI ");
  const std::size_t hdrl = Find(b, 12, b.size(), "LIST", "hdrl");
  const std::size_t hdrlEnd = hdrl + 8 + U32(b, hdrl + 4);
  const std::size_t avih = Find(b, hdrl + 12, hdrlEnd, "avih");
  ASSERT_EQ(U32(b, avih + 4), 56u);
  EXPECT_EQ(U32(b, avih + 8), 1000000u / 12);   // microseconds a frame
  EXPECT_EQ(U32(b, avih + 20) & 0x10, 0x10u);   // has an index
  EXPECT_EQ(U32(b, avih + 24), 3u);             // frames
  EXPECT_EQ(U32(b, avih + 32), 1u);             // streams
  EXPECT_EQ(U32(b, avih + 40), 5u);
  EXPECT_EQ(U32(b, avih + 44), 3u);

  const std::size_t strl = Find(b, hdrl + 12, hdrlEnd, "LIST", "strl");
  const std::size_t strlEnd = strl + 8 + U32(b, strl + 4);
  const std::size_t strh = Find(b, strl + 12, strlEnd, "strh");
  ASSERT_EQ(U32(b, strh + 4), 56u);
  EXPECT_EQ(Tag(b, strh + 8), "vids");
  EXPECT_EQ(U32(b, strh + 28), 1u);   // scale
  EXPECT_EQ(U32(b, strh + 32), 12u);  // rate
  EXPECT_EQ(U32(b, strh + 40), 3u);   // length in frames
  EXPECT_EQ(U16(b, strh + 60), 5u);   // frame rectangle right, bottom
  EXPECT_EQ(U16(b, strh + 62), 3u);

  const std::size_t strf = Find(b, strl + 12, strlEnd, "strf");
  EXPECT_EQ(U32(b, strf + 4), 40u + 40 * 4);
  EXPECT_EQ(U32(b, strf + 8), 40u);
  EXPECT_EQ(U32(b, strf + 12), 5u);
  EXPECT_EQ(U32(b, strf + 16), 3u);  // positive height: bottom-up
  EXPECT_EQ(U16(b, strf + 20), 1u);
  EXPECT_EQ(U16(b, strf + 22), 8u);
  EXPECT_EQ(U32(b, strf + 24), 0u);  // BI_RGB
  EXPECT_EQ(U32(b, strf + 28), 24u);
  EXPECT_EQ(U32(b, strf + 40), 40u);
  // Colour 7 as a DIB stores it: blue, green, red, zero.
  const std::size_t colour7 = strf + 8 + 40 + 7 * 4;
  EXPECT_EQ(b[colour7], 193);
  EXPECT_EQ(b[colour7 + 1], 100);
  EXPECT_EQ(b[colour7 + 2], 7);
  EXPECT_EQ(b[colour7 + 3], 0);
}

TEST(AviFile, FramesAreBottomUpPaddedChunksAndTheIndexPointsAtEach) {
  const AviClip clip = SmallClip(4);
  std::vector<std::uint8_t> b;
  std::string error;
  ASSERT_TRUE(EncodeAvi(clip, b, error)) << error;
  EXPECT_EQ(AviFrameBytes(5, 3), 24u);
  const std::size_t movi = Find(b, 12, b.size(), "LIST", "movi");
  const std::size_t moviEnd = movi + 8 + U32(b, movi + 4);
  std::vector<std::size_t> chunks;
  for (std::size_t at = movi + 12; at < moviEnd; at += 8 + U32(b, at + 4)) {
    EXPECT_EQ(Tag(b, at), "00db");
    EXPECT_EQ(U32(b, at + 4), 24u);
    chunks.push_back(at);
  }
  ASSERT_EQ(chunks.size(), 4u);
  for (int f = 0; f < 4; ++f) {
    for (int y = 0; y < 3; ++y) {
      const std::size_t row = chunks[f] + 8 + static_cast<std::size_t>(2 - y) * 8;
      for (int x = 0; x < 5; ++x) EXPECT_EQ(b[row + x], clip.frames[f][y * 5 + x]) << f << " " << x << "," << y;
      for (int x = 5; x < 8; ++x) EXPECT_EQ(b[row + x], 0);
    }
  }
  const std::size_t idx1 = Find(b, moviEnd, b.size(), "idx1");
  ASSERT_EQ(U32(b, idx1 + 4), 4u * 16);
  for (int f = 0; f < 4; ++f) {
    const std::size_t entry = idx1 + 8 + f * 16;
    EXPECT_EQ(Tag(b, entry), "00db");
    EXPECT_EQ(U32(b, entry + 4), 0x10u);  // key frame
    EXPECT_EQ(movi + 8 + U32(b, entry + 8), chunks[f]);  // counted from the 'movi' type
    EXPECT_EQ(U32(b, entry + 12), 24u);
  }
  EXPECT_EQ(idx1 + 8 + 64, b.size());
}

TEST(AviFile, RefusesClipsItCannotWriteAndLeavesTheOutputAlone) {
  std::vector<std::uint8_t> out{1, 2, 3};
  std::string error;
  AviClip clip = SmallClip(0);
  EXPECT_FALSE(EncodeAvi(clip, out, error));
  clip = SmallClip(2);
  clip.frames[1].pop_back();
  EXPECT_FALSE(EncodeAvi(clip, out, error));
  clip = SmallClip(2);
  clip.frames[0][4] = 40;  // one past the palette
  EXPECT_FALSE(EncodeAvi(clip, out, error));
  clip = SmallClip(2);
  clip.palette.resize(257);
  EXPECT_FALSE(EncodeAvi(clip, out, error));
  clip = SmallClip(2);
  clip.framesPerSecond = 0;
  EXPECT_FALSE(EncodeAvi(clip, out, error));
  clip = SmallClip(2);
  clip.width = 0;
  EXPECT_FALSE(EncodeAvi(clip, out, error));
  EXPECT_EQ(out, (std::vector<std::uint8_t>{1, 2, 3}));
  EXPECT_FALSE(error.empty());
}

// Two frames of different colours: the palette must hold the colours of both, since a clip
// carries one palette for all its frames.
TEST(VideoClips, FramesShareOnePaletteThatHoldsEveryFramesColours) {
  RgbImage red(8, 4), blue(8, 4);
  for (Rgb& c : red.pixels) c = {200, 30, 20};
  for (Rgb& c : blue.pixels) c = {10, 40, 210};
  blue.at(3, 2) = {250, 250, 250};
  std::vector<Image8> out;
  std::string error;
  ASSERT_TRUE(ReduceFramesToOnePalette({red, blue}, 0.35, out, error)) << error;
  ASSERT_EQ(out.size(), 2u);
  EXPECT_EQ(out[0].palette, out[1].palette);
  EXPECT_EQ(out[0].colour(5, 1), (Rgb{200, 30, 20}));
  EXPECT_EQ(out[1].colour(5, 1), (Rgb{10, 40, 210}));
  EXPECT_EQ(out[1].colour(3, 2), (Rgb{250, 250, 250}));
  EXPECT_FALSE(ReduceFramesToOnePalette({red, RgbImage(4, 4)}, 0.35, out, error));
  EXPECT_FALSE(ReduceFramesToOnePalette({}, 0.35, out, error));
  EXPECT_EQ(out.size(), 2u);  // a refusal leaves the earlier result alone
}

TEST(VideoClips, FitTheirPlacesAndStayUnderTwentyMegabytesTogether) {
  std::size_t total = 0;
  for (int k = 0; k < kVideoClipCount; ++k) {
    const ClipFormat f = VideoClipFormat(k);
    ASSERT_GT(f.frameCount, 0) << k;
    total += (AviFrameBytes(f.width, f.height) + 24) * f.frameCount + 2048;
  }
  EXPECT_LT(total, 20u * 1000 * 1000);
  const ClipFormat intro = VideoClipFormat(2);
  const double seconds = static_cast<double>(intro.frameCount) / intro.framesPerSecond;
  EXPECT_GE(seconds, 5.0);
  EXPECT_LE(seconds, 10.0);
  // Clip 0 fills the window of the video frame picture exactly.
  EXPECT_EQ(VideoClipFormat(0).width, kVideoFrameWindow.width);
  EXPECT_EQ(VideoClipFormat(0).height, kVideoFrameWindow.height);
  EXPECT_EQ(VideoClipFormat(3).frameCount, 0);
  EXPECT_TRUE(DrawVideoFrame(2, VideoClipFormat(2).frameCount).pixels.empty());
}

TEST(VideoClips, FramesAreTheSameOnEveryDrawingAndTheyMove) {
  for (int k = 0; k < kVideoClipCount; ++k) {
    const ClipFormat f = VideoClipFormat(k);
    const RgbImage start = DrawVideoFrame(k, 2), again = DrawVideoFrame(k, 2);
    const RgbImage later = DrawVideoFrame(k, f.frameCount / 3);
    ASSERT_EQ(start.width, f.width);
    ASSERT_EQ(start.height, f.height);
    EXPECT_TRUE(start.pixels == again.pixels) << k;
    EXPECT_FALSE(start.pixels == later.pixels) << k;
  }
}

}  // namespace
}  // namespace qv::assets
