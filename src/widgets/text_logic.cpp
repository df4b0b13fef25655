// Text-widget decisions: what it accepts, how large it is, how it draws and reacts to the mouse.
#include "widgets/text_logic.h"

#include <algorithm>

#include "system/assert.h"
#include "widgets/widget_messages.h"

namespace qv {

int BoundedLength(const char* text, int limit) {
  int length = 0;
  while (length < limit && text[length] != '\0') ++length;
  return length;
}

bool CaptionValid(const char* text) {
  if (!QV_CHECK(text != nullptr, "Puntero al buffer de texto invalido")) return false;
  const int length = BoundedLength(text, kCaptionLimit);
  return QV_CHECK(length > 0 && length < kCaptionLimit,
                  "Este buffer probablemente es invalido (¿no es NULL terminated?)");
}

bool FaceNameValid(const char* face) {
  if (!QV_CHECK(face != nullptr, "Puntero al buffer de texto invalido")) return false;
  return QV_CHECK(BoundedLength(face, kFaceNameLimit) < kFaceNameLimit,
                  "Este buffer probablemente es invalido (no es NULL terminated)");
}

bool ShadowOffsetValid(int offset) {
  return QV_CHECK(offset >= 1 && offset <= 20, "delay de la sombra fuera de rango");
}

bool FontHeightValid(int height) {
  return QV_CHECK(height >= 0 && height <= 400, "Tamaño de fuente sale del rango permitido");
}

bool FontWeightValid(int weight) {
  return QV_CHECK(weight >= 0 && weight <= 1000, "tamaño de fuente invalido");
}

TextSizing TextWindowSize(TextExtent normal, TextExtent hover, int shadowOffset,
                          bool hasBackground) {
  const int width = std::max(normal.width, hover.width);
  const int height = std::max(normal.height, hover.height);
  TextSizing sizing;
  if (width < 2 || height < 2 || !hasBackground) return sizing;
  // The shadow's room is kept even with the shadow off, so switching it never moves or
  // resizes the caption.
  sizing.ready = true;
  sizing.windowWidth = width + shadowOffset;
  sizing.windowHeight = height + shadowOffset;
  return sizing;
}

TextPaintPlan PlanTextPaint(const TextWidget& t) {
  TextPaintPlan plan;
  // Pressed with the pointer over it, the caption drops onto where its shadow was.
  const bool pressedOver = t.captured && t.hover;
  plan.hoverFont = t.hover;
  plan.drawShadow = t.shadow && !pressedOver;
  plan.shadowX = plan.shadowY = t.shadowOffset;
  plan.textX = plan.textY = pressedOver ? t.shadowOffset : 0;
  plan.textColour = t.enabled ? t.textColour : t.disabledColour;
  return plan;
}

bool TextTakesMouse(const TextWidget& t) { return t.enabled && t.ready; }

Effects TextMouseMove(TextWidget& t, bool pointerOverThis) {
  Effects out;
  if (t.captured) {
    if (pointerOverThis != t.hover) {
      t.hover = pointerOverThis;
      out.Repaint();
      out.Notify(pointerOverThis ? MWN_ENTER : MWN_LEAVE);
    }
    return out;
  }
  if (!t.hover) {
    t.hover = true;
    out.StartTimer(kHoverTimer, kHoverPollMs);
    out.Repaint();
    out.Notify(MWN_ENTER);
  }
  return out;
}

Effects TextButtonDown(TextWidget& t) {
  Effects out;
  if (t.hover) out.KillTimer(kHoverTimer);
  t.captured = true;
  out.Capture();
  out.Repaint();
  out.Notify(MWN_PRESSED);
  return out;
}

Effects TextButtonUp(TextWidget& t, bool pointerOverThis) {
  Effects out;
  // Deliberately not asking whether the press began here: a button released over the
  // caption is a click even after a press elsewhere.
  t.captured = false;
  out.ReleaseCapture();
  if (pointerOverThis) {
    t.hover = true;
    out.StartTimer(kHoverTimer, kHoverPollMs);
  } else {
    t.hover = false;
  }
  out.Repaint();
  out.Notify(MWN_RELEASED);
  if (pointerOverThis) out.Notify(MWN_CLICKED);
  return out;
}

Effects TextHoverTimer(TextWidget& t, bool pointerOverThis) {
  Effects out;
  if (!t.enabled || !t.ready || t.captured || pointerOverThis || !t.hover) return out;
  t.hover = false;
  out.KillTimer(kHoverTimer);
  out.Repaint();
  out.Notify(MWN_LEAVE);
  return out;
}

Effects TextSetEnabled(TextWidget& t, bool enable) {
  Effects out;
  if (t.enabled == enable) return out;
  t.enabled = enable;
  if (!enable) {
    if (t.captured) {
      t.captured = false;
      out.ReleaseCapture();
    } else if (t.hover) {
      out.KillTimer(kHoverTimer);
    }
    t.hover = false;
  }
  return out;
}

}  // namespace qv
