// The video plane, the picture's resolution, audio and subtitle tracks. This set does not carry out sound and subtitles
// yet: each answers its plain failure.
#include "set/Picture.h"
#include "tvservice/Adapters.h"

namespace virtualtv::tvservice {

namespace {

using seam::args;
using seam::in;
using seam::op;
using seam::out;

Rect rectOf(const TSRectInfo& info) {
  return {info.x, info.y, info.width, info.height};
}

void fill(TSRectInfo& info, const Rect& rect) {
  info.x = rect.x;
  info.y = rect.y;
  info.width = rect.width;
  info.height = rect.height;
}

void fill(TSResolution& resolution, const Picture& picture) {
  resolution.horizontal = static_cast<unsigned>(picture.width);
  resolution.vertical = static_cast<unsigned>(picture.height);
  resolution.frequency = static_cast<unsigned>(picture.rate);
  resolution.horizontalFrequency = linesPerSecond(picture);
}

class VideoControl : public IVideoControl {
 public:
  explicit VideoControl(const Profile& profile) : profile_(profile) {}

  int SetSize(int x, int y, int height, int width) override {
    return answer(op("IVideoControl::SetSize"), profile_.handle,
                  args(in("x", x), in("y", y), in("height", height), in("width", width)), [&](Tv& tv) {
                    return tv.place(profile_.window, {x, y, width, height}) ? 1 : 0;
                  });
  }
  int GetSize(int* x, int* y, int* height, int* width) override {
    return answer(op("IVideoControl::GetSize"), profile_.handle,
                  args(out("x", *x), out("y", *y), out("height", *height), out("width", *width)), [&](Tv& tv) {
                    const Rect& rect = tv.state()[profile_.window].plane.rect;
                    *x = rect.x;
                    *y = rect.y;
                    *height = rect.height;
                    *width = rect.width;
                    return 1;
                  });
  }
  int SetDefaultSize() override {
    return answer(op("IVideoControl::SetDefaultSize"), profile_.handle, args(), [&](Tv& tv) {
      tv.placeDefault(profile_.window);
      return 1;
    });
  }
  int GetAFDGeometryRectSize(int* x, int* y, int* width, int* height) override {
    return answer(op("IVideoControl::GetAFDGeometryRectSize"), profile_.handle,
                  args(out("x", *x), out("y", *y), out("width", *width), out("height", *height)), [&](Tv& tv) {
                    const auto picture = pictureOn(tv, profile_.window);
                    if (!picture) return 0;
                    const Rect rect = activeArea(tv.state()[profile_.window].plane, *picture);
                    *x = rect.x;
                    *y = rect.y;
                    *width = rect.width;
                    *height = rect.height;
                    return 1;
                  });
  }
  int SetCropArea(TSRectInfo* crop, TSRectInfo* display) override {
    return answer(op("IVideoControl::SetCropArea"), profile_.handle, args(in("crop", *crop), in("display", *display)),
                  [&](Tv& tv) {
                    return tv.crop(profile_.window, {rectOf(*crop), rectOf(*display)}) ? 1 : 0;
                  });
  }
  int GetCropArea(TSRectInfo* crop, TSRectInfo* display) override {
    return answer(op("IVideoControl::GetCropArea"), profile_.handle, args(out("crop", *crop), out("display", *display)),
                  [&](Tv& tv) {
                    const auto shown = cropOn(tv, profile_.window);
                    if (!shown) return 0;
                    fill(*crop, shown->crop);
                    fill(*display, shown->display);
                    return 1;
                  });
  }
  int SetZOrder(int order) override {
    return answer(op("IVideoControl::SetZOrder"), profile_.handle, args(in("order", order)),
                  [&](Tv& tv) { return tv.setOrder(profile_.window, order) ? 0 : -1; });
  }

 private:
  Profile profile_;
};

class AVControl : public IAVControl {
 public:
  explicit AVControl(const Profile& profile) : profile_(profile) {}

  int MuteVideo(int mute) override {
    return answer(op("IAVControl::MuteVideo"), profile_.handle, args(in("mute", mute)), [&](Tv& tv) {
      if (mute != 0 && mute != 1) return 0;
      tv.mute(profile_.window, mute == 1);
      return 1;
    });
  }
  int GetResolution(EResolution& code, TSResolution& resolution) override {
    return answer(op("IAVControl::GetResolution"), profile_.handle,
                  args(out("code", code), out("resolution", resolution)), [&](Tv& tv) {
                    const auto told = tv.state()[profile_.window].resolution;
                    const auto picture = pictureOn(tv, profile_.window);
                    if (!told && !picture) return -1;
                    code = static_cast<EResolution>(told ? *told : resolutionCode(*picture));
                    if (picture) fill(resolution, *picture);
                    return 0;
                  });
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
