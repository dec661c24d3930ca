// SPDX-License-Identifier: MIT
// The part of a plane that the picture's content fills: computed by hand for each format description and shape, and
// compared with exact fractions for planes of all sizes.
#include <array>
#include <climits>
#include <cstdlib>
#include <random>

#include "set/Picture.h"
#include "virtualtv/set/picture/PictureTest.h"

namespace virtualtv::test {
namespace {

constexpr int wide = 0;
constexpr int narrow = 1;

/// A service on screen whose picture has a given shape and format description, in a plane that tests move.
class ActiveArea : public PictureTest {
 protected:
  ActiveArea() { tv->import({serviceOf(10, 0, 1)}, false); }

  void show(int shape, int format) {
    turn("service.10.picture_shape", std::to_string(shape));
    turn("service.10.active_format", std::to_string(format));
  }
  std::string shown(int shape, int format) {
    show(shape, format);
    return active();
  }
};

TEST_F(ActiveArea, OfAWidePictureIsByTheFormatDescription) {
  const std::string whole = "0,0,1920x1080";
  const std::string fourToThree = "240,0,1440x1080";
  const std::string fourteenToNine = "120,0,1680x1080";
  const std::array<std::string, 16> wanted{whole, whole,       whole, whole,          whole, whole,       whole, whole,
                                           whole, fourToThree, whole, fourteenToNine, whole, fourToThree, whole, whole};
  for (int format = 0; format < 16; ++format) {
    EXPECT_EQ(shown(wide, format), wanted[static_cast<std::size_t>(format)]) << format;
  }
}

TEST_F(ActiveArea, OfANarrowPictureIsByTheFormatDescription) {
  const std::string whole = "240,0,1440x1080";
  const std::string sixteenToNine = "240,135,1440x810";
  const std::string fourteenToNine = "240,77,1440x925";  // 925 5/7 lines
  const std::array<std::string, 16> wanted{whole, whole, whole,         whole,        whole,         whole,
                                           whole, whole, whole,         whole,        sixteenToNine, fourteenToNine,
                                           whole, whole, sixteenToNine, sixteenToNine};
  for (int format = 0; format < 16; ++format) {
    EXPECT_EQ(shown(narrow, format), wanted[static_cast<std::size_t>(format)]) << format;
  }
}

TEST_F(ActiveArea, StandsInThePlane) {
  place({100, 200, 400, 400});
  EXPECT_EQ(shown(wide, 8), "100,287,400x225");
  EXPECT_EQ(shown(narrow, 8), "100,250,400x300");
  place({100, 200, 1000, 90});
  EXPECT_EQ(shown(wide, 8), "520,200,160x90");
  EXPECT_EQ(shown(wide, 9), "540,200,120x90");
}

TEST_F(ActiveArea, OfACropStandsWhereThatIsShown) {
  show(narrow, 8);
  crop({0, 0, 10, 10}, {0, 0, 400, 300});
  EXPECT_EQ(active(), "0,0,400x300");
  place({0, 0, 1920, 1080});
  EXPECT_EQ(active(), "240,0,1440x1080");
}

TEST_F(ActiveArea, IsCutToWholePixelsAlsoWhereNoneAreLeft) {
  place({5, 6, 1, 1});
  EXPECT_EQ(shown(wide, 8), "5,6,1x0");
  EXPECT_EQ(shown(narrow, 8), "5,6,1x0");
}

TEST_F(ActiveArea, OfAPlaneAtTheEdgeOfAllNumbersStaysThere) {
  place({INT_MAX, INT_MAX, INT_MAX, 2});
  EXPECT_EQ(shown(wide, 8), "2147483647,2147483647,3x2");
  place({INT_MAX - 10, INT_MAX - 10, 2, INT_MAX});
  EXPECT_EQ(shown(wide, 8), "2147483637,2147483647,2x1");
  place({INT_MIN, INT_MIN, INT_MAX, INT_MAX});
  EXPECT_EQ(shown(wide, 8), "-2147483648,-1677721600,2147483647x1207959551");
}

// With fractions.

/// An exact fraction. `bottom` is positive.
struct Fraction {
  std::int64_t top;
  std::int64_t bottom = 1;
};

Fraction operator*(Fraction a, Fraction b) {
  return {a.top * b.top, a.bottom * b.bottom};
}
Fraction least(Fraction a, Fraction b) {
  return a.top * b.bottom < b.top * a.bottom ? a : b;
}
std::int64_t cut(Fraction length) {
  return length.top / length.bottom;
}

/// A size in whole pixels.
struct Size {
  std::int64_t width;
  std::int64_t height;

  bool operator==(const Size&) const = default;
};

/// The largest size with a ratio that fits into another size, rounded down to whole pixels.
Size within(const Size& outer, Fraction ratio) {
  const Fraction turned{ratio.bottom, ratio.top};
  const Fraction width{outer.width};
  const Fraction height{outer.height};
  return {cut(least(width, height * ratio)), cut(least(height, width * turned))};
}

/// The size of the picture's content in a plane.
Size contentOf(const Size& plane, int shape, int format) {
  const Fraction sixteenNine{16, 9};
  const Fraction fourThree{4, 3};
  const Size picture = within(plane, shape == narrow ? fourThree : sixteenNine);
  if (format == 9 || format == 13) return within(picture, fourThree);
  if (format == 10 || format == 14 || format == 15) return within(picture, sixteenNine);
  if (format == 11) return within(picture, {14, 9});
  return picture;
}

/// True when the inner length is in the middle of the outer one. The picture and its content may each be off by an odd
/// pixel.
bool isCentred(std::int64_t outer, std::int64_t outerLength, std::int64_t inner, std::int64_t innerLength) {
  const std::int64_t before = inner - outer;
  const std::int64_t behind = outerLength - innerLength - before;
  return before >= 0 && behind >= before && behind - before <= 2;
}

TEST_F(ActiveArea, IsTheLargestOfItsShapeInTheMiddleOfAnyPlane) {
  std::mt19937 random(7);
  const auto corner = [&] { return static_cast<int>(random() % 4000) - 2000; };
  const auto length = [&] { return static_cast<int>((random() >> random() % 28) % INT_MAX) + 1; };
  for (int round = 0; round < 5000; ++round) {
    Plane plane;
    plane.rect = {corner(), corner(), length(), length()};
    const int shape = static_cast<int>(random() % 2);
    Picture picture;
    picture.shape = shape == narrow ? Shape::narrow : Shape::wide;
    picture.activeFormat = static_cast<int>(random() % 16);
    const Rect area = activeArea(plane, picture);
    const Rect& outer = plane.rect;
    SCOPED_TRACE(std::to_string(outer.width) + "x" + std::to_string(outer.height) + ", shape " + std::to_string(shape) +
                 ", format " + std::to_string(picture.activeFormat));
    ASSERT_EQ((Size{area.width, area.height}), contentOf({outer.width, outer.height}, shape, picture.activeFormat));
    ASSERT_TRUE(isCentred(outer.x, outer.width, area.x, area.width));
    ASSERT_TRUE(isCentred(outer.y, outer.height, area.y, area.height));
  }
}

}  // namespace
}  // namespace virtualtv::test
