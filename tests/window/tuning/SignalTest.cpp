// SPDX-License-Identifier: MIT
// The strength of the tuner's signal.
#include "Tuning.h"

namespace {

using support::caught;
using support::join;
using support::Lines;
using support::place;

constexpr const char* function = "GetSignalStrength";
const std::string failed = "0 GetSignalStrength failed";
const Lines noTuner{"0 tuner_ctrl_proxy is NULL, t_eWindow =0", "0 CEmpTaskWindow tuner_ctrl_proxy create is FAIL!!",
                    "0 TunerControlproxy is NULL"};

class SignalTest : public tuning::TuningTest {
 protected:
  int ask() { return worker.GetSignalStrength(&strength); }
  int askUnder(const std::string& words) {
    return under(words, [&] { return ask(); });
  }

  unsigned char strength = 7;
};

TEST_F(SignalTest, AnswersWhatTheTunerWrites) {
  for (const int value : {0, 1, 127, 128, 255}) {
    const std::string text = std::to_string(value);
    EXPECT_EQ(askUnder("ITunerControl::GetSignalStrength out.strength=" + text), 1);
    EXPECT_EQ(strength, value);
    EXPECT_EQ(calls(), Lines{"ITunerControl[main#1]::GetSignalStrength(tuner=0) strength=" + text + " -> 1 [fault]"});
  }
}

TEST_F(SignalTest, LogsThePlaceOfTheStrengthNotItsValue) {
  EXPECT_EQ(ask(), 1);
  const auto lines = messages();
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_EQ(lines[1].level, 3);
  const int pointer = static_cast<int>(reinterpret_cast<std::uintptr_t>(&strength));
  EXPECT_EQ(lines[1].message.text(), "GetSignalStrength sigStrength is " + std::to_string(pointer));
}

TEST_F(SignalTest, AFailureAnswersMinus1) {
  for (const char* way : {"result=0", "result=-1"}) {
    EXPECT_EQ(askUnder(std::string("ITunerControl::GetSignalStrength ") + way), -1);
    EXPECT_EQ(logs(), (Lines{place(function), failed}));
  }
  EXPECT_EQ(askUnder("ITunerControl::GetSignalStrength result=throw"), -1);
  EXPECT_EQ(logs(), (Lines{place(function), caught(function, "ITunerControl::GetSignalStrength"), failed}));
  EXPECT_EQ(strength, 7);
}

TEST_F(SignalTest, AStrengthThatIsNotWrittenStaysAsItWas) {
  EXPECT_EQ(askUnder("ITunerControl::GetSignalStrength result=unwritten"), 1);
  EXPECT_EQ(strength, 7);
}

TEST_F(SignalTest, WithoutATunerAnswers0) {
  for (const char* way : {"result=-1", "result=null", "result=unwritten"}) {
    SCOPED_TRACE(way);
    worker.tuner_ctrl_proxy = nullptr;
    EXPECT_EQ(askUnder(std::string("TVServiceAPI::CreateTunerControl ") + way), 0);
    EXPECT_EQ(calls().size(), 1U);
    EXPECT_EQ(logs(), join({{place(function)}, noTuner}));
  }
  EXPECT_EQ(strength, 7);
}

TEST_F(SignalTest, SelectingAWindowKeepsTheMainWindowsTunerAndAMissingOneIsMadeForTheWindowDriven) {
  drivePictureInPicture();
  EXPECT_EQ(ask(), 1);
  EXPECT_EQ(calls().front().rfind("ITunerControl[main#1]", 0), 0U);
  worker.tuner_ctrl_proxy = nullptr;
  EXPECT_EQ(ask(), 1);
  const Lines made = calls();
  ASSERT_EQ(made.size(), 2U);
  EXPECT_EQ(made[0], "TVServiceAPI::CreateTunerControl(profile=101, index=0) -> 0");
  EXPECT_EQ(made[1].rfind("ITunerControl[pip#", 0), 0U) << made[1];
}

}  // namespace
