// CMWTXT: a one-line caption over the parent's picture that behaves like a button.
#include <algorithm>
#include <cstring>
#include <string>

#include "graphics/himage_draw.h"
#include "graphics/himage_ops.h"
#include "system/assert.h"
#include "widgets/text_logic.h"
#include "widgets/widget_classes.h"
#include "widgets/widget_geometry.h"
#include "widgets/widget_window.h"

namespace qv {

namespace {

using widget::FontHandle;
using widget::RecordOf;
using widget::RunEffects;

struct TextRecord {
  TextWidget logic;
  HIMAGE background = nullptr;  // the parent's picture, borrowed
  std::string text;             // its size + 1 is the field textSize
  std::string faceName;
  FontHandle normalFont;
  FontHandle hoverFont;
};

HFONT MakeFont(const TextRecord& t, int weight) {
  return CreateFontA(t.logic.fontHeight, 0, 0, 0, weight, 0, 0, 0, DEFAULT_CHARSET, 0, 0, 0, 0,
                     t.faceName.c_str());
}

TextExtent Measure(HDC dc, HFONT font, const std::string& text) {
  widget::SelectInScope select(dc, font);
  SIZE size{0, 0};
  GetTextExtentPoint32A(dc, text.c_str(), static_cast<int>(text.size()), &size);
  return TextExtent{size.cx, size.cy};
}

void UpdateTextLayout(HWND window, TextRecord& t) {
  t.logic.ready = false;
  if (!t.text.empty() && !t.faceName.empty()) {
    t.normalFont.Reset(MakeFont(t, t.logic.normalWeight));
    if (t.normalFont.get()) t.hoverFont.Reset(MakeFont(t, t.logic.hoverWeight));
    if (t.normalFont.get() && t.hoverFont.get()) {
      widget::WindowDc dc(window);
      const TextSizing sizing =
          TextWindowSize(Measure(dc.get(), t.normalFont.get(), t.text),
                         Measure(dc.get(), t.hoverFont.get(), t.text), t.logic.shadowOffset,
                         t.background != nullptr);
      if (sizing.ready) {
        t.logic.ready = true;
        SetWindowPos(window, nullptr, 0, 0, sizing.windowWidth, sizing.windowHeight,
                     SWP_NOMOVE | SWP_NOZORDER | SWP_NOOWNERZORDER);
      }
    }
  }
  InvalidateRect(window, nullptr, FALSE);
}

// The parent's picture behind this window, so the caption looks drawn straight onto it.
void DrawBackground(HWND window, const TextRecord& t, HDC dc, int width, int height) {
  POINT origin{0, 0};
  MapWindowPoints(window, GetParent(window), &origin, 1);
  const CopyRect copy = ClipCopy({0, 0, origin.x, origin.y, width, height},
                                 ImageWidth(t.background), ImageHeight(t.background), width,
                                 height);
  if (copy.width < width || copy.height < height) widget::FillBlack(dc, RECT{0, 0, width, height});
  if (!copy.empty()) {
    ImageDrawToContext(dc, copy.dx, copy.dy, copy.width, copy.height, t.background, copy.sx,
                       copy.sy, kRopSrcCopy);
  }
}

void DrawCaption(const TextRecord& t, HDC dc) {
  const TextPaintPlan plan = PlanTextPaint(t.logic);
  widget::SelectInScope font(dc, plan.hoverFont ? t.hoverFont.get() : t.normalFont.get());
  SetBkMode(dc, TRANSPARENT);
  const int length = static_cast<int>(t.text.size());
  if (plan.drawShadow) {
    SetTextColor(dc, t.logic.shadowColour);
    TextOutA(dc, plan.shadowX, plan.shadowY, t.text.c_str(), length);
  }
  SetTextColor(dc, plan.textColour);
  TextOutA(dc, plan.textX, plan.textY, t.text.c_str(), length);
}

void OnPaint(HWND window, const TextRecord* t, HDC printDc) {
  widget::PaintWindow(window, printDc, [&](HDC dc, const RECT& area) {
    if (!t || !t->logic.ready) {
      widget::FillBlack(dc, area);
      return;
    }
    RECT client;
    GetClientRect(window, &client);
    // Composed off screen and copied at once, so hovering never flickers.
    widget::MemorySurface surface(dc, client.right, client.bottom);
    if (!surface.ok()) return;
    DrawBackground(window, *t, surface.dc(), client.right, client.bottom);
    DrawCaption(*t, surface.dc());
    BitBlt(dc, area.left, area.top, area.right - area.left, area.bottom - area.top, surface.dc(),
           area.left, area.top, SRCCOPY);
  });
}

LRESULT OnGetText(const TextRecord& t, WPARAM bufferSize, LPARAM lParam) {
  char* buffer = reinterpret_cast<char*>(lParam);
  if (!buffer || t.text.empty()) return 0;
  // The caption with its terminator, cut to the buffer: a short buffer gets no terminator.
  const std::size_t count = std::min<std::size_t>(t.text.size() + 1, bufferSize);
  std::memcpy(buffer, t.text.c_str(), count);
  return static_cast<LRESULT>(count);
}

LRESULT OnSetString(HWND window, TextRecord& t, std::string& field, const char* value,
                    bool (*valid)(const char*)) {
  if (!valid(value)) return 0;
  field.assign(value);
  UpdateTextLayout(window, t);
  return 1;
}

LRESULT SetLayoutValue(HWND window, TextRecord& t, int& field, int value, bool valid) {
  if (!valid) return 0;
  field = value;
  UpdateTextLayout(window, t);
  return 1;
}

LRESULT SetColour(HWND window, std::uint32_t& field, LPARAM value) {
  field = static_cast<std::uint32_t>(value) & 0x00FFFFFF;
  InvalidateRect(window, nullptr, FALSE);
  return 1;
}

LRESULT OnWidgetMessage(HWND window, TextRecord& t, UINT message, WPARAM wParam, LPARAM lParam) {
  const int value = static_cast<int>(lParam);
  TextWidget& l = t.logic;
  switch (message) {
    case MWM_GETENABLED: return l.enabled ? 1 : 0;
    case MWM_SETENABLED:
      RunEffects(window, TextSetEnabled(l, value != 0));
      return 1;
    case MWM_GETIMAGE: return reinterpret_cast<LRESULT>(t.background);
    case MWM_SETIMAGE:
      if (!QV_CHECK(lParam != 0, "hdc invalido")) return 0;
      t.background = reinterpret_cast<HIMAGE>(lParam);
      UpdateTextLayout(window, t);
      return 1;
    case text::MWM_GETSHADOW: return l.shadow ? 1 : 0;
    case text::MWM_SETSHADOW:
      l.shadow = value != 0;
      UpdateTextLayout(window, t);
      return 1;
    case text::MWM_GETSHADOWCOLOUR: return static_cast<LRESULT>(l.shadowColour);
    case text::MWM_SETSHADOWCOLOUR: return SetColour(window, l.shadowColour, lParam);
    case text::MWM_GETTEXTCOLOUR: return static_cast<LRESULT>(l.textColour);
    case text::MWM_SETTEXTCOLOUR: return SetColour(window, l.textColour, lParam);
    case text::MWM_GETDISABLEDCOLOUR: return static_cast<LRESULT>(l.disabledColour);
    case text::MWM_SETDISABLEDCOLOUR: return SetColour(window, l.disabledColour, lParam);
    case text::MWM_GETSHADOWOFFSET: return l.shadowOffset;
    case text::MWM_SETSHADOWOFFSET:
      return SetLayoutValue(window, t, l.shadowOffset, value, ShadowOffsetValid(value));
    case text::MWM_GETFONTHEIGHT: return l.fontHeight;
    case text::MWM_SETFONTHEIGHT:
      return SetLayoutValue(window, t, l.fontHeight, value, FontHeightValid(value));
    case text::MWM_GETNORMALWEIGHT: return l.normalWeight;
    case text::MWM_SETNORMALWEIGHT:
      return SetLayoutValue(window, t, l.normalWeight, value, FontWeightValid(value));
    case text::MWM_GETHOVERWEIGHT: return l.hoverWeight;
    case text::MWM_SETHOVERWEIGHT:
      return SetLayoutValue(window, t, l.hoverWeight, value, FontWeightValid(value));
    case text::MWM_GETTEXT: return OnGetText(t, wParam, lParam);
    case text::MWM_SETTEXT:
      return OnSetString(window, t, t.text, reinterpret_cast<const char*>(lParam), CaptionValid);
    case text::MWM_SETFACENAME:
      return OnSetString(window, t, t.faceName, reinterpret_cast<const char*>(lParam),
                         FaceNameValid);
    default: return 1;
  }
}

void OnMouse(HWND window, TextRecord& t, UINT message) {
  if (!TextTakesMouse(t.logic)) return;
  switch (message) {
    case WM_MOUSEMOVE: {
      const bool over = t.logic.captured && widget::PointerOverWindow(window);
      RunEffects(window, TextMouseMove(t.logic, over));
      break;
    }
    case WM_LBUTTONDOWN:
      RunEffects(window, TextButtonDown(t.logic));
      break;
    case WM_LBUTTONUP:
      RunEffects(window, TextButtonUp(t.logic, widget::PointerOverWindow(window)));
      break;
    default:
      break;
  }
}

}  // namespace

LRESULT CALLBACK TextWidgetProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  TextRecord* t = RecordOf<TextRecord>(window);
  switch (message) {
    case WM_CREATE:
      return widget::CreateRecord<TextRecord>(window) ? 0 : -1;
    case WM_DESTROY:
      widget::DestroyRecord<TextRecord>(window);
      return 0;
    case WM_CLOSE:
      DestroyWindow(window);
      return 0;
    case WM_ERASEBKGND:
      return 1;
    case WM_PAINT:
    case WM_PRINTCLIENT:
      OnPaint(window, t, message == WM_PRINTCLIENT ? reinterpret_cast<HDC>(wParam) : nullptr);
      return 0;
    default:
      break;
  }
  if (!t) return IsWidgetMessage(message) ? 1 : DefWindowProcA(window, message, wParam, lParam);
  switch (message) {
    case WM_MOUSEMOVE:
    case WM_LBUTTONDOWN:
    case WM_LBUTTONUP:
      OnMouse(window, *t, message);
      return 0;
    case WM_CAPTURECHANGED:
      if (t->logic.captured && widget::CaptureTakenByOther(window, lParam)) {
        widget::SendReleaseToSelf(window);
      }
      return 0;
    case WM_TIMER:
      if (wParam == static_cast<WPARAM>(kHoverTimer)) {
        RunEffects(window, TextHoverTimer(t->logic, widget::PointerOverWindow(window)));
      }
      return 0;
    default:
      if (IsWidgetMessage(message)) return OnWidgetMessage(window, *t, message, wParam, lParam);
      return DefWindowProcA(window, message, wParam, lParam);
  }
}

}  // namespace qv
