// SPDX-License-Identifier: MIT
#pragma once

#include <limits>
#include <string>
#include <vector>

#include "support/Sources.h"

/// What the tests of the screen geometry share.
namespace screen {

using sources::Lines;
using Rect = kel::CEmpTaskWindow::Rect;

inline constexpr int lowest = std::numeric_limits<int>::min();
inline constexpr int highest = std::numeric_limits<int>::max();

/// An operation that writes a text into a buffer.
using Query = int (kel::CEmpTaskWindow::*)(char*);

/// A worker for the main window. Its set shows the source 5 (the plug-in's 20), on the whole base screen; its two
/// inputs, 5 and 1, give pictures that fill a screen.
class ScreenTest : public sources::SourceTest {
 protected:
  void SetUp() override;

  /// What a query of a text answers: the result, and what it left in a buffer of 40 bytes that was all `#`.
  struct Text {
    int result;
    std::string text;  ///< up to the zero byte; all 40 where there is none
  };
  Text query(Query operation);

  /// The size of the base screen, as the worker believes it to be.
  void setBase(int width, int height);

  /// From now on the video control is missing and can't be made.
  void loseVideoControl();

  /// Drives the picture-in-picture window, which shows the source 1 (the plug-in's 15). What was seen before is
  /// dropped.
  void selectPip();

  /// Where the set shows a window's picture.
  virtualtv::Rect planeOf(virtualtv::WindowId window = virtualtv::WindowId::main) {
    return tv().state()[window].plane.rect;
  }
};

constexpr Query getScreenRect = &kel::CEmpTaskWindow::GetScreenRect;
constexpr Query getAfd = &kel::CEmpTaskWindow::GetAFDGeometryRectSize;

/// A buffer that nobody wrote.
extern const std::string untouched;

/// Numbers in the order in which a rectangle holds them.
std::vector<int> numbers(const Rect& rect);

/// What the size query writes, as the words of a fault, in the order in which it writes it.
std::string sizeOf(int x, int y, int third, int fourth);

}  // namespace screen
