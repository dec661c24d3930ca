// SPDX-License-Identifier: MIT
#include "Switching.h"

namespace switching {

using sources::mainKey;
using sources::middlewareKey;
using sources::pipKey;
using sources::previousMainKey;
using sources::previousPipKey;
using virtualtv::WindowId;

const Lines startKeys{"20", "77", "0", "-", "-"};

void SwitchTest::SetUp() {
  channels::furnish(tv());
  SourceTest::SetUp();
  restart();
}

void SwitchTest::restart() {
  clearFaults();
  show(5, 8);
  setSetting(mainKey, 20);
  setSetting(previousMainKey, 77);
  tv().removeSetting(middlewareKey);
  forget();
}

void SwitchTest::expectFailures(int source, int major, const Lines& begun, const std::vector<Failure>& failures) {
  for (const Failure& failure : failures) {
    SCOPED_TRACE(failure.fault);
    restart();
    fault(failure.fault);
    EXPECT_FALSE(set(source, major));
    EXPECT_TRUE(faultsHit());
    EXPECT_EQ(logs(), join({request(source, major), begun, failure.logs}));
    EXPECT_EQ(keys(), failure.keys);
    EXPECT_EQ(shown(), failure.shown);
  }
}

Lines SwitchTest::request(int source, int major) {
  return asked(source, major);
}

Lines SwitchTest::keys() {
  Lines values;
  for (const char* key : {mainKey, previousMainKey, pipKey, previousPipKey}) {
    const std::optional<int> value = intSetting(key);
    values.push_back(value ? std::to_string(*value) : "-");
  }
  values.push_back(textSetting(middlewareKey).value_or("-"));
  return values;
}

int SwitchTest::shown(WindowId window) {
  return tv().state()[window].source;
}

Lines asked(int source, int major) {
  return join({{"3 t_SetSource input ePLSource = " + std::to_string(source) + ", nMajor = " + std::to_string(major)},
               sources::currentLogs(5),
               sources::converted(5, 20),
               {"3 t_SetSource input eCurPLSource = 20"}});
}

Lines other(int source) {
  return {"3 ePLSource=[" + std::to_string(source) + "], current db/emp/mainsource = 20 success",
          "3 appid is test.app"};
}

Lines translated(int source, int tc, int major) {
  const std::string from = std::to_string(source);
  const std::string to = std::to_string(tc);
  return {"3 t_IsConvertable input ePLSource = " + from, "3 t_IsConvertable output eTVSSource = " + to,
          "3 ePLSource=[" + from + "] eTVSSource=[" + to + "], nMajor=[" + std::to_string(major) + "]"};
}

std::string leaving(int source) {
  return "3 ePLSource=[" + std::to_string(source) + "].Deactivate TVService";
}

std::string written(const std::string& key, int source) {
  return "3 Set vconf " + key + " = " + std::to_string(source) + " success";
}

std::string unwritten(const std::string& key, int source) {
  return "0 Set vconf " + key + " = " + std::to_string(source) + " failed";
}

Lines published(int source) {
  return {"3 This is t_SetCurrentSourcevconf", "3 it is main source set the vconf for emptvsmw ",
          "3 The vconf value to be set: test.widget:" + std::to_string(source)};
}

Lines recorded(int source, int previous) {
  return join({{written(previousMainKey, previous)}, published(source), {written(mainKey, source)}});
}

std::vector<Failure> unrecorded(const Lines& begun, int source, int previous, int shown) {
  const std::string was = std::to_string(previous);
  const Lines told = join({begun, {written(previousMainKey, previous)}, published(source)});
  const Lines untold{"0 set the vconf for emptvsmw failed!!!", "0 t_SetTVMWMainSourcevconf failed"};
  const std::string thrown = caught("t_SetSource", "vconf_set_int");
  Lines unwrittenKeys = startKeys;
  unwrittenKeys[0] = previous == 20 ? unwrittenKeys[0] : was;
  Lines first = unwrittenKeys;
  first[1] = was;
  Lines second = first;
  second[4] = "test.widget:" + std::to_string(source);
  return {{"vconf_set_int result=-1", join({begun, {unwritten(previousMainKey, previous)}}), unwrittenKeys, shown},
          {"vconf_set_int result=1", join({begun, {unwritten(previousMainKey, previous)}}), unwrittenKeys, shown},
          {"vconf_set_int result=throw", join({begun, {thrown, unwritten(previousMainKey, previous)}}), unwrittenKeys,
           shown},
          {"vconf_set_str result=-1", join({told, untold}), first, shown},
          {"vconf_set_str result=throw", join({told, {caught("t_SetTVMWMainSourcevconf", "vconf_set_str")}, untold}),
           first, shown},
          {"vconf_set_int nth=2 result=-1", join({told, {unwritten(mainKey, source)}}), second, shown},
          {"vconf_set_int nth=2 result=throw", join({told, {thrown, unwritten(mainKey, source)}}), second, shown}};
}

std::string switchTo(int tc, const std::string& serviceId) {
  return "ISourceControl[main#1]::SetSource(source=" + std::to_string(tc) +
         (serviceId.empty() ? "" : ", serviceId=" + serviceId) + ", appId=\"test.app\") -> 1";
}

}  // namespace switching
