// SPDX-License-Identifier: MIT
// Knobs of the whole set, and the latencies of its operations.
#include "set/KnobParts.h"

#include "seam/Seam.h"
#include "services/ServiceStore.h"

namespace virtualtv::knobparts {

namespace {

template <auto member>
std::string getNumber(Tv& tv, const Parts&) {
  return std::to_string(tv.state().*member);
}
template <auto member>
void setNumber(Tv& tv, const Parts&, const std::string& value) {
  using Number = std::remove_cvref_t<decltype(tv.state().*member)>;
  const auto wanted = text::requireNumber<Number>(value);
  tv.adjust([&](TvState& state) { state.*member = wanted; });
}

void setFade(Tv& tv, const Parts&, const std::string& value) {
  const auto fade = text::requireNumber<int>(value, {0, 255});
  tv.adjust([=](TvState& state) { state.fade = fade; });
}

std::string getServiceCount(Tv& tv, const Parts&) {
  return std::to_string(tv.services().size());
}

// Latency.

const seam::Operation& operationNamed(const std::string& name) {
  if (const seam::Operation* operation = seam::findOperation(name)) return *operation;
  refuse("there is no operation '" + name + "'");
}

constexpr std::uint64_t longestLatency = 600'000;

std::string getLatency(Tv&, const Parts& parts) {
  return std::to_string(seam::Seam::instance().latency(operationNamed(parts[0])));
}
void setLatency(Tv& tv, const Parts& parts, const std::string& value) {
  constexpr text::Range range{0, longestLatency};
  tv.setLatency(operationNamed(parts[0]), text::requireNumber<std::uint64_t>(value, range));
}

constexpr std::array setTable{
    Knob{"region", "number", "region kind that the set was built for", getNumber<&TvState::region>,
         setNumber<&TvState::region>},
    Knob{"country", "number", "country that the user chose", getNumber<&TvState::country>,
         setNumber<&TvState::country>},
    Knob{"start.service", "service id or 0", "the service that the set starts with; it need not exist",
         getNumber<&TvState::startServiceId>, setNumber<&TvState::startServiceId>},
    Knob{"start.source", "number", "the TV service's number of the source that the set starts with",
         getNumber<&TvState::startSource>, setNumber<&TvState::startSource>},
    Knob{"tuner.fade", "0 to 255", "how much of the tuner's signal is lost", getNumber<&TvState::fade>, setFade},
    Knob{"clock", "", "milliseconds since the set was switched on", getNumber<&TvState::clock>, nullptr},
    Knob{"services", "", "number of services", getServiceCount, nullptr},
    Knob{"latency.OPERATION", "0 to 600000", "milliseconds that each call of a platform operation takes", getLatency,
         setLatency},
};

}  // namespace

std::span<const Knob> setKnobs() {
  return setTable;
}

}  // namespace virtualtv::knobparts
