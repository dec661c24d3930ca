// SPDX-License-Identifier: MIT
// Random rectangles between the plug-in's space and the base screen, compared with exact fractions.
//
// The seed of a run determines its rectangles. A failure prints the seed; SCREEN_SEED=N repeats the run.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <random>

#include "Screen.h"

namespace {

using screen::getScreenRect;
using screen::highest;
using screen::lowest;
using screen::numbers;
using screen::Rect;

/// An exact fraction of 64-bit integers.
struct Fraction {
  std::int64_t over;
  std::int64_t under;  ///< greater than 0

  Fraction operator+(const Fraction& other) const {
    return {over * other.under + other.over * under, under * other.under};
  }

  /// The integer part, clamped to `int`.
  int cut() const {
    const bool negative = over < 0;
    const std::int64_t whole = ((negative ? -over : over) - (negative ? -over : over) % under) / under;
    const std::int64_t signedWhole = negative ? -whole : whole;
    if (signedWhole > highest) return highest;
    if (signedWhole < lowest) return lowest;
    return static_cast<int>(signedWhole);
  }
};

/// Corresponding lengths in the two spaces.
struct Side {
  std::int64_t plugin;
  std::int64_t base;

  int toBase(int value) const { return Fraction{value * base, plugin}.cut(); }
  int toPlugin(int value) const { return (Fraction{value * plugin, base} + Fraction{1, 2}).cut(); }
};

struct Base {
  int width;
  int height;

  Side across() const { return {960, width}; }
  Side down() const { return {540, height}; }
};

Rect toBase(const Rect& rect, const Base& base) {
  return {base.across().toBase(rect.x), base.down().toBase(rect.y), base.across().toBase(rect.width),
          base.down().toBase(rect.height)};
}
Rect toPlugin(const Rect& rect, const Base& base) {
  return {base.across().toPlugin(rect.x), base.down().toPlugin(rect.y), base.across().toPlugin(rect.width),
          base.down().toPlugin(rect.height)};
}

std::string textOf(const Rect& rect) {
  const auto number = [](int value) { return std::to_string(value); };
  const std::string text =
      "x:" + number(rect.x) + ",y:" + number(rect.y) + ",w:" + number(rect.width) + ",h:" + number(rect.height);
  return text.substr(0, 39);
}

std::uint64_t seedOfThisRun() {
  static const std::uint64_t seed = [] {
    const char* const given = std::getenv("SCREEN_SEED");
    const std::uint64_t chosen = given != nullptr ? std::strtoull(given, nullptr, 10) : std::random_device{}();
    std::cout << "SCREEN_SEED=" << chosen << '\n';
    return chosen;
  }();
  return seed;
}

constexpr int runs = 400;

class ConversionTest : public screen::ScreenTest, public ::testing::WithParamInterface<Base> {
 protected:
  ConversionTest() : random_(seedOfThisRun()) {}

  void SetUp() override {
    ScreenTest::SetUp();
    setBase(base().width, base().height);
  }

  static const Base& base() { return GetParam(); }

  /// A number from `least` to `most`.
  int between(int least, int most) { return std::uniform_int_distribution<int>(least, most)(random_); }

  /// Any number. Small ones and the ends of the range are more likely than by chance.
  int any(int least = lowest) {
    switch (between(0, 3)) {
      case 0:
        return between(std::max(least, -2000), 2000);
      case 1:
        return std::max(least, lowest + between(0, 3));
      case 2:
        return highest - between(0, 3);
      default:
        return between(least, highest);
    }
  }

  static std::string hint() { return "SCREEN_SEED=" + std::to_string(seedOfThisRun()); }

 private:
  std::mt19937_64 random_;
};

TEST_P(ConversionTest, AnyFourNumbersAreSentAsTheFractionsSay) {
  fault("IVideoControl::SetSize always result=1");
  for (int run = 0; run < runs; ++run) {
    const Rect rect{any(0), any(), any(), any()};
    SCOPED_TRACE(hint() + " " + ::testing::PrintToString(numbers(rect)));
    ASSERT_EQ(worker.SetScreenRect(rect.x, rect.y, rect.width, rect.height), 1);
    const Rect sent = toBase(rect, base());
    ASSERT_EQ(calls().back(), "IVideoControl[main#1]::SetSize(x=" + std::to_string(sent.x) +
                                  ", y=" + std::to_string(sent.y) + ", height=" + std::to_string(sent.height) +
                                  ", width=" + std::to_string(sent.width) + ") -> 1 [fault]");
    forget();
  }
}

TEST_P(ConversionTest, AnyFourNumbersAreReadAsTheFractionsSay) {
  for (int run = 0; run < runs; ++run) {
    const Rect rect{any(), any(), any(), any()};
    SCOPED_TRACE(hint() + " " + ::testing::PrintToString(numbers(rect)));
    tv().adjust([&](virtualtv::TvState& state) {
      state[virtualtv::WindowId::main].plane.rect = {rect.x, rect.y, rect.width, rect.height};
    });
    const auto [result, text] = query(getScreenRect);
    ASSERT_EQ(result, 1);
    ASSERT_EQ(text, textOf(toPlugin(rect, base())));

    Rect swapped{};
    ASSERT_EQ(worker.GetScreenRect(swapped), 1);
    ASSERT_EQ(numbers(swapped), numbers(toPlugin({rect.x, rect.y, rect.height, rect.width}, base())));
    forget();
  }
}

INSTANTIATE_TEST_SUITE_P(Each, ConversionTest, ::testing::Values(Base{1920, 1080}, Base{1366, 768}, Base{3840, 2160}),
                         [](const auto& test) {
                           return std::to_string(test.param.width) + "x" + std::to_string(test.param.height);
                         });

}  // namespace
