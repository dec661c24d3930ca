// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>

#include "services/ServiceStore.h"
#include "set/State.h"
#include "set/Storage.h"
#include "store/Database.h"
#include "store/SettingsStore.h"
#include "store/StateDirectory.h"

namespace virtualtv {

/// The parts of a storage. Used by the set alone. A new storage contains the embedded set from the start.
struct Storage::Parts {
  Parts();
  explicit Parts(const std::filesystem::path& path);

  std::optional<StateDirectory> directory;
  Database database;
  ServiceStore services;
  SettingsStore settings;
  SetStateStore state;
};

/// Replaces everything in a storage, settings keys included, with the embedded set. @return the new state. @throws
/// StoreError when that can't be persisted; nothing is changed then.
TvState furnish(Database& database, ServiceStore& services, SettingsStore& settings, SetStateStore& state);

/// The persisted values of a state. @throws StoreError when there are none, since a set always persists some.
std::map<std::string, std::string> keptIn(Storage::Parts& parts);

}  // namespace virtualtv
