// The honour screen's portable decisions: where its rows and buttons go, what the rows say, and
// the composed background the rows are drawn over.
#pragma once

#include <cstdint>
#include <string>

#include "graphics/packed_dib.h"
#include "screens/records.h"

namespace qv {

struct HonourPoint {
  int x = 0;
  int y = 0;
};

// The rows lie in a 640 x 480 area centred on the screen; the two buttons are placed by
// fractions of the whole screen, so at large screens they stand apart from the rows.
struct HonourLayout {
  HonourPoint area;        // top-left of the centred 640 x 480 area
  int placeX = 0;          // the three columns
  int nameX = 0;
  int scoreX = 0;
  int rowY[kHonourPlaces] = {};
  HonourPoint clearButton;
  HonourPoint closeButton;
};
HonourLayout HonourScreenLayout(int screenWidth, int screenHeight);

// What a row shows: its place ("1" ... "10"), the entry's name and its score in signed decimal.
struct HonourRowText {
  std::string place;
  std::string name;
  std::string score;
};
HonourRowText HonourRow(const HonourRoll& roll, int row);

// The screen's background: the 80 x 80 tile repeated from the top-left corner over the whole
// screen and the title centred at the top. Composed in 24 bits, since the tile and the title
// each bring their own colour table. Either picture may be missing (then black or no title);
// false only when the surface cannot be had.
bool ComposeHonourBackground(int screenWidth, int screenHeight, HIMAGE tile, HIMAGE title,
                             PackedDib& background);

}  // namespace qv
