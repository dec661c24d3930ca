// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <map>
#include <optional>

#include "services/Service.h"
#include "store/Database.h"

namespace virtualtv {

/// A compact copy of the services of a database at one moment: database rows of some hundred bytes each. Each read
/// opens the image anew. All operations throw `StoreError`.
class ServiceImage {
 public:
  /// @param database  must have no open transaction.
  explicit ServiceImage(const Database& database) : rows_(database.image()) {}

  /// Memory use, in bytes.
  std::size_t bytes() const { return rows_.size(); }
  /// Returns nothing when there was no such service.
  std::optional<Service> read(ServiceKey key) const;
  std::map<ServiceKey, Service> all() const;

 private:
  DatabaseImage rows_;
};

}  // namespace virtualtv
