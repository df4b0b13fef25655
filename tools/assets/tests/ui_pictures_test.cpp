// The interface pictures as the game will read them from Quorvex.rf: present, cut into the
// frames their widgets expect, masks where sprites need them, seamless tiles, fitting words.
#include <gtest/gtest.h>


#include <fstream>
#include <map>
#include <regex>
#include <set>

#include "assets/ui_catalogue.h"
#include "assets/ui_words.h"
#include "graphics/dib_layout.h"
#include "graphics/resource_file.h"

namespace qv::assets {
namespace {

struct Loaded {
  int width = 0, height = 0;
  int bitCount = 0;
  std::uint32_t colours = 0, sizeImage = 0;
  std::vector<Rgb> pixels;  // top-down
  Rgb at(int x, int y) const { return pixels[static_cast<std::size_t>(y) * width + x]; }
};

// The resource file is the one the tool packed as the build ran, read back whole with the
// game's reader.
class PackedInterface : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    const std::string rf = QV_BUILT_RF;
    ResourceFile file;
    ASSERT_TRUE(file.Open(rf.c_str()));
    for (const UiPicture& p : UiCatalogue()) {
      PackedDib dib;
      if (!file.LoadPicture(p.identifier, dib)) continue;
      const BitmapInfoHeader* h = DibHeader(dib.get());
      Loaded l{h->biWidth, h->biHeight, h->biBitCount, h->biClrUsed, h->biSizeImage, {}};
      const std::int64_t rowBytes = DibRowBytes(l.width, 8);
      for (int y = 0; y < l.height; ++y) {
        const std::uint8_t* row = DibPixels(dib.get()) + (l.height - 1 - y) * rowBytes;
        for (int x = 0; x < l.width; ++x) {
          const RgbQuad q = DibColours(dib.get())[row[x]];
          l.pixels.push_back({q.rgbRed, q.rgbGreen, q.rgbBlue});
        }
      }
      pictures_[p.identifier] = std::move(l);
    }
  }
  static void TearDownTestSuite() { pictures_.clear(); }

  static const Loaded* Find(std::uint32_t id) {
    const auto found = pictures_.find(id);
    return found == pictures_.end() ? nullptr : &found->second;
  }

  static std::map<std::uint32_t, Loaded> pictures_;
};
std::map<std::uint32_t, Loaded> PackedInterface::pictures_;

int Difference(const Rgb& a, const Rgb& b) { return std::abs(a.r - b.r) + std::abs(a.g - b.g) + std::abs(a.b - b.b); }

bool SameRegion(const Loaded& p, int ax, int ay, int bx, int by, int w, int h) {
  for (int y = 0; y < h; ++y) {
    for (int x = 0; x < w; ++x) {
      if (!(p.at(ax + x, ay + y) == p.at(bx + x, by + y))) return false;
    }
  }
  return true;
}

TEST_F(PackedInterface, EveryCatalogueIdentifierIsAn8BitPictureOfItsStripSize) {
  std::set<std::uint32_t> seen;
  for (const UiPicture& p : UiCatalogue()) {
    SCOPED_TRACE("picture " + std::to_string(p.identifier));
    EXPECT_TRUE(seen.insert(p.identifier).second) << "listed twice";
    const Loaded* l = Find(p.identifier);
    ASSERT_NE(l, nullptr) << "missing from the resource file";
    EXPECT_EQ(l->bitCount, 8);
    EXPECT_GE(l->colours, 1u);
    EXPECT_LE(l->colours, 256u);
    EXPECT_EQ(l->sizeImage, static_cast<std::uint32_t>(DibRowBytes(l->width, 8) * l->height));
    EXPECT_EQ(l->width, StripWidth(p));
    EXPECT_EQ(l->height, StripHeight(p));
  }
}

