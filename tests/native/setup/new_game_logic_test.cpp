// Tests of the new-game screen's decisions: the roll, picture pages, texts, layout, composing.
#include "setup/new_game_logic.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "graphics/himage_ops.h"
#include "support/assert_recorder.h"

namespace qv::newgame {
namespace {

TEST(TabSwitchRoll, SlidesTheOldPanelUpFromFullHeightToNothingInStepsOfFour) {
  const std::vector<RollStep> steps = RollSteps();
  ASSERT_EQ(steps.size(), 58u);  // 228, 224, ..., 0
  EXPECT_EQ(steps.front().height, 228);
  EXPECT_EQ(steps.front().oldTop, 0);
  EXPECT_EQ(steps.back().height, 0);
  EXPECT_EQ(steps.back().oldTop, 228);
  for (std::size_t i = 1; i < steps.size(); ++i) {
    EXPECT_EQ(steps[i - 1].height - steps[i].height, 4);
    // What stays of the old panel always ends at its row 228: it slides, it is not squeezed.
    EXPECT_EQ(steps[i].height + steps[i].oldTop, 228);
  }
}

TEST(TabsAndShapes, ImagesFollowTabAndLanguageAndTheCyclerWrapsAfterThree) {
  EXPECT_EQ(TabImage(0, 1), 1001u);
  EXPECT_EQ(TabImage(3, 0), 1030u);
  EXPECT_EQ(HeadingImage(2, 5), 2025u);
  EXPECT_EQ(TabPosition(2).y, 157);
  int shape = 0;
  for (int i = 0; i < 3; ++i) shape = NextShape(shape);
  EXPECT_EQ(shape, 0);
  EXPECT_EQ(NextShape(1), 2);
}

TEST(TabsAndShapes, ShapePlacesOutsideTheTableOfSixAreRefused) {
  test::AssertRecorder asserts;
  EXPECT_EQ(ShapeOptionPosition(2).x, 482);
  EXPECT_EQ(ShapeOptionPosition(5).y, 134);
  EXPECT_TRUE(asserts.empty());
  const Point fallback = ShapeOptionPosition(6);
  EXPECT_EQ(asserts.only(), "ajustar este switch al valor de NUM_PIEZAS");
  EXPECT_EQ(fallback.x, 371);
  asserts.clear();
  ShapeOptionPosition(-1);
  EXPECT_EQ(asserts.count(), 1u);
}

TEST(PicturePages, PageByFivesAndTheLastPageEndsAtTheOwnPictureTile) {
  PicturePage page{17, 0};  // 17 pictures and the own-picture tile: 18 places
  EXPECT_FALSE(CanPageBack(page));
  EXPECT_TRUE(CanPageOn(page));
  EXPECT_EQ(OwnPictureTile(page), -1);
  page = NextPage(page);
  EXPECT_EQ(page.first, 5);
  page = NextPage(NextPage(page));
  EXPECT_EQ(page.first, 13);  // pictures 13..16 and the own tile: every tile shows something
  EXPECT_FALSE(CanPageOn(page));
  EXPECT_EQ(NextPage(page).first, 13);
  EXPECT_EQ(PictureOfTile(page, 3), 16);
  EXPECT_EQ(PictureOfTile(page, 4), -1);
  EXPECT_EQ(OwnPictureTile(page), 4);
  page = PreviousPage(page);
  EXPECT_EQ(page.first, 8);
  EXPECT_EQ(PreviousPage(PreviousPage(page)).first, 0);
}

TEST(PicturePages, FivePicturesPageOnceToReachTheOwnPictureTile) {
  const PicturePage page{5, 0};
  EXPECT_FALSE(CanPageBack(page));
  EXPECT_TRUE(CanPageOn(page));
  EXPECT_EQ(OwnPictureTile(page), -1);
  const PicturePage last = NextPage(page);
  EXPECT_EQ(last.first, 1);
  EXPECT_EQ(OwnPictureTile(last), 4);
  EXPECT_EQ(PictureOfTile(last, 0), 1);
  EXPECT_EQ(PictureOfTile(page, 5), -1);
  EXPECT_EQ(PictureOfTile(page, -1), -1);
  // Fewer pictures than tiles: the own tile follows them and the rest stay empty.
  EXPECT_EQ(OwnPictureTile(PicturePage{3, 0}), 3);
  EXPECT_EQ(PictureOfTile(PicturePage{3, 0}, 4), -1);
}

TEST(PicturePages, APictureAddedOutOfViewIsBroughtIntoViewWithTheFewestTurns) {
  // A new photograph sorts among the named pictures: wherever it lands, the page shows it.
  const PicturePage start{16, 0};
  for (int picture = 0; picture < 16; ++picture) {
    const PicturePage shown = PageShowing(start, picture);
    EXPECT_GE(PictureOfTile(shown, picture - shown.first), 0) << picture;
    EXPECT_EQ(PictureOfTile(shown, picture - shown.first), picture);
  }
  EXPECT_EQ(PageShowing(start, 3).first, 0);   // already in view: the page stays
  EXPECT_EQ(PageShowing(start, 7).first, 3);   // on: it becomes the last tile
  EXPECT_EQ(PageShowing(PicturePage{16, 10}, 4).first, 4);  // back: it becomes the first
  EXPECT_EQ(PageShowing(start, 15).first, 11);
}

TEST(PictureNames, NumberedPicturesSortByNumberBeforeTheOthers) {
  EXPECT_EQ(PictureNumber("7.bmp"), 7);
  EXPECT_EQ(PictureNumber("15.BMP"), 15);
  EXPECT_EQ(PictureNumber("x7.bmp"), 0);
  EXPECT_EQ(PictureNumber("123.bmp"), 0);
  EXPECT_EQ(PictureNumber(".bmp"), 0);
  EXPECT_EQ(PictureNumber("7.bmp.txt"), 0);
  std::vector<std::string> names{"10.bmp", "Zebra.bmp", "2.bmp", "apple.bmp", "1.bmp"};
  SortPictureNames(names);
  EXPECT_EQ(names, (std::vector<std::string>{"1.bmp", "2.bmp", "10.bmp", "apple.bmp",
                                             "Zebra.bmp"}));
}

TEST(Layout, TilesAndArrowsStayOnTheParchmentUnderTheHeadingWithoutOverlapping) {
  const Rect back = PageArrowRect(false);
  const Rect on = PageArrowRect(true);
  EXPECT_GE(back.x, 108);
  EXPECT_LE(on.x + on.width, 603);
  int right = back.x + back.width;
  for (int tile = 0; tile < kTileCount; ++tile) {
    const Rect r = TileRect(tile);
    EXPECT_GT(r.x, right) << tile;
    EXPECT_GE(r.y, kHeadingY + kHeadingHeight) << tile;
    EXPECT_LT(r.y + r.height, kNameY) << tile;
    right = r.x + r.width;
  }
  EXPECT_LT(right, on.x);
  // The pickers stand left of the slider and below the heading.
  EXPECT_LT(kPickerRect.x + kPickerRect.width, kSliderPosition.x);
  EXPECT_GE(kPickerRect.y, kHeadingY + kHeadingHeight);
  EXPECT_LE(kPickerRect.y + kPickerRect.height, kPanelHeight);
}

TEST(FitWithin, KeepsProportionsAndNeverGivesAnEmptySize) {
  EXPECT_EQ(FitWithin(1024, 768, 72, 72).width, 72);
  EXPECT_EQ(FitWithin(1024, 768, 72, 72).height, 54);
  EXPECT_EQ(FitWithin(300, 1200, 72, 72).width, 18);
  EXPECT_EQ(FitWithin(5000, 1, 72, 72).height, 1);
  EXPECT_EQ(FitWithin(0, 10, 72, 72).width, 1);
  EXPECT_EQ(FitWithin(2000000000, 2000000000, 72, 50).height, 50);
}

TEST(CountTexts, ShowRowsColumnsAndTheirProductOrDashesWithoutAPicture) {
  EXPECT_EQ(CountValueTexts(PickerState{}).pieces, "-");
  PickerState state;
  PickerPictureChosen(state, 640, 480, 670, 510);  // scale 1: 14 x 10
  const CountTexts texts = CountValueTexts(state);
  EXPECT_EQ(texts.rows, "10");
  EXPECT_EQ(texts.columns, "14");
  EXPECT_EQ(texts.pieces, "140");
  SetCountPosition(state, 0);
  EXPECT_EQ(CountValueTexts(state).pieces, "12");
  EXPECT_EQ(StepPercentage(98, 5), 100);
  EXPECT_EQ(StepPercentage(3, -5), 0);
  EXPECT_EQ(CountLabelPosition(1).y, 120);
}

TEST(PickerPreviews, TheFittingPictureFillsTheTableAcrossAndDoublingOverflowsIt) {
  // A board of 670 x 510 and a 640 x 480 picture at its fit scale of 1: as wide as the board
  // less the 30-pixel margin.
  const SizePreview fit = SizePreviewLayout(230, 146, 670, 510, 640, 480, 1.0);
  EXPECT_NEAR(fit.picture.width, fit.board.width * 640 / 670, 1);
  EXPECT_EQ(fit.picture.x + fit.picture.width / 2, fit.board.x + fit.board.width / 2);
  const SizePreview twice = SizePreviewLayout(230, 146, 670, 510, 640, 480, 2.0);
  EXPECT_GT(twice.picture.width, twice.board.width);
  const SizePreview none = SizePreviewLayout(230, 146, 670, 510, 0, 0, 0.0);
  EXPECT_EQ(none.picture.width, 0);
  const Rect count = CountPreviewLayout(230, 168, 1024, 576);
  EXPECT_EQ(count.width, 222);
  EXPECT_EQ(GridLine(1, 4, 222), 55);
  EXPECT_EQ(GridLine(3, 0, 222), 0);
}

PackedDib Indexed(int width, int height) {
  PackedDib dib;
  dib.Allocate(width, height);
  DibHeader(dib.get())->biClrUsed = 256;
  for (int i = 0; i < 256; ++i) {
    DibColours(dib.get())[i] = RgbQuad{static_cast<std::uint8_t>(i), 0,
                                       static_cast<std::uint8_t>(255 - i), 0};
  }
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) *ImagePixel(dib.get(), x, y) = static_cast<std::uint8_t>(x + 10 * y);
  return dib;
}

TEST(TrueColour, CopiesTakeTheColourTableAndPastesClipToTheDestination) {
  const PackedDib source = Indexed(7, 5);
  const PackedDib copy = TrueColourCopy(source.get());
  ASSERT_TRUE(copy);
  EXPECT_EQ(ImageBitCount(copy.get()), 24);
  const std::uint8_t* p = ImagePixel(copy.get(), 3, 2);  // index 23
  EXPECT_EQ(p[0], 23);       // blue
  EXPECT_EQ(p[2], 255 - 23);  // red

  const PackedDib small = Indexed(3, 3);
  ASSERT_TRUE(PastePicture(copy.get(), 5, 3, small.get()));  // reaches past both edges
  EXPECT_EQ(ImagePixel(copy.get(), 5, 3)[0], 0);
  EXPECT_EQ(ImagePixel(copy.get(), 6, 4)[0], 11);
  EXPECT_EQ(ImagePixel(copy.get(), 4, 3)[0], 34);  // left of the paste: untouched
  EXPECT_FALSE(PastePicture(source.get(), 0, 0, small.get()));  // 8-bit destination
  EXPECT_FALSE(TrueColourCopy(nullptr));
}

TEST(PageArrows, ThreeFramesOverTheBackgroundWithTheArrowPointingTheWayItPages) {
  PackedDib background = TrueColourCopy(Indexed(60, 80).get());
  const Rect place{10, 10, 22, 56};
  const PackedDib strip = PageArrowStrip(background.get(), place, true);
  ASSERT_TRUE(strip);
  EXPECT_EQ(strip.width(), 22);
  EXPECT_EQ(strip.height(), 3 * 56);
  // Corners are the background under the button; the middle is brass.
  const std::uint8_t* corner = ImagePixel(strip.get(), 0, 0);
  const std::uint8_t* under = ImagePixel(background.get(), 10, 10);
  EXPECT_EQ(corner[0], under[0]);
  EXPECT_EQ(corner[2], under[2]);
  const std::uint8_t* middle = ImagePixel(strip.get(), 11, 28);
  EXPECT_EQ(middle[2], 160);  // the normal frame's red
  // The arrow to the right is wider on its left: a point left of centre near the top edge of
  // the base is inside, its mirror on the right is outside.
  auto inside = [&](const PackedDib& s, int x, int y) {
    const std::uint8_t* q = ImagePixel(s.get(), x, y);
    const std::uint8_t* b = ImagePixel(background.get(), place.x + x, place.y + y);
    return q[0] != b[0] || q[1] != b[1] || q[2] != b[2];
  };
  EXPECT_TRUE(inside(strip, 4, 20));
  EXPECT_FALSE(inside(strip, 18, 20));
  const PackedDib back = PageArrowStrip(background.get(), place, false);
  EXPECT_TRUE(inside(back, 18, 20));
  EXPECT_FALSE(inside(back, 4, 20));
  EXPECT_FALSE(PageArrowStrip(Indexed(5, 5).get(), place, true));
}

}  // namespace
}  // namespace qv::newgame
