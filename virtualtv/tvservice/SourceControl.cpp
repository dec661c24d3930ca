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
  explicit SourceControl(const Profile& profile) : profile_(profile) {}

  int GetSourceState(int* state) override {
    return callTv(op("ISourceControl::GetSourceState"), profile_.handle, args(out("state", *state)), [&](Tv& tv) {
      *state = tv.state()[profile_.window].sourceState;
      return 1;
    });
  }

  int GetCurrentSourceInfo(ESource& source) override {
    return callTv(op("ISourceControl::GetCurrentSourceInfo"), profile_.handle, args(out("source", source)),
                  [&](Tv& tv) { return tell(tv.state()[profile_.window].source, source); });
  }

  int GetPreviousSourceInfo(ESource& source) override {
    return callTv(op("ISourceControl::GetPreviousSourceInfo"), profile_.handle, args(out("source", source)),
                  [&](Tv& tv) { return tell(tv.state()[profile_.window].previousSource, source); });
  }

  int SetSource(ESource source, const std::string& appId) override {
    return callTv(op("ISourceControl::SetSource"), profile_.handle, args(in("source", source), in("appId", appId)),
                  [&](Tv& tv) { return tv.switchSource(profile_.window, source) ? 1 : 0; });
  }

  int SetSource(ESource source, unsigned long long serviceId, const std::string& appId) override {
    return callTv(op("ISourceControl::SetSource"), profile_.handle,
                  args(in("source", source), in("serviceId", serviceId), in("appId", appId)), [&](Tv& tv) {
                    const auto key = tv.services().keyOf(serviceId);
                    return key && tv.switchSource(profile_.window, source, *key) ? 1 : 0;
                  });
  }

  int DeactivateSource() override {
    return callTv(op("ISourceControl::DeactivateSource"), profile_.handle, args(), [&](Tv& tv) {
      tv.deactivate(profile_.window);
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

  Profile profile_;
};

}  // namespace

std::shared_ptr<ISourceControl> makeSourceControl(const Profile& profile) {
  return std::make_shared<SourceControl>(profile);
}

}  // namespace virtualtv::tvservice
