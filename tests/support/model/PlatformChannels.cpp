// SPDX-License-Identifier: MIT
// The platform's operations on services and on what windows show.
#include "support/model/Platform.h"

namespace model {

namespace {

using Data = TCServiceData;
using Step = TCCriteriaHelper::Step;

constexpr int noNumber = 0;  // value of the unnamed arguments
const TSTvMode anyMode(ANTENNA_NONE, SERVICE_MODE_NONE);

/// The text as units in the byte order of records.
std::vector<unsigned short> bigEndian(const std::u16string& text) {
  std::vector<unsigned short> units;
  for (const char16_t unit : text) units.push_back(static_cast<unsigned short>((unit & 0xFF) << 8 | unit >> 8));
  return units;
}

/// Fetches the fields of a service that the criteria request. @return false when there is no such service.
bool fetch(const Set& set, ServiceKey key, const TCCriteriaHelper& criteria, TCServiceData& record) {
  const Service* const service = at(set, key);
  if (service == nullptr) return false;
  record.Clear();
  for (const Step& step : criteria.Steps()) {
    if (step.kind != Step::FETCH) continue;
    if (const auto held = number(*service, step.fieldId)) record.Set(step.fieldId, *held);
    const auto text = service->texts.find(step.fieldId);
    if (text == service->texts.end()) continue;
    const std::vector<unsigned short> units = bigEndian(text->second);
    record.Set(step.fieldId, units.data(), static_cast<int>(units.size()));
  }
  return true;
}

/// True when the criteria specify an order, which is always that of the service ids.
bool isOrdered(const TCCriteriaHelper& criteria) {
  for (const Step& step : criteria.Steps()) {
    if (step.kind == Step::ORDER_BY) return true;
  }
  return false;
}

virtualtv::TvMode plain(TSTvMode mode) {
  return {mode.antennaMode, mode.serviceMode};
}

int fetchCurrent(const Platform& tv, Interface navigation, const TCCriteriaHelper& criteria, TCServiceData& service) {
  return fetch(tv.set, tv.set.state[windowOf(navigation)].service, criteria, service) ? 1 : 0;
}

}  // namespace

Conditions conditionsOf(const TCCriteriaHelper& criteria) {
  Conditions conditions;
  for (const Step& step : criteria.Steps()) {
    if (step.kind == Step::WHERE) conditions.push_back({step.fieldId, step.value});
  }
  return conditions;
}

int Platform::findService(Interface service, const TCCriteriaHelper& criteria, TCServiceData& found) const {
  constexpr int one = 1;
  return call(calls, op("IService::FindService"), service,
              args(in("", criteria), in("count", one), out("service", found)), [&] {
                const Conditions conditions = conditionsOf(criteria);
                const ServiceKey key = isOrdered(criteria) ? firstById(set, conditions) : first(set, conditions);
                return fetch(set, key, criteria, found) ? 1 : 0;
              });
}

int Platform::tuneService(Interface navigation, std::uint64_t serviceId, const std::string& appId) const {
  return call(calls, op("IServiceNavigation::TuneService"), navigation,
              args(in("serviceId", serviceId), in("", noNumber), in("", noNumber), in("appId", appId)),
              [&] { return tune(set, windowOf(navigation), keyOf(set, serviceId)) ? 1 : 0; });
}

int Platform::getTvMode(Interface navigation, TSTvMode& mode) const {
  return call(calls, op("IServiceNavigation::GetTvMode"), navigation, args(out("mode", mode)), [&] {
    const virtualtv::TvMode now = set.state[windowOf(navigation)].mode;
    mode = TSTvMode(static_cast<EAntennaMode>(now.antenna), static_cast<EServiceMode>(now.service));
    return 1;
  });
}

int Platform::setTvMode(Interface navigation, TSTvMode mode, const std::string& appId) const {
  return call(calls, op("IServiceNavigation::SetTVMode"), navigation, args(in("mode", mode), in("appId", appId)),
              [&] { return setMode(set, windowOf(navigation), plain(mode)) ? 1 : 0; });
}

int Platform::getCurrentService(Interface navigation, TSTvMode mode, const TCCriteriaHelper& criteria,
                                TCServiceData& service) const {
  return call(calls, op("IServiceNavigation::GetCurrentService"), navigation,
              args(in("mode", mode), in("", criteria), out("service", service)),
              [&] { return fetchCurrent(*this, navigation, criteria, service); });
}

int Platform::getCurrentServiceInfo(Interface navigation, TSTvMode mode, const TCCriteriaHelper& criteria,
                                    TCServiceData& service) const {
  return call(calls, op("IServiceNavigation::GetCurrentServiceInfo"), navigation,
              args(in("mode", mode), in("", criteria), out("service", service)),
              [&] { return fetchCurrent(*this, navigation, criteria, service); });
}

int Platform::getPreviousServiceId(Interface navigation, TSTvMode mode, unsigned long long& serviceId) const {
  return call(calls, op("IServiceNavigation::GetPreviousServiceId"), navigation,
              args(in("mode", mode), out("serviceId", serviceId)), [&] {
                const Service* const previous = at(set, set.state[windowOf(navigation)].previousService);
                const auto id = previous == nullptr ? std::nullopt : number(*previous, Data::SERVICE_ID);
                if (id) serviceId = *id;
                return id ? 1 : 0;
              });
}

int Platform::seekService(Interface navigation, const TCCriteriaHelper& criteria, std::uint64_t currentId,
                          Direction direction, TCServiceData& service) const {
  const Operation& operation = direction == Direction::forwards ? op("IServiceNavigation::SeekNextService")
                                                                : op("IServiceNavigation::SeekPreviousService");
  return call(calls, operation, navigation,
              args(in("", criteria), in("currentId", currentId), in("mode", anyMode), out("service", service)), [&] {
                return fetch(set, step(set, conditionsOf(criteria), currentId, direction), criteria, service) ? 1 : 0;
              });
}

int Platform::getOptimumService(Interface navigation, const TCCriteriaHelper& criteria, TCServiceData& service) const {
  return call(calls, op("IServiceNavigation::GetOptimumService"), navigation,
              args(in("", criteria), in("mode", anyMode), out("service", service)), [&] {
                const ServiceKey key = best(set, windowOf(navigation), conditionsOf(criteria));
                return fetch(set, key, criteria, service) ? 1 : 0;
              });
}

int Platform::getServiceList(Interface navigation, const TCCriteriaHelper& criteria, Records& services) const {
  return call(
      calls, op("IServiceNavigation::GetServiceList"), navigation,
      args(in("", criteria), in("mode", anyMode), in("", noNumber), in("", noNumber), out("services", services)), [&] {
        for (const ServiceKey key : listed(set, conditionsOf(criteria))) {
          fetch(set, key, criteria, services.emplace_back(TCServiceData()).value());
        }
        return static_cast<int>(services.size());
      });
}

int Platform::getStartService(Interface navigation, unsigned long long& serviceId, int& source) const {
  return call(calls, op("IServiceNavigation::GetStartService"), navigation,
              args(out("serviceId", serviceId), out("source", source)), [&] {
                serviceId = set.state.startServiceId;
                source = set.state.startSource;
                return 1;
              });
}

int Platform::getSignalStrength(Interface tuner, unsigned char& strength) const {
  return call(calls, op("ITunerControl::GetSignalStrength"), tuner,
              args(in("tuner", noNumber), out("strength", strength)), [&] {
                const auto told = signalStrength(set, windowOf(tuner));
                if (told) strength = static_cast<unsigned char>(*told);
                return told ? 1 : 0;
              });
}

/// The id of a transponder is the physical channel of its services.
int Platform::lookupTransponder(Interface satellite, const TSTransponder& transponder, unsigned short& result) const {
  return call(calls, op("ISatellite::LookupTransponder"), satellite,
              args(in("transponder", transponder), out("result", result)), [&] {
                const Service* const service = at(set, first(set, {equals(Data::ANTENNA_MODE, ANTENNA_SATELLITE),
                                                                   equals(Data::FREQUENCY, transponder.frequency)}));
                const auto ptc = service == nullptr ? std::nullopt : number(*service, Data::PTC);
                if (ptc) result = static_cast<unsigned short>(*ptc);
                return ptc ? 1 : 0;
              });
}

int Platform::getNavigationCriteria(TSTvMode mode, TCCriteriaHelper& criteria, bool modeFirst) const {
  constexpr int wholeList = 0;
  constexpr std::uint64_t noId = ~std::uint64_t{0};
  const auto select = [&] {
    const auto conditions = listOf(plain(mode));
    if (!conditions) return 0;
    for (const Condition& condition : *conditions) {
      criteria.Where(condition.field, static_cast<unsigned long long>(condition.value));
    }
    return 1;
  };
  const Operation& operation = op("TCNavigationModeHelper::GetNavigationCriteria");
  if (modeFirst) {
    return call(calls, operation, {},
                args(in("mode", mode), in("navigation", wholeList), in("service", noId), out("criteria", criteria)),
                select);
  }
  return call(calls, operation, {},
              args(in("navigation", wholeList), in("mode", mode), in("service", noId), out("criteria", criteria)),
              select);
}

int Platform::getOptimumCriteria(std::uint16_t major, std::uint16_t minor, TCCriteriaHelper& criteria) const {
  constexpr int wholeList = 0;
  constexpr std::uint16_t anyMinor = 65535;
  return call(calls, op("TCNavigationModeHelper::GetOptimumCriteria"), {},
              args(in("major", major), in("minor", minor), in("navigation", wholeList), out("criteria", criteria)),
              [&] {
                criteria.Where(Data::MAJOR, int{major});
                if (minor != anyMinor) criteria.Where(Data::MINOR, int{minor});
                return 1;
              });
}

}  // namespace model
