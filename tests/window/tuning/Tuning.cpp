// SPDX-License-Identifier: MIT
#include "Tuning.h"

#include "services/ServiceStore.h"
#include "set/Knobs.h"

namespace tuning {

using channels::banner;
using sources::mainKey;
using sources::middlewareKey;
using sources::pipKey;
using sources::previousMainKey;
using sources::previousPipKey;
using virtualtv::WindowId;

const std::string askApp = "CEmpEngineBase::GetAppInfo(type=1) -> \"test.app\"";
const std::string onTv = "3 Current source is TV, ePLSource = 0";
const std::string keyIsTv = "3 nCurSourceVconf is PL_WINDOW_SOURCE_TV";

const Lines keysOfTv{"0", "0", "0", "-", "-"};
const Lines keysOfHdmi{"31", "77", "0", "-", "-"};

namespace {

const std::string app = "3 appid is test.app";
const std::string found = "3 SERVICE_ID=[282]";
const std::string askMode = "IServiceNavigation[main#1]::GetTvMode() mode=0,1 -> 1";
const std::string askList =
    "TCNavigationModeHelper::GetNavigationCriteria(navigation=0, mode=0,1, service=18446744073709551615) "
    "criteria=CONDITIONS -> 1";
const std::string askCurrent =
    "IServiceNavigation[main#1]::GetCurrentService(mode=0,1, CONDITIONS, fetch 1 12 22) service={1=1,12=281,22=0} -> 1";
const std::string seekNext =
    "IServiceNavigation[main#1]::SeekNextService(CONDITIONS, fetch 1 12 22, currentId=281, mode=-1,-1) "
    "service={1=2,12=282,22=0} -> 1";
const std::string askOptimum =
    "TCNavigationModeHelper::GetOptimumCriteria(major=8, minor=0, navigation=0) criteria=CONDITIONS -> 1";
const std::string findOptimum =
    "IServiceNavigation[main#1]::GetOptimumService(CONDITIONS, mode=-1,-1) service={12=282} -> 1";
const std::string findPtc =
    "IService[set#1]::FindService(fetch 12 41 18 2, order 12 up, where 2=35, count=1) "
    "service={12=282,41=8442,18=1051,2=35} -> 1";
const std::string findDirect =
    "IService[set#1]::FindService(fetch 12, where 2=35, where 1=2, where 14=0, count=1) service={12=282} -> 1";

/// The proxies that most operations need.
const Lines serviceFirst{"service", "source control", "navigation"};

Operation setChannel() {
  return {"SetChannel",
          [](support::WorkerProbe& worker) { return worker.SetChannel(8, 0); },
          {askOptimum, findOptimum, askApp},
          {place("SetChannel"), "3 nMajor=[8] nMinor=[0]", found, app},
          serviceFirst,
          {{"TCNavigationModeHelper::GetOptimumCriteria", 0, 2, {}, {askOptimum}},
           {"IServiceNavigation::GetOptimumService", 0, 2, {banner(0, "SetChannel")}, {askOptimum, findOptimum}}},
          true};
}

Operation setChannelPtc() {
  return {"SetChannel_PTC",  [](support::WorkerProbe& worker) { return worker.SetChannel_PTC(35); },
          {findPtc, askApp}, {"3 nPTC=[35]", found, app},
          serviceFirst,      {{"IService::FindService", 0, 1, {}, {findPtc}}}};
}

Operation setChannelDirect() {
  return {
      "SetChannelDirect",   [](support::WorkerProbe& worker) { return worker.SetChannelDirect(35, 2, 0, 5); },
      {findDirect, askApp}, {place("SetChannelDirect"), "3 ptc=[35],major=[2],minor=[0],channelType=[5]", found, app},
      serviceFirst,         {{"IService::FindService", 0, 2, {}, {findDirect}}}};
}

Operation setChannelByServiceid() {
  return {"SetChannelByServiceid",
          [](support::WorkerProbe& worker) { return worker.SetChannelByServiceid(282); },
          {askApp},
          {place("SetChannelByServiceid"), "3 TCServiceId=[282]", app},
          {"source control"},
          {}};
}

Operation setChannelSeek() {
  const std::string function = "SetChannel_Seek";
  return {function,
          [](support::WorkerProbe& worker) {
            return worker.SetChannel_Seek(PL_WINDOW_SEEK_NEXT, _PL_WINDOW_NAVIGATOR_MODE{});
          },
          {askMode, askList, askCurrent, askApp, seekNext},
          {place(function), "3 eSeek=[3] eNavigatorMode=[0]", "3 eSeek=[3] nTCNavigatorMode=[0]", app, "3 svcid = 281",
           "3 svcidNext = 282"},
          {"service", "navigation", "source control"},
          {{"IServiceNavigation::GetTvMode", 0, 3, {"0 GetTvMode failed"}, {askMode}},
           {"TCNavigationModeHelper::GetNavigationCriteria",
            0,
            3,
            {"0 Get navigation criteria failed"},
            {askMode, askList}},
           {"IServiceNavigation::GetCurrentService",
            -1,
            3,
            {"0 Fail to get current service data\n"},
            {askMode, askList, askCurrent}},
           {"IServiceNavigation::SeekNextService",
            -1,
            5,
            {banner(0, function)},
            {askMode, askList, askCurrent, askApp, seekNext}}}};
}

void replaceAll(std::string& text, const std::string& what, const std::string& with) {
  for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + with.size())) {
    text.replace(at, what.size(), with);
  }
}

}  // namespace

