// SPDX-License-Identifier: MIT
// The source keys: seeded at the start, published to the middleware, updated after a change.
#include "support/Sources.h"

namespace {

using sources::askCurrent;
using sources::askState;
using sources::converted;
using sources::currentLogs;
using sources::mainKey;
using sources::middlewareKey;
using sources::pipKey;
using sources::previousMainKey;
using sources::previousPipKey;
using sources::refused;
using support::caught;
using support::join;
using support::Lines;

/// The trace of a write to an integer key.
std::string write(const std::string& key, int value) {
  return "vconf_set_int(key=\"" + key + "\", value=" + std::to_string(value) + ") -> 0";
}
std::string written(const std::string& key, int value) {
  return "3 Set vconf " + key + " = " + std::to_string(value) + " success";
}

/// A failing call, the values afterwards of the keys that seeding writes and of the middleware's key, and the log
/// lines.
struct Failure {
  std::string fault;
  Lines keys;
  Lines logs;
};

class KeepTest : public sources::SourceTest {
 protected:
  void SetUp() override {
    SourceTest::SetUp();
    restart();
  }

  /// Sets the keys to values that no operation writes, so that every write is visible.
  void restart() {
    clearFaults();
    for (const char* key : {mainKey, previousMainKey, pipKey}) setSetting(key, 77);
    tv().removeSetting(middlewareKey);
    forget();
  }

  /// The three keys that seeding writes, in that order, and the middleware's key if it exists.
  Lines keys() {
    Lines values;
    for (const char* key : {mainKey, previousMainKey, pipKey}) {
      values.push_back(std::to_string(intSetting(key).value_or(-1)));
    }
    if (const std::optional<std::string> told = textSetting(middlewareKey)) values.push_back(*told);
    return values;
  }

