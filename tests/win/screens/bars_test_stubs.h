// What the stand-ins of the honour roll and the file screen were asked for.
#pragma once

namespace qv::test {
extern int g_honourRollOpened;
extern int g_fileScreenOpened[2];  // [0] open, [1] save
}  // namespace qv::test
