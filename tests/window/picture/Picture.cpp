// SPDX-License-Identifier: MIT
#include "Picture.h"

namespace picture {

Lines askSource() {
  return {sources::askState, sources::askCurrent};
}

Lines sourceLogs() {
  return support::join({sources::currentLogs(5), sources::converted(5, 20)});
}

Lines noVideoControl() {
  return {"0 video_ctrl_proxy is NULL, t_eWindow =0", "0 CEmpTaskWindow video_ctrl_proxy create is FAIL!!",
          "0 VideoControlproxy is NULL"};
}

Lines noAvControl() {
  return {"0 av_ctrl_proxy is NULL, t_eWindow =0", "0 CEmpTaskWindow av_ctrl_proxy create is FAIL!!"};
}

void PictureTest::drivePictureInPicture() {
  ASSERT_EQ(worker.SetWindow(PL_WINDOW_WINDOW_PIP), 1);
  show(5, 8, virtualtv::WindowId::pip);
  forget();
}

std::string PictureTest::proxyCheck(const std::string& factory) {
  return "t_Check" + factory.substr(std::string("Create").size()) + "proxy";
}

}  // namespace picture
