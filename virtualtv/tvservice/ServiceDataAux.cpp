// SPDX-License-Identifier: MIT
// The audio tracks and subtitles of any service.
#include "services/ServiceStore.h"
#include "tvservice/Adapters.h"

namespace virtualtv::tvservice {

namespace {

using seam::args;
using seam::in;
using seam::op;
using seam::out;

/// Calls `use` with the key of the service with an id and returns its result; a failure when there is no such service.
template <typename Use>
int withService(Tv& tv, std::uint64_t serviceId, Use use) {
  const auto key = tv.services().keyOf(serviceId);
  return key ? use(*key) : 0;
}

class DataAux : public ::ServiceDataAux {
 public:
  explicit DataAux(const Identity& identity) : identity_(identity) {}

  int GetAudioSize(unsigned long long serviceId, unsigned int& size) override {
    return callTv(op("ServiceDataAux::GetAudioSize"), identity_.handle,
                  args(in("serviceId", serviceId), out("size", size)), [&](Tv& tv) {
                    return withService(tv, serviceId, [&](ServiceKey key) {
                      size = static_cast<unsigned>(tv.services().audio(key).size());
                      return 1;
                    });
                  });
  }

  int GetAudio(unsigned long long serviceId, int index, TSAudio& audio) override {
    return callTv(op("ServiceDataAux::GetAudio"), identity_.handle,
                  args(in("serviceId", serviceId), in("index", index), out("audio", audio)), [&](Tv& tv) {
                    return withService(tv, serviceId, [&](ServiceKey key) {
                      const auto tracks = tv.services().audio(key);
                      const AudioTrack* const track = readableAt(tracks, index);
                      if (track == nullptr) return 0;
                      audio.lang = track->lang;
                      audio.decodeType = track->decodeType;
                      audio.pid = static_cast<unsigned short>(track->pid);
                      audio.audioMode = track->audioMode;
                      audio.audioType = track->audioType;
                      return 1;
                    });
                  });
  }

  int GetHybridSBTSize(unsigned long long serviceId, unsigned int& size) override {
    return callTv(op("ServiceDataAux::GetHybridSBTSize"), identity_.handle,
                  args(in("serviceId", serviceId), out("size", size)), [&](Tv& tv) {
                    return withService(tv, serviceId, [&](ServiceKey key) {
                      size = static_cast<unsigned>(tv.services().subtitles(key).size());
                      return 1;
                    });
                  });
  }

  int GetHybridSBT(unsigned long long serviceId, int index, int& lang, TSHybridSBT& subtitle) override {
    return callTv(op("ServiceDataAux::GetHybridSBT"), identity_.handle,
                  args(in("serviceId", serviceId), in("index", index), out("lang", lang), out("subtitle", subtitle)),
                  [&](Tv& tv) {
                    return withService(tv, serviceId, [&](ServiceKey key) {
                      return tell(tv.services().subtitles(key), index, lang, subtitle) ? 1 : 0;
                    });
                  });
  }

 private:
  Identity identity_;
};

}  // namespace

std::shared_ptr<::ServiceDataAux> makeServiceDataAux(const Identity& identity) {
  return std::make_shared<DataAux>(identity);
}

}  // namespace virtualtv::tvservice
