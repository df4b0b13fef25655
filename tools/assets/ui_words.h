// The pictures that carry words, one per language: Spanish, English, Portuguese, Italian,
// French, German (the game's language index 0 to 5, added to each picture's base).
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "assets/ui_style.h"

namespace qv::assets {

constexpr int kLanguageCount = 6;

enum class WordLook {
  kWoodButton,      // push strip, cream letters on a wooden button
  kTab,             // check strip: wood when unchecked, parchment when checked
  kParchmentTitle,  // plain, dark brown on parchment
  kWoodTitle,       // plain, cream on wood
  kVerticalLabel,   // plain, cream on wood, read from the bottom up
  kFileScreen,      // the file screen's background with its title
};

// One localized picture: its base identifier, size (of one frame), where its word goes, the
// largest lettering it may use, and the word in each language.
struct WordSlot {
  std::uint32_t base;
  WordLook look;
  int width, height;
  Box textBox;  // in the frame; for the vertical label, in the turned frame (height x width)
  double maxSize;
  std::array<std::string, kLanguageCount> words;
};

const std::vector<WordSlot>& WordSlots();

// The lettering's size and place for one language, exactly as the picture is drawn.
FittedText FitWord(const WordSlot& slot, int language);

RgbImage DrawWordPicture(const WordSlot& slot, int language);

}  // namespace qv::assets
