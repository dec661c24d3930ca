#pragma once

#include "device/Session.h"
#include "shell/Lines.h"
#include "store/SettingsStore.h"

/// How the shell prints what it knows.
namespace virtualtv::shell {

/// A line `call CALL` for each platform call.
Lines callLines(const device::Deed& deed);

/// A line `log LEVEL TEXT` for each message up to a level, with what differs from run to run as `*`.
Lines logLines(const device::Deed& deed, int level);

/// A line `key KEY BEFORE -> AFTER` for each settings key that changed.
Lines keyLines(const device::Deed& deed);

/// `int 5` or `str "text"`.
std::string show(const Setting& setting);

}  // namespace virtualtv::shell
