// SPDX-License-Identifier: MIT
#include "Screen.h"

namespace screen {

using support::WorkerProbe;

namespace {

constexpr std::size_t bufferSize = 40;

int setDefault(WorkerProbe& worker) {
  return worker.SetScreenRect(-1, 270, 480, 270);
}
int setCorner(WorkerProbe& worker) {
  return worker.SetScreenRect(480, 270, 480, 270);
}
int getText(WorkerProbe& worker) {
  std::array<char, bufferSize> text{};
  return worker.GetScreenRect(text.data());
}
int getRect(WorkerProbe& worker) {
  Rect rect{};
  return worker.GetScreenRect(rect);
}
int getAfd(WorkerProbe& worker) {
  std::array<char, bufferSize> text{};
  return worker.GetAFDGeometryRectSize(text.data());
}

}  // namespace

const std::string untouched(bufferSize, '#');

const Lines sourceRead = support::join({sources::currentLogs(5), sources::converted(5, 20)});

const Lines noVideoControl{"0 video_ctrl_proxy is NULL, t_eWindow =0",
                           "0 CEmpTaskWindow video_ctrl_proxy create is FAIL!!", "0 VideoControlproxy is NULL"};

void ScreenTest::SetUp() {
  SourceTest::SetUp();
  tv().adjust([](virtualtv::TvState& state) { state.inputs = {{5, "first", true, {}}, {1, "second", true, {}}}; });
}

ScreenTest::Text ScreenTest::query(Query operation) {
  std::string buffer = untouched;
  const int result = (worker.*operation)(buffer.data());
  return {result, buffer.substr(0, buffer.find('\0'))};
}

void ScreenTest::loseVideoControl() {
  worker.video_ctrl_proxy = nullptr;
  fault("TVServiceAPI::CreateVideoControl always result=null");
}

void ScreenTest::selectPip() {
  ASSERT_EQ(worker.SetWindow(PL_WINDOW_WINDOW_PIP), 1);
  show(1, 2, virtualtv::WindowId::pip);
  forget();
}

void ScreenTest::putPlane(const virtualtv::Rect& rect) {
  tv().adjust([&](virtualtv::TvState& state) { state[virtualtv::WindowId::main].plane.rect = rect; });
}

std::string resultOf(const std::string& call, int result) {
  return call + " result=" + std::to_string(result);
}

std::string sizeOf(int x, int y, int third, int fourth) {
  return "IVideoControl::GetSize out.x=" + std::to_string(x) + " out.y=" + std::to_string(y) +
         " out.height=" + std::to_string(third) + " out.width=" + std::to_string(fourth);
}

const std::vector<Operation>& operations() {
  static const std::vector<Operation> all{
      {"SetDefault",
       "SetScreenRect",
       "IVideoControl::SetDefaultSize",
       setDefault,
       0,
       true,
       0,
       {"3 nX=[-1] nY=[270] nW=[480] nH=[270]"},
       {"0 t_GetCurrentSourceInfo fails !\n"},
       {"3 bFullScreen = true SetDefaultSize !\n"},
       {},
       "IVideoControl[main#1]::SetDefaultSize() -> 1"},
      {"Set",
       "SetScreenRect",
       "IVideoControl::SetSize",
       setCorner,
       0,
       true,
       0,
       {"3 nX=[480] nY=[270] nW=[480] nH=[270]", "3 After convert nTempX=[960] nTempY=[540] nTempW=[960] nTempH=[540]"},
       {"0 t_GetCurrentSourceInfo fails !\n"},
       {},
       {},
       "IVideoControl[main#1]::SetSize(x=960, y=540, height=540, width=960) -> 1"},
      {"GetText",
       "GetScreenRect",
       "IVideoControl::GetSize",
       getText,
       0,
       true,
       0,
       {},
       {"0 Cannot get Source info from TVS!!!"},
       {},
       {"0 Cannot get Size info from TVS!!!"},
       "IVideoControl[main#1]::GetSize() x=0 y=0 height=1080 width=1920 -> 1"},
      {"GetRect",
       "GetScreenRect",
       "IVideoControl::GetSize",
       getRect,
       -1,
       true,
       -1,
       {},
       {},
       {},
       {},
       "IVideoControl[main#1]::GetSize() x=0 y=0 height=1080 width=1920 -> 1"},
      {"GetAfd",
       "GetAFDGeometryRectSize",
       "IVideoControl::GetAFDGeometryRectSize",
       getAfd,
       0,
       false,
       0,
       {},
       {},
       {},
       {"0 GetAFDGeometryRectSize failed"},
       "IVideoControl[main#1]::GetAFDGeometryRectSize() x=0 y=0 width=1920 height=1080 -> 1"},
  };
  return all;
}

}  // namespace screen
