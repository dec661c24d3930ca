// SPDX-License-Identifier: MIT
#pragma once

#include "support/Sources.h"

/// Shared parts of the tests of the resolution.
namespace resolution {

using support::Lines;

inline constexpr const char* lastService = "db/boot/last_service";

/// The log lines of the worker when the main window's AV control is missing and can't be created: the first one, and
/// all.
inline const std::string avMissing = "0 av_ctrl_proxy is NULL, t_eWindow =0";
inline const Lines noAvControl{avMissing, "0 CEmpTaskWindow av_ctrl_proxy create is FAIL!!",
                               "0 AVControlproxy is NULL"};

/// A fault that makes the TV service return this code and these numbers.
inline std::string tells(int code, const std::string& numbers = "1,2,3,4") {
  return "IAVControl::GetResolution result=0 out.code=" + std::to_string(code) + " out.resolution=" + numbers;
}

/// A worker for the main window, which shows the input 13, with a picture of 1920 x 1080 at 60 frames.
class ResolutionTest : public support::WorkerTest {
 protected:
  void SetUp() override {
    WorkerTest::SetUp();
    show(virtualtv::WindowId::main, 13);
  }

  void show(virtualtv::WindowId window, int source) {
    ASSERT_TRUE(tv().switchSource(window, source));
    forget();
  }
};

}  // namespace resolution
