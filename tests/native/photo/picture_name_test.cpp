// The picture's file name: safe on every Windows file system and never an existing picture's.
#include <gtest/gtest.h>

#include "photo/picture_name.h"

namespace qv::photo {
namespace {

TEST(PictureName, TakesThePhotosNameWithTheBmpExtension) {
  EXPECT_EQ(PictureFileName("C:\\Users\\Ann\\Pictures\\Beach day.JPG", {}), "Beach day.bmp");
  EXPECT_EQ(PictureFileName("/home/ann/cat.tar.png", {}), "cat.tar.bmp");
  EXPECT_EQ(PictureFileName("cat", {}), "cat.bmp");
  EXPECT_EQ(PictureFileName(".hidden", {}), ".hidden.bmp");
  EXPECT_EQ(PictureFileName("Caf\xC3\xA9.png", {}), "Caf\xC3\xA9.bmp") << "non-ASCII bytes are kept";
}

TEST(PictureName, ReplacesWhatFileSystemsRefuseAndAvoidsDeviceAndNumberNames) {
  EXPECT_EQ(PictureFileName("a<b>c:d\"e|f?g*h\x01i.png", {}), "a_b_c_d_e_f_g_h_i.bmp");
  EXPECT_EQ(PictureFileName("  sunset . . .png", {}), "sunset.bmp");
  EXPECT_EQ(PictureFileName("....png", {}), "Picture.bmp");
  EXPECT_EQ(PictureFileName("C:\\photos\\", {}), "Picture.bmp");
  EXPECT_EQ(PictureFileName("con.jpg", {}), "Picture con.bmp");
  EXPECT_EQ(PictureFileName("Lpt3.x.jpg", {}), "Picture Lpt3.x.bmp");
  EXPECT_EQ(PictureFileName("console.jpg", {}), "console.bmp");
  EXPECT_EQ(PictureFileName("com10.jpg", {}), "com10.bmp");
  EXPECT_EQ(PictureFileName("7.jpg", {}), "Picture 7.bmp") << "7.bmp would be taken for built-in picture 7";
  EXPECT_EQ(PictureFileName("20240511.jpg", {}), "Picture 20240511.bmp");
}

TEST(PictureName, IsCutWithoutSplittingACharacter) {
  EXPECT_EQ(PictureFileName(std::string(200, 'x') + ".jpg", {}), std::string(kPictureStemLimit, 'x') + ".bmp");
  // 63 bytes, then a two-byte character that would straddle the limit.
  const std::string name = std::string(63, 'y') + "\xC3\xA9" + "zz.jpg";
  EXPECT_EQ(PictureFileName(name, {}), std::string(63, 'y') + ".bmp");
  EXPECT_EQ(PictureFileName(std::string(63, 'y') + " \xC3\xA9.jpg", {}), std::string(63, 'y') + ".bmp")
      << "and without a trailing space";
}

TEST(PictureName, NeverTakesAnExistingPicturesName) {
  const std::vector<std::string> existing = {"1.bmp", "CAT.BMP", "cat (2).bmp", "dog.bmp"};
  EXPECT_EQ(PictureFileName("cat.jpg", existing), "cat (3).bmp");
  EXPECT_EQ(PictureFileName("Dog.png", existing), "Dog (2).bmp");
  EXPECT_EQ(PictureFileName("bird.png", existing), "bird.bmp");
  std::vector<std::string> full;
  for (int i = 0; i < 300; ++i) full.push_back(PictureFileName("x.jpg", full));
  EXPECT_EQ(full.back(), "x (300).bmp");
}

}  // namespace
}  // namespace qv::photo