// The identifiers the screens load, with the strip each widget cuts: written out here rather
// than taken from the catalogue, so that a slip in the catalogue shows.
struct Expected {
  std::uint32_t first, last;
  StripKind kind;
  int frames;
};
const Expected kScreensLoad[] = {
    {200, 205, StripKind::kPush, 3},   {600, 605, StripKind::kPush, 3},   {244, 244, StripKind::kPush, 3},
    {112, 112, StripKind::kPush, 3},   {119, 119, StripKind::kPush, 3},   {129, 129, StripKind::kPush, 3},   {231, 232, StripKind::kPush, 3},
    {212, 213, StripKind::kPush, 3},   {146, 147, StripKind::kPush, 3},   {131, 131, StripKind::kPush, 3},
    {222, 223, StripKind::kPush, 3},   {163, 163, StripKind::kPush, 3},   {165, 165, StripKind::kPush, 3},
    {167, 167, StripKind::kPush, 3},   {170, 170, StripKind::kPush, 3},   {229, 230, StripKind::kPush, 3},
    {240, 243, StripKind::kPush, 3},   {2060, 2065, StripKind::kPush, 3}, {184, 186, StripKind::kCheck, 4},
    {1000, 1005, StripKind::kCheck, 4}, {1010, 1015, StripKind::kCheck, 4}, {1020, 1025, StripKind::kCheck, 4},
    {1030, 1035, StripKind::kCheck, 4}, {132, 132, StripKind::kAnim, 10}, {198, 199, StripKind::kAnim, 10},
    {187, 188, StripKind::kAnim, 10},  {158, 158, StripKind::kAnim, 10},  {128, 128, StripKind::kAnim, 10},
    {127, 127, StripKind::kAnim, 10},  {117, 117, StripKind::kAnim, 10},  {124, 124, StripKind::kAnim, 10},
    {113, 113, StripKind::kAnim, 10},  {115, 115, StripKind::kAnim, 10},  {126, 126, StripKind::kAnim, 10},
    {257, 258, StripKind::kAnim, 10},
    {106, 106, StripKind::kAnim, 6},   {135, 135, StripKind::kScroll, 3}, {197, 197, StripKind::kScroll, 3},
    {221, 221, StripKind::kScroll, 3}, {503, 503, StripKind::kSprite, 2}, {505, 505, StripKind::kSprite, 2},
    {507, 507, StripKind::kSprite, 1},
};

TEST_F(PackedInterface, StripsDivideIntoTheFramesTheirWidgetsCut) {
  for (const Expected& e : kScreensLoad) {
    for (std::uint32_t id = e.first; id <= e.last; ++id) {
      SCOPED_TRACE("picture " + std::to_string(id));
      const Loaded* l = Find(id);
      ASSERT_NE(l, nullptr);
      switch (e.kind) {
        case StripKind::kPush:
        case StripKind::kCheck: {
          ASSERT_EQ(l->height % e.frames, 0);
          const int h = l->height / e.frames;
          // Every state must look different, or the player sees no response.
          for (int a = 0; a < e.frames; ++a) {
            for (int b = a + 1; b < e.frames; ++b) {
              EXPECT_FALSE(SameRegion(*l, 0, a * h, 0, b * h, l->width, h)) << "frames " << a << " and " << b;
            }
          }
          break;
        }
        case StripKind::kAnim: {
          ASSERT_EQ(l->width % e.frames, 0);
          const int w = l->width / e.frames;
          EXPECT_EQ(w, l->height) << "square frames";
          if (e.frames == 10) {
            EXPECT_FALSE(SameRegion(*l, 0, 0, 8 * w, 0, w, l->height)) << "closed and open look alike";
            EXPECT_FALSE(SameRegion(*l, 0, 0, 9 * w, 0, w, l->height)) << "no hover look";
            EXPECT_FALSE(SameRegion(*l, 4 * w, 0, 5 * w, 0, w, l->height)) << "the opening does not move";
          }
          break;
        }
        case StripKind::kScroll:
          EXPECT_EQ(l->height % 3, 0);
          break;
        case StripKind::kSprite:
          EXPECT_EQ(l->height % 2, 0) << "frames and masks";
          EXPECT_EQ(l->width % e.frames, 0);
          break;
        case StripKind::kPlain: break;
      }
    }
  }
  const Loaded* textures = Find(135);
  ASSERT_NE(textures, nullptr);
  EXPECT_EQ(textures->height, 3 * (37 + 83 + 39)) << "the texture scroll's parts are fixed by its screen";
}

double MeanLuma(const Loaded& l, int x0, int y0, int w, int h) {
  double sum = 0;
  for (int y = y0; y < y0 + h; ++y) {
    for (int x = x0; x < x0 + w; ++x) {
      const Rgb c = l.at(x, y);
      sum += 0.299 * c.r + 0.587 * c.g + 0.114 * c.b;
    }
  }
  return sum / (w * h);
}

