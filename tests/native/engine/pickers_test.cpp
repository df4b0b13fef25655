// Tests of the size and piece-count pickers: fit and minimum scale, percentages, grid ranges.
#include "setup/pickers.h"

#include <gtest/gtest.h>

#include "support/assert_recorder.h"

namespace qv {
namespace {

constexpr const char* kBadPosition =
    "el valor del parametro NewValue no puede ser mayor al valor de la funcion "
    "MenuNuevoScrollCantidadGetMax()";

PickerState Chosen(std::int32_t w, std::int32_t h, std::int32_t boardW, std::int32_t boardH) {
  PickerState state;
  PickerPictureChosen(state, w, h, boardW, boardH);
  return state;
}

TEST(PickerPictureChosen, FitsByWhicheverSideLimitsAndStartsAtTheFit) {
  struct Case { std::int32_t w, h, boardW, boardH; double fit; };
  const Case cases[] = {
      {1024, 768, 1000, 700, 670.0 / 768.0},  // 970 x 768 / 1024 = 727.5 > 670: height
      {500, 100, 800, 600, 770.0 / 500.0},    // 770 x 100 / 500 = 154 fits: width
      {640, 480, 670, 510, 1.0},              // exactly 480: "not more than" goes by width
      {640, 480, 670, 509, 479.0 / 480.0},    // one row short: height
  };
  for (const Case& c : cases) {
    const PickerState state = Chosen(c.w, c.h, c.boardW, c.boardH);
    EXPECT_DOUBLE_EQ(state.fitScale, c.fit) << c.w << "x" << c.h;
    EXPECT_EQ(state.scale, state.fitScale);
  }
  EXPECT_DOUBLE_EQ(Chosen(400, 300, 800, 600).minScale, 0.45);
  EXPECT_DOUBLE_EQ(Chosen(300, 400, 800, 600).minScale, 0.45);
  EXPECT_DOUBLE_EQ(Chosen(270, 270, 800, 600).minScale, 0.5);
}

TEST(PickerRanges, ExampleOf640x480AtScaleOne) {
  PickerState state = Chosen(640, 480, 670, 600);  // 670 - 30 = 640: scale 1
  ASSERT_DOUBLE_EQ(state.scale, 1.0);
  EXPECT_EQ(state.mostColumns, 14);
  EXPECT_EQ(state.mostRows, 10);
  EXPECT_EQ(state.fewestColumns, 4);
  EXPECT_EQ(state.fewestRows, 3);
  EXPECT_EQ(MenuNuevoScrollCantidadGetMax(state), 17);
  EXPECT_EQ(state.pieceSize, 45);
  EXPECT_EQ(PickerPieceCount(state), 140);  // reset to the finest grid
  EXPECT_EQ(GetCountPosition(state), 17);
  SetCountPosition(state, 0);
  EXPECT_EQ(state.columns, 4);
  EXPECT_EQ(state.rows, 3);
  EXPECT_EQ(GetCountPosition(state), 0);
  SetCountPosition(state, 17);
  EXPECT_EQ(PickerPieceCount(state), 140);
  // 300 x 200 at scale 1: fewest 300 / 150 = 2 and 200 / 150 = 1 both become 2.
  state = Chosen(300, 200, 330, 600);
  EXPECT_EQ(state.fewestColumns + state.fewestRows, 4);
}

TEST(PickerRanges, PictureTooSmallForAChoiceTripsTheCheckWithoutDividing) {
  test::AssertRecorder rec;
  // On a 90 x 90 board a square picture is at most 120 pixels, even at 100 per cent.
  PickerState state = Chosen(400, 400, 90, 90);
  SetSizePercentage(state, 100);
  EXPECT_EQ(rec.count(), 2u);
  EXPECT_EQ(state.countSteps, 0);
  EXPECT_EQ(state.columnStep, 0.0);
  rec.clear();
  SetCountPosition(state, 0);
  EXPECT_TRUE(rec.empty());
  EXPECT_EQ(PickerPieceCount(state), 4);
}

TEST(PickerSize, ZeroIsTheShorterSideAt135AndHundredTwiceTheFit) {
  PickerState state = Chosen(400, 300, 800, 600);
  const double fit = state.fitScale;
  SetSizePercentage(state, 0);
  EXPECT_DOUBLE_EQ(state.scale, 0.45);
  EXPECT_EQ(GetSizePercentage(state), 0);
  SetSizePercentage(state, 100);
  EXPECT_DOUBLE_EQ(state.scale, 2.0 * fit);
  EXPECT_EQ(GetSizePercentage(state), 100);
  EXPECT_EQ(state.columns, static_cast<std::int32_t>(400 * 2.0 * fit / 45));
}

TEST(PickerChecks, OutOfRangeValuesAreRefusedAndChangeNothing) {
  test::AssertRecorder rec;
  PickerState state = Chosen(640, 480, 670, 600);
  SetCountPosition(state, 5);
  const PickerState before = state;
  for (std::int32_t p : {-1, 101}) SetSizePercentage(state, p);
  EXPECT_EQ(rec.messages(),
            (std::vector<std::string>{"porcentaje invalido", "porcentaje invalido"}));
  rec.clear();
  for (std::int32_t v : {-1, 18}) SetCountPosition(state, v);
  EXPECT_EQ(rec.messages(), (std::vector<std::string>{kBadPosition, kBadPosition}));
  EXPECT_EQ(state.scale, before.scale);
  EXPECT_EQ(state.columns, before.columns);
  EXPECT_EQ(state.rows, before.rows);

  PickerState noRoom = Chosen(640, 480, 30, 600);  // a board no wider than its border
  rec.clear();
  GetSizePercentage(noRoom);
  EXPECT_EQ(rec.only(), "division por cero (en la proxima linea)");
}

TEST(PickerNoPicture, GettersAnswerOneAndSettersDoNothing) {
  test::AssertRecorder rec;
  int redraws = 0;
  PickerState state;
  state.hookContext = &redraws;
  state.onRangesChanged = [](void* context) { ++*static_cast<int*>(context); };
  PickerPictureChosen(state, 640, 480, 800, 600);
  SetSizePercentage(state, 40);
  SetCountPosition(state, 0);  // the grid alone changes no scale: the windows need no redraw
  EXPECT_EQ(redraws, 2);
  PickerPictureClosed(state);
  EXPECT_EQ(GetSizePercentage(state), 1);
  EXPECT_EQ(MenuNuevoScrollCantidadGetMax(state), 1);
  EXPECT_EQ(GetCountPosition(state), 1);
  SetSizePercentage(state, 500);
  SetCountPosition(state, 500);
  EXPECT_TRUE(rec.empty());
  EXPECT_EQ(state.columns, 0);
  EXPECT_EQ(MenuNuevoScrollCantidadGetMax(Chosen(0, 480, 800, 600)), 1);
}

}  // namespace
}  // namespace qv
