// The end-to-end planner: plays the same game as the real program, in the portable engine, and
// writes the mouse steps a player would take together with the board the screen must show after
// each of them. `compare` checks a screenshot's crop against one of those boards.
//
//   quorvex-e2e-planner plan RF PICTURE SCREEN_W SCREEN_H SEED OUT_DIR
//   quorvex-e2e-planner compare EXPECTED.ppm SHOT.ppm TOLERANCE
//   quorvex-e2e-planner places RF SCREEN_W SCREEN_H
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include "e2e/scenario.h"
#include "e2e/ppm.h"

namespace {

int Usage() {
  std::fprintf(stderr,
               "usage: quorvex-e2e-planner plan RF PICTURE SCREEN_W SCREEN_H SEED OUT_DIR\n"
               "       quorvex-e2e-planner compare EXPECTED.ppm SHOT.ppm TOLERANCE\n"
               "       quorvex-e2e-planner places RF SCREEN_W SCREEN_H\n");
  return 2;
}

int Compare(const char* expectedPath, const char* shotPath, int tolerance) {
  qv::e2e::Rgb24 expected;
  qv::e2e::Rgb24 shot;
  if (!qv::e2e::ReadPpm(expectedPath, expected) || !qv::e2e::ReadPpm(shotPath, shot)) {
    std::fprintf(stderr, "cannot read %s or %s\n", expectedPath, shotPath);
    return 1;
  }
  const qv::e2e::Difference d = qv::e2e::CompareImages(expected, shot, tolerance);
  std::printf("%s: %ld of %ld pixels differ by more than %d (largest %d)\n", shotPath,
              d.differing, d.compared, tolerance, d.largest);
  if (d.compared == 0) return 1;
  // A few pixels may differ where a window edge or the pointer lies over the board.
  return d.differing * 1000 <= d.compared ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) return Usage();
  const std::string command = argv[1];
  if (command == "compare" && argc == 5) return Compare(argv[2], argv[3], std::atoi(argv[4]));
  if (command == "places" && argc == 5) {
    qv::e2e::ScenarioSetup setup;
    setup.resourceFile = argv[2];
    setup.screenWidth = std::atoi(argv[3]);
    setup.screenHeight = std::atoi(argv[4]);
    return qv::e2e::PrintPlaces(setup) ? 0 : 1;
  }
  if (command == "plan" && argc == 8) {
    qv::e2e::ScenarioSetup setup;
    setup.resourceFile = argv[2];
    setup.picture = argv[3];
    setup.screenWidth = std::atoi(argv[4]);
    setup.screenHeight = std::atoi(argv[5]);
    setup.seed = std::strtoull(argv[6], nullptr, 10);
    setup.outDir = argv[7];
    return qv::e2e::PlanScenario(setup) ? 0 : 1;
  }
  return Usage();
}