TEST_F(PackedInterface, PushButtonsGlowUnderThePointerAndSinkWhenPressed) {
  for (const UiPicture& p : UiCatalogue()) {
    if (p.kind != StripKind::kPush) continue;
    SCOPED_TRACE("button " + std::to_string(p.identifier));
    const Loaded* l = Find(p.identifier);
    ASSERT_NE(l, nullptr);
    const int h = l->height / 3;
    const double normal = MeanLuma(*l, 0, 0, l->width, h);
    const double hover = MeanLuma(*l, 0, h, l->width, h);
    const double pressed = MeanLuma(*l, 0, 2 * h, l->width, h);
    EXPECT_GT(hover, normal + 5);
    EXPECT_LT(pressed, normal - 5);
  }
}

// Whether the left halves of two 50 x 50 frames at row `top` differ anywhere.
bool LeftHalvesDiffer(const Loaded& a, const Loaded& b, int top) {
  for (int y = top; y < top + 50; ++y) {
    for (int x = 0; x < 25; ++x) {
      if (!(a.at(x, y) == b.at(x, y))) return true;
    }
  }
  return false;
}

TEST_F(PackedInterface, PieceBoxButtonsTellNumberAndFillingApartInTheirLeftHalf) {
  // Only the left half shows at the screen's edge: it must differ between the six boxes, and
  // between a box's empty and full pictures, in every state.
  for (int state = 0; state < 3; ++state) {
    for (std::uint32_t a = 0; a < 6; ++a) {
      const Loaded* empty = Find(200 + a);
      const Loaded* full = Find(600 + a);
      ASSERT_TRUE(empty && full);
      EXPECT_TRUE(LeftHalvesDiffer(*empty, *full, state * 50)) << "box " << a + 1 << " empty and full";
      for (std::uint32_t b = a + 1; b < 6; ++b) {
        const Loaded* other = Find(200 + b);
        ASSERT_NE(other, nullptr);
        EXPECT_TRUE(LeftHalvesDiffer(*empty, *other, state * 50)) << "boxes " << a + 1 << " and " << b + 1;
      }
    }
  }
}

TEST_F(PackedInterface, TheThreeShapePickersShowDifferentPieces) {
  const Loaded* knob = Find(184);
  const Loaded* dovetail = Find(185);
  const Loaded* lobes = Find(186);
  ASSERT_TRUE(knob && dovetail && lobes);
  EXPECT_NE(knob->pixels, dovetail->pixels);
  EXPECT_NE(knob->pixels, lobes->pixels);
  EXPECT_NE(dovetail->pixels, lobes->pixels);
  // The cycler's first three frames are the same three shapes, again all different.
  const Loaded* cycler = Find(106);
  ASSERT_NE(cycler, nullptr);
  const int w = cycler->width / 6;
  EXPECT_FALSE(SameRegion(*cycler, 0, 0, w, 0, w, w));
  EXPECT_FALSE(SameRegion(*cycler, w, 0, 2 * w, 0, w, w));
  EXPECT_FALSE(SameRegion(*cycler, 0, 0, 2 * w, 0, w, w));
}

TEST_F(PackedInterface, SpritesHaveTwoColourMasksAndBlackWhereTransparent) {
  const Rgb black{0, 0, 0}, white{255, 255, 255};
  for (std::uint32_t id : {503u, 505u, 507u}) {
    SCOPED_TRACE("sprite " + std::to_string(id));
    const Loaded* l = Find(id);
    ASSERT_NE(l, nullptr);
    const int h = l->height / 2;
    int opaque = 0, clear = 0;
    for (int y = 0; y < h; ++y) {
      for (int x = 0; x < l->width; ++x) {
        const Rgb mask = l->at(x, h + y);
        ASSERT_TRUE(mask == black || mask == white) << "mask pixel " << x << "," << y;
        if (mask == white) {
          ++clear;
          EXPECT_EQ(l->at(x, y), black) << "frame pixel " << x << "," << y << " shows through";
        } else {
          ++opaque;
        }
      }
    }
    EXPECT_GT(opaque, l->width * h / 2) << "the sprite is mostly drawn";
    EXPECT_GT(clear, 0) << "a round sprite has transparent corners";
  }
}

TEST_F(PackedInterface, TilesMeetThemselvesWithoutASeam) {
  for (std::uint32_t id : {122u, 104u, 120u, 105u, 123u, 160u}) {
    SCOPED_TRACE("tile " + std::to_string(id));
    const Loaded* l = Find(id);
    ASSERT_NE(l, nullptr);
    double inside = 0, across = 0;
    int insideCount = 0, acrossCount = 0;
    for (int y = 0; y < l->height; ++y) {
      for (int x = 0; x < l->width; ++x) {
        const int right = (x + 1) % l->width, below = (y + 1) % l->height;
        const int dx = Difference(l->at(x, y), l->at(right, y));
        const int dy = Difference(l->at(x, y), l->at(x, below));
        if (right == 0) {
          across += dx, ++acrossCount;
        } else {
          inside += dx, ++insideCount;
        }
        if (below == 0) {
          across += dy, ++acrossCount;
        } else {
          inside += dy, ++insideCount;
        }
      }
    }
    inside /= insideCount;
    across /= acrossCount;
    EXPECT_LE(across, inside * 1.6 + 2) << "inside " << inside;
  }
}

