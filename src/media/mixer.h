// The system mixer: the volume faders of the first mixer device, read and set as percentages.
// One mixer handle serves the whole program; the music screen opens it and closes it.
#pragma once

#include <windows.h>
#include <mmsystem.h>

namespace qv {

// Opens mixer 0; with a window, the mixer's changes arrive there as MM_MIXM_CONTROL_CHANGE.
// False when the system has no mixer or the open fails.
bool MixerInit(HWND window);
void MixerClose();

// The line of a component type (MIXERLINE_COMPONENTTYPE_...), and a line's control of a type
// (MIXERCONTROL_CONTROLTYPE_...).
bool MixerFindLine(DWORD componentType, MIXERLINEA& line);
bool MixerFindControl(DWORD lineId, DWORD controlType, DWORD& controlId);

// A fader's position as a percentage 0..100, and setting it; both fail for a control that is no
// fader, and setting fails for a fader without span.
bool MixerGetPercent(DWORD controlId, DWORD& percent);
bool MixerSetPercent(DWORD controlId, int percent);

}  // namespace qv
