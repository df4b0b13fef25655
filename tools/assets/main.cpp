// qv_assets: makes the game's data at build time. One command per job; see Usage().
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "assets/catalogue.h"
#include "assets/commands.h"
#include "assets/music_render.h"

namespace {

void Usage() {
  std::fprintf(stderr,
               "usage:\n"
               "  qv_assets rf OUT.rf [STAGED_FOLDER]   dies, textures (and staged pictures) packed\n"
               "  qv_assets pictures RCC_FOLDER OUT_FOLDER   Image\\1.bmp ... 15.bmp and CREDITS.txt\n"
               "  qv_assets data RCC_FOLDER OUT_FOLDER      both of the above into one folder\n"
               "  qv_assets module OUT_FOLDER            sounds, cursor and icon for the .rc\n"
               "  qv_assets video OUT_FOLDER [PREVIEW_FOLDER]   Video\\0.avi, 1.avi, 2.avi (and PNG prints)\n"
               "  qv_assets music OUT_FOLDER [SOUNDFONT]   Music\\1.wav ... 4.wav, rendered with fluidsynth\n"
               "  qv_assets previews OUT_FOLDER [RCC_FOLDER]  PNG contact prints to look at\n");
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<std::string> args(argv + 1, argv + argc);
  if (args.empty()) {
    Usage();
    return 2;
  }
  const std::string command = args[0];
  std::string error;
  bool ok = false;
  if (command == "rf" && (args.size() == 2 || args.size() == 3)) {
    ok = qv::assets::CommandResourceFile(args[1], args.size() == 3 ? args[2] : "", error);
  } else if (command == "pictures" && args.size() == 3) {
    ok = qv::assets::CommandPictures(args[1], args[2], error);
  } else if (command == "data" && args.size() == 3) {
    ok = qv::assets::CommandResourceFile(args[2] + "/Quorvex.rf", "", error) &&
         qv::assets::CommandPictures(args[1], args[2], error);
  } else if (command == "module" && args.size() == 2) {
    ok = qv::assets::CommandModuleResources(args[1], error);
  } else if (command == "video" && (args.size() == 2 || args.size() == 3)) {
    ok = qv::assets::CommandVideo(args[1], args.size() == 3 ? args[2] : "", error);
  } else if (command == "music" && (args.size() == 2 || args.size() == 3)) {
    ok = qv::assets::CommandMusic(args[1], args.size() == 3 ? args[2] : qv::assets::kDefaultSoundFont, error);
  } else if (command == "previews" && (args.size() == 2 || args.size() == 3)) {
    ok = qv::assets::CommandPreviews(args[1], args.size() == 3 ? args[2] : "", error);
  } else {
    Usage();
    return 2;
  }
  if (!ok) {
    std::fprintf(stderr, "qv_assets %s: %s\n", command.c_str(), error.c_str());
    return 1;
  }
  return 0;
}