TEST_F(PackedInterface, EveryWordPictureExistsInAllSixLanguagesAtOneSize) {
  const std::uint32_t bases[] = {2060, 1000, 1010, 1020, 1030, 2000, 2010, 2020, 2030,
                                 2040, 2050, 2090, 2100, 2110, 2120, 2130};
  for (std::uint32_t base : bases) {
    const Loaded* first = Find(base);
    ASSERT_NE(first, nullptr) << base;
    for (int language = 0; language < kLanguageCount; ++language) {
      const Loaded* l = Find(base + static_cast<std::uint32_t>(language));
      ASSERT_NE(l, nullptr) << base << " + " << language;
      EXPECT_EQ(l->width, first->width) << base << " + " << language;
      EXPECT_EQ(l->height, first->height) << base << " + " << language;
    }
  }
  // Where two languages use different words, their pictures differ too.
  for (const WordSlot& slot : WordSlots()) {
    for (int a = 0; a < kLanguageCount; ++a) {
      for (int b = a + 1; b < kLanguageCount; ++b) {
        if (slot.words[a] == slot.words[b]) continue;
        const Loaded* pa = Find(slot.base + a);
        const Loaded* pb = Find(slot.base + b);
        ASSERT_TRUE(pa && pb);
        EXPECT_NE(pa->pixels, pb->pixels) << slot.base << ": " << slot.words[a] << " / " << slot.words[b];
      }
    }
  }
}

TEST(WordPictures, EveryWordFitsItsPictureAtALegibleSize) {
  for (const WordSlot& slot : WordSlots()) {
    // The vertical label is laid out turned, so its room is the picture's height across.
    const bool turned = slot.look == WordLook::kVerticalLabel;
    const double roomW = turned ? slot.height : slot.width, roomH = turned ? slot.width : slot.height;
    const Box& box = slot.textBox;
    ASSERT_TRUE(box.x >= 0 && box.y >= 0 && box.x + box.w <= roomW && box.y + box.h <= roomH) << slot.base;
    for (int language = 0; language < kLanguageCount; ++language) {
      SCOPED_TRACE(std::to_string(slot.base + language) + " \"" + slot.words[language] + "\"");
      const FittedText fit = FitWord(slot, language);
      EXPECT_GE(fit.size, 10.0) << "too small to read";
      EXPECT_GE(fit.left, box.x);
      EXPECT_GE(fit.top, box.y);
      EXPECT_LE(fit.left + fit.width, box.x + box.w);
      EXPECT_LE(fit.top + fit.height, box.y + box.h);
      EXPECT_GT(fit.width, fit.size) << "the word has ink";
    }
  }
}

// The string table's text for an identifier, from the game's .rc files.
std::string TableText(int id) {
  constexpr const char* files[kLanguageCount] = {"es", "en", "pt", "it", "fr", "de"};
  const std::string path = std::string(QV_SOURCE_DIR) + "/src/shell/strings_" + files[id % 10] + ".rc";
  std::ifstream in(path);
  const std::regex line("^\\s*" + std::to_string(id) + "\\s+\"(.*)\"\\s*$");
  for (std::string text; std::getline(in, text);) {
    std::smatch m;
    if (std::regex_match(text, m, line)) return m[1];
  }
  return "";
}

std::string WithoutTrailingColon(std::string s) {
  while (!s.empty() && (s.back() == ' ' || s.back() == ':')) s.pop_back();
  return s;
}

TEST(WordPictures, AgreeWithTheStringTableWhereItHasTheWords) {
  const auto slot = std::find_if(WordSlots().begin(), WordSlots().end(),
                                 [](const WordSlot& s) { return s.base == 2020; });
  ASSERT_NE(slot, WordSlots().end());
  for (int language = 0; language < kLanguageCount; ++language) {
    const std::string table = WithoutTrailingColon(TableText(70 + language));
    ASSERT_FALSE(table.empty()) << "string " << 70 + language;
    EXPECT_EQ(slot->words[language], table) << "language " << language;
  }
}

}  // namespace
}  // namespace qv::assets
