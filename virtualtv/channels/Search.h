// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "services/ChannelType.h"
#include "services/Service.h"
#include "services/ServiceStore.h"

namespace virtualtv {

/// Selects services by conditions, and a page of them. All conditions must hold. A condition on a field that a service
/// lacks does not hold.
struct ServiceQuery {
  std::string text = {};  ///< part of the name, in UTF-8, ignoring case; empty for any name
  std::optional<EAntennaMode> antenna = std::nullopt;           ///< the antenna
  std::optional<ServiceKind> kind = std::nullopt;               ///< the kind
  std::optional<std::uint16_t> major = std::nullopt;            ///< the major number
  std::optional<ServiceKey> key = std::nullopt;                 ///< the key
  std::optional<std::string> group = std::nullopt;              ///< its group, see `Service::group`
  std::optional<std::uint8_t> favourite = std::nullopt;         ///< a favourite group that it is a member of
  std::size_t offset = 0;                                       ///< number of selected services to skip
  std::size_t limit = std::numeric_limits<std::size_t>::max();  ///< greatest number of services to return
};

/// A page of the services that a query selects.
struct ServicePage {
  std::vector<std::pair<ServiceKey, Service>> services;  ///< in list order
  std::size_t total = 0;                                 ///< number of services that the query selects, on all pages
  std::set<std::string> groups;                          ///< names of all groups of the set, whatever the query selects
};

/// The page that a query requests. Of services that are not on it, reads only the fields that the conditions compare.
/// @throws StoreError when the services can't be read.
ServicePage findServices(const ServiceStore& services, const ServiceQuery& query);

}  // namespace virtualtv
