// The secondary TV stack, which shows the ISP source. Its manager does not tell of sound and subtitles yet: each of
// these answers its plain failure.
#include "d2tv/CD2tvMgrProxy.h"
#include "d2tv/D2TVCAPI.h"
#include "seam/Seam.h"
#include "set/Tv.h"
#include "store/StoreError.h"

using virtualtv::Tv;
using virtualtv::seam::args;
using virtualtv::seam::Handle;
using virtualtv::seam::in;
using virtualtv::seam::op;
using virtualtv::seam::out;

namespace {

const Handle manager{"set", 1};

template <typename Values>
int refuse(const virtualtv::seam::Operation& operation, const Values& values) {
  return virtualtv::seam::pass(operation, manager, values, [&] { return operation.failure(); });
}

class Manager : public CD2tvMgrProxy {
 public:
  int GetTotalNumOfAudio(unsigned int* count) override {
    return refuse(op("CD2tvMgrProxy::GetTotalNumOfAudio"), args(out("count", *count)));
  }
  int GetMultiAudioInfo(MVPDAudio* audio, unsigned int position) override {
    return refuse(op("CD2tvMgrProxy::GetMultiAudioInfo"), args(in("position", position), out("audio", *audio)));
  }
  int GetCurrentAudioInfo(int* pid, int* index, unsigned int* lang) override {
    return refuse(op("CD2tvMgrProxy::GetCurrentAudioInfo"),
                  args(out("pid", *pid), out("index", *index), out("lang", *lang)));
  }
  int ChangeAudioByPID(unsigned int pid) override {
    return refuse(op("CD2tvMgrProxy::ChangeAudioByPID"), args(in("pid", pid)));
  }
  int ChangeAudioByIndex(unsigned int index) override {
    return refuse(op("CD2tvMgrProxy::ChangeAudioByIndex"), args(in("index", index)));
  }
  int GetTotalNumOfSubtitle(unsigned int* subtitles, unsigned int* teletext, unsigned int* teletextSubtitles) override {
    return refuse(
        op("CD2tvMgrProxy::GetTotalNumOfSubtitle"),
        args(out("subtitles", *subtitles), out("teletext", *teletext), out("teletextSubtitles", *teletextSubtitles)));
  }
  int GetDVBSubtitleInfo(DVBSubtitleInfo* subtitle, int position) override {
    return refuse(op("CD2tvMgrProxy::GetDVBSubtitleInfo"), args(in("position", position), out("subtitle", *subtitle)));
  }
  int GetCurrentSubtitle(int* language) override {
    return refuse(op("CD2tvMgrProxy::GetCurrentSubtitle"), args(out("language", *language)));
  }
  int ChangeSubtitleLanguage(int index) override {
    return refuse(op("CD2tvMgrProxy::ChangeSubtitleLanguage"), args(in("index", index)));
  }
  int GetVideoResolution(unsigned int* width, unsigned int* height) override {
    return virtualtv::seam::pass(op("CD2tvMgrProxy::GetVideoResolution"), manager,
                                 args(out("width", *width), out("height", *height)), [&] {
                                   const virtualtv::TvState& set = Tv::current().state();
                                   if (!set.ispShown) return -1;
                                   *width = static_cast<unsigned>(set.ispWidth);
                                   *height = static_cast<unsigned>(set.ispHeight);
                                   return 0;
                                 });
  }
};

}  // namespace

CD2tvMgrProxy::~CD2tvMgrProxy() = default;

CD2tvMgrProxy* CD2tvMgrProxy::GetInstance(const char* client) {
  return virtualtv::seam::pass(op("CD2tvMgrProxy::GetInstance"), {}, args(in("client", client)),
                               []() -> CD2tvMgrProxy* {
                                 static Manager instance;
                                 return Tv::current().state().ispPresent ? &instance : nullptr;
                               });
}

void CD2tvMgrProxy::DestroyInstance() {
  virtualtv::seam::pass(op("CD2tvMgrProxy::DestroyInstance"), {}, args(), [] {});  // it holds nothing
}

int D2TVCAPI_setSourceISP() {
  return virtualtv::seam::pass(op("D2TVCAPI_setSourceISP"), {}, args(), [] {
    Tv& tv = Tv::current();
    try {
      return tv.showIsp() ? 1 : 0;
    } catch (const virtualtv::StoreError& error) {
      tv.complain(error.what());
      return 0;
    }
  });
}