const std::vector<Operation>& operations() {
  static const std::vector<Operation> all{setChannel(), setChannelPtc(), setChannelDirect(), setChannelByServiceid(),
                                          setChannelSeek()};
  return all;
}

Lines withoutConditions(const Lines& calls) {
  const std::string mark = " criteria=";
  std::string conditions;
  Lines lines;
  for (std::string line : calls) {
    if (const std::size_t at = line.find(mark); at != std::string::npos) {
      const std::size_t start = at + mark.size();
      conditions = line.substr(start, line.find(" -> ", start) - start);
    }
    if (!conditions.empty()) replaceAll(line, conditions, "CONDITIONS");
    lines.push_back(std::move(line));
  }
  return lines;
}

Lines askSource(int source) {
  return {"ISourceControl[main#1]::GetSourceState() state=2 -> 1",
          "ISourceControl[main#1]::GetCurrentSourceInfo() source=" + std::to_string(source) + " -> 1"};
}

Lines sourceLogs(int source, int plSource) {
  return join({sources::currentLogs(source), sources::converted(source, plSource)});
}

std::string tune(const std::string& serviceId) {
  return "IServiceNavigation[main#1]::TuneService(serviceId=" + serviceId + ", 0, 0, appId=\"test.app\") -> 1";
}
std::string switchToTv(const std::string& serviceId) {
  return "ISourceControl[main#1]::SetSource(source=0, serviceId=" + serviceId + ", appId=\"test.app\") -> 1";
}
std::string readKey(const std::string& key, int value) {
  return "vconf_get_int(key=\"" + key + "\") value=" + std::to_string(value) + " -> 0";
}
std::string writeKey(const std::string& key, int value) {
  return "vconf_set_int(key=\"" + key + "\", value=" + std::to_string(value) + ") -> 0";
}
std::string written(const std::string& key, int value) {
  return "3 Set vconf " + key + " = " + std::to_string(value) + " success";
}

Lines recordCalls(int previous) {
  return {writeKey(previousMainKey, previous), "CEmpEngineBase::GetAppInfo(type=2) -> \"test.widget\"",
          "vconf_set_str(key=\"db/kel/current_source_type\", value=\"test.widget:0\") -> 0", writeKey(mainKey, 0)};
}

Lines recordLogs(int previous) {
  return {written(previousMainKey, previous), "3 This is t_SetCurrentSourcevconf",
          "3 it is main source set the vconf for emptvsmw ", "3 The vconf value to be set: test.widget:0",
          written(mainKey, 0)};
}

void TuningTest::showHdmi(WindowId window) {
  tv().adjust([&](virtualtv::TvState& state) {
    state[window].sourceState = virtualtv::SOURCE_STATE_SHOWN;
    state[window].source = hdmi;
  });
  setSetting(mainKey, plHdmi);
  setSetting(previousMainKey, 77);
  forget();
}

void TuningTest::drivePictureInPicture() {
  ASSERT_EQ(worker.SetWindow(PL_WINDOW_WINDOW_PIP), 1);
  tv().switchSource(WindowId::pip, SOURCE_TV, *tv().services().keyOf(281));
  forget();
}

Lines TuningTest::keys() {
  Lines values;
  for (const char* key : {mainKey, previousMainKey, pipKey, previousPipKey}) {
    const auto value = intSetting(key);
    values.push_back(value ? std::to_string(*value) : "-");
  }
  values.push_back(textSetting(middlewareKey).value_or("-"));
  return values;
}

std::string TuningTest::knob(WindowId window, const std::string& name) {
  return virtualtv::getKnob(tv(), virtualtv::nameOf(window) + name);
}

Lines EachOperation::notTv() const {
  if (!operation().tellsOfOtherSource) return {};
  return {"3 Current source is not TV,use setsource API"};
}

std::string nameOf(const ::testing::TestParamInfo<Operation>& info) {
  return info.param.name;
}

}  // namespace tuning
