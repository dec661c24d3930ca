// The video plane, the picture's resolution, audio and subtitle tracks, the tuner and the satellite manager. This set
// does not carry them out yet: each answers its plain failure.
#include "tvservice/Adapters.h"

namespace virtualtv::tvservice {

namespace {

using seam::args;
using seam::in;
using seam::op;
using seam::out;

class VideoControl : public IVideoControl {
 public:
  explicit VideoControl(const Profile& profile) : profile_(profile) {}

  int SetSize(int x, int y, int height, int width) override {
    return refuse(op("IVideoControl::SetSize"), profile_.handle,
                  args(in("x", x), in("y", y), in("height", height), in("width", width)));
  }
  int GetSize(int* x, int* y, int* height, int* width) override {
    return refuse(op("IVideoControl::GetSize"), profile_.handle,
                  args(out("x", *x), out("y", *y), out("height", *height), out("width", *width)));
  }
  int SetDefaultSize() override { return refuse(op("IVideoControl::SetDefaultSize"), profile_.handle, args()); }
  int GetAFDGeometryRectSize(int* x, int* y, int* width, int* height) override {
    return refuse(op("IVideoControl::GetAFDGeometryRectSize"), profile_.handle,
                  args(out("x", *x), out("y", *y), out("width", *width), out("height", *height)));
  }
  int SetCropArea(TSRectInfo* crop, TSRectInfo* display) override {
    return refuse(op("IVideoControl::SetCropArea"), profile_.handle, args(in("crop", *crop), in("display", *display)));
  }
  int GetCropArea(TSRectInfo* crop, TSRectInfo* display) override {
    return refuse(op("IVideoControl::GetCropArea"), profile_.handle,
                  args(out("crop", *crop), out("display", *display)));
  }
  int SetZOrder(int order) override {
    return refuse(op("IVideoControl::SetZOrder"), profile_.handle, args(in("order", order)));
  }

 private:
  Profile profile_;
};

class AVControl : public IAVControl {
 public:
  explicit AVControl(const Profile& profile) : profile_(profile) {}

  int MuteVideo(int mute) override {
    return refuse(op("IAVControl::MuteVideo"), profile_.handle, args(in("mute", mute)));
  }
  int GetResolution(EResolution& code, TSResolution& resolution) override {
    return refuse(op("IAVControl::GetResolution"), profile_.handle,
                  args(out("code", code), out("resolution", resolution)));
  }
  int GetCurrentAudioInfo(int* lang, int* index) override {
    return refuse(op("IAVControl::GetCurrentAudioInfo"), profile_.handle,
                  args(out("lang", *lang), out("index", *index)));
  }
  int SetCurrentAudioByIndex(int index) override {
    return refuse(op("IAVControl::SetCurrentAudioByIndex"), profile_.handle, args(in("index", index)));
  }

 private:
  Profile profile_;
};

class DataAux : public ::ServiceDataAux {
 public:
  explicit DataAux(const Profile& profile) : profile_(profile) {}

  int GetAudioSize(unsigned long long serviceId, unsigned int& size) override {
    return refuse(op("ServiceDataAux::GetAudioSize"), profile_.handle,
                  args(in("serviceId", serviceId), out("size", size)));
  }
  int GetAudio(unsigned long long serviceId, int index, TSAudio& audio) override {
    return refuse(op("ServiceDataAux::GetAudio"), profile_.handle,
                  args(in("serviceId", serviceId), in("index", index), out("audio", audio)));
  }
  int GetHybridSBTSize(unsigned long long serviceId, unsigned int& size) override {
    return refuse(op("ServiceDataAux::GetHybridSBTSize"), profile_.handle,
                  args(in("serviceId", serviceId), out("size", size)));
  }
  int GetHybridSBT(unsigned long long serviceId, int index, int& lang, TSHybridSBT& subtitle) override {
    return refuse(op("ServiceDataAux::GetHybridSBT"), profile_.handle,
                  args(in("serviceId", serviceId), in("index", index), out("lang", lang), out("subtitle", subtitle)));
  }

 private:
  Profile profile_;
};

class DataControl : public IDataControl {
 public:
  explicit DataControl(const Profile& profile) : profile_(profile) {}

  int GetCurrentHybridSBT(int& lang, TSHybridSBT& subtitle) override {
    return refuse(op("IDataControl::GetCurrentHybridSBT"), profile_.handle,
                  args(out("lang", lang), out("subtitle", subtitle)));
  }
  int SelectHybridSBT(int index) override {
    return refuse(op("IDataControl::SelectHybridSBT"), profile_.handle, args(in("index", index)));
  }

 private:
  Profile profile_;
};

}  // namespace

std::shared_ptr<IVideoControl> makeVideoControl(const Profile& profile) {
  return std::make_shared<VideoControl>(profile);
}
std::shared_ptr<IAVControl> makeAVControl(const Profile& profile) {
  return std::make_shared<AVControl>(profile);
}
std::shared_ptr<::ServiceDataAux> makeServiceDataAux(const Profile& profile) {
  return std::make_shared<DataAux>(profile);
}
std::shared_ptr<IDataControl> makeDataControl(const Profile& profile) {
  return std::make_shared<DataControl>(profile);
}

}  // namespace virtualtv::tvservice
