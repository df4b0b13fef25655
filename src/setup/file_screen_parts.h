// The window classes of the file screen and the messages between the screen and its tiles.
#pragma once

#include <windows.h>

namespace qv {

constexpr char kFileScreenClass[] = "CWNDFILE";
constexpr char kFileTileClass[] = "CWNDPREVFILE";

// Control identifiers of the screen's children besides the tiles (300..303).
constexpr int kFileActionId = IDOK;
constexpr int kFileCloseId = IDCANCEL;
constexpr int kFileHelpId = 310;
constexpr int kFileEraseId = 311;
constexpr int kFileScrollId = 312;
constexpr int kFileNameId = 313;

// Tile messages, below the widgets' range.
// lParam: the saved game's path (copied; null empties the tile), wParam: its caption. The
// preview is read at once; a file whose preview cannot be read shows an empty frame.
constexpr UINT FSM_SETFILE = WM_USER + 220;
// lParam non-zero to show the selection.
constexpr UINT FSM_SETSELECTED = WM_USER + 221;
// lParam: the caption font (borrowed).
constexpr UINT FSM_SETFONT = WM_USER + 222;
// 1 when the tile shows a file; 2 when it also shows its preview.
constexpr UINT FSM_GETSTATE = WM_USER + 223;
// 1 when it shows the selection.
constexpr UINT FSM_GETSELECTED = WM_USER + 224;
// lParam: the screen's background (a HIMAGE, borrowed) that the tile shows around its drawing.
constexpr UINT FSM_SETBACKDROP = WM_USER + 225;

// A tile pressed and released inside itself tells its parent with MWM_NOTIFY, MWN_CLICKED.

bool RegisterFileTileClass(HINSTANCE instance);

}  // namespace qv
