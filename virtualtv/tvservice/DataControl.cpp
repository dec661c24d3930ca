// SPDX-License-Identifier: MIT
// The subtitle of a window.
#include "services/ServiceStore.h"
#include "tvservice/Adapters.h"

namespace virtualtv::tvservice {

namespace {

using seam::args;
using seam::in;
using seam::op;
using seam::out;

class DataControl : public IDataControl {
 public:
  explicit DataControl(const Profile& profile) : profile_(profile) {}

  int GetCurrentHybridSBT(int& lang, TSHybridSBT& subtitle) override {
    return callTv(op("IDataControl::GetCurrentHybridSBT"), profile_.handle,
                  args(out("lang", lang), out("subtitle", subtitle)), [&](Tv& tv) {
                    const WindowState& window = tv.state()[profile_.window];
                    if (!tv.services().read(window.service)) return 0;
                    if (window.inUse.subtitle < 0) {
                      lang = -1;
                      return 1;
                    }
                    return tell(tv.services().subtitles(window.service), window.inUse.subtitle, lang, subtitle) ? 1 : 0;
                  });
  }
  int SelectHybridSBT(int index) override {
    return callTv(op("IDataControl::SelectHybridSBT"), profile_.handle, args(in("index", index)),
                  [&](Tv& tv) { return tv.selectSubtitle(profile_.window, index) ? 1 : 0; });
  }

 private:
  Profile profile_;
};

}  // namespace

std::shared_ptr<IDataControl> makeDataControl(const Profile& profile) {
  return std::make_shared<DataControl>(profile);
}

}  // namespace virtualtv::tvservice
