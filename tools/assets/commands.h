// The asset tool's commands, each a whole job from its inputs to its files on disk.
#pragma once

#include <string>

namespace qv::assets {

// Quorvex.rf with the dies and textures, plus the <identifier>.bmp pictures of a staging
// folder when one is named.
bool CommandResourceFile(const std::string& outPath, const std::string& stagedFolder,
                         std::string& error);

// Image/1.bmp ... Image/15.bmp from gcompris-qt-data's bundles, and CREDITS.txt for them and
// for the music.
bool CommandPictures(const std::string& rccFolder, const std::string& outFolder, std::string& error);

// hover.wav, click.wav, join.wav, drop.cur and quorvex.ico for the module's resources.
bool CommandModuleResources(const std::string& outFolder, std::string& error);

// Video/0.avi, 1.avi and 2.avi. With a preview folder, also a PNG contact print of every clip
// (a frame in each half second, after the colour reduction) to look at.
bool CommandVideo(const std::string& outFolder, const std::string& previewFolder, std::string& error);

// Music/1.wav ... 4.wav: the four pieces rendered with fluidsynth and the SoundFont named.
bool CommandMusic(const std::string& outFolder, const std::string& soundFont, std::string& error);

// PNG contact prints of the dies, textures and (when the bundles are there) pictures.
bool CommandPreviews(const std::string& outFolder, const std::string& rccFolder, std::string& error);

}  // namespace qv::assets
