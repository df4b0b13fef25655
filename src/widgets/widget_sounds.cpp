// The hover and click sounds: found once among the module's WAVE resources, played from memory.
#include "widgets/widget_sounds.h"

#include <mmsystem.h>

#include "widgets/widget_messages.h"

namespace qv {

namespace {

struct SoundTable {
  bool loaded = false;
  const void* hover = nullptr;
  const void* click = nullptr;
};

SoundTable& Sounds() {
  static SoundTable table;
  return table;
}

WidgetSoundObserver g_observer = nullptr;

}  // namespace

// A resource of a module stays mapped as long as the module, so the pointer is good for the run.
const void* LockWaveResource(HINSTANCE module, int identifier) {
  HRSRC found = FindResourceA(module, MAKEINTRESOURCEA(identifier), "WAVE");
  if (!found) return nullptr;
  HGLOBAL loaded = LoadResource(module, found);
  return loaded ? LockResource(loaded) : nullptr;
}

void LoadWidgetSounds(HINSTANCE module) {
  SoundTable& table = Sounds();
  table.hover = LockWaveResource(module, kHoverSound);
  table.click = LockWaveResource(module, kClickSound);
  table.loaded = true;
}

void PlayWidgetSound(int resource) {
  if (g_observer) g_observer(resource);
  if (!Sounds().loaded) LoadWidgetSounds(GetModuleHandleA(nullptr));
  const void* wave = resource == kHoverSound   ? Sounds().hover
                     : resource == kClickSound ? Sounds().click
                                               : nullptr;
  if (!wave) return;
  PlaySoundA(static_cast<LPCSTR>(wave), nullptr, SND_MEMORY | SND_ASYNC | SND_NODEFAULT | SND_NOWAIT);
}

WidgetSoundObserver SetWidgetSoundObserver(WidgetSoundObserver observer) {
  WidgetSoundObserver previous = g_observer;
  g_observer = observer;
  return previous;
}

}  // namespace qv
