// SPDX-License-Identifier: MIT
#include "services/ServiceImage.h"

#include "services/ServiceStore.h"

namespace virtualtv {

std::optional<Service> ServiceImage::read(ServiceKey key) const {
  Database database(Database::inMemory, rows_);
  return ServiceStore(database).read(key);
}

std::map<ServiceKey, Service> ServiceImage::all() const {
  Database database(Database::inMemory, rows_);
  return ServiceStore(database).all();
}

}  // namespace virtualtv
