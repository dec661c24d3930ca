// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>

#include "services/ServiceStore.h"
#include "set/State.h"
#include "set/Tv.h"
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

/// The settings key in which the platform itself records what the main window shows, and the value that it has while
/// the window shows TV.
inline constexpr const char* lastServiceKey = "db/boot/last_service";
inline constexpr const char* lastServiceOnTv = "tv-service";

/// The persisted part of a state, by name.
std::map<std::string, std::string> keptOf(const TvState& state);

/// Replaces everything in a storage, settings keys included, by the embedded set. @return the new state. @throws
/// StoreError when that can't be persisted; nothing is changed then.
TvState furnish(Database& database, ServiceStore& services, SettingsStore& settings, SetStateStore& state);

/// The persisted values of a state. @throws StoreError when there are none, since a set always persists some.
std::map<std::string, std::string> keptIn(Storage::Parts& parts);

/// The state after switching a set with this state off and on.
TvState switchedOn(const TvState& state);

/// Restores persisted values into a state that has its defaults. Ignores unknown names. Values that older versions did
/// not persist keep their defaults.
/// @param file  the file that contained the values, for errors. @throws StoreError when a value is missing or can't be
/// read.
void restore(const std::map<std::string, std::string>& kept, const std::string& file, TvState& state);

}  // namespace virtualtv
