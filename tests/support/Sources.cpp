// SPDX-License-Identifier: MIT
#include "support/Sources.h"

namespace sources {

using support::leveled;

const std::string askState = "ISourceControl[main#1]::GetSourceState() state=2 -> 1";
const std::string askCurrent = "ISourceControl[main#1]::GetCurrentSourceInfo() source=5 -> 1";

const Lines noSourceControl{"0 src_ctrl_proxy is NULL, t_eWindow =0",
                            "0 CEmpTaskWindow src_ctrl_proxy create is FAIL!!", "0 SourceControlproxy is NULL"};

void SourceTest::SetUp() {
  WorkerTest::SetUp();
  show(5, 8);
}

void SourceTest::show(int source, int previous, virtualtv::WindowId window) {
  tv().adjust([&](virtualtv::TvState& state) {
    state[window].sourceState = virtualtv::SOURCE_STATE_SHOWN;
    state[window].source = source;
    state[window].previousSource = previous;
  });
}

void SourceTest::deactivate() {
  tv().adjust(
      [](virtualtv::TvState& state) { state[virtualtv::WindowId::main].sourceState = virtualtv::SOURCE_STATE_NONE; });
}

void SourceTest::loseSourceControl() {
  worker.src_ctrl_proxy = nullptr;
  fault("TVServiceAPI::CreateSourceControl always result=null");
}

void SourceTest::only(const std::string& words) {
  clearFaults();
  forget();
  fault(words);
}

Lines converted(int tc, int pl) {
  return {"3 t_IsConvertable input eTVSSource = " + std::to_string(tc),
          "3 t_IsConvertable output ePLSource = " + std::to_string(pl)};
}

Lines refused(int tc) {
  return {"3 t_IsConvertable input eTVSSource = " + std::to_string(tc),
          "0 t_IsConvertable can't convert to  PL_WINDOW_SOURCE",
          "0 Can't convert from eTVSSource = " + std::to_string(tc) + " to PL_WINDOW_SOURCE"};
}

Lines currentLogs(int tc) {
  return leveled(3, {"This is t_GetCurrentSourceInfo", "GetSourceState start", "GetSourceState = 2",
                     "GetCurrentSourceInfo successfully eTVSSource = " + std::to_string(tc)});
}

}  // namespace sources
