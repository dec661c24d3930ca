// SPDX-License-Identifier: MIT
// `.fault`: making calls fail, listing the faults, and reporting those that were never hit.
#include "virtualtv/shell/Support.h"

namespace virtualtv::shell {
namespace {

using FaultCommandTest = SessionTest;

TEST_F(FaultCommandTest, FaultMakesACallFail) {
  run("write a 5");
  EXPECT_EQ(run(".fault vconf_get_int result=-1"), "");
  EXPECT_EQ(run("read a"), "int -7");
  EXPECT_EQ(run("read a"), "int 5");
  run(".fault vconf_get_int out.value=9 always");
  run(".trace on");
  EXPECT_EQ(lines("read a"), (Lines{"int 9", "call vconf_get_int(key=\"a\") value=9 -> 0 [fault]"}));
}

TEST_F(FaultCommandTest, FaultThatThrowsGoesThroughThePlugin) {
  run("int 1");
  run(".fault vconf_set_int result=throw");
  EXPECT_EQ(run("write a 1"), "error: fault in vconf_set_int");
}

TEST_F(FaultCommandTest, FaultsAreListedWithTheirHits) {
  EXPECT_EQ(run(".fault"), "no faults");
  run("int 1");
  run(".fault vconf_get_int times=2 result=-1");
  run(".fault vconf_set_int nth=3 always result=throw");
  run("read a");
  EXPECT_EQ(lines(".fault"), (Lines{"fault 1: vconf_get_int times=2 result=-1 (hits: 1)",
                                    "fault 2: vconf_set_int nth=3 always result=throw (hits: 0)"}));
  EXPECT_EQ(run(".fault clear"), "");
  EXPECT_EQ(run(".fault"), "no faults");
}

TEST_F(FaultCommandTest, ListedFaultsCanBeTypedInAgain) {
  for (const std::string fault :
       {"vconf_get_str times=1 result='a b'", "vconf_get_str times=1 result=''",
        "vconf_get_str times=1 result='it'\\''s'", "vconf_get_str times=1 result='\"a\\b\"'",
        "vconf_get_str times=1 result='a\\''x41\\\\''x'", "vconf_get_str nth=2 always engine='my \"app\"' result=plain",
        "IService::FindService times=1 out.service='{16=\"News 24\"}'", "vconf_get_int times=1 out.value=-5"}) {
    EXPECT_EQ(run(".fault " + fault), "");
    const std::string listed = run(".fault");
    const std::size_t start = listed.find(": ") + 2;
    EXPECT_EQ(listed.substr(start), fault + " (hits: 0)");
    const std::string words = session->device().faults().front().result;
    run(".fault clear");
    EXPECT_EQ(run(".fault " + fault), "");
    EXPECT_EQ(session->device().faults().front().result, words);
    run(".fault clear");
  }
  run(".fault vconf_get_str 'result=a\\x41'");
  EXPECT_TRUE(run(".fault").ends_with(": vconf_get_str times=1 result='a\\''x41' (hits: 0)")) << run(".fault");
}

TEST_F(FaultCommandTest, FaultsAreRemovedOneByOneByNumbersThatAreNotGivenTwice) {
  for (const char* key : {"vconf_get_int", "vconf_set_int", "vconf_get_int"}) {
    run(".fault " + std::string(key) + " result=-1 always");
  }
  EXPECT_EQ(run(".fault clear 2"), "");
  EXPECT_EQ(findings(), Lines{"a fault was never hit: vconf_set_int always result=-1"});
  run(".fault vconf_set_str result=-1");
  EXPECT_EQ(lines(".fault"), (Lines{"fault 1: vconf_get_int always result=-1 (hits: 0)",
                                    "fault 3: vconf_get_int always result=-1 (hits: 0)",
                                    "fault 4: vconf_set_str times=1 result=-1 (hits: 0)"}));
  EXPECT_EQ(run(".fault clear 2"), "error: there is no fault 2");
  EXPECT_EQ(run(".fault clear 0"), "error: there is no fault 0");
  EXPECT_EQ(run(".fault clear x"), "error: the number of a fault is wanted, not 'x'");
  EXPECT_EQ(run(".fault clear ''"), "error: the number of a fault is wanted, not ''");
  EXPECT_EQ(run(".fault clear 1 3"), "error: usage: .fault clear [NUMBER]");
}

TEST_F(FaultCommandTest, OfFaultsThatFitACallTheOneThatWasSetFirstActs) {
  run("int 1");
  run(".fault vconf_get_int out.value=1");
  run(".fault vconf_get_int nth=2 times=2 out.value=2");
  run(".fault vconf_get_int always out.value=3");
  EXPECT_EQ(run("read a"), "int 1");
  EXPECT_EQ(run("read a"), "int 2") << "it counts the calls that another one hits, too";
  EXPECT_EQ(run("read a"), "int 2");
  EXPECT_EQ(run("read a"), "int 3") << "the others are spent";
  EXPECT_EQ(lines(".fault"), (Lines{"fault 1: vconf_get_int times=1 out.value=1 (hits: 1)",
                                    "fault 2: vconf_get_int nth=2 times=2 out.value=2 (hits: 2)",
                                    "fault 3: vconf_get_int always out.value=3 (hits: 1)"}));
}

TEST_F(FaultCommandTest, AFaultThatWasDueHitsTheNextCallThatNoOtherHits) {
  run("int 1");
  run(".fault vconf_get_int times=2 out.value=1");
  run(".fault vconf_get_int out.value=2");
  EXPECT_EQ(run("read a"), "int 1");
  EXPECT_EQ(run("read a"), "int 1");
  EXPECT_EQ(run("read a"), "int 2");
  EXPECT_EQ(run("read a"), "int -7");
}

TEST_F(FaultCommandTest, HelpOnFaultsTellsWhichOfSeveralActs) {
  const std::string help = run(".help faults");
  EXPECT_NE(help.find("If several faults match a call, only the one that was set first acts."), std::string::npos)
      << help;
}

TEST_F(FaultCommandTest, AFaultOfAnEngineHitsThatEngineAlone) {
  run(".engine other");
  run(".fault vconf_get_int engine=other always out.value=9");
  EXPECT_EQ(run("read a"), "int 9");
  run(".engine main");
  EXPECT_EQ(run("read a"), "int -7");
  EXPECT_EQ(run(".fault"), "fault 1: vconf_get_int always engine=other out.value=9 (hits: 1)");
  run(".fault clear");
  for (const std::string name : {"a:b", "#x", "#", ":", "##a:b"}) {
    const std::string words = "vconf_get_int always engine=" + name + " result=-1";
    EXPECT_EQ(run(".fault " + words), "");
    std::string listed = run(".fault");
    listed = listed.substr(listed.find("vconf"));
    EXPECT_EQ(listed, words + " (hits: 0)");
    run(".fault clear");
  }
}

TEST_F(FaultCommandTest, ABadFaultIsAnErrorAndSetsNothing) {
  EXPECT_EQ(run(".fault vconf_get_int foo"),
            "error: 'foo': [nth=N] [times=N|always] [window=W] [engine=NAME] [result=R] [out.NAME=VALUE ...] is "
            "wanted");
  EXPECT_EQ(run(".fault vconf_get_int window=main result=-1"), "error: vconf_get_int belongs to no window");
  EXPECT_EQ(run(".fault IAVControl::MuteVideo window=third result=0"),
            "error: there is no window 'third'; there are main and pip");
  EXPECT_EQ(run(".fault vconf_get_int engine= result=-1"), "error: 'engine=': the name of an engine is wanted");
  EXPECT_TRUE(run(".fault vconf_get_int result=abc").starts_with("error: "));
  EXPECT_TRUE(run(".fault vconf_get_int").starts_with("error: "));
  EXPECT_EQ(run(".fault"), "no faults");
  EXPECT_EQ(findings(), Lines{});
}

TEST_F(FaultCommandTest, AnUnknownOperationIsAFinding) {
  EXPECT_TRUE(run(".fault IService::Nothing result=0").starts_with("error: "));
  EXPECT_TRUE(run(".set latency.IService::Nothing 5").starts_with("error: "));
  EXPECT_TRUE(run(".get latency.Nothing").starts_with("error: "));
  EXPECT_EQ(findings(), (Lines{"unknown operation IService::Nothing", "unknown operation IService::Nothing",
                               "unknown operation Nothing"}));
}

TEST_F(FaultCommandTest, AFaultThatNeverHitIsAFindingWhenItGoes) {
  const Lines finding{"a fault was never hit: vconf_set_str times=1 result=-1"};
  for (const char* end : {".fault clear", ".restart", ".reset"}) {
    run(".fault vconf_set_str result=-1");
    EXPECT_EQ(findings(), Lines{});
    run(end);
    EXPECT_EQ(findings(), finding) << end;
    EXPECT_EQ(run(".fault"), "no faults") << end;
  }
  run(".fault vconf_set_str result=-1");
  session->noteIdleFaults();
  EXPECT_EQ(findings(), finding);
}

TEST_F(FaultCommandTest, AFaultThatHitsTheClosingOfEnginesIsNoFinding) {
  for (const char* end : {".restart", ".reset"}) {
    run("int 1");
    run(".fault vconf_get_int result=-1");
    run(end);
    EXPECT_EQ(findings(), Lines{}) << end;
  }
}

TEST_F(FaultCommandTest, AFaultThatHitOnceIsNoFinding) {
  run("int 1");
  run(".fault vconf_get_int times=5 result=-1");
  run("read a");
  run(".fault clear");
  EXPECT_EQ(findings(), Lines{});
}

}  // namespace
}  // namespace virtualtv::shell
