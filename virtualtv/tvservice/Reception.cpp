// SPDX-License-Identifier: MIT
// The tuner behind a window, and the satellite manager.
#include "services/ServiceStore.h"
#include "tvservice/Adapters.h"

namespace virtualtv::tvservice {

namespace {

using seam::args;
using seam::in;
using seam::op;
using seam::out;

class TunerControl : public ITunerControl {
 public:
  explicit TunerControl(const Identity& identity) : identity_(identity) {}

  int GetSignalStrength(int tuner, unsigned char* strength) override {
    return callTv(op("ITunerControl::GetSignalStrength"), identity_.handle,
                  args(in("tuner", tuner), out("strength", *strength)), [&](Tv& tv) {
                    const auto signal = tv.signalStrength(identity_.window);
                    if (tuner != 0 || !signal) return 0;
                    *strength = static_cast<unsigned char>(*signal);
                    return 1;
                  });
  }

 private:
  Identity identity_;
};

class Satellite : public ISatellite {
 public:
  explicit Satellite(const Identity& identity) : identity_(identity) {}

  /// The id of a transponder is the physical channel of its services.
  int LookupTransponder(const TSTransponder& transponder, unsigned short& result) override {
    return callTv(op("ISatellite::LookupTransponder"), identity_.handle,
                  args(in("transponder", transponder), out("result", result)), [&](Tv& tv) {
                    TCCriteriaHelper criteria;
                    criteria.Fetch(TCServiceData::PTC);
                    criteria.Where(TCServiceData::ANTENNA_MODE, ANTENNA_SATELLITE);
                    criteria.Where(TCServiceData::FREQUENCY, transponder.frequency);
                    TCServiceData service;
                    const TSTvMode any(ANTENNA_NONE, SERVICE_MODE_NONE);
                    if (!tv.services().first(criteria, any, service)) return 0;
                    return service.Get(TCServiceData::PTC, result) ? 1 : 0;
                  });
  }

 private:
  Identity identity_;
};

}  // namespace

std::shared_ptr<ITunerControl> makeTunerControl(const Identity& identity) {
  return std::make_shared<TunerControl>(identity);
}

std::shared_ptr<ISatellite> makeSatellite(const Identity& identity) {
  return std::make_shared<Satellite>(identity);
}

}  // namespace virtualtv::tvservice
