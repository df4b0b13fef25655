// The asset tool's commands, each a whole job from its inputs to its files on disk.
#include "assets/commands.h"

#include <algorithm>
#include <vector>

#include "assets/avi_file.h"
#include "assets/bmp_file.h"
#include "assets/catalogue.h"
#include "assets/die_mask.h"
#include "assets/file_io.h"
#include "assets/music_pieces.h"
#include "assets/music_render.h"
#include "assets/picture_set.h"
#include "assets/previews.h"
#include "assets/rf_pack.h"
#include "assets/sounds.h"
#include "assets/textures.h"
#include "assets/ui_previews.h"
#include "assets/video_clips.h"
#include "assets/win_icons.h"

namespace qv::assets {

bool CommandResourceFile(const std::string& outPath, const std::string& stagedFolder,
                         std::string& error) {
  std::vector<RfPicture> pictures = DrawnPictures();
  for (const RfPicture& p : pictures) {
    if (p.image.pixels.empty()) {
      error = "picture " + std::to_string(p.identifier) + " could not be drawn";
      return false;
    }
  }
  if (!stagedFolder.empty() && !AddStagedPictures(stagedFolder, pictures, error)) return false;
  std::vector<std::uint8_t> bytes;
  return PackResourceFile(pictures, bytes, error) && WriteFileReplacing(outPath, bytes, error);
}

bool CommandPictures(const std::string& rccFolder, const std::string& outFolder, std::string& error) {
  std::vector<Image8> pictures;
  std::vector<PictureCredit> credits;
  for (const PictureChoice& choice : PictureChoices()) {
    Image8 picture;
    PictureCredit credit;
    if (!MakePicture(rccFolder, choice, picture, credit, error)) return false;
    pictures.push_back(std::move(picture));
    credits.push_back(credit);
  }
  // Every picture is made before the first is written, so a missing photograph leaves the
  // folder as it was.
  for (std::size_t i = 0; i < pictures.size(); ++i) {
    const std::string path = outFolder + "/Image/" + std::to_string(PictureChoices()[i].number) + ".bmp";
    if (!WriteFileReplacing(path, EncodeBmp8(pictures[i]), error)) return false;
  }
  // The music's credits are fixed text, so CREDITS.txt is written here once, whole, and the
  // music command need not touch it.
  return WriteFileReplacing(outFolder + "/CREDITS.txt",
                            CreditsText(PictureChoices(), credits, pictures) + MusicCreditsText(), error);
}

bool CommandModuleResources(const std::string& outFolder, std::string& error) {
  return WriteFileReplacing(outFolder + "/hover.wav", EncodeWave(HoverSound()), error) &&
         WriteFileReplacing(outFolder + "/click.wav", EncodeWave(ClickSound()), error) &&
         WriteFileReplacing(outFolder + "/join.wav", EncodeWave(JoinSound()), error) &&
         WriteFileReplacing(outFolder + "/drop.cur", MakeDropCursorFile(), error) &&
         WriteFileReplacing(outFolder + "/quorvex.ico", MakeIconFile(), error);
}

bool CommandVideo(const std::string& outFolder, const std::string& previewFolder, std::string& error) {
  // All three are made before the first is written, as with the pictures.
  std::vector<AviClip> clips(kVideoClipCount);
  std::vector<std::vector<std::uint8_t>> files(kVideoClipCount);
  for (int k = 0; k < kVideoClipCount; ++k) {
    if (!MakeVideoClip(k, clips[k], error) || !EncodeAvi(clips[k], files[k], error)) {
      error = "clip " + std::to_string(k) + ": " + error;
      return false;
    }
  }
  for (int k = 0; k < kVideoClipCount; ++k) {
    if (!WriteFileReplacing(outFolder + "/Video/" + std::to_string(k) + ".avi", files[k], error)) return false;
  }
  if (previewFolder.empty()) return true;
  for (int k = 0; k < kVideoClipCount; ++k) {
    const AviClip& clip = clips[k];
    std::vector<RgbImage> shown;
    const int step = std::max(1, clip.framesPerSecond / 2);
    for (std::size_t i = 0; i < clip.frames.size(); i += step) {
      Image8 frame(clip.width, clip.height);
      frame.palette = clip.palette;
      frame.pixels = clip.frames[i];
      shown.push_back(Expand(frame));
    }
    if (!WritePng(ContactSheet(shown, 4, 4), previewFolder + "/clip-" + std::to_string(k) + ".png", error)) {
      return false;
    }
  }
  return true;
}

bool CommandMusic(const std::string& outFolder, const std::string& soundFont, std::string& error) {
  // All four are rendered before the first is written, as with the pictures.
  std::vector<std::vector<std::uint8_t>> files;
  for (int n = 1; n <= kMusicPieceCount; ++n) {
    MusicPiece piece;
    std::vector<double> samples;
    if (!MakeMusicPiece(n, piece, error) || !RenderPiece(piece, soundFont, samples, error)) return false;
    files.push_back(EncodeWave(samples));
  }
  for (int n = 1; n <= kMusicPieceCount; ++n) {
    if (!WriteFileReplacing(outFolder + "/Music/" + std::to_string(n) + ".wav", files[n - 1], error)) return false;
  }
  return true;
}

namespace {

bool CommandDiePreviews(const std::string& outFolder, std::string& error) {
  std::vector<RgbImage> labels, pieces;
  for (const DieChoice& choice : DieChoices()) {
    const Image8 die = MakeDieMask(choice.style, kDieRows, kDieCols, choice.seed, choice.directions);
    labels.push_back(Expand(die));
    pieces.push_back(PiecesView(die, kDieRows, kDieCols, 2));
  }
  return WritePng(ContactSheet(labels, 3, 8), outFolder + "/dies-labels.png", error) &&
         WritePng(ContactSheet(pieces, 3, 8), outFolder + "/dies-pieces.png", error);
}

bool CommandTexturePreviews(const std::string& outFolder, std::string& error) {
  std::vector<RgbImage> tiles;
  for (int i = 0; i < kTextureCount; ++i) tiles.push_back(Tiled(Expand(MakeTexture(i)), 3));
  return WritePng(ContactSheet(tiles, 5, 8), outFolder + "/textures-3x3.png", error);
}

bool CommandPicturePreviews(const std::string& outFolder, const std::string& rccFolder,
                            std::string& error) {
  std::vector<RgbImage> small;
  for (const PictureChoice& choice : PictureChoices()) {
    Image8 picture;
    PictureCredit credit;
    if (!MakePicture(rccFolder, choice, picture, credit, error)) return false;
    const RgbImage shown = Expand(picture);
    if (choice.number == 1 || choice.number == 3) {
      // Two at full size, to judge the 256-colour reduction up close.
      if (!WritePng(shown, outFolder + "/picture-" + std::to_string(choice.number) + ".png", error)) return false;
    }
    small.push_back(Reduced(shown, 2));
  }
  return WritePng(ContactSheet(small, 5, 6), outFolder + "/pictures.png", error);
}

}  // namespace

bool CommandPreviews(const std::string& outFolder, const std::string& rccFolder, std::string& error) {
  if (!CommandDiePreviews(outFolder, error) || !CommandTexturePreviews(outFolder, error) ||
      !WriteUiContactSheets(outFolder, error)) {
    return false;
  }
  return rccFolder.empty() || CommandPicturePreviews(outFolder, rccFolder, error);
}

}  // namespace qv::assets
