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
  explicit DataControl(const Identity& identity) : identity_(identity) {}

  int GetCurrentHybridSBT(int& lang, TSHybridSBT& subtitle) override {
    return callTv(op("IDataControl::GetCurrentHybridSBT"), identity_.handle,
                  args(out("lang", lang), out("subtitle", subtitle)), [&](Tv& tv) {
                    const WindowState& window = tv.state()[identity_.window];
                    if (!tv.services().read(window.service)) return 0;
                    if (window.inUse.subtitle < 0) {
                      lang = -1;
                      return 1;
                    }
                    return tell(tv.services().subtitles(window.service), window.inUse.subtitle, lang, subtitle) ? 1 : 0;
                  });
  }
  int SelectHybridSBT(int index) override {
    return callTv(op("IDataControl::SelectHybridSBT"), identity_.handle, args(in("index", index)),
                  [&](Tv& tv) { return tv.selectSubtitle(identity_.window, index) ? 1 : 0; });
  }

 private:
  Identity identity_;
};

}  // namespace

std::shared_ptr<IDataControl> makeDataControl(const Identity& identity) {
  return std::make_shared<DataControl>(identity);
}

}  // namespace virtualtv::tvservice
