// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "import/ListBuilder.h"

namespace virtualtv::import {

/// A service to write.
struct Wanted {
  const Entry& now;       ///< its present data, with texts in UTF-8
  const Entry* before;    ///< the data in `kept`; null when the service does not come from a list of this format
  std::string_view kept;  ///< the entry in the list of this format that the service came from
  std::uint64_t next;     ///< the channel number that the service gets if the list gives none
};

/// The writer of a format.
struct Writing {
  std::string_view start;    ///< start of a list
  std::string_view between;  ///< separates two services
  std::string_view end;
  /// Writes a list with one service, without a final line break. Returns an empty text for a service that the format
  /// can't hold. Leaves out data that the format can't hold: `Exporter` notices that when it reads the list again.
  std::string (*entry)(const Wanted& wanted);
  std::string (*service)(const Service& service) = nullptr;  ///< set for a format that holds all data of a service
  bool hasGroupLines = false;                                ///< see `vdrGroup`
};

/// The parts of a service's entry by name, in order: lines, or fields between colons.
using Pieces = std::vector<std::pair<std::string, std::string>>;

/// Updates the parts of an entry that have changed and preserves all others. @param kept  the parts as read; a name may
/// occur several times. @param before, now  the old and the new parts, each name once.
Pieces changed(const Pieces& kept, const Pieces& before, const Pieces& now);

std::string writeVdr(const Wanted& wanted);
std::string writeDvbv5(const Wanted& wanted);
/// Returns an empty text for a service without an address.
std::string writeM3u(const Wanted& wanted);
std::string writeJson(const Service& service);

/// The line of VDR's channels.conf that starts a group, or gives the next service a number.
std::string vdrGroup(std::string_view name, std::optional<std::uint64_t> number);

}  // namespace virtualtv::import
