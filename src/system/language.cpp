// The process-wide interface language.
#include "system/language.h"

namespace qv {
namespace {
int g_language = 1;
}  // namespace

int CurrentLanguage() { return g_language; }

void SetCurrentLanguage(int language) {
  if (language >= 0 && language < kLanguageCount) g_language = language;
}

}  // namespace qv
