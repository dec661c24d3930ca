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

/// What a storage is made of. Used by the set alone.
struct Storage::Parts {
  Parts();
  explicit Parts(const std::filesystem::path& path);

  std::optional<StateDirectory> directory;
  Database database;
  ServiceStore services;
  SettingsStore settings;
  SetStateStore state;
};

/// The part of a state that a set keeps when it is switched off, by name.
std::map<std::string, std::string> keptOf(const TvState& state);

/// Puts what was kept back into a state that stands at its defaults. Names that are unknown are passed over.
/// @throws StoreError when a kept list can't be read.
void restore(const std::map<std::string, std::string>& kept, TvState& state);

}  // namespace virtualtv
