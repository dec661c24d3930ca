// SPDX-License-Identifier: MIT
#include "Screen.h"

namespace screen {

namespace {

constexpr std::size_t bufferSize = 40;

}  // namespace

const std::string untouched(bufferSize, '#');

void ScreenTest::SetUp() {
  SourceTest::SetUp();
  tv().adjust([](virtualtv::TvState& state) { state.inputs = {{5, "first", true, {}}, {1, "second", true, {}}}; });
}

ScreenTest::Text ScreenTest::query(Query operation) {
  std::string buffer = untouched;
  const int result = (worker.*operation)(buffer.data());
  return {result, buffer.substr(0, buffer.find('\0'))};
}

void ScreenTest::setBase(int width, int height) {
  worker.m_baseScrW = width;
  worker.m_baseScrH = height;
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

std::vector<int> numbers(const Rect& rect) {
  return {rect.x, rect.y, rect.width, rect.height};
}

std::string sizeOf(int x, int y, int third, int fourth) {
  return "IVideoControl::GetSize out.x=" + std::to_string(x) + " out.y=" + std::to_string(y) +
         " out.height=" + std::to_string(third) + " out.width=" + std::to_string(fourth);
}

}  // namespace screen
