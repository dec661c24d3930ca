// SPDX-License-Identifier: MIT
// The platform's operations on planes and pictures.
#include "support/model/Picture.h"
#include "support/model/Platform.h"

namespace model {

namespace {

using virtualtv::Plane;

Plane& planeBehind(const Platform& tv, Interface interface) {
  return tv.set.state[windowOf(interface)].plane;
}

Rect rectOf(const TSRectInfo& info) {
  return {info.x, info.y, info.width, info.height};
}

TSRectInfo infoOf(const Rect& rect) {
  TSRectInfo info;
  info.x = rect.x;
  info.y = rect.y;
  info.width = rect.width;
  info.height = rect.height;
  return info;
}

}  // namespace

int Platform::setSize(Interface video, int x, int y, int height, int width) const {
  return call(calls, op("IVideoControl::SetSize"), video,
              args(in("x", x), in("y", y), in("height", height), in("width", width)), [&] {
                return place(set, windowOf(video), {x, y, width, height}) ? 1 : 0;
              });
}

int Platform::getSize(Interface video, int& x, int& y, int& height, int& width) const {
  return call(calls, op("IVideoControl::GetSize"), video,
              args(out("x", x), out("y", y), out("height", height), out("width", width)), [&] {
                const Rect& rect = planeBehind(*this, video).rect;
                x = rect.x;
                y = rect.y;
                height = rect.height;
                width = rect.width;
                return 1;
              });
}

int Platform::setDefaultSize(Interface video) const {
  return call(calls, op("IVideoControl::SetDefaultSize"), video, args(), [&] {
    placeDefault(set, windowOf(video));
    return 1;
  });
}

int Platform::getAfdGeometryRectSize(Interface video, int& x, int& y, int& width, int& height) const {
  return call(calls, op("IVideoControl::GetAFDGeometryRectSize"), video,
              args(out("x", x), out("y", y), out("width", width), out("height", height)), [&] {
                const auto rect = activeArea(set, windowOf(video));
                if (!rect) return 0;
                x = rect->x;
                y = rect->y;
                width = rect->width;
                height = rect->height;
                return 1;
              });
}

int Platform::setCropArea(Interface video, const TSRectInfo& crop, const TSRectInfo& display) const {
  return call(calls, op("IVideoControl::SetCropArea"), video, args(in("crop", crop), in("display", display)), [&] {
    return model::crop(set, windowOf(video), {rectOf(crop), rectOf(display)}) ? 1 : 0;
  });
}

int Platform::getCropArea(Interface video, TSRectInfo& crop, TSRectInfo& display) const {
  return call(calls, op("IVideoControl::GetCropArea"), video, args(out("crop", crop), out("display", display)), [&] {
    const auto shown = cropOn(set, windowOf(video));
    if (!shown) return 0;
    crop = infoOf(shown->crop);
    display = infoOf(shown->display);
    return 1;
  });
}

int Platform::setZOrder(Interface video, int order) const {
  return call(calls, op("IVideoControl::SetZOrder"), video, args(in("order", order)), [&] {
    planeBehind(*this, video).order = order;
    return 0;
  });
}

int Platform::muteVideo(Interface av, int mute) const {
  return call(calls, op("IAVControl::MuteVideo"), av, args(in("mute", mute)), [&] {
    planeBehind(*this, av).muted = mute == 1;
    return 1;
  });
}

int Platform::getResolution(Interface av, int& code, TSResolution& resolution) const {
  return call(calls, op("IAVControl::GetResolution"), av, args(out("code", code), out("resolution", resolution)), [&] {
    const auto told = set.state[windowOf(av)].resolution;
    const auto picture = pictureOn(set, windowOf(av));
    if (!told && !picture) return -1;
    code = told ? *told : resolutionCode(*picture);
    if (!picture) return 0;
    resolution.horizontal = static_cast<unsigned>(picture->width);
    resolution.vertical = static_cast<unsigned>(picture->height);
    resolution.frequency = static_cast<unsigned>(picture->rate);
    resolution.horizontalFrequency = linesPerSecond(*picture);
    return 0;
  });
}

}  // namespace model
