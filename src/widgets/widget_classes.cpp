// RegisterWidgetClasses: the seven widget classes, registered once at start-up.
#include "widgets/widget_classes.h"

namespace qv {

namespace {

bool Register(HINSTANCE instance, const char* name, WNDPROC procedure, UINT style) {
  WNDCLASSA windowClass{};
  windowClass.style = style;
  windowClass.lpfnWndProc = procedure;
  windowClass.hInstance = instance;
  windowClass.hCursor = LoadCursor(nullptr, IDC_ARROW);
  windowClass.lpszClassName = name;
  return RegisterClassA(&windowClass) != 0;
}

}  // namespace

bool RegisterWidgetClasses(HINSTANCE instance) {
  // The scroll and the animated image keep their window's context for their whole life.
  return Register(instance, kCommandClass, CommandButtonProc, 0) &&
         Register(instance, kBoxCommandClass, CommandButtonProc, 0) &&
         Register(instance, kCheckClass, CheckButtonProc, 0) &&
         Register(instance, kAnimClass, AnimWidgetProc, CS_OWNDC) &&
         Register(instance, kTextClass, TextWidgetProc, 0) &&
         Register(instance, kScrollClass, ScrollWidgetProc, CS_OWNDC) &&
         Register(instance, kSlideClass, SlideWidgetProc, 0);
}

}  // namespace qv
