// SPDX-License-Identifier: MIT
#pragma once

#include <limits>
#include <string>
#include <vector>

#include "support/Sources.h"

/// Shared parts of the tests of the screen geometry.
namespace screen {

using sources::Lines;
using Rect = kel::CEmpTaskWindow::Rect;

inline constexpr int lowest = std::numeric_limits<int>::min();
inline constexpr int highest = std::numeric_limits<int>::max();

/// An operation that writes a text into a buffer.
using Query = int (kel::CEmpTaskWindow::*)(char*);

/// A worker for the main window. Its set shows the source 5 (the plug-in's 20) on the whole base screen. The set's two
/// inputs, 5 and 1, give pictures that fill a screen.
class ScreenTest : public sources::SourceTest {
 protected:
  void SetUp() override;

  /// The outcome of a query for a text: the result, and the content of a buffer of 40 bytes that was filled with `#`
  /// before.
  struct Text {
    int result;
    std::string text;  ///< up to the zero byte; all 40 bytes if there is none
  };
  Text query(Query operation);

  /// Sets the size of the base screen in the worker.
  void setBase(int width, int height);

  /// From now on the video control is missing and can't be created.
  void loseVideoControl();

  /// Selects the picture-in-picture window, which shows the source 1 (the plug-in's 15). Drops everything observed so
  /// far.
  void selectPip();

  /// The rectangle where the set shows a window's picture.
  virtualtv::Rect planeOf(virtualtv::WindowId window = virtualtv::WindowId::main) {
    return tv().state()[window].plane.rect;
  }
};

constexpr Query getScreenRect = &kel::CEmpTaskWindow::GetScreenRect;
constexpr Query getAfd = &kel::CEmpTaskWindow::GetAFDGeometryRectSize;

/// The buffer as it is before a query.
extern const std::string untouched;

/// The numbers of a rectangle, in its own order.
std::vector<int> numbers(const Rect& rect);

/// A fault that makes the size query write these outputs, in its own order.
std::string sizeOf(int x, int y, int third, int fourth);

}  // namespace screen
