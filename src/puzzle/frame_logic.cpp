// Geometry of the piece-box frames and the picture previews.
#include "puzzle/frame_logic.h"

#include <algorithm>
#include <cstring>

#include "graphics/himage_ops.h"
#include "puzzle/puzzle_model.h"

namespace qv {

std::string DefaultBoxName(std::string_view word, int box) {
  if (box < 0 || box >= kBoxCount) return std::string();
  std::string name(word.substr(0, kBoxNameMaxLength - 2));
  name += static_cast<char>('1' + box);
  name += ' ';
  return name;
}

std::string RelabelledBoxName(std::string_view name, std::string_view oldWord,
                              std::string_view newWord, int box) {
  if (name != DefaultBoxName(oldWord, box)) return std::string(name);
  return DefaultBoxName(newWord, box);
}

FrameDrag FrameDragAt(int x, int y, int width, int height, int titleHeight) {
  if (x < 0 || y < 0 || x >= width || y >= height) return FrameDrag::None;
  if (y < titleHeight + kBoxBorder) return FrameDrag::Move;
  const int cornerTop = height - kBoxCornerReach;
  if (x < kBoxBorder) return y <= cornerTop ? FrameDrag::LeftEdge : FrameDrag::BottomLeft;
  if (x >= width - kBoxBorder && y < height - kBoxBorder) {
    return y <= cornerTop ? FrameDrag::RightEdge : FrameDrag::BottomRight;
  }
  if (y >= height - kBoxBorder) {
    if (x < kBoxCornerReach) return FrameDrag::BottomLeft;
    return x <= width - kBoxCornerReach ? FrameDrag::BottomEdge : FrameDrag::BottomRight;
  }
  return FrameDrag::None;
}

FrameBox DraggedFrame(FrameDrag mode, const FrameBox& start, int dx, int dy) {
  FrameBox box = start;
  const bool left = mode == FrameDrag::LeftEdge || mode == FrameDrag::BottomLeft;
  const bool right = mode == FrameDrag::RightEdge || mode == FrameDrag::BottomRight;
  const bool bottom = mode == FrameDrag::BottomEdge || mode == FrameDrag::BottomLeft ||
                      mode == FrameDrag::BottomRight;
  if (mode == FrameDrag::Move) {
    box.x += dx;
    box.y += dy;
    return box;
  }
  if (left) {
    box.width = std::max(kBoxMinWidth, start.width - dx);
    box.x = start.x + start.width - box.width;  // the right edge stays
  }
  if (right) box.width = std::max(kBoxMinWidth, start.width + dx);
  if (bottom) box.height = std::max(kBoxMinHeight, start.height + dy);
  return box;
}

FrameBox BoxAreaRect(int width, int height, int titleHeight) {
  return FrameBox{kBoxBorder, titleHeight + kBoxBorder, std::max(0, width - 2 * kBoxBorder),
                  std::max(0, height - titleHeight - 2 * kBoxBorder)};
}

FrameBox BoxCloseButtonRect(int width, int buttonSide) {
  return FrameBox{width - kBoxBorder - buttonSide, 1, buttonSide, buttonSide};
}

FrameBox BoxRenameButtonRect(int width, int buttonSide) {
  return FrameBox{width - kBoxBorder - 2 * buttonSide - 4, 1, buttonSide, buttonSide};
}

PictureSize PreviewSizeFor(int pictureWidth, int pictureHeight) {
  if (pictureWidth < 1 || pictureHeight < 1) return {kPreviewMaxWidth, kPreviewMaxHeight};
  const std::int64_t w = pictureWidth;
  const std::int64_t h = pictureHeight;
  // Whole-number arithmetic gives the truncated size exactly, where 240.0 / w * w may not.
  if (h * kPreviewMaxWidth / w <= kPreviewMaxHeight) {
    return {kPreviewMaxWidth, static_cast<int>(std::max<std::int64_t>(1, h * kPreviewMaxWidth / w))};
  }
  return {static_cast<int>(std::max<std::int64_t>(1, w * kPreviewMaxHeight / h)), kPreviewMaxHeight};
}

PictureSize ViewerSizeFor(int screenWidth, int screenHeight, int pictureWidth, int pictureHeight) {
  if (screenWidth < 1 || screenHeight < 1 || pictureWidth < 1 || pictureHeight < 1) return {};
  const std::int64_t sw = screenWidth, sh = screenHeight, pw = pictureWidth, ph = pictureHeight;
  if (sh >= sw * ph / pw) {
    return {screenWidth, static_cast<int>(std::max<std::int64_t>(1, ph * sw / pw))};
  }
  return {static_cast<int>(std::max<std::int64_t>(1, pw * sh / ph)), screenHeight};
}

bool ScalePicture(HIMAGE source, int width, int height, PackedDib& out) {
  if (!source || width < 1 || height < 1) return false;
  const BitmapInfoHeader& from = *DibHeader(source);
  if ((from.biBitCount != 8 && from.biBitCount != 24) || from.biWidth < 1 || from.biHeight < 1) {
    return false;
  }
  const int bytesPerPixel = from.biBitCount / 8;
  const std::int64_t stride = DibRowBytes(width, from.biBitCount);
  HIMAGE block = PackedDib::AllocateBlock(static_cast<std::size_t>(stride * height));
  if (!block) return false;
  BitmapInfoHeader header = from;
  header.biWidth = width;
  header.biHeight = height;
  header.biCompression = 0;
  header.biSizeImage = static_cast<std::uint32_t>(stride * height);
  std::memcpy(block, &header, sizeof header);
  if (from.biBitCount == 8) std::memcpy(DibColours(block), DibColours(source), 4 * kDibColourSlots);
  for (int y = 0; y < height; ++y) {
    const int sy = static_cast<int>(static_cast<std::int64_t>(y) * from.biHeight / height);
    for (int x = 0; x < width; ++x) {
      const int sx = static_cast<int>(static_cast<std::int64_t>(x) * from.biWidth / width);
      std::memcpy(ImagePixel(block, x, y), ImagePixel(source, sx, sy),
                  static_cast<std::size_t>(bytesPerPixel));
    }
  }
  out.Adopt(block, kDibPixelOffset + static_cast<std::size_t>(stride * height));
  return true;
}

}  // namespace qv
