// SPDX-License-Identifier: MIT
// The parameters of the tuning commands.
#include "Tuning.h"

namespace {

using support::Lines;
using support::noNumbers;

class TuningCommand : public channels::ChannelEngineTest {
 protected:
  /// The worker's first log line after that of its place: the parameters as the worker received them.
  std::string given(const std::string& command, const Lines& parameters) {
    forget();
    execute(command, parameters);
    const Lines lines = logs();
    const std::size_t first = lines.size() > 1 && lines[1] == support::place(command) ? 2 : 1;
    return lines.size() > first ? lines[first] : "nothing";
  }
};

// Parameters are the digits at their front, and 0 without any. An id is read as decimal, hexadecimal or octal.
TEST_F(TuningCommand, ReadsItsParametersInTheirOrder) {
  const std::string mostId = "18446744073709551615";
  const auto id = [](const std::string& read) { return "TCServiceId=[" + read + "]"; };
  const std::vector<std::tuple<std::string, Lines, std::string>> readings{
      {"SetChannel", {"7", "1"}, "nMajor=[7] nMinor=[1]"},
      {"SetChannel", {}, "nMajor=[0] nMinor=[0]"},
      {"SetChannel", {"", "3"}, "nMajor=[0] nMinor=[3]"},
      {"SetChannel", {" 12x", "-4 5"}, "nMajor=[12] nMinor=[-4]"},
      {"SetChannel", {"abc", "0x10"}, "nMajor=[0] nMinor=[0]"},
      {"SetChannel", {"2147483648", "-99999999999999999999"}, "nMajor=[2147483647] nMinor=[-2147483648]"},
      {"SetChannel_PTC", {"35", "9"}, "nPTC=[35]"},
      {"SetChannel_PTC", {"x", "9"}, "nPTC=[0]"},
      {"SetChannel_PTC", {"4294967331", "9"}, "nPTC=[2147483647]"},
      {"SetChannel_Seek", {"3", "1"}, "eSeek=[3] eNavigatorMode=[1]"},
      {"SetChannel_Seek", {}, "eSeek=[0] eNavigatorMode=[0]"},
      {"SetChannel_Seek", {"4294967299", "-4294967299"}, "eSeek=[2147483647] eNavigatorMode=[-2147483648]"},
      {"SetChannelByServiceid", {"282"}, id("282")},
      {"SetChannelByServiceid", {"0X11a"}, id("282")},
      {"SetChannelByServiceid", {"0432"}, id("282")},
      {"SetChannelByServiceid", {" +282abc"}, id("282")},
      {"SetChannelByServiceid", {"09"}, id("0")},
      {"SetChannelByServiceid", {"0x"}, id("0")},
      {"SetChannelByServiceid", {""}, id("0")},
      {"SetChannelByServiceid", {"-1"}, id(mostId)},
      {"SetChannelByServiceid", {"18446744073709551616"}, id(mostId)},
      {"SetChannelByServiceid", {"9223372036854775808"}, id("9223372036854775808")},
      {"SetChannelDirect", {"+11", "-12", "013", "14"}, "ptc=[11],major=[-12],minor=[13],channelType=[14]"}};
  for (const auto& [command, parameters, line] : readings) EXPECT_EQ(given(command, parameters), "3 " + line);
}

TEST_F(TuningCommand, SetChannelDirectPassesAnUnreadableTypeAsMinus1) {
  for (const std::string& text : noNumbers) {
    EXPECT_EQ(given("SetChannelDirect", {"35", "2", "0", text}), "3 ptc=[35],major=[2],minor=[0],channelType=[-1]")
        << '\'' << text << '\'';
  }
}

}  // namespace
