// The assertion routine's handler slot and its default handler.
#include "system/assert.h"

#include <cstdio>
#include <cstdlib>

namespace qv {

namespace {
AssertHandler g_handler = nullptr;
}

void DefaultAssertHandler(const char* message, const char* file, int line) {
  std::fprintf(stderr, "%s:%d: %s", file, line, message ? message : "");
  std::fflush(stderr);
#ifdef QV_DEBUG_STOP
  std::abort();
#endif
}

AssertHandler SetAssertHandler(AssertHandler handler) {
  AssertHandler previous = g_handler;
  g_handler = handler;
  return previous;
}

void AssertFailed(const char* message, const char* file, int line) {
  if (g_handler) {
    g_handler(message, file, line);
  } else {
    DefaultAssertHandler(message, file, line);
  }
}

}  // namespace qv
