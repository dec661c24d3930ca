// SPDX-License-Identifier: MIT
// What the tuning commands read as parameters.
#include "Tuning.h"

namespace {

using support::Lines;
using support::noNumbers;

class TuningCommand : public channels::ChannelEngineTest {
 protected:
  /// The first log line of the worker behind that of its place: the parameters as it was given them.
  std::string given(const std::string& command, const Lines& parameters) {
    forget();
    execute(command, parameters);
    const Lines lines = logs();
    const std::size_t first = lines.size() > 1 && lines[1] == support::place(command) ? 2 : 1;
    return lines.size() > first ? lines[first] : "nothing";
  }
};

// Digits at the front of a parameter count; without any it is 0.

TEST_F(TuningCommand, SetChannelReadsMajorThenMinor) {
  const std::vector<std::pair<Lines, std::string>> readings{
      {{"7", "1"}, "nMajor=[7] nMinor=[1]"},
      {{}, "nMajor=[0] nMinor=[0]"},
      {{"", "3"}, "nMajor=[0] nMinor=[3]"},
      {{" 12x", "-4 5"}, "nMajor=[12] nMinor=[-4]"},
      {{"abc", "0x10"}, "nMajor=[0] nMinor=[0]"},
      {{"2147483648", "-99999999999999999999"}, "nMajor=[2147483647] nMinor=[-2147483648]"},
  };
  for (const auto& [parameters, line] : readings) {
    EXPECT_EQ(given("SetChannel", parameters), "3 " + line);
  }
}

TEST_F(TuningCommand, SetChannelPtcReadsOneNumber) {
  for (const auto& [text, number] : std::vector<std::pair<std::string, std::string>>{
           {"35", "35"}, {"", "0"}, {"x", "0"}, {"-1", "-1"}, {"4294967331", "2147483647"}}) {
    EXPECT_EQ(given("SetChannel_PTC", {text, "9", "9", "9"}), "3 nPTC=[" + number + "]") << text;
  }
}

TEST_F(TuningCommand, SetChannelSeekReadsSeekThenNavigator) {
  const std::vector<std::pair<Lines, std::string>> readings{
      {{"3", "1"}, "eSeek=[3] eNavigatorMode=[1]"},
      {{}, "eSeek=[0] eNavigatorMode=[0]"},
      {{"4x", "y"}, "eSeek=[4] eNavigatorMode=[0]"},
      {{"4294967299", "-4294967299"}, "eSeek=[2147483647] eNavigatorMode=[-2147483648]"},
  };
  for (const auto& [parameters, line] : readings) {
    EXPECT_EQ(given("SetChannel_Seek", parameters), "3 " + line);
  }
}

TEST_F(TuningCommand, SetChannelByServiceidReadsAnIdInAnyOfThreeBases) {
  const std::vector<std::pair<std::string, std::string>> readings{
      {"282", "282"},
      {"0x11a", "282"},
      {"0X11A", "282"},
      {"0432", "282"},
      {" +282", "282"},
      {"282abc", "282"},
      {"09", "0"},
      {"0x", "0"},
      {"", "0"},
      {"abc", "0"},
      {"-1", "18446744073709551615"},
      {"18446744073709551615", "18446744073709551615"},
      {"18446744073709551616", "18446744073709551615"},
      {"9223372036854775808", "9223372036854775808"},
  };
  for (const auto& [text, id] : readings) {
    EXPECT_EQ(given("SetChannelByServiceid", {text}), "3 TCServiceId=[" + id + "]") << text;
  }
}

// Whole numbers.

TEST_F(TuningCommand, SetChannelDirectPassesAnUnreadableTypeAsMinus1) {
  for (const std::string& text : noNumbers) {
    EXPECT_EQ(given("SetChannelDirect", {"35", "2", "0", text}), "3 ptc=[35],major=[2],minor=[0],channelType=[-1]")
        << '\'' << text << '\'';
  }
}

TEST_F(TuningCommand, SetChannelDirectReadsPhysicalChannelMajorMinorType) {
  EXPECT_EQ(given("SetChannelDirect", {"+11", "-12", "013", "14"}),
            "3 ptc=[11],major=[-12],minor=[13],channelType=[14]");
}

}  // namespace
