// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "EmpAppWindow.h"
#include "device/Session.h"
#include "support/Assembly.h"

namespace virtualtv::device {

/// The plug-in on a device with a set in memory, and a feed of its events.
class DeviceTest : public ::testing::Test {
 protected:
  Device& device() { return television.device; }
  Tv& tv() { return television.tv(); }

  /// The events of one kind since the previous call; it drops the other events.
  template <typename Kind>
  std::vector<Kind> happened() {
    std::vector<Kind> found;
    for (const auto& happening : feed->take().happenings) {
      if (const Kind* one = part<Kind>(*happening)) found.push_back(*one);
    }
    return found;
  }

  /// Runs a command. @return its reply as a number.
  static int number(Session& session, std::vector<std::string> words);

  support::Assembly<kel::CEmpAppWindow> television;
  std::shared_ptr<Feed> feed = device().subscribe({.events = true});

 private:
  template <typename Kind>
  static const Kind* part(const Happening& happening) {
    if constexpr (std::is_same_v<Change, Kind>) {
      return std::get_if<Change>(&happening.what);
    } else if constexpr (std::is_constructible_v<Change, Kind>) {
      const Change* const change = std::get_if<Change>(&happening.what);
      return change == nullptr ? nullptr : std::get_if<Kind>(change);
    } else {
      return std::get_if<Kind>(&happening.what);
    }
  }
};

}  // namespace virtualtv::device
