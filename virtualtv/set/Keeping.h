// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <string>

#include "set/State.h"

namespace virtualtv {

/// The settings key in which the platform itself records what the main window shows, and the value that it has while
/// the window shows TV.
inline constexpr const char* lastServiceKey = "db/boot/last_service";
inline constexpr const char* lastServiceOnTv = "tv-service";

/// The persisted part of a state, by name.
std::map<std::string, std::string> keptOf(const TvState& state);

/// The state after switching a set with this state off and on.
TvState switchedOn(const TvState& state);

/// Restores persisted values into a state that has its defaults. Ignores unknown names. Values that older versions did
/// not persist keep their defaults.
/// @param file  the file that contained the values, for errors. @throws StoreError when a value is missing or can't be
/// read.
void restore(const std::map<std::string, std::string>& kept, const std::string& file, TvState& state);

}  // namespace virtualtv
