// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <ostream>
#include <string>
#include <vector>

#include "support/Sources.h"

/// What the tests of the screen geometry share: the operations that ask the video control, and the calls and log lines
/// that they have in common.
namespace screen {

using sources::Lines;
using Rect = kel::CEmpTaskWindow::Rect;

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
  using Query = int (kel::CEmpTaskWindow::*)(char*);
  Text query(Query operation);
  Text getScreenRect() { return query(&kel::CEmpTaskWindow::GetScreenRect); }
  Text getAfd() { return query(&kel::CEmpTaskWindow::GetAFDGeometryRectSize); }

  /// From now on the video control is missing and can't be made.
  void loseVideoControl();

  /// Drives the picture-in-picture window, which shows the source 1 (the plug-in's 15). What was seen before is
  /// dropped.
  void selectPip();

  /// Where the set shows a window's picture.
  virtualtv::Rect planeOf(virtualtv::WindowId window = virtualtv::WindowId::main) {
    return tv().state()[window].plane.rect;
  }
  /// Puts it there, whatever the numbers.
  void putPlane(const virtualtv::Rect& rect);
};

/// A buffer that nobody wrote.
extern const std::string untouched;

/// Log lines of reading the source 5.
extern const Lines sourceRead;

/// What an operation logs when its video control is missing and can't be made.
extern const Lines noVideoControl;

/// A result as the words of a fault.
std::string resultOf(const std::string& call, int result);
/// The four outputs of the size query as the words of a fault, in the order in which they are written.
std::string sizeOf(int x, int y, int third, int fourth);

/// An operation that asks the video control: what it calls, what its failures come to, what it logs.
struct Operation {
  std::string label;
  std::string name;  ///< what it logs under
  std::string call;  ///< its call of the video control
  int (*run)(support::WorkerProbe& worker);
  int unconnected;     ///< its result without a video control
  bool readsSource;    ///< it wants a source
  int sourceless;      ///< its result then
  Lines begin;         ///< what it logs before it reads the source
  Lines noSource;      ///< what it logs when there is none
  Lines before;        ///< what it logs before it calls
  Lines refused;       ///< what it logs when the call fails
  std::string traced;  ///< the call when it succeeds, on the main window's first video control
};

const std::vector<Operation>& operations();

inline std::ostream& operator<<(std::ostream& out, const Operation& operation) {
  return out << operation.label;
}

}  // namespace screen
