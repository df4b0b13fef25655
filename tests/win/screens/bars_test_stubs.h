// What the stand-in of the file screen was asked for.
#pragma once

namespace qv::test {
extern int g_fileScreenOpened[2];  // [0] open, [1] save
}  // namespace qv::test
