// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <utility>

#include "services/ChannelType.h"

namespace virtualtv {

/// What people and clients call the kinds of services.
inline constexpr std::array kindNames{std::pair<const char*, ServiceKind>{"television", ServiceKind::television},
                                      std::pair<const char*, ServiceKind>{"radio", ServiceKind::radio},
                                      std::pair<const char*, ServiceKind>{"data", ServiceKind::data}};

constexpr const char* nameOf(ServiceKind kind) {
  for (const auto& [name, named] : kindNames) {
    if (kind == named) return name;
  }
  return nullptr;
}

}  // namespace virtualtv
