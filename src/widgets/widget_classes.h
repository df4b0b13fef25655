// The widget library's window classes and the message box: registration and entry points.
#pragma once

#include <windows.h>

#include <cstdint>

#include "system/cbuffer.h"
#include "widgets/widget_messages.h"

namespace qv {

constexpr char kCommandClass[] = "CMWCOMMAND";
constexpr char kBoxCommandClass[] = "CMWBOXSCOMMAND";
constexpr char kCheckClass[] = "CMWCHECK";
constexpr char kAnimClass[] = "CMWANIM";
constexpr char kTextClass[] = "CMWTXT";
constexpr char kScrollClass[] = "CMWSROLL";
constexpr char kSlideClass[] = "CMWSLIDE";
constexpr char kMessageBoxClass[] = "CWNDMENSAJE";

// Registers the seven widget classes with the module as instance; false at the first failure.
bool RegisterWidgetClasses(HINSTANCE instance);

// The window procedures, one per class (the two push-button classes share one).
LRESULT CALLBACK CommandButtonProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT CALLBACK CheckButtonProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT CALLBACK AnimWidgetProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT CALLBACK TextWidgetProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT CALLBACK ScrollWidgetProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT CALLBACK SlideWidgetProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

// ---- The message and input box (CWNDMENSAJE) ------------------------------------------------

// Resource-file pictures of the box.
constexpr std::uint32_t kMessageBoxFace = 148;
constexpr std::uint32_t kMessageBoxOk = 146;
constexpr std::uint32_t kMessageBoxCancel = 147;
constexpr std::uint32_t kMessageBoxIcon = 149;
constexpr int kMessageBoxInputLimit = 23;

bool RegisterMessageBoxClass(HINSTANCE instance);
LRESULT CALLBACK MessageBoxProc(HWND box, UINT message, WPARAM wParam, LPARAM lParam);

// Opens the box centred on the screen with the string-table text stringBase + the current
// language, an OK
// button, a Cancel button when twoButtons, and a 23-character field when withInput. A non-null
// parent is disabled; enabling it again after the box closes is the caller's duty. Returns the
// box, or null when a box is already open or its face picture cannot be loaded (the parent is
// then left as it was).
HWND ShowMessageBox(UINT stringBase, HWND parent, bool twoButtons, bool withInput);

// Read after the box is destroyed: 1 for OK or Enter, 0 for Cancel or Escape; the typed text.
int MessageBoxResult();
const CBuffer& MessageBoxText();

// The message loop's rule for characters: a WM_CHAR whose target is a child window is first
// offered to that child's parent as UM_CHILDCHAR. True when the parent consumed it, and the
// message must then not be dispatched.
bool OfferChildChar(const MSG& message);

// Pumps messages, with the rule above, until the box is destroyed; returns its result. A
// WM_QUIT met on the way is posted again for the outer loop.
int RunMessageBox(HWND box);

// Draws text word-wrapped and justified into the area (x, y, width, areaHeight), in a font of
// that face, weight and height, with an optional shadow shadowOffset pixels right and down.
// False (with the lines that fitted drawn) on a word wider than the area, a line of more than
// 999 characters or text taller than the area; false with nothing drawn on bad arguments.
bool DrawWrappedText(HDC dc, const char* text, const char* face, int weight, int height,
                     COLORREF colour, bool shadow, COLORREF shadowColour, int shadowOffset, int x,
                     int y, int width, int areaHeight);

}  // namespace qv
