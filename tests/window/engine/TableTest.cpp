// SPDX-License-Identifier: MIT
// The command table: which commands there are, and the order in which names are compared.
#include <gtest/gtest.h>

#include <cstddef>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "Window/Src/Commands.h"
#include "support/Commands.h"

namespace {

using Names = std::vector<std::string>;

/// All commands of the plug-in, in the order of comparison.
const Names order{"SetWindow",
                  "GetCurrentChannel_Major",
                  "GetCurrentChannel_Minor",
                  "GetCurrentChannel_Name",
                  "GetCurrentChannel_OriginNetID",
                  "GetCurrentChannel_ProgramNumber",
                  "GetCurrentChannel_PTC",
                  "GetCurrentChannel_ServiceName",
                  "GetCurrentChannel_TransportStreamID",
                  "GetCurrentChannel_Type",
                  "GetScreenRect",
                  "GetAFDGeometryRectSize",
                  "GetScreenRect_PosMode",
                  "GetScreenRect_SizeMode",
                  "GetState_Show",
                  "SetChannel",
                  "SetChannel_PTC",
                  "SetChannel_Seek",
                  "SetChannelByServiceid",
                  "SetScreenRect",
                  "SetScreenRect_PosSizeMode",
                  "Show",
                  "GetResolution",
                  "GetSource",
                  "SetSource",
                  "SetSourceAndTune",
                  "GetPreviousSource",
                  "SetPreviousSource",
                  "FindChannel",
                  "GetChannel_Major",
                  "GetChannel_Minor",
                  "GetChannel_Name",
                  "GetChannel_OriginNetID",
                  "GetChannel_ProgramNumber",
                  "GetChannel_PTC",
                  "GetChannel_ServiceName",
                  "GetChannel_TransportStreamID",
                  "GetChannel_Type",
                  "GetChannel_Size",
                  "GetChannel_ServiceId",
                  "GetChannel_OnTVJson",
                  "SetScreenCropRect",
                  "GetScreenCropRect",
                  "SetScreenZorder",
                  "DisconnectSource",
                  "ChangeAudioPID",
                  "ChangeAudioByIndex",
                  "GetMultiAudioInfo",
                  "SetSourceVolume",
                  "SetTVMode",
                  "GetTVMode",
                  "GetFavorites",
                  "UpdateFavorites",
                  "GetFullChannelList",
                  "GetCurrentAudioInfo",
                  "GetSignalStrength",
                  "GetCurrentChannelInfo",
                  "GetCurrentChannel",
                  "GetCurrentSubtitle",
                  "GetSubtitleInfo",
                  "ChangeSubtitle",
                  "GetStartChannel_Type",
                  "GetStartChannel_Major",
                  "GetStartChannel_Minor",
                  "GetStartChannel_Name",
                  "GetStartChannel_ServiceId",
                  "GetStartChannel_Info",
                  "GetPreviousChannelInfo",
                  "GetResolutionDetail",
                  "GetSourceState",
                  "MuteVideo",
                  "SetDVBSIChannelDirectEx",
                  "SetChannelDirect"};

Names table() {
  std::size_t count = 0;
  const kel::Command* const rows = kel::CommandTable(count);
  Names names;
  for (std::size_t at = 0; at < count; ++at) names.emplace_back(rows[at].name);
  return names;
}

TEST(CommandTable, HoldsTheCommandsInTheOrderOfComparison) {
  EXPECT_EQ(table(), order);
  EXPECT_EQ(order.size(), 73U);
}

TEST(CommandTable, TheCallsOfTheseTestsCoverEveryCommand) {
  std::set<std::string> called;
  for (const engine::Call& call : engine::everyCall()) called.insert(call.name);
  EXPECT_EQ(called, std::set<std::string>(order.begin(), order.end()));
}

TEST(CommandTable, FindsEachRowByItsName) {
  std::size_t count = 0;
  const kel::Command* const rows = kel::CommandTable(count);
  for (std::size_t at = 0; at < count; ++at) EXPECT_EQ(kel::FindCommand(rows[at].name), &rows[at]) << rows[at].name;
}

/// Holds that a name has no row. The name lies at the end of a block of its own, where a sanitizer sees what is read
/// beyond it.
void expectNone(std::string_view name) {
  const std::vector<char> block(name.begin(), name.end());
  EXPECT_EQ(kel::FindCommand({block.data(), block.size()}), nullptr) << name;
}

TEST(CommandTable, HasNoRowForANameThatDiffersFromOneInAnyByte) {
  const std::set<std::string> names(order.begin(), order.end());
  const auto expectNoneButOwn = [&](const std::string& name) {
    if (names.count(name) == 0) expectNone(name);
  };
  for (const std::string& name : order) {
    for (std::size_t at = 0; at < name.size(); ++at) {
      std::string other = name;
      for (const unsigned bit : {1U, 0x20U, 0x80U}) {
        other[at] = static_cast<char>(static_cast<unsigned char>(name[at]) ^ bit);
        expectNoneButOwn(other);
      }
      expectNoneButOwn(name.substr(0, at));
      expectNoneButOwn(name.substr(at + 1));
      expectNoneButOwn(name.substr(0, at) + name.substr(at + 1));
      expectNoneButOwn(name.substr(0, at) + 'x' + name.substr(at));
    }
    for (const std::string& more : Names{" ", "x", std::string(1, '\0'), "_Major"}) expectNoneButOwn(name + more);
  }
}

TEST(CommandTable, HasNoRowForNamesOfAnyLengthThatAreNone) {
  for (std::size_t length = 0; length <= 80; ++length) {
    expectNone(std::string(length, 'a'));
    expectNone(std::string(length, '\0'));
  }
}

}  // namespace
