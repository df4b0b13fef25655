// The interface language of the whole process: one value that every screen and the message box read.
#pragma once

namespace qv {

constexpr int kLanguageCount = 6;  // 0 Spanish, 1 English, 2 Portuguese, 3 Italian, 4 French, 5 German

// The program starts in English.
int CurrentLanguage();
// Out-of-range values are ignored.
void SetCurrentLanguage(int language);

}  // namespace qv
