// SPDX-License-Identifier: MIT
// The command that tunes to a described satellite service, through the engine.
#include "Satellite.h"

namespace satellite {

namespace {

using support::commandLogs;

constexpr const char* command = "SetDVBSIChannelDirectEx";

using SatelliteCommandTest = support::EngineTest;

TEST_F(SatelliteCommandTest, TheDescriptionReachesTheWorkerAsItIs) {
  for (const std::string& text :
       {std::string(), std::string(" {}"), std::string("\"'\\ %s\n\xff"), std::string("1"), description() + " "}) {
    forget();
    EXPECT_EQ(execute(command, {text, "0"}), "int 0");
    const Lines lines = logs();
    ASSERT_GE(lines.size(), 3U);
    EXPECT_EQ(lines[1], given(text));
  }
}

TEST_F(SatelliteCommandTest, WithoutANumberForTheFormItAnswersMinusOneAndAsksTheWorkerNothing) {
  for (const char* form : {"", " ", "x", "0x0", "0.0", " 0", "0 ", "2147483648", "-", "\xff"}) {
    forget();
    EXPECT_EQ(execute(command, {description(), form}), "int -1") << '\'' << form << '\'';
    EXPECT_EQ(calls(), Lines());
    EXPECT_EQ(logs(), commandLogs(command, {description(), form}, {}, -1));
  }
  EXPECT_EQ(execute(command, {description()}), "int -1");
  EXPECT_EQ(execute(command), "int -1");
}

TEST_F(SatelliteCommandTest, OnlyTheForm0IsKnown) {
  for (const char* form : {"1", "-1", "2147483647"}) {
    forget();
    EXPECT_EQ(execute(command, {description(), form}), "int 0");
    EXPECT_EQ(calls(), Lines()) << form;
  }
  execute(command, {description(), "+0"});
  EXPECT_FALSE(calls().empty()) << "this is 0 too";
}

TEST_F(SatelliteCommandTest, ItAnswersTheWorkersCode) {
  fault("IService::FindService result=1 out.service={12=900}");
  fault("IServiceNavigation::TuneService result=1");
  EXPECT_EQ(execute(command, {description(), "0"}), "int 1");
  EXPECT_EQ(execute(command, {description(), "0"}), "int 0") << "the set itself has no such service";
  fault("TVServiceAPI::CreateSatellite result=null");
  forget();
  EXPECT_EQ(execute(command, {"{}", "0"}), "int -1");
  EXPECT_EQ(logs(), commandLogs(command, {"{}", "0"}, join({understood("{}"), {"0  pSatelliteMgr is NULL !"}}), -1));
}

TEST_F(SatelliteCommandTest, BracketsNestedTooDeepAnswerZero) {
  const std::string mode = execute("GetTVMode");
  EXPECT_EQ(execute(command, {"{\"a\":" + std::string(100000, '['), "0"}), "int 0");
  EXPECT_EQ(execute("GetTVMode"), mode) << "and the next command is answered as ever";
}

}  // namespace

}  // namespace satellite
