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

/// Which services are wanted, and which of them to show. All conditions must hold; one on a field that a service does
/// not have does not hold.
struct ServiceQuery {
  std::string text = {};  ///< UTF-8 that the name has in it, in letters of either case; empty for any
  std::optional<EAntennaMode> antenna = std::nullopt;           ///< antenna that receives the service
  std::optional<ServiceKind> kind = std::nullopt;               ///< kind of the service
  std::optional<std::uint16_t> major = std::nullopt;            ///< its major number
  std::optional<ServiceKey> key = std::nullopt;                 ///< which service it is
  std::optional<std::string> group = std::nullopt;              ///< name of the list section that it was found in
  std::optional<std::uint8_t> favourite = std::nullopt;         ///< favourite group that it is a member of
  std::size_t offset = 0;                                       ///< how many to leave out at the start
  std::size_t limit = std::numeric_limits<std::size_t>::max();  ///< how many to show at most
};

/// Some of the services that a query selects.
struct ServicePage {
  std::vector<std::pair<ServiceKey, Service>> services;  ///< in list order
  std::size_t total = 0;                                 ///< how many the query selects, shown or not
  std::set<std::string> groups;  ///< names of all groups that there are, whatever the query selects
};

/// The page of services that a query requests. Of other services, only the fields for the conditions are read.
/// @throws StoreError when the services can't be read.
ServicePage findServices(const ServiceStore& services, const ServiceQuery& query);

}  // namespace virtualtv
