// The text of the about program: name, version, licence and the pictures' credits, in six languages.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace qv {

constexpr char kGameVersion[] = "0.1.0";
// More than this of a credits file is not shown: the file is ours, but it is read from disk.
constexpr std::size_t kMaxCreditsBytes = 64 * 1024;

// The game's language indices (0 Spanish, 1 English, 2 Portuguese, 3 Italian, 4 French, 5 German).
constexpr int kAboutLanguageCount = 6;
constexpr int kAboutEnglish = 1;

// The words of the about window in one language, UTF-8.
struct AboutWords {
  const char* windowTitle;
  const char* version;      // followed by the version number
  const char* description;  // one sentence on the game
  const char* licence;      // says that the (English) MIT licence text follows
  const char* noCredits;    // the credits file could not be read
  const char* close;        // the button
};

// The words of a language; English's for an index out of range.
const AboutWords& AboutWordsFor(int language);

// The language named by the program's command line: exactly one of the indices 0..5, blanks
// around it allowed. Anything else (nothing, another number, a sign, letters) is English.
int AboutLanguageFromCommandLine(std::string_view commandLine);

// The whole text for a multi-line edit control (CR LF line ends, UTF-8) in a language.
// `credits` is the credits file as read, or null when it could not be read.
std::string AboutText(int language, const std::string* credits);

}  // namespace qv
