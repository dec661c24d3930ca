// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <variant>
#include <vector>

#include "seam/Seam.h"
#include "services/ServiceStore.h"
#include "set/Keeping.h"
#include "set/StorageParts.h"
#include "set/Tv.h"
#include "tvservice/IServiceNavigation.h"
#include "tvservice/ISourceControl.h"
#include "tvservice/ITunerControl.h"
#include "tvservice/TCNavigationModeHelper.h"
#include "tvservice/TVServiceAPI.h"

/// A set in memory and the interfaces that control it, without the plug-in.
namespace virtualtv::test {

/// Sources of the built-in set.
enum : int { antennaInput = 0, avInput = 1, hdmi1 = 13, hdmi2 = 14, hdmi3 = 15 };

/// The profile by which a client requests a window's interfaces.
EProfile profileOf(WindowId window);

/// A service that is neither hidden nor locked. `more` adds or overwrites fields.
Service serviceOf(std::uint64_t id, int antenna, int major, std::map<int, std::uint64_t> more = {});

class SetTest : public ::testing::Test {
 protected:
  SetTest() { tv.emplace(storage); }
  ~SetTest() override;

  /// Switches the set off and on again.
  void restart();

  const WindowState& window(WindowId id = WindowId::main) const { return tv->state()[id]; }
  /// Ids of the services that a window shows and showed before; 0 for none.
  std::uint64_t current(WindowId id = WindowId::main) { return idOf(window(id).service); }
  std::uint64_t previous(WindowId id = WindowId::main) { return idOf(window(id).previousService); }

  // Actions of a client on a window. They return the results of the interfaces.

  static int tune(std::uint64_t id, WindowId on = WindowId::main);
  static int switchTo(int source, WindowId on = WindowId::main);
  static int switchTo(int source, std::uint64_t service, WindowId on = WindowId::main);
  static int leaveSource(WindowId on = WindowId::main);
  /// Id of the service one step from another in the list of a TV mode; 0 for none.
  static std::uint64_t next(std::uint64_t id, TSTvMode mode = TSTvMode(ANTENNA_TERRESTRIAL, EServiceMode{}));
  static std::uint64_t beforeThat(std::uint64_t id, TSTvMode mode = TSTvMode(ANTENNA_TERRESTRIAL, EServiceMode{}));
  /// Id of the best service for a number; 0 for none.
  static std::uint64_t best(int major, int minor, WindowId on = WindowId::main);
  /// Returns nothing when the tuner fails.
  static std::optional<int> signal(WindowId on = WindowId::main, int tuner = 0);

  std::string knob(const std::string& name);
  void turn(const std::string& name, const std::string& value);
  /// The error of setting a knob; "" on success.
  std::string refusal(const std::string& name, const std::string& value);

  /// Makes all writes fail until `mendStore`.
  void breakStore();
  void mendStore();

  /// The last service, as recorded by the platform.
  std::string lastService();

  /// Collects all changes in `events`, until the set is switched off.
  void noteEvents();
  /// The change of an event, which must be of this kind.
  template <typename Kind>
  const Kind& changeOf(const Event& event) {
    const Kind* const change = std::get_if<Kind>(&event.change);
    if (change == nullptr) throw std::logic_error("another kind of event: " + std::to_string(event.change.index()));
    return *change;
  }

  std::vector<Event> events;
  Storage storage;
  std::optional<Tv> tv;

 private:
  std::uint64_t idOf(ServiceKey key);

  notify::Subscription subscription_;
};

}  // namespace virtualtv::test
