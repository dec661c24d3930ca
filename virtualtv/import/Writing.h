#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "import/ServiceList.h"

namespace virtualtv::import {

/// What is to be written of a service.
struct Wanted {
  const Entry& now;       ///< with texts in UTF-8
  const Entry* before;    ///< what `kept` says; null where it comes from a list of another format, or from none
  std::string_view kept;  ///< the service as a list of this format had it
  std::uint64_t next;     ///< the number that a service gets which does not tell its own
};

/// How a format is written.
struct Writing {
  std::string_view start;    ///< of a list
  std::string_view between;  ///< two services
  std::string_view end;
  /// A service as a list with it alone, without a line break at its end; empty for one that the format can't hold. What
  /// of it the format can't hold is left out, which shows when it is read.
  std::string (*entry)(const Wanted& wanted);
  std::string (*service)(const Service& service) = nullptr;  ///< of a format that holds all that a set keeps
  bool hasGroupLines = false;                                ///< see `vdrGroup`
};

/// Pieces of a service by what they are, in the order in which they stand: lines, fields between colons.
using Pieces = std::vector<std::pair<std::string, std::string>>;

/// What was read, with the pieces in place that are others now. Pieces that no change is about stay as they were.
/// @param kept  as read; a name may come several times. @param before, now  each name once.
Pieces changed(const Pieces& kept, const Pieces& before, const Pieces& now);

std::string writeVdr(const Wanted& wanted);
std::string writeDvbv5(const Wanted& wanted);
/// Empty for a service without an address.
std::string writeM3u(const Wanted& wanted);
std::string writeJson(const Service& service);

/// The line of VDR's channels.conf that starts a group, or gives the next service a number.
std::string vdrGroup(std::string_view name, std::optional<std::uint64_t> number);

}  // namespace virtualtv::import
