// The background music: one MCI device shared by the whole program. The video and information
// screens pause and resume it, the main window loops it, the music screen chooses the track and
// the shell closes it at exit. It plays the audio tracks of a compact disc; when no disc can be
// played it plays the game's own tracks, Music\1.wav ... beside the program, the same way.
#pragma once

#include <windows.h>

namespace qv {

// The window that receives MM_MCINOTIFY when a play ends (the main window).
void SetMusicOwner(HWND owner);

// The current track index, 0..4 (the track played is index + 1).
int CurrentTrack();
void SetCurrentTrack(int index);

// All of these do nothing while no device is open, except OpenAndPlay.
void PauseMusic();
void ResumeMusic();
void PlayCurrentTrack();
void CloseMusic();
// Closes the device, opens it again (the disc, or the game's own tracks when no disc can be
// played) and plays the current track. A failed open leaves no device open.
void OpenAndPlay();

// The owner's MM_MCINOTIFY: a play of the music device that ended successfully goes on with the
// next track of the span or loops it. True when the notification was the music's.
bool OnMusicNotify(WPARAM code, LPARAM device);

// What is open: 0 when nothing; the game's own track being played (1..4), 0 for a disc.
unsigned MusicDevice();
int OwnTrackPlaying();

}  // namespace qv
