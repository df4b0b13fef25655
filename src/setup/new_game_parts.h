// The window classes inside the new-game screen: the picture tiles and the two picker windows.
#pragma once

#include <windows.h>

#include <string>

#include "graphics/dib_layout.h"
#include "widgets/widget_window.h"

namespace qv {

constexpr char kNewGameClass[] = "CWNDNEW";
constexpr char kPictureTileClass[] = "CWNDPREVFS";
constexpr char kSizePickerClass[] = "CWNDIMAGETAM";
constexpr char kCountPickerClass[] = "CWNDIMAGECANT";

// Messages of these windows, below the widgets' range. The screen's composed background (a
// 24-bit HIMAGE, borrowed) is what each of them shows around its drawing.
constexpr UINT NGM_SETBACKDROP = WM_USER + 200;
// Tile: wParam the picture's index in the list, lParam its path (copied; null empties the
// tile). The thumbnail is read at once; an unreadable file leaves the tile unavailable.
constexpr UINT NGM_SETPICTURE = WM_USER + 201;
// Tile: lParam non-zero to show the selection.
constexpr UINT NGM_SETSELECTED = WM_USER + 202;
// Tile: the picture index it shows (-1 when empty).
constexpr UINT NGM_GETPICTURE = WM_USER + 203;
// Tile: 1 when its file gave a thumbnail; 0 after NGM_SETUNAVAILABLE or an unreadable file.
constexpr UINT NGM_GETAVAILABLE = WM_USER + 204;
constexpr UINT NGM_SETUNAVAILABLE = WM_USER + 205;
// Tile: 1 when it shows the selection.
constexpr UINT NGM_GETSELECTED = WM_USER + 206;
// Tile: becomes the tile that brings in a photograph of the player's own, with lParam its
// caption (copied). NGM_GETPICTURE then answers kOwnPictureTile; NGM_SETPICTURE undoes it.
constexpr UINT NGM_SETOWNPICTURE = WM_USER + 207;
constexpr int kOwnPictureTile = -2;

// A tile reports a click to its parent with MWM_NOTIFY, code MWN_CLICKED, like the widgets.

bool RegisterPictureTileClass(HINSTANCE instance);
bool RegisterSizePickerClass(HINSTANCE instance);
bool RegisterCountPickerClass(HINSTANCE instance);

// The own-photo tile's click: asks for a photograph with the system's Open dialog owned by the
// screen and makes it a picture of Image\. Its file name there, or "" when the player cancelled
// or it could not be made (the game's message box has then said why).
std::string ChooseOwnPhoto(HWND screen);

// Draws the puzzle's picture (8- or 24-bit) scaled into a rectangle of a context.
void DrawPictureScaled(HDC dc, HIMAGE picture, int x, int y, int width, int height);

// The part of the backdrop under a child window, copied to (0, 0) of a context.
void DrawBackdropUnder(HDC dc, HWND child, HIMAGE backdrop, int width, int height);

// Paints a picker window whole through a memory surface of its client size, so that it never
// flickers. compose(dc, width, height) draws into the surface; false leaves the window as it was.
template <class Compose>
void PaintThroughSurface(HWND window, HDC printDc, Compose&& compose) {
  widget::PaintWindow(window, printDc, [&](HDC dc, const RECT&) {
    RECT client;
    GetClientRect(window, &client);
    widget::MemorySurface surface(dc, client.right, client.bottom);
    if (!surface.ok() || !compose(surface.dc(), client.right, client.bottom)) return;
    BitBlt(dc, 0, 0, client.right, client.bottom, surface.dc(), 0, 0, SRCCOPY);
  });
}

}  // namespace qv
