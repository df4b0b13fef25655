#include "media/mixer.h"

#include <cstdint>

#include "media/mixer_percent.h"

namespace qv {
namespace {

struct Mixer {
  HMIXER handle = nullptr;
  bool ready = false;
};
Mixer& State() {
  static Mixer mixer;
  return mixer;
}

HMIXEROBJ Object() { return reinterpret_cast<HMIXEROBJ>(State().handle); }

// The control of an identifier, when it is a fader.
bool FetchFader(DWORD controlId, MIXERCONTROLA& control) {
  control = MIXERCONTROLA{};
  control.cbStruct = sizeof control;
  MIXERLINECONTROLSA controls{};
  controls.cbStruct = sizeof controls;
  controls.dwControlID = controlId;
  controls.cControls = 1;
  controls.cbmxctrl = sizeof control;
  controls.pamxctrl = &control;
  if (mixerGetLineControlsA(Object(), &controls, MIXER_GETLINECONTROLSF_ONEBYID) !=
      MMSYSERR_NOERROR) {
    return false;
  }
  // The identifier asked for is the control meant: some mixers (Wine's) describe the right
  // control but give back another one's identifier, whose value then reads as zero and ignores
  // what is set.
  control.dwControlID = controlId;
  return (control.dwControlType & MIXERCONTROL_CT_CLASS_MASK) == MIXERCONTROL_CT_CLASS_FADER;
}

FaderRange RangeOf(const MIXERCONTROLA& control) {
  return FaderRange{control.Bounds.dwMinimum, control.Bounds.dwMaximum, control.Metrics.cSteps};
}

MIXERCONTROLDETAILS OneChannel(const MIXERCONTROLA& control, MIXERCONTROLDETAILS_UNSIGNED& value) {
  MIXERCONTROLDETAILS details{};
  details.cbStruct = sizeof details;
  details.dwControlID = control.dwControlID;
  details.cChannels = 1;
  details.cMultipleItems =
      (control.fdwControl & MIXERCONTROL_CONTROLF_MULTIPLE) ? control.cMultipleItems : 0;
  details.cbDetails = sizeof value;
  details.paDetails = &value;
  return details;
}

}  // namespace

bool MixerInit(HWND window) {
  if (mixerGetNumDevs() == 0) return false;
  MixerClose();
  Mixer& mixer = State();
  const MMRESULT opened =
      window ? mixerOpen(&mixer.handle, 0, reinterpret_cast<DWORD_PTR>(window), 0, CALLBACK_WINDOW)
             : mixerOpen(&mixer.handle, 0, 0, 0, 0);
  if (opened != MMSYSERR_NOERROR) mixer.handle = nullptr;
  // Ready even when the open failed: the operations then fail on the system's answer, not on
  // the check meant for a program that forgot to open the mixer.
  mixer.ready = true;
  return opened == MMSYSERR_NOERROR;
}

void MixerClose() {
  Mixer& mixer = State();
  if (mixer.handle) mixerClose(mixer.handle);
  mixer.handle = nullptr;
  mixer.ready = false;
}

bool MixerFindLine(DWORD componentType, MIXERLINEA& line) {
  if (!CheckMixerReady(State().ready)) return false;
  line = MIXERLINEA{};
  line.cbStruct = sizeof line;
  line.dwComponentType = componentType;
  return mixerGetLineInfoA(Object(), &line, MIXER_GETLINEINFOF_COMPONENTTYPE) == MMSYSERR_NOERROR;
}

bool MixerFindControl(DWORD lineId, DWORD controlType, DWORD& controlId) {
  if (!CheckMixerReady(State().ready)) return false;
  MIXERCONTROLA control{};
  control.cbStruct = sizeof control;
  MIXERLINECONTROLSA controls{};
  controls.cbStruct = sizeof controls;
  controls.dwLineID = lineId;
  controls.dwControlType = controlType;
  controls.cControls = 1;
  controls.cbmxctrl = sizeof control;
  controls.pamxctrl = &control;
  if (mixerGetLineControlsA(Object(), &controls, MIXER_GETLINECONTROLSF_ONEBYTYPE) !=
      MMSYSERR_NOERROR) {
    return false;
  }
  controlId = control.dwControlID;
  return true;
}

bool MixerGetPercent(DWORD controlId, DWORD& percent) {
  if (!CheckMixerReady(State().ready)) return false;
  MIXERCONTROLA control;
  if (!FetchFader(controlId, control)) return false;
  const FaderRange range = RangeOf(control);
  if (range.minimum >= range.maximum) {
    percent = 50;
    return true;
  }
  MIXERCONTROLDETAILS_UNSIGNED value{};
  MIXERCONTROLDETAILS details = OneChannel(control, value);
  if (mixerGetControlDetailsA(Object(), &details, MIXER_GETCONTROLDETAILSF_VALUE) !=
      MMSYSERR_NOERROR) {
    return false;
  }
  percent = PercentOfFader(range, value.dwValue);
  return true;
}

bool MixerSetPercent(DWORD controlId, int percent) {
  if (!CheckMixerReady(State().ready)) return false;
  if (percent < 0 || percent > 100) return false;
  MIXERCONTROLA control;
  if (!FetchFader(controlId, control)) return false;
  std::uint32_t raw = 0;
  if (!FaderValueOfPercent(RangeOf(control), percent, raw)) return false;
  MIXERCONTROLDETAILS_UNSIGNED value{};
  value.dwValue = raw;
  MIXERCONTROLDETAILS details = OneChannel(control, value);
  return mixerSetControlDetails(Object(), &details, MIXER_SETCONTROLDETAILSF_VALUE) ==
         MMSYSERR_NOERROR;
}

}  // namespace qv
