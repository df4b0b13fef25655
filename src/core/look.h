// The face and colour of the program's own texts (clock, language names, captions, box names).
#pragma once

#include <windows.h>

namespace qv {

constexpr char kProgramFace[] = "Tahoma";
constexpr COLORREF kInterfaceTextColour = RGB(250, 240, 210);

}  // namespace qv
