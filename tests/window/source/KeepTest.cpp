// The source keys: seeded at start, published to the middleware, brought up to date after a change.
#include "support/Sources.h"

namespace {

using sources::askCurrent;
using sources::askState;
using sources::converted;
using sources::currentLogs;
using sources::mainKey;
using sources::middlewareKey;
using sources::noSourceControl;
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

class KeepTest : public sources::SourceTest {
 protected:
  /// Values that nobody writes, so that what is written shows.
  void SetUp() override {
    SourceTest::SetUp();
    for (const char* key : {mainKey, previousMainKey, pipKey}) setSetting(key, old);
    forget();
  }

  /// The three keys that seeding writes, in its order.
  Lines keys() {
    Lines values;
    for (const char* key : {mainKey, previousMainKey, pipKey}) {
      values.push_back(std::to_string(intSetting(key).value_or(-1)));
    }
    return values;
  }

  static constexpr int old = 77;
};

// Seeding.

const Lines seeded = join({currentLogs(5), converted(5, 20)});
const Lines askedAgain = join({{"3 GetCurrentSourceInfo successfully eTVSSource = 5"}, converted(5, 20)});

TEST_F(KeepTest, SeedingWritesTheCurrentSourceTwiceAndTvForPictureInPicture) {
  EXPECT_TRUE(worker.t_InitSourceVconf());
  EXPECT_EQ(keys(), (Lines{"20", "20", "0"}));
  EXPECT_EQ(calls(), (Lines{askState, askCurrent, write(mainKey, 20), askCurrent, write(previousMainKey, 20),
                            write(pipKey, 0)}));
  EXPECT_EQ(logs(),
            join({seeded, {written(mainKey, 20)}, askedAgain, {written(previousMainKey, 20), written(pipKey, 0)}}));
  EXPECT_EQ(intSetting(previousPipKey), std::nullopt);
  EXPECT_EQ(textSetting(middlewareKey), std::nullopt);
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
}

TEST_F(KeepTest, SeedingWithoutAnActiveSourceWritesFortyThreeAndAsksForTheSourceAllTheSame) {
  deactivate();
  EXPECT_TRUE(worker.t_InitSourceVconf());
  EXPECT_EQ(keys(), (Lines{"43", "20", "0"}));
}

/// A failure of seeding: the fault, the keys afterwards, the log lines behind those of reading the current source.
struct SeedFailure {
  std::string fault;
  Lines keys;
  Lines logs;
};

TEST_F(KeepTest, SeedingStopsAtTheFirstFailureAndKeepsWhatItWrote) {
  const Lines again{written(mainKey, 20), "0 GetCurrentSourceInfo failed"};
  const Lines againThrown{written(mainKey, 20), caught("t_InitSourceVconf", "ISourceControl::GetCurrentSourceInfo"),
                          "0 GetCurrentSourceInfo failed"};
  const Lines untranslated =
      join({{written(mainKey, 20), "3 GetCurrentSourceInfo successfully eTVSSource = -1"}, refused(-1)});
  const Lines untouched{"77", "77", "77"};
  const Lines first{"20", "77", "77"};
  const Lines both{"20", "20", "77"};
  const std::vector<SeedFailure> failures{
      {"vconf_set_int result=-1", untouched, {"0 Set vconf db/emp/mainsource failed"}},
      {"vconf_set_int result=throw",
       untouched,
       {caught("t_InitSourceVconf", "vconf_set_int"), "0 Set vconf db/emp/mainsource failed"}},
      {"ISourceControl::GetCurrentSourceInfo nth=2 result=0", first, again},
      {"ISourceControl::GetCurrentSourceInfo nth=2 result=-1", first, again},
      {"ISourceControl::GetCurrentSourceInfo nth=2 result=throw", first, againThrown},
      {"ISourceControl::GetCurrentSourceInfo nth=2 result=unwritten", first, untranslated},
      {"ISourceControl::GetCurrentSourceInfo nth=2 out.source=-1", first, untranslated},
      {"vconf_set_int nth=2 result=-1", first,
       join({{written(mainKey, 20)}, askedAgain, {"0 Set vconf db/emp/previousmainsource failed"}})},
      {"vconf_set_int nth=2 result=throw", first,
       join({{written(mainKey, 20)},
             askedAgain,
             {caught("t_InitSourceVconf", "vconf_set_int"), "0 Set vconf db/emp/previousmainsource failed"}})},
      {"vconf_set_int nth=3 result=-1", both,
       join(
           {{written(mainKey, 20)}, askedAgain, {written(previousMainKey, 20), "0 Set vconf db/emp/pipsourcefailed"}})},
  };
  for (const SeedFailure& failure : failures) {
    SCOPED_TRACE(failure.fault);
    for (const char* key : {mainKey, previousMainKey, pipKey}) setSetting(key, old);
    only(failure.fault);
    EXPECT_FALSE(worker.t_InitSourceVconf());
    EXPECT_TRUE(faultsHit());
    EXPECT_EQ(logs(), join({seeded, failure.logs}));
    EXPECT_EQ(keys(), failure.keys);
  }
}

TEST_F(KeepTest, SeedingWritesNothingWhenTheCurrentSourceCannotBeRead) {
  for (const char* words :
       {"ISourceControl::GetCurrentSourceInfo result=0", "ISourceControl::GetCurrentSourceInfo result=throw",
        "ISourceControl::GetCurrentSourceInfo result=unwritten"}) {
    only(words);
    EXPECT_FALSE(worker.t_InitSourceVconf()) << words;
    EXPECT_EQ(keys(), (Lines{"77", "77", "77"})) << words;
  }
  only("ISourceControl::GetSourceState result=throw");
  EXPECT_FALSE(worker.t_InitSourceVconf());
  EXPECT_EQ(logs(), (Lines{"3 This is t_GetCurrentSourceInfo", "3 GetSourceState start",
                           caught("t_GetCurrentSourceInfo", "ISourceControl::GetSourceState")}));
  EXPECT_EQ(keys(), (Lines{"77", "77", "77"}));
  only("ISourceControl::GetSourceState result=0");
  EXPECT_TRUE(worker.t_InitSourceVconf()) << "an unreadable state is no active source";
  EXPECT_EQ(keys(), (Lines{"43", "20", "0"}));
}

TEST_F(KeepTest, SeedingFailsWithoutSourceControl) {
  loseSourceControl();
  EXPECT_FALSE(worker.t_InitSourceVconf());
  EXPECT_EQ(logs(), noSourceControl);
  EXPECT_EQ(keys(), (Lines{"77", "77", "77"}));
}

// Publishing.

const std::string published = "3 it is main source set the vconf for emptvsmw ";
const std::string askWidget = "CEmpEngineBase::GetAppInfo(type=2) -> \"test.widget\"";

TEST_F(KeepTest, PublishingWritesWidgetAndSource) {
  EXPECT_TRUE(worker.t_SetTVMWMainSourcevconf(mainKey, 20));
  EXPECT_EQ(textSetting(middlewareKey), "test.widget:20");
  EXPECT_EQ(calls(),
            (Lines{askWidget, "vconf_set_str(key=\"db/kel/current_source_type\", value=\"test.widget:20\") -> 0"}));
  EXPECT_EQ(logs(),
            (Lines{"3 This is t_SetCurrentSourcevconf", published, "3 The vconf value to be set: test.widget:20"}));
}

TEST_F(KeepTest, PublishingCutsTheSourceToThreeCharacters) {
  const std::vector<std::pair<int, std::string>> cuts{{0, "0"},     {100, "100"},  {1234, "123"},      {-1, "-1"},
                                                      {-12, "-12"}, {-123, "-12"}, {2147483647, "214"}};
  for (const auto& [source, text] : cuts) {
    EXPECT_TRUE(worker.t_SetTVMWMainSourcevconf(mainKey, source));
    EXPECT_EQ(textSetting(middlewareKey), "test.widget:" + text);
  }
}

TEST_F(KeepTest, PublishingIsRefusedForEveryOtherKey) {
  for (const char* key : {"db/emp/mainsource1", "db/emp/mainsource ", "db/emp/mainsourc", "db/emp/pipsource",
                          "db/emp/previousmainsource", "DB/EMP/MAINSOURCE", ""}) {
    EXPECT_FALSE(worker.t_SetTVMWMainSourcevconf(key, 20)) << key;
    EXPECT_EQ(logs(), (Lines{"3 This is t_SetCurrentSourcevconf",
                             "0 in_key= " + std::string(key) + "  is not equal to db/emp/mainsource"}));
  }
  EXPECT_EQ(calls(), Lines());
  EXPECT_EQ(textSetting(middlewareKey), std::nullopt);
}

TEST_F(KeepTest, PublishingWithoutAWidgetGoesOnWithAnEmptyId) {
  const Lines rest{"0 Could not get widget ID.", "3 The vconf value to be set: :20"};
  only("CEmpEngineBase::GetAppInfo result=null");
  EXPECT_TRUE(worker.t_SetTVMWMainSourcevconf(mainKey, 20));
  EXPECT_EQ(textSetting(middlewareKey), ":20");
  EXPECT_EQ(logs(), join({{"3 This is t_SetCurrentSourcevconf", published}, rest}));
}

TEST_F(KeepTest, PublishingWithoutAnEngineAsksNobodyForTheWidget) {
  worker.m_pEngine = nullptr;
  EXPECT_TRUE(worker.t_SetTVMWMainSourcevconf(mainKey, 20));
  EXPECT_EQ(textSetting(middlewareKey), ":20");
  EXPECT_EQ(calls(), Lines{"vconf_set_str(key=\"" + std::string(middlewareKey) + "\", value=\":20\") -> 0"});
}

TEST_F(KeepTest, PublishingFailsWhenTheWidgetIsAskedForWithAnException) {
  only("CEmpEngineBase::GetAppInfo result=throw");
  EXPECT_FALSE(worker.t_SetTVMWMainSourcevconf(mainKey, 20));
  EXPECT_EQ(logs(), (Lines{"3 This is t_SetCurrentSourcevconf", published,
                           caught("t_SetTVMWMainSourcevconf", "CEmpEngineBase::GetAppInfo")}));
  EXPECT_EQ(calls(), Lines{"CEmpEngineBase::GetAppInfo(type=2) -> throws [fault]"});
  EXPECT_EQ(textSetting(middlewareKey), std::nullopt);
}

TEST_F(KeepTest, PublishingWorksForAWidgetWithALongName) {
  const std::string widget(3000, 'w');
  engine.SetAppInfo(1, appId, widget, "");
  EXPECT_TRUE(worker.t_SetTVMWMainSourcevconf(mainKey, 20));
  EXPECT_EQ(textSetting(middlewareKey), widget + ":20");
}

TEST_F(KeepTest, PublishingFailsWhenTheKeyCannotBeWritten) {
  const Lines before{"3 This is t_SetCurrentSourcevconf", published, "3 The vconf value to be set: test.widget:20"};
  only("vconf_set_str result=-1");
  EXPECT_FALSE(worker.t_SetTVMWMainSourcevconf(mainKey, 20));
  EXPECT_EQ(logs(), join({before, {"0 set the vconf for emptvsmw failed!!!"}}));
  only("vconf_set_str result=throw");
  EXPECT_FALSE(worker.t_SetTVMWMainSourcevconf(mainKey, 20));
  EXPECT_EQ(
      logs(),
      join({before, {caught("t_SetTVMWMainSourcevconf", "vconf_set_str"), "0 set the vconf for emptvsmw failed!!!"}}));
  EXPECT_EQ(textSetting(middlewareKey), std::nullopt);
}

// Bringing the keys up to date.

const Lines publishedTv{"3 This is t_SetCurrentSourcevconf", published, "3 The vconf value to be set: test.widget:0"};

TEST_F(KeepTest, UpdateWritesThePreviousSourceThenTheMiddlewaresThenTheCurrentOne) {
  EXPECT_TRUE(worker.t_UpdateSourceVconf(0, 20));
  EXPECT_EQ(calls(), (Lines{write(previousMainKey, 20), askWidget,
                            "vconf_set_str(key=\"db/kel/current_source_type\", value=\"test.widget:0\") -> 0",
                            write(mainKey, 0)}));
  EXPECT_EQ(logs(), join({{written(previousMainKey, 20)}, publishedTv, {written(mainKey, 0)}}));
  EXPECT_EQ(keys(), (Lines{"0", "20", "77"}));
}

TEST_F(KeepTest, UpdateStopsAtTheFirstFailureAndKeepsWhatItWrote) {
  struct Failure {
    std::string fault;
    Lines keys;
    std::optional<std::string> middleware;
    Lines logs;
  };
  const std::vector<Failure> failures{
      {"vconf_set_int result=-1",
       {"77", "77", "77"},
       std::nullopt,
       {"0 Set vconf db/emp/previousmainsource = 20 failed"}},
      {"vconf_set_int result=throw",
       {"77", "77", "77"},
       std::nullopt,
       {caught("t_UpdateSourceVconf", "vconf_set_int"), "0 Set vconf db/emp/previousmainsource = 20 failed"}},
      {"CEmpEngineBase::GetAppInfo result=throw",
       {"77", "20", "77"},
       std::nullopt,
       {written(previousMainKey, 20), publishedTv[0], published,
        caught("t_SetTVMWMainSourcevconf", "CEmpEngineBase::GetAppInfo"), "0 t_SetTVMWMainSourcevconf failed"}},
      {"vconf_set_str result=-1",
       {"77", "20", "77"},
       std::nullopt,
       join({{written(previousMainKey, 20)},
             publishedTv,
             {"0 set the vconf for emptvsmw failed!!!", "0 t_SetTVMWMainSourcevconf failed"}})},
      {"vconf_set_int nth=2 result=-1",
       {"77", "20", "77"},
       "test.widget:0",
       join({{written(previousMainKey, 20)}, publishedTv, {"0 Set vconf db/emp/mainsource = 0 failed"}})},
      {"vconf_set_int nth=2 result=throw",
       {"77", "20", "77"},
       "test.widget:0",
       join({{written(previousMainKey, 20)},
             publishedTv,
             {caught("t_UpdateSourceVconf", "vconf_set_int"), "0 Set vconf db/emp/mainsource = 0 failed"}})},
  };
  for (const Failure& failure : failures) {
    SCOPED_TRACE(failure.fault);
    for (const char* key : {mainKey, previousMainKey, pipKey}) setSetting(key, old);
    only(failure.fault);
    EXPECT_FALSE(worker.t_UpdateSourceVconf(0, 20));
    EXPECT_TRUE(faultsHit());
    EXPECT_EQ(logs(), failure.logs);
    EXPECT_EQ(keys(), failure.keys);
    EXPECT_EQ(textSetting(middlewareKey), failure.middleware);
  }
}

TEST_F(KeepTest, UpdateInPictureInPictureWritesThePreviousSourceAndFails) {
  worker.SetWindow(PL_WINDOW_WINDOW_PIP);
  forget();
  EXPECT_FALSE(worker.t_UpdateSourceVconf(0, 20));
  EXPECT_EQ(calls(), Lines{write(previousPipKey, 20)});
  EXPECT_EQ(logs(), (Lines{written(previousPipKey, 20), "3 This is t_SetCurrentSourcevconf",
                           "0 in_key= db/emp/pipsource  is not equal to db/emp/mainsource",
                           "0 t_SetTVMWMainSourcevconf failed"}));
  EXPECT_EQ(intSetting(previousPipKey), 20);
  EXPECT_EQ(keys(), (Lines{"77", "77", "77"}));
  EXPECT_EQ(textSetting(middlewareKey), std::nullopt);
}

}  // namespace
