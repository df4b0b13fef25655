// The printed page's arithmetic, done with whole numbers so that a page exactly as wide as the
// banners gives banners exactly as wide as the page.
#include "screens/print_layout.h"

#include <cstring>

#include "graphics/dib_layout.h"

namespace qv {
namespace {

// A scale factor num / den, kept as a fraction.
struct Scale {
  std::int64_t num = 1, den = 1;
};

int Scaled(std::int64_t length, Scale s) { return static_cast<int>(length * s.num / s.den); }

// The page's width when the banner scaled to it still fits the height, else its height.
Scale BannerScale(int w, int h, int bannerWidth, int bannerHeight) {
  if (static_cast<std::int64_t>(h) * bannerWidth >= static_cast<std::int64_t>(w) * bannerHeight) {
    return {w, bannerWidth};
  }
  return {h, bannerHeight};
}

std::uint32_t Read32(const std::uint8_t* p) {
  return static_cast<std::uint32_t>(p[0]) | static_cast<std::uint32_t>(p[1]) << 8 |
         static_cast<std::uint32_t>(p[2]) << 16 | static_cast<std::uint32_t>(p[3]) << 24;
}

char Folded(char c) {
  if (c == '/') return '\\';
  return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c;
}

bool SameFolded(const std::string& a, std::size_t at, const std::string& b) {
  if (a.size() < at + b.size()) return false;
  for (std::size_t i = 0; i < b.size(); ++i) {
    if (Folded(a[at + i]) != Folded(b[i])) return false;
  }
  return true;
}

}  // namespace

bool ComputePrintLayout(int w, int h, int pw, int ph, PrintLayout& out) {
  if (w < 1 || h < 1 || pw < 1 || ph < kPrintBands) return false;
  PrintLayout l;
  const Scale s1 = BannerScale(w, h, kTopBannerWidth, kTopBannerHeight);
  const int bw = Scaled(kTopBannerWidth, s1), bh = Scaled(kTopBannerHeight, s1);
  l.topBanner = {0, 0, bw, bh};
  const Scale s2 = BannerScale(w, h, kBottomBannerWidth, kBottomBannerHeight);
  const int fh = Scaled(kBottomBannerHeight, s2);
  l.bottomBanner = {0, h - fh, Scaled(kBottomBannerWidth, s2), fh};

  // The picture gets half the scale that would fill the free height or the width; it ends at
  // the page's middle, left of centre, and the last ph mod 5 rows are dropped: both intended.
  const std::int64_t free = static_cast<std::int64_t>(h) - 2 * bh - fh;
  if (free < 1) return false;
  Scale k = free * pw >= static_cast<std::int64_t>(w) * ph ? Scale{w, pw} : Scale{free, ph};
  k.den *= 2;
  const int printedWidth = Scaled(pw, k);
  const int bandHeight = static_cast<int>(ph * k.num / (k.den * kPrintBands));
  if (printedWidth < 1 || bandHeight < 1) return false;
  l.rowsPerBand = ph / kPrintBands;
  l.droppedRows = ph % kPrintBands;
  const int x = bh / 3 + (w - 2 * printedWidth) / 2;
  for (int i = 0; i < kPrintBands; ++i) {
    l.band[i] = {x, (h - 10 * bandHeight) / 2 + bandHeight * (kPrintBands - 1 - i), printedWidth,
                 bandHeight};
  }
  l.titleHeight = bh / 4;
  l.title = {static_cast<int>(static_cast<std::int64_t>(w) * 3 / 5), 2 * bh, w, 2 * bh};
  l.descriptionHeight = bh / 6;
  l.description = {bh / 3, static_cast<int>((static_cast<std::int64_t>(bh) + h) / 2),
                   static_cast<int>(static_cast<std::int64_t>(w) * 9 / 10), 2 * bh};
  if (l.titleHeight < 1 || l.descriptionHeight < 1) return false;
  out = l;
  return true;
}

bool CheckPrintablePicture(const std::uint8_t* head, std::size_t headSize, std::uint64_t fileSize,
                           PrintablePicture& out) {
  if (!head || headSize < kPrintHeadBytes || fileSize < kPrintHeadBytes) return false;
  if (head[0] != 'B' || head[1] != 'M') return false;
  BitmapInfoHeader info;
  std::memcpy(&info, head + 14, sizeof info);
  // The palette must be the 256 entries that follow the header, as the job reads it.
  const bool fullPalette = info.biClrUsed == 0 || info.biClrUsed == 256;
  if (info.biSize != sizeof info || info.biPlanes != 1 || info.biBitCount != 8 ||
      info.biCompression != 0 || !fullPalette) {
    return false;
  }
  if (info.biWidth < 1 || info.biHeight < kPrintBands || info.biWidth > 65535 ||
      info.biHeight > 65535) {
    return false;
  }
  const std::uint64_t offset = Read32(head + 10);
  const std::uint64_t stride = (static_cast<std::uint64_t>(info.biWidth) * 8 + 31) / 32 * 4;
  const std::uint64_t printedRows = static_cast<std::uint64_t>(info.biHeight) / kPrintBands *
                                    kPrintBands;
  if (offset < kPrintHeadBytes || offset > fileSize || fileSize - offset < stride * printedRows) {
    return false;
  }
  out = {info.biWidth, info.biHeight, static_cast<std::size_t>(stride), offset};
  return true;
}

int BuiltInPictureIndex(const std::string& programFolder, const std::string& picturePath) {
  const std::string folder = programFolder + "Image\\";
  if (!SameFolded(picturePath, 0, folder)) return -1;
  const std::string name = picturePath.substr(folder.size());
  if (name.size() < 5 || name.size() > 6 || !SameFolded(name, name.size() - 4, ".bmp")) return -1;
  int number = 0;
  for (std::size_t i = 0; i + 4 < name.size(); ++i) {
    if (name[i] < '0' || name[i] > '9') return -1;
    number = number * 10 + (name[i] - '0');
  }
  if (name[0] == '0' || number < 1 || number > 15) return -1;
  return number - 1;
}

std::string OwnPictureName(const std::string& picturePath) {
  const std::size_t slash = picturePath.find_last_of("\\/");
  std::string name = slash == std::string::npos ? picturePath : picturePath.substr(slash + 1);
  if (name.size() >= 4 && SameFolded(name, name.size() - 4, ".bmp")) name.resize(name.size() - 4);
  return name;
}

PrintRect FitPicture(int boxWidth, int boxHeight, int pictureWidth, int pictureHeight) {
  if (boxWidth < 1 || boxHeight < 1 || pictureWidth < 1 || pictureHeight < 1) return {};
  int width = boxWidth;
  int height = static_cast<int>(static_cast<std::int64_t>(boxWidth) * pictureHeight / pictureWidth);
  if (height > boxHeight) {
    height = boxHeight;
    width = static_cast<int>(static_cast<std::int64_t>(boxHeight) * pictureWidth / pictureHeight);
  }
  if (width < 1) width = 1;
  if (height < 1) height = 1;
  return {(boxWidth - width) / 2, (boxHeight - height) / 2, width, height};
}

}  // namespace qv
