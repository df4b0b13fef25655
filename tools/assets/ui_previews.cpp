// Contact sheets of the interface pictures, one PNG per screen, for people to look at.
#include "assets/ui_previews.h"

#include <algorithm>
#include <cairo.h>

#include "assets/previews.h"
#include "assets/ui_style.h"

namespace qv::assets {
namespace {

RgbImage Crop(const RgbImage& from, int x0, int y0, int w, int h) {
  RgbImage out(w, h);
  for (int y = 0; y < h; ++y) {
    for (int x = 0; x < w; ++x) out.at(x, y) = from.at(x0 + x, y0 + y);
  }
  return out;
}

const char* KindName(StripKind kind) {
  switch (kind) {
    case StripKind::kPush: return "push";
    case StripKind::kCheck: return "check";
    case StripKind::kAnim: return "anim";
    case StripKind::kScroll: return "scroll";
    case StripKind::kSprite: return "sprite";
    case StripKind::kPlain: return "plain";
  }
  return "";
}

constexpr int kGap = 6, kLabel = 16, kSheetWidth = 1560;

}  // namespace

std::vector<RgbImage> FramesOf(const UiPicture& p, const RgbImage& strip) {
  std::vector<RgbImage> frames;
  switch (p.kind) {
    case StripKind::kPush:
    case StripKind::kCheck:
      for (int f = 0; f < p.frames; ++f) frames.push_back(Crop(strip, 0, f * p.frameHeight, p.frameWidth, p.frameHeight));
      break;
    case StripKind::kAnim:
    case StripKind::kPlain:
      for (int f = 0; f < p.frames; ++f) frames.push_back(Crop(strip, f * p.frameWidth, 0, p.frameWidth, p.frameHeight));
      break;
    case StripKind::kSprite:
      for (int f = 0; f < p.frames; ++f) {
        frames.push_back(Crop(strip, f * p.frameWidth, 0, p.frameWidth, p.frameHeight));
        frames.push_back(Crop(strip, f * p.frameWidth, p.frameHeight, p.frameWidth, p.frameHeight));
      }
      break;
    case StripKind::kScroll:
      for (int version = 0; version < 3; ++version) {
        RgbImage whole(p.frameWidth, p.frameHeight);
        int blockTop = 0, y = 0;
        for (int part = 0; part < 3; ++part) {
          const RgbImage piece = Crop(strip, 0, blockTop + version * p.parts[part], p.frameWidth, p.parts[part]);
          for (int py = 0; py < piece.height; ++py) {
            for (int px = 0; px < piece.width; ++px) whole.at(px, y + py) = piece.at(px, py);
          }
          y += p.parts[part];
          blockTop += 3 * p.parts[part];
        }
        frames.push_back(std::move(whole));
      }
      break;
  }
  return frames;
}

bool WriteUiContactSheets(const std::string& folder, std::string& error) {
  for (int s = 0; s < kScreenCount; ++s) {
    struct Item {
      std::string label;
      std::vector<RgbImage> frames;
      int width, height;
    };
    std::vector<Item> items;
    for (const UiPicture& p : UiCatalogue()) {
      if (static_cast<int>(p.screen) != s) continue;
      const Image8 made = MakeUiPicture(p);
      if (made.pixels.empty()) {
        error = "picture " + std::to_string(p.identifier) + " could not be drawn";
        return false;
      }
      Item item{std::to_string(p.identifier) + " " + KindName(p.kind) + " " + std::to_string(p.frameWidth) + "x" +
                    std::to_string(p.frameHeight),
                FramesOf(p, Expand(made)), 0, 0};
      for (const RgbImage& f : item.frames) {
        item.width += f.width + (item.width ? 2 : 0);
        item.height = std::max(item.height, f.height);
      }
      item.height += kLabel;
      items.push_back(std::move(item));
    }
    // Flow the items into rows.
    std::vector<std::pair<int, int>> at;
    int x = kGap, y = kGap, rowHeight = 0, sheetWidth = 0;
    for (const Item& item : items) {
      if (x > kGap && x + item.width > kSheetWidth) {
        x = kGap;
        y += rowHeight + kGap;
        rowHeight = 0;
      }
      at.emplace_back(x, y);
      sheetWidth = std::max(sheetWidth, x + std::max(item.width, 120) + kGap);
      x += std::max(item.width, 120) + kGap * 2;
      rowHeight = std::max(rowHeight, item.height);
    }
    Canvas sheet(std::max(sheetWidth, 200), y + rowHeight + kGap);
    cairo_t* cr = sheet.cr();
    cairo_set_source_rgb(cr, 0.42, 0.42, 0.42);
    cairo_paint(cr);
    cairo_select_font_face(cr, "DejaVu Sans", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_font_size(cr, 11);
    for (std::size_t i = 0; i < items.size(); ++i) {
      cairo_set_source_rgb(cr, 1, 1, 1);
      cairo_move_to(cr, at[i].first, at[i].second + 11);
      cairo_show_text(cr, items[i].label.c_str());
      int fx = at[i].first;
      for (const RgbImage& f : items[i].frames) {
        sheet.Place(f, fx, at[i].second + kLabel);
        fx += f.width + 2;
      }
    }
    if (!WritePng(sheet.Pixels(), folder + "/ui-" + ScreenName(static_cast<Screen>(s)) + ".png", error)) return false;
  }
  return true;
}

}  // namespace qv::assets
