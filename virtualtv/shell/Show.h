// SPDX-License-Identifier: MIT
#pragma once

#include <limits>

#include "device/Session.h"
#include "shell/Lines.h"
#include "store/SettingsStore.h"
#include "text/Numbers.h"

/// Output formats of the shell.
namespace virtualtv::shell {

/// The valid log levels; `everyLevel` prints all messages.
inline constexpr int everyLevel = std::numeric_limits<int>::max();
inline constexpr text::Range logLevels{0, everyLevel};

/// A line `call CALL` for each platform call.
Lines callLines(const device::Deed& deed);

/// A line `log LEVEL TEXT` for each message up to a level, with `*` in place of values that differ from run to run.
Lines logLines(const device::Deed& deed, int level);

/// A line `key KEY BEFORE -> AFTER` for each settings key that changed.
Lines keyLines(const device::Deed& deed);

/// `int 5` or `str "text"`.
std::string show(const Setting& setting);

}  // namespace virtualtv::shell
