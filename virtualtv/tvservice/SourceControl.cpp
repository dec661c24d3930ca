// SPDX-License-Identifier: MIT
// The input of one window.
#include "services/ServiceStore.h"
#include "tvservice/Adapters.h"

namespace virtualtv::tvservice {

namespace {

using seam::args;
using seam::in;
using seam::op;
using seam::out;

class SourceControl : public ISourceControl {
 public:
  explicit SourceControl(const Identity& identity) : identity_(identity) {}

  int GetSourceState(int* state) override {
    return callTv(op("ISourceControl::GetSourceState"), identity_.handle, args(out("state", *state)), [&](Tv& tv) {
      *state = tv.state()[identity_.window].sourceState;
      return 1;
    });
  }

  int GetCurrentSourceInfo(ESource& source) override {
    return callTv(op("ISourceControl::GetCurrentSourceInfo"), identity_.handle, args(out("source", source)),
                  [&](Tv& tv) { return tell(tv.state()[identity_.window].source, source); });
  }

  int GetPreviousSourceInfo(ESource& source) override {
    return callTv(op("ISourceControl::GetPreviousSourceInfo"), identity_.handle, args(out("source", source)),
                  [&](Tv& tv) { return tell(tv.state()[identity_.window].previousSource, source); });
  }

  int SetSource(ESource source, const std::string& appId) override {
    return callTv(op("ISourceControl::SetSource"), identity_.handle, args(in("source", source), in("appId", appId)),
                  [&](Tv& tv) { return tv.switchSource(identity_.window, source) ? 1 : 0; });
  }

  int SetSource(ESource source, unsigned long long serviceId, const std::string& appId) override {
    return callTv(op("ISourceControl::SetSource"), identity_.handle,
                  args(in("source", source), in("serviceId", serviceId), in("appId", appId)), [&](Tv& tv) {
                    const auto key = tv.services().keyOf(serviceId);
                    return key && tv.switchSource(identity_.window, source, *key) ? 1 : 0;
                  });
  }

  int DeactivateSource() override {
    return callTv(op("ISourceControl::DeactivateSource"), identity_.handle, args(), [&](Tv& tv) {
      tv.deactivate(identity_.window);
      return 1;
    });
  }

 private:
  /// Fails for a window without a source.
  static int tell(int source, ESource& told) {
    if (source < 0) return 0;
    told = static_cast<ESource>(source);
    return 1;
  }

  Identity identity_;
};

}  // namespace

std::shared_ptr<ISourceControl> makeSourceControl(const Identity& identity) {
  return std::make_shared<SourceControl>(identity);
}

}  // namespace virtualtv::tvservice
