// The interface's backgrounds, frames, tiles and banners (pictures that carry no words).
#pragma once

#include "assets/ui_style.h"

namespace qv::assets {

// Seamless tiles that the screens repeat.
RgbImage TitleBarTile();
RgbImage ToolStripTile();
RgbImage ToolPanelTile();
RgbImage OptionStripTile();
RgbImage OptionPanelTile();
RgbImage HonourTile();

// Screen faces.
RgbImage SmallScreenBackground();  // the language and music screens
RgbImage MessageBoxFace();
RgbImage MessageBoxIcon();
RgbImage TextureScreenBackground();
RgbImage NewGameBackground();
RgbImage VideoFrame();
RgbImage InfoBackground();
RgbImage InfoPictureFrame();
RgbImage PrintWaitBackground();
RgbImage PrintProgressCells();
RgbImage PrinterEmblem();

// The piece box's frame: title strip, one side and the bottom.
RgbImage BoxTitleStrip();
RgbImage BoxSide();
RgbImage BoxBottom();

// The ten table textures as small framed previews side by side.
RgbImage TexturePreviews();

// Top and bottom banners of the printed page.
RgbImage PrintBanner(bool top);

// The file screens: wood, a title band, the name field and the tile well. The title word is
// drawn over it by the word pictures.
// The file screen; the save screen has a recess around its 212 x 24 name field at (10, 61).
RgbImage FileScreenBase(bool nameField);

}  // namespace qv::assets
