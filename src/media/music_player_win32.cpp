#include "media/music_player.h"

#include <mmsystem.h>

#include <string>

#include "core/app.h"
#include "media/music_track.h"

namespace qv {
namespace {

struct Player {
  MCIDEVICEID device = 0;
  int track = 0;      // current index 0..4
  int ownTrack = 0;   // the game's own track open on the device, 0 for a disc
  HWND owner = nullptr;
};
Player& State() {
  static Player player;
  return player;
}

DWORD_PTR Parameters(void* parameters) { return reinterpret_cast<DWORD_PTR>(parameters); }

MCIERROR Send(UINT command, DWORD flags, void* parameters) {
  return mciSendCommandA(State().device, command, flags, Parameters(parameters));
}

void StopAndClose() {
  Player& player = State();
  if (player.device == 0) return;
  Send(MCI_STOP, MCI_WAIT, nullptr);
  Send(MCI_CLOSE, MCI_WAIT, nullptr);
  player.device = 0;
  player.ownTrack = 0;
}

bool OpenDisc() {
  MCI_OPEN_PARMSA open{};
  open.lpstrDeviceType = reinterpret_cast<LPCSTR>(static_cast<DWORD_PTR>(MCI_DEVTYPE_CD_AUDIO));
  if (mciSendCommandA(0, MCI_OPEN, MCI_OPEN_TYPE | MCI_OPEN_TYPE_ID | MCI_WAIT, Parameters(&open)) != 0) {
    return false;
  }
  State().device = open.wDeviceID;
  MCI_SET_PARMS set{};
  set.dwTimeFormat = MCI_FORMAT_TMSF;
  Send(MCI_SET, MCI_SET_TIME_FORMAT | MCI_WAIT, &set);
  return true;
}

// Opens one of the game's own tracks on the waveaudio device, replacing what is open.
bool OpenOwnTrack(int track) {
  StopAndClose();
  const std::string path = ProgramFolder() + "Music\\" + std::to_string(track) + ".wav";
  MCI_OPEN_PARMSA open{};
  open.lpstrDeviceType = "waveaudio";
  open.lpstrElementName = path.c_str();
  if (mciSendCommandA(0, MCI_OPEN, MCI_OPEN_TYPE | MCI_OPEN_ELEMENT | MCI_WAIT, Parameters(&open)) != 0) {
    return false;
  }
  State().device = open.wDeviceID;
  State().ownTrack = track;
  return true;
}

void PlayOwnTrackFromStart() {
  MCI_PLAY_PARMS play{};
  play.dwCallback = reinterpret_cast<DWORD_PTR>(State().owner);
  play.dwFrom = 0;
  Send(MCI_PLAY, MCI_NOTIFY | MCI_FROM, &play);
}

}  // namespace

void SetMusicOwner(HWND owner) { State().owner = owner; }
int CurrentTrack() { return State().track; }
void SetCurrentTrack(int index) { State().track = index < 0 || index > 4 ? 0 : index; }
unsigned MusicDevice() { return State().device; }
int OwnTrackPlaying() { return State().ownTrack; }

void PauseMusic() {
  if (State().device == 0) return;
  Send(MCI_PAUSE, MCI_WAIT, nullptr);
}

void ResumeMusic() {
  Player& player = State();
  if (player.device == 0) return;
  MCI_PLAY_PARMS play{};
  play.dwCallback = reinterpret_cast<DWORD_PTR>(player.owner);
  DWORD flags = MCI_NOTIFY;
  const TrackSpan span = TrackSpanOf(player.track);
  // The game's own tracks are one file each: the open file ends the play by itself.
  if (player.ownTrack == 0 && span.to != 0) {
    flags |= MCI_TO;
    play.dwTo = MCI_MAKE_TMSF(span.to, 0, 0, 0);
  }
  Send(MCI_PLAY, flags, &play);
}

void PlayCurrentTrack() {
  Player& player = State();
  if (player.device == 0) return;
  const TrackSpan span = TrackSpanOf(player.track);
  if (player.ownTrack != 0) {
    const int first = FirstOwnTrack(span);
    if (player.ownTrack != first) {
      if (!OpenOwnTrack(first)) return;
    } else {
      Send(MCI_STOP, MCI_WAIT, nullptr);
    }
    PlayOwnTrackFromStart();
    return;
  }
  Send(MCI_STOP, MCI_WAIT, nullptr);
  MCI_PLAY_PARMS play{};
  play.dwCallback = reinterpret_cast<DWORD_PTR>(player.owner);
  play.dwFrom = MCI_MAKE_TMSF(span.from, 0, 0, 0);
  DWORD flags = MCI_NOTIFY | MCI_FROM;
  if (span.to != 0) {
    flags |= MCI_TO;
    play.dwTo = MCI_MAKE_TMSF(span.to, 0, 0, 0);
  }
  Send(MCI_PLAY, flags, &play);
}

void CloseMusic() { StopAndClose(); }

void OpenAndPlay() {
  CloseMusic();
  if (OpenDisc()) {
    PlayCurrentTrack();
    return;
  }
  // No disc to play (almost no computer has one today): the game's own tracks instead.
  if (OpenOwnTrack(FirstOwnTrack(TrackSpanOf(State().track)))) PlayOwnTrackFromStart();
}

bool OnMusicNotify(WPARAM code, LPARAM device) {
  Player& player = State();
  if (player.device == 0 || static_cast<MCIDEVICEID>(device) != player.device) return false;
  if (code != MCI_NOTIFY_SUCCESSFUL) return true;
  if (player.ownTrack != 0) {
    const int next = NextOwnTrack(TrackSpanOf(player.track), player.ownTrack);
    if (next != 0) {
      if (OpenOwnTrack(next)) PlayOwnTrackFromStart();
      return true;
    }
  }
  PlayCurrentTrack();
  return true;
}

}  // namespace qv
