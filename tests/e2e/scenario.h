// The scenario the end-to-end test plays, computed in the portable engine.
#pragma once

#include <cstdint>
#include <string>

namespace qv::e2e {

struct ScenarioSetup {
  std::string resourceFile;
  std::string picture;  // the picture every tile of the test's Image folder holds
  int screenWidth = 0;
  int screenHeight = 0;
  std::uint64_t seed = 0;
  std::string outDir;  // steps.txt and the expected boards go here
};

// Writes OUT_DIR/steps.txt and one NAME.ppm per screenshot check. False, with a message on
// standard error, when the engine cannot set the game up or the scenario cannot be played.
bool PlanScenario(const ScenarioSetup& setup);

// Prints, one "name x y" a line, where a player clicks to start a new game (the title bar's
// new-game button, the new-game screen's tiles, its page-on arrow and confirm button), and the
// board as "board x y width height". Only the resource file and the screen size are used.
bool PrintPlaces(const ScenarioSetup& setup);

}  // namespace qv::e2e