  template <typename Operation>
  void expectFailures(const Lines& begun, const std::vector<Failure>& failures, Operation operation) {
    for (const Failure& failure : failures) {
      SCOPED_TRACE(failure.fault);
      restart();
      EXPECT_FALSE(under(failure.fault, operation));
      EXPECT_EQ(logs(), join({begun, failure.logs}));
      EXPECT_EQ(keys(), failure.keys);
    }
  }
};

const Lines untouched{"77", "77", "77"};

// Seeding.

const Lines seeded = join({currentLogs(5), converted(5, 20)});

TEST_F(KeepTest, SeedingWritesTheCurrentSourceTwiceAndTvForPictureInPicture) {
  EXPECT_TRUE(worker.t_InitSourceVconf());
  EXPECT_EQ(keys(), (Lines{"20", "20", "0"}));
  EXPECT_EQ(calls(), (Lines{askState, askCurrent, write(mainKey, 20), askCurrent, write(previousMainKey, 20),
                            write(pipKey, 0)}));
  EXPECT_EQ(logs().back(), written(pipKey, 0));
  EXPECT_EQ(intSetting(previousPipKey), std::nullopt);
}

TEST_F(KeepTest, SeedingWritesTheMainWindowsKeysWhateverWindowIsDriven) {
  worker.SetWindow(PL_WINDOW_WINDOW_PIP);
  show(1, 2, virtualtv::WindowId::pip);
  EXPECT_TRUE(worker.t_InitSourceVconf());
  EXPECT_EQ(keys(), (Lines{"15", "15", "0"}));
  EXPECT_EQ(intSetting(previousPipKey), std::nullopt);
}

TEST_F(KeepTest, SeedingTakesThePreviousSourceFromASecondQuestion) {
  only("ISourceControl::GetCurrentSourceInfo nth=2 out.source=8");
  EXPECT_TRUE(worker.t_InitSourceVconf());
  EXPECT_EQ(keys(), (Lines{"20", "24", "0"}));
  only("ISourceControl::GetSourceState result=0");
  EXPECT_TRUE(worker.t_InitSourceVconf());
  EXPECT_EQ(keys(), (Lines{"43", "20", "0"})) << "also where no source is active";
}

TEST_F(KeepTest, SeedingStopsAtTheFirstFailureAndKeepsWhatItWrote) {
  const std::string set = "vconf_set_int ";
  const std::string again = "ISourceControl::GetCurrentSourceInfo nth=2 ";
  const std::string thrown = caught("t_InitSourceVconf", "vconf_set_int");
  const std::string failed = "0 GetCurrentSourceInfo failed";
  const Lines first{"20", "77", "77"};
  const Lines both{"20", "20", "77"};
  const Lines one{written(mainKey, 20)};
  const Lines asked = join({one, {"3 GetCurrentSourceInfo successfully eTVSSource = 5"}, converted(5, 20)});
  const Lines unknown = join({one, {"3 GetCurrentSourceInfo successfully eTVSSource = -1"}, refused(-1)});
  const std::string noMain = "0 Set vconf db/emp/mainsource failed";
  const std::string noPrevious = "0 Set vconf db/emp/previousmainsource failed";
  const auto seed = [this] { return worker.t_InitSourceVconf(); };
  expectFailures(seeded,
                 {{set + "result=-1", untouched, {noMain}},
                  {set + "result=throw", untouched, {thrown, noMain}},
                  {again + "result=0", first, join({one, {failed}})},
                  {again + "result=-1", first, join({one, {failed}})},
                  {again + "result=throw", first,
                   join({one, {caught("t_InitSourceVconf", "ISourceControl::GetCurrentSourceInfo"), failed}})},
                  {again + "result=unwritten", first, unknown},
                  {again + "out.source=-1", first, unknown},
                  {set + "nth=2 result=-1", first, join({asked, {noPrevious}})},
                  {set + "nth=2 result=throw", first, join({asked, {thrown, noPrevious}})},
                  {set + "nth=3 result=-1", both,
                   join({asked, {written(previousMainKey, 20), "0 Set vconf db/emp/pipsourcefailed"}})}},
                 seed);
  const Lines state{"3 This is t_GetCurrentSourceInfo", "3 GetSourceState start"};
  expectFailures(state,
                 {{"ISourceControl::GetSourceState result=throw",
                   untouched,
                   {caught("t_GetCurrentSourceInfo", "ISourceControl::GetSourceState")}},
                  {"ISourceControl::GetCurrentSourceInfo result=0", untouched, {"3 GetSourceState = 2", failed}}},
                 seed);
  loseSourceControl();
  forget();
  EXPECT_FALSE(seed());
  EXPECT_EQ(logs(), sources::noSourceControl);
}

// Publishing.

const Lines publishing{"3 This is t_SetCurrentSourcevconf", "3 it is main source set the vconf for emptvsmw "};
const std::string noText = "0 set the vconf for emptvsmw failed!!!";

TEST_F(KeepTest, PublishingCutsTheSourceToThreeCharacters) {
  const std::vector<std::pair<int, std::string>> cuts{{0, "0"},     {100, "100"},  {1234, "123"},      {-1, "-1"},
                                                      {-12, "-12"}, {-123, "-12"}, {2147483647, "214"}};
  for (const auto& [source, text] : cuts) {
    EXPECT_TRUE(worker.t_SetTVMWMainSourcevconf(mainKey, source));
    EXPECT_EQ(textSetting(middlewareKey), "test.widget:" + text);
    EXPECT_EQ(logs(), join({publishing, {"3 The vconf value to be set: test.widget:" + text}}));
  }
}

TEST_F(KeepTest, PublishingIsRefusedForEveryOtherKey) {
  for (const char* key : {"db/emp/mainsource1", "db/emp/mainsource ", "db/emp/mainsourc", "db/emp/pipsource",
                          "db/emp/previousmainsource", "DB/EMP/MAINSOURCE", ""}) {
    EXPECT_FALSE(worker.t_SetTVMWMainSourcevconf(key, 20)) << key;
    EXPECT_EQ(logs(), (Lines{publishing[0], "0 in_key= " + std::string(key) + "  is not equal to db/emp/mainsource"}));
  }
  EXPECT_EQ(calls(), Lines());
}

TEST_F(KeepTest, PublishingWithoutAWidgetGoesOnWithAnEmptyId) {
  const auto publish = [this] { return worker.t_SetTVMWMainSourcevconf(mainKey, 20); };
  const Lines told = join({publishing, {"0 Could not get widget ID.", "3 The vconf value to be set: :20"}});
  EXPECT_TRUE(under("CEmpEngineBase::GetAppInfo result=null", publish));
  EXPECT_EQ(textSetting(middlewareKey), ":20");
  EXPECT_EQ(logs(), told);
  worker.m_pEngine = nullptr;
  forget();
  EXPECT_TRUE(publish());
  EXPECT_EQ(logs(), told);
  EXPECT_EQ(callsOf("GetAppInfo"), Lines()) << "there is nobody to be asked";
}

TEST_F(KeepTest, PublishingWorksForAWidgetWithALongName) {
  const std::string widget(3000, 'w');
  engine.SetAppInfo(1, appId, widget, "");
  EXPECT_TRUE(worker.t_SetTVMWMainSourcevconf(mainKey, 20));
  EXPECT_EQ(textSetting(middlewareKey), widget + ":20");
}

TEST_F(KeepTest, PublishingFailsWithoutAnAnswerOrAKeyThatCanBeWritten) {
  const std::string told = "3 The vconf value to be set: test.widget:20";
  const std::string function = "t_SetTVMWMainSourcevconf";
  expectFailures(
      publishing,
      {{"CEmpEngineBase::GetAppInfo result=throw", untouched, {caught(function, "CEmpEngineBase::GetAppInfo")}},
       {"vconf_set_str result=-1", untouched, {told, noText}},
       {"vconf_set_str result=throw", untouched, {told, caught(function, "vconf_set_str"), noText}}},
      [this] { return worker.t_SetTVMWMainSourcevconf(mainKey, 20); });
}

// Updating the keys.

TEST_F(KeepTest, UpdateWritesThePreviousSourceThenTheMiddlewaresThenTheCurrentOne) {
  EXPECT_TRUE(worker.t_UpdateSourceVconf(0, 20));
  EXPECT_EQ(calls(), (Lines{write(previousMainKey, 20), "CEmpEngineBase::GetAppInfo(type=2) -> \"test.widget\"",
                            "vconf_set_str(key=\"db/kel/current_source_type\", value=\"test.widget:0\") -> 0",
                            write(mainKey, 0)}));
  EXPECT_EQ(logs(), join({{written(previousMainKey, 20)},
                          publishing,
                          {"3 The vconf value to be set: test.widget:0", written(mainKey, 0)}}));
  EXPECT_EQ(keys(), (Lines{"0", "20", "77", "test.widget:0"}));
}

TEST_F(KeepTest, UpdateStopsAtTheFirstFailureAndKeepsWhatItWrote) {
  const std::string noPrevious = "0 Set vconf db/emp/previousmainsource = 20 failed";
  const std::string noCurrent = "0 Set vconf db/emp/mainsource = 0 failed";
  const std::string thrown = caught("t_UpdateSourceVconf", "vconf_set_int");
  const Lines told = join({{written(previousMainKey, 20)}, publishing, {"3 The vconf value to be set: test.widget:0"}});
  const Lines first{"77", "20", "77"};
  const Lines second{"77", "20", "77", "test.widget:0"};
  expectFailures({},
                 {{"vconf_set_int result=-1", untouched, {noPrevious}},
                  {"vconf_set_int result=throw", untouched, {thrown, noPrevious}},
                  {"vconf_set_str result=-1", first, join({told, {noText, "0 t_SetTVMWMainSourcevconf failed"}})},
                  {"vconf_set_int nth=2 result=-1", second, join({told, {noCurrent}})},
                  {"vconf_set_int nth=2 result=throw", second, join({told, {thrown, noCurrent}})}},
                 [this] { return worker.t_UpdateSourceVconf(0, 20); });
}

}  // namespace
