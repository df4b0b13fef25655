// The face and colours of the program's own texts (clock, language names, captions, box names)
// and of what is chosen among them.
#pragma once

#include <windows.h>

namespace qv {

constexpr char kProgramFace[] = "Tahoma";
constexpr COLORREF kInterfaceTextColour = RGB(250, 240, 210);
// What is chosen stands out in gold beside the cream of the rest.
constexpr COLORREF kHighlightColour = RGB(255, 204, 92);

}  // namespace qv
