// The Windows assertion handler.
#include "system/debug_output.h"

#include <windows.h>

#include <cstdio>

#include "system/assert.h"

namespace qv {

namespace {

void DebuggerHandler(const char* message, const char* file, int line) {
  char text[1200];
  std::snprintf(text, sizeof text, "%s(%d): %s", file, line, message ? message : "");
  OutputDebugStringA(text);
#ifdef QV_DEBUG_STOP
  if (IsDebuggerPresent()) DebugBreak();
#endif
}

}  // namespace

void InstallDebuggerAssertHandler() { SetAssertHandler(&DebuggerHandler); }

}  // namespace qv
