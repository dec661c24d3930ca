#pragma once

#include <cstddef>
#include <map>
#include <optional>

#include "services/Service.h"
#include "store/Database.h"

namespace virtualtv {

/// The services of a database as they were at a moment, in little memory: as rows, some hundred bytes each. Reading
/// them opens the image anew each time. All operations throw `StoreError`.
class ServiceImage {
 public:
  /// @param database  no transaction may be under way on it.
  explicit ServiceImage(const Database& database) : rows_(database.image()) {}

  /// What it takes of memory, in bytes.
  std::size_t bytes() const { return rows_.size(); }
  /// Nothing where there was no such service.
  std::optional<Service> read(ServiceKey key) const;
  std::map<ServiceKey, Service> all() const;

 private:
  DatabaseImage rows_;
};

}  // namespace virtualtv
