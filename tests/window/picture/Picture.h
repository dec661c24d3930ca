// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "support/Sources.h"

/// Shared parts of the tests of crop, plane order, show and mute.
namespace picture {

using support::Lines;
using Rect = kel::CEmpTaskWindow::Rect;

/// The main window's first controls as in a trace: the prefixes of their calls.
inline const std::string mainVideo = "IVideoControl[main#1]::";
inline const std::string mainAv = "IAVControl[main#1]::";

/// The calls that read the main window's source, and their log lines.
Lines askSource();
Lines sourceLogs();

/// The log lines of the worker when a control of the main window is missing and can't be created.
Lines noVideoControl();
Lines noAvControl();

/// Ways in which the factory of a control fails, as words of a fault.
inline const Lines factoryFailures{"result=1", "result=-1", "result=null", "result=unwritten", "result=throw"};

/// A worker for the main window, which shows the source 5 (the plug-in's 20), as `SourceTest` has it.
class PictureTest : public sources::SourceTest {
 protected:
  /// Selects the picture-in-picture window, which shows the same source.
  void drivePictureInPicture();

  const virtualtv::Plane& plane(virtualtv::WindowId window = virtualtv::WindowId::main) {
    return tv().state()[window].plane;
  }

  /// Removes the control and runs `operation` under each way in which the control can't be created again. The operation
  /// must return `result`, log `lines`, and make no other call.
  template <typename Proxy, typename Operation>
  void failsWithout(Proxy*& proxy, const std::string& factory, const Lines& lines, Operation operation, int result) {
    const std::string check = proxyCheck(factory);
    for (const std::string& way : factoryFailures) {
      SCOPED_TRACE(factory + " " + way);
      proxy = nullptr;
      EXPECT_EQ(under("TVServiceAPI::" + factory + " " + way, operation), result);
      EXPECT_EQ(calls().size(), 1U) << "nothing but the factory is called";
      Lines expected = lines;
      const bool thrown = way == "result=throw";
      if (thrown) expected.insert(expected.begin() + 1, support::caught(check, "TVServiceAPI::" + factory));
      EXPECT_EQ(logs(), expected);
    }
  }

 private:
  static std::string proxyCheck(const std::string& factory);
};

}  // namespace picture
