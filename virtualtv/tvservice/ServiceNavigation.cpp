// SPDX-License-Identifier: MIT
// Navigation among the services of one window.
#include "services/ServiceStore.h"
#include "tvservice/Adapters.h"

namespace virtualtv::tvservice {

namespace {

using seam::args;
using seam::in;
using seam::op;
using seam::out;

constexpr bool skipLocked = true;  // zapping skips services that require a code

class ServiceNavigation : public IServiceNavigation {
 public:
  explicit ServiceNavigation(const Identity& identity) : identity_(identity) {}

  int TuneService(const unsigned long long& serviceId, int first, int second, const std::string& appId) override {
    return callTv(op("IServiceNavigation::TuneService"), identity_.handle,
                  args(in("serviceId", serviceId), in("", first), in("", second), in("appId", appId)), [&](Tv& tv) {
                    const auto key = tv.services().keyOf(serviceId);
                    return key && tv.tune(identity_.window, *key) ? 1 : 0;
                  });
  }

  int GetTvMode(TSTvMode& mode) override {
    return callTv(op("IServiceNavigation::GetTvMode"), identity_.handle, args(out("mode", mode)), [&](Tv& tv) {
      const TvMode now = tv.state()[identity_.window].mode;
      mode = TSTvMode(static_cast<EAntennaMode>(now.antenna), static_cast<EServiceMode>(now.service));
      return 1;
    });
  }

  int SetTVMode(TSTvMode mode, const std::string& appId) override {
    return callTv(op("IServiceNavigation::SetTVMode"), identity_.handle, args(in("mode", mode), in("appId", appId)),
                  [&](Tv& tv) {
                    const bool known = mode.antennaMode >= ANTENNA_TERRESTRIAL && mode.antennaMode <= ANTENNA_SATELLITE;
                    if (!known) return 0;
                    tv.setMode(identity_.window, {mode.antennaMode, mode.serviceMode});
                    return 1;
                  });
  }

  int GetCurrentService(TSTvMode mode, TCCriteriaHelper& criteria, TCServiceData& service) override {
    return callTv(op("IServiceNavigation::GetCurrentService"), identity_.handle,
                  args(in("mode", mode), in("", criteria), out("service", service)),
                  [&](Tv& tv) { return fetchCurrent(tv, criteria, service); });
  }

  int GetPreviousServiceId(TSTvMode mode, unsigned long long& serviceId) override {
    return callTv(op("IServiceNavigation::GetPreviousServiceId"), identity_.handle,
                  args(in("mode", mode), out("serviceId", serviceId)), [&](Tv& tv) {
                    TCCriteriaHelper criteria;
                    criteria.Fetch(TCServiceData::SERVICE_ID);
                    TCServiceData service;
                    const ServiceKey key = tv.state()[identity_.window].previousService;
                    if (!tv.services().at(key, criteria, service)) return 0;
                    return service.Get(TCServiceData::SERVICE_ID, serviceId) ? 1 : 0;
                  });
  }

  int SeekNextService(TCCriteriaHelper& criteria, const unsigned long long& currentId, TCServiceData& service,
                      TSTvMode mode) override {
    return callTv(op("IServiceNavigation::SeekNextService"), identity_.handle,
                  args(in("", criteria), in("currentId", currentId), in("mode", mode), out("service", service)),
                  [&](Tv& tv) { return tv.services().next(criteria, mode, currentId, skipLocked, service) ? 1 : 0; });
  }

  int SeekPreviousService(TCCriteriaHelper& criteria, const unsigned long long& currentId, TCServiceData& service,
                          TSTvMode mode) override {
    return callTv(
        op("IServiceNavigation::SeekPreviousService"), identity_.handle,
        args(in("", criteria), in("currentId", currentId), in("mode", mode), out("service", service)),
        [&](Tv& tv) { return tv.services().previous(criteria, mode, currentId, skipLocked, service) ? 1 : 0; });
  }

  int GetOptimumService(TCCriteriaHelper& criteria, TCServiceData& service, TSTvMode mode) override {
    return callTv(op("IServiceNavigation::GetOptimumService"), identity_.handle,
                  args(in("", criteria), in("mode", mode), out("service", service)), [&](Tv& tv) {
                    // The same number may exist on several antennas: search the window's own list first.
                    const TvMode own = tv.state()[identity_.window].mode;
                    const TSTvMode list(static_cast<EAntennaMode>(own.antenna), static_cast<EServiceMode>(own.service));
                    const bool any = mode.antennaMode == ANTENNA_NONE;
                    if (any && tv.services().first(criteria, list, service)) return 1;
                    return tv.services().first(criteria, mode, service) ? 1 : 0;
                  });
  }

  int GetServiceList(TCCriteriaHelper& criteria, std::list<TCServiceData*>& services, TSTvMode mode, int first,
                     int second) override {
    return callTv(op("IServiceNavigation::GetServiceList"), identity_.handle,
                  args(in("", criteria), in("mode", mode), in("", first), in("", second), out("services", services)),
                  [&](Tv& tv) { return tv.services().list(criteria, mode, services); });
  }

  int GetStartService(unsigned long long& serviceId, int& source) override {
    return callTv(op("IServiceNavigation::GetStartService"), identity_.handle,
                  args(out("serviceId", serviceId), out("source", source)), [&](Tv& tv) {
                    serviceId = tv.state().startServiceId;
                    source = tv.state().startSource;
                    return 1;
                  });
  }

  int GetCurrentServiceInfo(TSTvMode mode, TCCriteriaHelper& criteria, TCServiceData& service) override {
    return callTv(op("IServiceNavigation::GetCurrentServiceInfo"), identity_.handle,
                  args(in("mode", mode), in("", criteria), out("service", service)),
                  [&](Tv& tv) { return fetchCurrent(tv, criteria, service); });
  }

 private:
  /// Ignores the conditions of the criteria: a hidden service can be on screen, since one can tune to it by its number.
  int fetchCurrent(Tv& tv, const TCCriteriaHelper& criteria, TCServiceData& service) const {
    return tv.services().at(tv.state()[identity_.window].service, criteria, service) ? 1 : 0;
  }

  Identity identity_;
};

}  // namespace

std::shared_ptr<IServiceNavigation> makeServiceNavigation(const Identity& identity) {
  return std::make_shared<ServiceNavigation>(identity);
}

}  // namespace virtualtv::tvservice
