// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <ostream>
#include <string>
#include <vector>

#include "support/Sources.h"

/// Shared parts of the tests of the screen geometry: the operations that use the video control, and their common calls
/// and log lines.
namespace screen {

using sources::Lines;
using Rect = kel::CEmpTaskWindow::Rect;

/// A worker for the main window. Its set shows the source 5 (the plug-in's 20), on the whole base screen; its two
/// inputs, 5 and 1, give pictures that fill a screen.
class ScreenTest : public sources::SourceTest {
 protected:
  void SetUp() override;

  /// The outcome of a query for a text: the result, and the content of a buffer of 40 bytes that was all `#` before.
  struct Text {
    int result;
    std::string text;  ///< up to the zero byte; all 40 bytes without one
  };
  using Query = int (kel::CEmpTaskWindow::*)(char*);
  Text query(Query operation);
  Text getScreenRect() { return query(&kel::CEmpTaskWindow::GetScreenRect); }
  Text getAfd() { return query(&kel::CEmpTaskWindow::GetAFDGeometryRectSize); }

  /// From now on the video control is missing and can't be created.
  void loseVideoControl();

  /// Selects the picture-in-picture window, which shows the source 1 (the plug-in's 15). Drops everything observed
  /// before.
  void selectPip();

  /// Where the set shows a window's picture.
  virtualtv::Rect planeOf(virtualtv::WindowId window = virtualtv::WindowId::main) {
    return tv().state()[window].plane.rect;
  }
  /// Sets that rectangle, even an invalid one.
  void putPlane(const virtualtv::Rect& rect);
};

/// A buffer that was not written.
extern const std::string untouched;

/// Log lines of reading the source 5.
extern const Lines sourceRead;

/// The log lines of an operation when its video control is missing and can't be created.
extern const Lines noVideoControl;

/// A result as the words of a fault.
std::string resultOf(const std::string& call, int result);
/// The four outputs of the size query as the words of a fault, in the order in which they are written.
std::string sizeOf(int x, int y, int third, int fourth);

/// An operation that uses the video control: its calls, the results of its failures, and its log lines.
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
