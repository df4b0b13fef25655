// Identifiers of the game module's own resources, shared by quorvex.rc and the code.
#pragma once

// Interface sounds (WAVE resources).
#define IDW_HOVER 242
#define IDW_CLICK 243
#define IDW_JOIN 244

// The message dialog and its text.
#define IDD_MESSAGE 564
#define IDC_MESSAGE_TEXT 1000

// The piece boxes' "Change Name" menus: 100 + language index; their one command shares the
// rename button's control identifier.
#define IDM_BOX_MENU 100
#define IDM_CHANGE_NAME 11

// The cursor shown while a dragged piece is over a box, and the application icon.
#define IDCUR_DROP_INTO_BOX 301
#define IDI_QUORVEX 1

// String bases (add the language index 0..5): see strings_*.rc.
// Refusals and messages of the game's own (the start-up ones are always shown in English).
#define IDS_NO_RESOURCE_FILE 220
#define IDS_TOO_FEW_PICTURES 230
#define IDS_UNREADABLE_PICTURE 240
#define IDS_NO_HELP_PROGRAM 250
#define IDS_BOX_WORD 260  // the word of a box's default name ("Box" + number + blank)
#define IDS_REFUSED_FILE_NAME 290  // a saved game's name that Windows refuses as a file name
#define IDS_PRINTING 210  // the print wait window's line
#define IDS_INFO_PRESENTATION 300  // the information screen's video buttons
#define IDS_INFO_HOW_TO_PLAY 310
#define IDS_INFO_NO_PICTURE 320  // shown when no picture is being played
// A player's own photograph: the new-game tile's caption, the description it gets, and why one
// could not be made into a picture (400 + 10 x PhotoImportError + language).
#define IDS_OWN_PICTURE_TILE 330
#define IDS_OWN_PICTURE_DESCRIPTION 340
#define IDS_OWN_PICTURE_FILTER 350        // the Open dialog's name for its list of formats
#define IDS_OWN_PICTURE_DIALOG_TITLE 360  // and its title
#define IDS_PHOTO_IMPORT_ERROR 400
#define IDS_PRODUCT 1000  // 1000 + 10 * product + language, products 0..2
#define IDS_PRODUCT_COUNT 3
#define IDS_PICTURE_NAME 5000         // 5001..5015, English only
#define IDS_PICTURE_DESCRIPTION 6000  // 6001..6015, English only
