// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <string>
#include <vector>

#include "support/LogLines.h"
#include "support/TvTest.h"

/// The worker's proxies and the factories that make them, for the tests of its life cycle.
namespace lifecycle {

using support::Lines;
using support::WorkerProbe;

/// The factories, in the order in which `Create` calls them.
inline constexpr std::array factories{
    "TVServiceAPI::CreateService",      "TVServiceAPI::CreateSourceControl", "TVServiceAPI::CreateServiceNavigation",
    "TVServiceAPI::CreateAVControl",    "TVServiceAPI::ServiceDataAux",      "TVServiceAPI::CreateVideoControl",
    "TVServiceAPI::CreateTunerControl", "TVServiceAPI::CreateDataControl",
};

/// The ways in which a factory fails, as words of a fault. `ServiceDataAux` returns its pointer, so no number means
/// failure.
inline Lines failures(const std::string& factory) {
  if (factory == "TVServiceAPI::ServiceDataAux") return {"result=null", "result=throw"};
  return {"result=1", "result=-1", "result=null", "result=unwritten", "result=throw"};
}

/// The call of a factory that succeeds, as in a trace.
inline std::string made(const std::string& factory, int profile) {
  const bool aux = factory == "TVServiceAPI::ServiceDataAux";
  const bool anyWindow = factory == "TVServiceAPI::CreateService";
  const std::string arguments = anyWindow ? "" : "profile=" + std::to_string(profile) + ", index=0";
  return factory + "(" + arguments + ") -> " + (aux ? "made" : "0");
}

/// Which proxies exist: those in use and those stored for each window.
struct Slots {
  std::vector<bool> active, main, pip;  ///< navigation, source, video, AV, auxiliary, data
  bool service = false;
  bool tuner = false;
};

inline Slots slots(const WorkerProbe& worker) {
  const auto set = [](auto*... proxies) { return std::vector<bool>{(proxies != nullptr)...}; };
  return {set(worker.svc_navi_proxy, worker.src_ctrl_proxy, worker.video_ctrl_proxy, worker.av_ctrl_proxy,
              worker.servicedata_aux_proxy, worker.svc_datacontrol_proxy),
          set(worker.svc_navi_proxy_main, worker.src_ctrl_proxy_main, worker.video_ctrl_proxy_main,
              worker.av_ctrl_proxy_main, worker.servicedata_aux_proxy_main, worker.svc_datacontrol_proxy_main),
          set(worker.svc_navi_proxy_pip, worker.src_ctrl_proxy_pip, worker.video_ctrl_proxy_pip,
              worker.av_ctrl_proxy_pip, worker.servicedata_aux_proxy_pip, worker.svc_datacontrol_proxy_pip),
          worker.svc_proxy != nullptr, worker.tuner_ctrl_proxy != nullptr};
}

inline const std::vector<bool> none(6, false);
inline const std::vector<bool> all(6, true);

}  // namespace lifecycle
