// The interface sounds of the widgets: the module's WAVE resources, played from memory.
#pragma once

#include <windows.h>

namespace qv {

// Locks the hover (242) and click (243) WAVE resources of the module in memory for the whole
// run. A module without them plays nothing; the widgets work silently.
void LoadWidgetSounds(HINSTANCE module);

// A WAVE resource of the module, locked for the whole run; null when it is missing.
const void* LockWaveResource(HINSTANCE module, int identifier);

// Plays one of them asynchronously, with no default sound and without waiting. The first call
// loads them from the running program when LoadWidgetSounds was never called.
void PlayWidgetSound(int resource);

// Sees every sound the widgets ask for, present or not (tests check that the hover sound goes
// with MWN_ENTER and the click sound with MWN_CLICKED). Returns the observer it replaces.
using WidgetSoundObserver = void (*)(int resource);
WidgetSoundObserver SetWidgetSoundObserver(WidgetSoundObserver observer);

}  // namespace qv
