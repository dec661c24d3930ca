// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <string>

#include "services/Service.h"
#include "set/State.h"
#include "store/SettingsStore.h"

namespace virtualtv {

/// Everything that a set persists, as plain data.
struct Snapshot {
  TvState state;  ///< values that a set does not persist, such as the planes, have their defaults
  std::map<std::string, Setting> settings;
  std::map<ServiceKey, Service> services;  ///< keys from 1 to `ServiceStore::greatestKey`

  bool operator==(const Snapshot&) const = default;
};

}  // namespace virtualtv
