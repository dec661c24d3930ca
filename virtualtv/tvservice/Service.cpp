// SPDX-License-Identifier: MIT
// The service database as the TV service shows it.
#include "services/ServiceStore.h"
#include "tvservice/Adapters.h"

namespace virtualtv::tvservice {

namespace {

using seam::args;
using seam::in;
using seam::op;
using seam::out;

class Service : public IService {
 public:
  explicit Service(const Identity& identity) : identity_(identity) {}

  int FindService(TCCriteriaHelper& criteria, TCServiceData& service, int count) override {
    return callTv(op("IService::FindService"), identity_.handle,
                  args(in("", criteria), in("count", count), out("service", service)), [&](Tv& tv) {
                    const TSTvMode any(ANTENNA_NONE, SERVICE_MODE_NONE);
                    return tv.services().first(criteria, any, service) ? 1 : 0;
                  });
  }

  int SetFavorites(const std::list<std::pair<unsigned long long, bool>>& favorites, char group) override {
    const int number = static_cast<unsigned char>(group);
    return callTv(op("IService::SetFavorites"), identity_.handle, args(in("", favorites), in("group", number)),
                  [&](Tv& tv) { return tv.setFavourites(static_cast<std::uint8_t>(number), favorites) ? 1 : 0; });
  }

  int GetFavorites(const unsigned long long& serviceId, std::map<unsigned char, bool>& favorites) override {
    return callTv(op("IService::GetFavorites"), identity_.handle,
                  args(in("serviceId", serviceId), out("favorites", favorites)), [&](Tv& tv) {
                    const auto groups = tv.services().favourites(serviceId);
                    if (!groups) return 0;
                    favorites = *groups;
                    return 1;
                  });
  }

 private:
  Identity identity_;
};

}  // namespace

std::shared_ptr<IService> makeService(const Identity& identity) {
  return std::make_shared<Service>(identity);
}

}  // namespace virtualtv::tvservice
