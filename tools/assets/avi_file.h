// Uncompressed 8-bit AVI files: the container written byte by byte, one palette per clip.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "assets/image8.h"

namespace qv::assets {

// A silent clip of palettised frames. Frames are stored top-down here, `width` x `height` bytes
// each; the file holds them bottom-up, as a DIB does, because players draw top-down raw frames
// upside down or not at all.
struct AviClip {
  int width = 0;
  int height = 0;
  int framesPerSecond = 0;
  std::vector<Rgb> palette;  // 1..256 colours shared by every frame
  std::vector<std::vector<std::uint8_t>> frames;
};

// Bytes of one frame in the file: rows padded to a multiple of four.
std::size_t AviFrameBytes(int width, int height);

// The RIFF 'AVI ' file: a header list (main header, one video stream of BI_RGB 8-bit frames with
// the palette as its format), the frames as '00db' chunks, and an 'idx1' index marking each as a
// key frame. Refuses empty or oversized clips, frames of the wrong size, pixels outside the
// palette and a palette of more than 256 colours.
bool EncodeAvi(const AviClip& clip, std::vector<std::uint8_t>& out, std::string& error);

}  // namespace qv::assets
