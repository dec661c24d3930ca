// SPDX-License-Identifier: MIT
// The plane of a window.
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

class VideoControl : public IVideoControl {
 public:
  explicit VideoControl(const Identity& identity) : identity_(identity) {}

  int SetSize(int x, int y, int height, int width) override {
    return callTv(op("IVideoControl::SetSize"), identity_.handle,
                  args(in("x", x), in("y", y), in("height", height), in("width", width)), [&](Tv& tv) {
                    return tv.place(identity_.window, {x, y, width, height}) ? 1 : 0;
                  });
  }
  int GetSize(int* x, int* y, int* height, int* width) override {
    return callTv(op("IVideoControl::GetSize"), identity_.handle,
                  args(out("x", *x), out("y", *y), out("height", *height), out("width", *width)), [&](Tv& tv) {
                    const Rect& rect = tv.state()[identity_.window].plane.rect;
                    *x = rect.x;
                    *y = rect.y;
                    *height = rect.height;
                    *width = rect.width;
                    return 1;
                  });
  }
  int SetDefaultSize() override {
    return callTv(op("IVideoControl::SetDefaultSize"), identity_.handle, args(), [&](Tv& tv) {
      tv.placeDefault(identity_.window);
      return 1;
    });
  }
  int GetAFDGeometryRectSize(int* x, int* y, int* width, int* height) override {
    return callTv(op("IVideoControl::GetAFDGeometryRectSize"), identity_.handle,
                  args(out("x", *x), out("y", *y), out("width", *width), out("height", *height)), [&](Tv& tv) {
                    const auto picture = pictureOn(tv, identity_.window);
                    if (!picture) return 0;
                    const Rect rect = activeArea(tv.state()[identity_.window].plane, *picture);
                    *x = rect.x;
                    *y = rect.y;
                    *width = rect.width;
                    *height = rect.height;
                    return 1;
                  });
  }
  int SetCropArea(TSRectInfo* crop, TSRectInfo* display) override {
    return callTv(op("IVideoControl::SetCropArea"), identity_.handle, args(in("crop", *crop), in("display", *display)),
                  [&](Tv& tv) {
                    return tv.crop(identity_.window, {rectOf(*crop), rectOf(*display)}) ? 1 : 0;
                  });
  }
  int GetCropArea(TSRectInfo* crop, TSRectInfo* display) override {
    return callTv(op("IVideoControl::GetCropArea"), identity_.handle,
                  args(out("crop", *crop), out("display", *display)), [&](Tv& tv) {
                    const auto shown = cropOn(tv, identity_.window);
                    if (!shown) return 0;
                    fill(*crop, shown->crop);
                    fill(*display, shown->display);
                    return 1;
                  });
  }
  int SetZOrder(int order) override {
    return callTv(op("IVideoControl::SetZOrder"), identity_.handle, args(in("order", order)),
                  [&](Tv& tv) { return tv.setOrder(identity_.window, order) ? 0 : -1; });
  }

 private:
  Identity identity_;
};

}  // namespace

std::shared_ptr<IVideoControl> makeVideoControl(const Identity& identity) {
  return std::make_shared<VideoControl>(identity);
}

}  // namespace virtualtv::tvservice
