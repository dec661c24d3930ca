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

/// What a storage is made of. Used by the set alone. A new one has the embedded set in it from the moment it is there.
struct Storage::Parts {
  Parts();
  explicit Parts(const std::filesystem::path& path);

  std::optional<StateDirectory> directory;
  Database database;
  ServiceStore services;
  SettingsStore settings;
  SetStateStore state;
};

/// The settings key in which the platform itself records what the main window shows, and what it holds while that is
/// the TV.
inline constexpr const char* lastServiceKey = "db/boot/last_service";
inline constexpr const char* lastServiceOnTv = "tv-service";

/// The part of a state that a set keeps when it is switched off, by name.
std::map<std::string, std::string> keptOf(const TvState& state);

/// Puts the embedded set in place of all that a storage keeps, settings keys included. @return what it is then.
/// @throws StoreError when that can't be kept; then all is as it was.
TvState furnish(Database& database, ServiceStore& services, SettingsStore& settings, SetStateStore& state);

/// What was kept of a state. @throws StoreError when there is nothing: a set always keeps something.
std::map<std::string, std::string> keptIn(Storage::Parts& parts);

/// What a set that has this state is when it is switched off and on.
TvState switchedOn(const TvState& state);

/// Puts what was kept back into a state that stands at its defaults. Names that are unknown are passed over, and so are
/// values that were not kept yet when it was kept.
/// @param file  where it was kept, for errors. @throws StoreError when a value is missing or can't be read.
void restore(const std::map<std::string, std::string>& kept, const std::string& file, TvState& state);

}  // namespace virtualtv
