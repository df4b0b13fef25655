// The puzzle's window classes: board and box areas, box frames, table texture, previews.
#pragma once

#include <windows.h>

#include "puzzle/puzzle_model.h"

namespace qv {

// Registers CWNDPUZZLE, CWNDPREVLUPA, CWNDBOX, CWNDIMGPREV and CWNDMOSAIC with the module.
bool RegisterPuzzleWindowClasses(HINSTANCE instance);

// The engine hooks the puzzle windows answer themselves (area notifications, repaints, the
// clock timer, the join sound, the preview, hiding boxes, the cursor). The shell adds the clock
// display and the end of the game before it installs them with SetEngineHooks.
EngineHooks PuzzleWindowHooks();

// The board's place under the title bar: (49, 78), the engine's board size.
constexpr int kBoardLeft = 49;
constexpr int kBoardTop = 78;
constexpr int kBoardControlId = 106;

// Creates the board window (destroying a previous one) as a child of `parent`; its first size
// message performs the cut that ShowPuzzle left pending, if any.
HWND CreateBoardWindow(HWND parent);
HWND BoardWindow();

// Creates the six hidden box frames (60 + 10 i, 78 + 10 i) and stores them with SetBoxWindow;
// each box's area takes BoxButton(i) as the window that stands for it.
bool CreateBoxWindows(HWND mainWindow);

// After a change of language: every box still named with oldLanguage's default name takes the
// current language's one; a box the player renamed keeps its name.
void RelabelDefaultBoxNames(int oldLanguage);

// The picture preview: created hidden once; rebuilt from the puzzle's picture by
// ActualizarPreview; shown by ShowPreview.
HWND CreatePreviewWindow(HWND owner);
void ActualizarPreview();
void ShowPreview();

// The full-screen viewer of a picture file; false (parent left enabled) when it cannot be read.
bool OpenPictureViewer(HWND parent, const char* path);

// The table texture: index 0..9, image 6000 + index handed to MosaicoPuzzle.
bool SetTableTextureIndex(int index);
int TableTextureIndex();
// The table-texture screen.
HWND OpenMosaicScreen(HWND parent);

}  // namespace qv
