// SPDX-License-Identifier: MIT
// The channel-information document, for a record, for the channel on screen and for the previous one.
#include <cerrno>
#include <string>
#include <utility>
#include <vector>

#include "support/Converter.h"
#include "window/report/Documents.h"

namespace {

using channels::banner;
using channels::ChannelTest;
using channels::join;
using channels::record;
using reports::parsed;
using reports::with;
using support::Lines;

constexpr int attached = TCServiceData::SERVICE_FIELD_110;
constexpr int name = TCServiceData::CHANNEL_NAME;

/// A record with all fields of the document, but without an attached text.
const std::string whole =
    "{12=281,16=\"News\\u002024\",41=8442,15=300,18=1051,1=9,2=34,6=6,37=4,4=578000,13=7,14=1,22=1}";

const std::string wholeDocument = R"({
   "channelName" : "News 24",
   "frequency" : 578000,
   "lock" : 1,
   "major" : 7,
   "minor" : 1,
   "originalNetworkId" : 8442,
   "programNumber" : 300,
   "ptc" : 34,
   "serviceId" : "281",
   "serviceid" : "281",
   "sourceId" : 4,
   "transportStreamId" : 1051,
   "tuneMode" : 6,
   "type" : 28
}
)";

const std::string emptyDocument =
    with(wholeDocument,
         R"({"channelName":"","frequency":-1,"lock":65535,"major":65535,"minor":65535,"originalNetworkId":65535,
                       "programNumber":65535,"ptc":65535,"serviceId":"18446744073709551615",
                       "serviceid":"18446744073709551615","sourceId":65535,"transportStreamId":65535,"tuneMode":-1,
                       "type":0})");

/// The documents of the first two of the three services. That of the previous channel lacks the lock.
const std::string newsDocument = with(wholeDocument, R"({"lock":0,"minor":0,"type":2})");
const std::string radioDocument = with(
    wholeDocument, R"({"channelName":"Radio 5","frequency":586000,"lock":65535,"major":8,"minor":0,"programNumber":20,
                       "ptc":35,"serviceId":"282","serviceid":"282","type":3})");

class ChannelInfo : public ChannelTest {
 protected:
  std::string infoOf(TCServiceData service) { return worker.t_GetChannelInfo(&service); }
  /// The document of the whole record with this text in place of a field's value.
  std::string infoWith(int field, std::u16string_view text) {
    TCServiceData service = record(whole);
    channels::setText(service, field, text);
    return infoOf(service);
  }
  /// The document of a record with this number only.
  Json::Value documentWith(int field, const std::string& value) {
    return parsed(infoOf(record("{" + std::to_string(field) + "=" + value + "}")));
  }
};

TEST_F(ChannelInfo, HoldsEveryFieldSortedByKey) {
  EXPECT_EQ(infoOf(record(whole)), wholeDocument);
  EXPECT_EQ(logs(), Lines{});
  EXPECT_EQ(calls(), Lines{});
}

TEST_F(ChannelInfo, HoldsTheDefaultsOfARecordWithoutFields) {
  EXPECT_EQ(infoOf(TCServiceData()), emptyDocument);
  EXPECT_EQ(logs(), Lines{});
}

TEST_F(ChannelInfo, OfNoRecordIsTheEmptyText) {
  EXPECT_EQ(worker.t_GetChannelInfo(nullptr), "");
  EXPECT_EQ(logs(), Lines{});
}

TEST_F(ChannelInfo, NumbersOf16BitsAreNeverNegative) {
  const std::vector<std::pair<int, const char*>> fields{
      {22, "lock"},          {13, "major"}, {14, "minor"},    {41, "originalNetworkId"},
      {15, "programNumber"}, {2, "ptc"},    {37, "sourceId"}, {18, "transportStreamId"}};
  for (const auto& [field, key] : fields) {
    SCOPED_TRACE(key);
    EXPECT_EQ(documentWith(field, "65535")[key], Json::Value(65535));
    EXPECT_EQ(documentWith(field, "32768")[key], Json::Value(32768));
    EXPECT_EQ(documentWith(field, "65536")[key], Json::Value(0));
    EXPECT_EQ(documentWith(field, "0")[key], Json::Value(0));
    EXPECT_EQ(documentWith(field, "\"7\"")[key], Json::Value(65535)) << "a text is no number";
  }
}

TEST_F(ChannelInfo, TheFrequencyIsSigned) {
  EXPECT_EQ(documentWith(4, "-2")["frequency"], Json::Value(-2));
  EXPECT_EQ(documentWith(4, "2147483647")["frequency"], Json::Value(2147483647));
}

TEST_F(ChannelInfo, TheTuneModeIsMappedByTheModulations) {
  for (int modulation = -1; modulation <= 18; ++modulation) {
    EXPECT_EQ(documentWith(6, std::to_string(modulation))["tuneMode"], Json::Value(modulation));
  }
  EXPECT_EQ(documentWith(6, "19")["tuneMode"], Json::Value(0));
  EXPECT_EQ(documentWith(6, "-2")["tuneMode"], Json::Value(0));
}

TEST_F(ChannelInfo, TheTypeIsMapped) {
  for (const auto& [theirs, mine] : std::vector<std::pair<int, int>>{{1, 2}, {3, 4}, {8, 10}, {20, 25}, {99, 0}}) {
    EXPECT_EQ(documentWith(1, std::to_string(theirs))["type"], Json::Value(mine)) << theirs;
  }
}

TEST_F(ChannelInfo, IdsOf64BitsAreWholeInBothSpellings) {
  for (const std::string id : {"0", "9223372036854775808", "18446744073709551615"}) {
    const Json::Value document = documentWith(12, id);
    EXPECT_EQ(document["serviceId"], Json::Value(id));
    EXPECT_EQ(document["serviceid"], Json::Value(id));
  }
}

TEST_F(ChannelInfo, AnEmptyNameIsTheEmptyTextAmongAllOtherMembers) {
  Json::Value document = parsed(infoWith(name, u""));
  EXPECT_EQ(document["channelName"], Json::Value(""));
  EXPECT_EQ(document.size(), 14U);
  document["channelName"] = "News 24";
  EXPECT_EQ(document, parsed(wholeDocument));
}

TEST_F(ChannelInfo, NamesAreEscaped) {
  EXPECT_EQ(parsed(infoWith(name, u"a\"b\\c\n"))["channelName"], Json::Value("a\"b\\c\n"));
  const std::string document = infoWith(name, u"Новости é");
  EXPECT_EQ(parsed(document)["channelName"], Json::Value("Новости é"));
  EXPECT_NE(document.find(R"("channelName" : "\u041d\u043e\u0432\u043e\u0441\u0442\u0438 \u00e9")"), std::string::npos)
      << document;
}

TEST_F(ChannelInfo, LongNamesAreCutWhereTheRoomOfTheConversionEnds) {
  const std::string full = "3 iconv failed: " + std::to_string(E2BIG);
  for (const std::size_t length : std::vector<std::size_t>{256, 257, 258, 513, 514}) {
    EXPECT_EQ(parsed(infoWith(name, std::u16string(length, u'a')))["channelName"],
              Json::Value(std::string(length, 'a')));
    EXPECT_EQ(logs(), Lines{});
  }
  for (const std::size_t length : std::vector<std::size_t>{515, 600, 5000}) {
    EXPECT_EQ(parsed(infoWith(name, std::u16string(length, u'a')))["channelName"], Json::Value(std::string(514, 'a')));
    EXPECT_EQ(logs(), Lines{full});
  }
  std::string characters;
  for (int at = 0; at < 171; ++at) characters += "日";
  EXPECT_EQ(parsed(infoWith(name, std::u16string(172, u'日')))["channelName"], Json::Value(characters));
  EXPECT_EQ(logs(), Lines{full});
}

TEST_F(ChannelInfo, ANameEndsBeforeAZeroOrASurrogate) {
  EXPECT_EQ(parsed(infoWith(name, std::u16string(u"ab\0cd", 5)))["channelName"], Json::Value("ab"));
  EXPECT_EQ(parsed(infoWith(name, u"ab😀cd"))["channelName"], Json::Value("ab"));
  EXPECT_EQ(logs(), Lines{"3 iconv failed: " + std::to_string(EILSEQ)});
}

TEST_F(ChannelInfo, ANameThatCanNotBeConvertedIsTheEmptyText) {
  converter::Spy spy;
  spy.use.failOpen = EMFILE;
  converter::onNewThread([&] { EXPECT_EQ(parsed(infoOf(record(whole)))["channelName"], Json::Value("")); });
  EXPECT_EQ(logs(), Lines{"3 Iconv open failed"});
}

TEST_F(ChannelInfo, AttachedMembersAreAddedInTheirPlacesAndReplaceFixedOnes) {
  EXPECT_EQ(infoWith(attached, uR"({"more":{"list":[1,2.5,true]},"major":7000,"logo":"http://x/é","serviceid":null})"),
            with(wholeDocument, R"({"logo":"http://x/é","major":7000,"more":{"list":[1,2.5,true]},"serviceid":null})"));
  EXPECT_EQ(logs(), Lines{});
}

TEST_F(ChannelInfo, CommentsOfAttachedMembersAreKept) {
  const std::string document = infoWith(attached, u"{\n// where it is\n\"logo\":\"x\"}");
  EXPECT_NE(document.find("// where it is"), std::string::npos) << document;
  EXPECT_EQ(parsed(document)["logo"], Json::Value("x"));
}

TEST_F(ChannelInfo, AttachedTextThatIsNoJsonOrAddsNothingLeavesTheDocumentAsItIs) {
  for (const std::u16string text : {u"", u"no JSON", u"{\"major\":", u"{\"major\" 7}", u"{}", u"null", u" "}) {
    SCOPED_TRACE(::testing::PrintToString(text));
    EXPECT_EQ(infoWith(attached, text), wholeDocument);
    EXPECT_EQ(logs(), Lines{});
  }
}

TEST_F(ChannelInfo, AttachedTextOfAnotherKindOrNestedTooDeepMakesNoDocument) {
  for (const std::u16string& text :
       std::vector<std::u16string>{u"[1,2]", u"[]", u"17", u"\"text\"", u"true", std::u16string(5000, u'[')}) {
    SCOPED_TRACE(::testing::PrintToString(text));
    EXPECT_EQ(infoWith(attached, text), "");
    const Lines lines = logs();
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(lines[0].find("0 Exception Handled by t_GetChannelInfo "), 0U) << lines[0];
    EXPECT_GT(lines[0].size(), std::string("0 Exception Handled by t_GetChannelInfo ").size());
  }
}

TEST_F(ChannelInfo, OnlyTheFirstValueOfAttachedTextCounts) {
  EXPECT_EQ(parsed(infoWith(attached, u"{\"logo\":\"x\"} rest"))["logo"], Json::Value("x"));
  EXPECT_EQ(infoWith(attached, u"17 {\"logo\":\"x\"}"), "");
}

TEST_F(ChannelInfo, AttachedTextMayBeNestedAThousandDeep) {
  const auto nested = [](std::size_t deep) {
    return u"{\"a\":" + std::u16string(deep - 1, u'[') + std::u16string(deep - 1, u']') + u"}";
  };
  EXPECT_NE(infoWith(attached, nested(1000)), "");
  EXPECT_EQ(infoWith(attached, nested(1001)), "");
}

TEST_F(ChannelInfo, ThatCanNotBeWrittenIsTheEmptyText) {
  const reports::WriterFault fault;
  EXPECT_EQ(infoOf(record(whole)), "");
  EXPECT_TRUE(fault.hit());
  EXPECT_EQ(logs(), Lines{reports::notWritten("t_GetChannelInfo")});
}

// The operations that look up a channel.

class CurrentChannelInfo : public ChannelTest {};
class PreviousChannelInfo : public ChannelTest {};

TEST_F(CurrentChannelInfo, IsTheDocumentOfTheChannelOnScreen) {
  std::string info;
  EXPECT_EQ(worker.GetCurrentChannelInfo(info), 1);
  EXPECT_EQ(info, newsDocument);
  EXPECT_EQ(logs(), Lines({"3 SERVICE_ID = 281", "3 MAJOR = 7"}));
  const Lines asked = calls();
  ASSERT_EQ(asked.size(), 2U);
  EXPECT_EQ(asked[0], "IServiceNavigation[main#1]::GetTvMode() mode=0,1 -> 1");
  EXPECT_EQ(asked[1].find("IServiceNavigation[main#1]::GetCurrentService(mode=0,1, fetch 12 16 41 15 18 1 2 6 37 4 13 "
                          "14 22 110) "),
            0U);
}

TEST_F(CurrentChannelInfo, WithoutTheChannelAnswersMinus1AndLeavesTheTextAsItWas) {
  const std::string call = "IServiceNavigation::GetCurrentService";
  const std::string failed = "0 Fail to get current service data\n";
  const std::string error = banner(0, "GetCurrentChannelInfo");
  const std::vector<std::pair<std::string, Lines>> ways{
      {call + " result=0", {failed, error}},
      {call + " result=-1", {failed, error}},
      {call + " result=throw", {channels::caught("t_GetCurrentChannel", call), failed, error}},
      {"IServiceNavigation::GetTvMode result=0", {banner(0, "t_GetCurrentChannel"), error}}};
  for (const auto& [words, lines] : ways) {
    SCOPED_TRACE(words);
    std::string info = "as it was";
    EXPECT_EQ(under(words, [&] { return worker.GetCurrentChannelInfo(info); }), -1);
    EXPECT_EQ(info, "as it was");
    EXPECT_EQ(logs(), lines);
  }
}

TEST_F(CurrentChannelInfo, WithoutNavigationProxyAnswersMinus1) {
  loseNavigation();
  std::string info = "as it was";
  EXPECT_EQ(worker.GetCurrentChannelInfo(info), -1);
  EXPECT_EQ(info, "as it was");
  EXPECT_EQ(logs(),
            join({channels::noNavigation(), {"0 ServiceNavigationproxy is NULL", banner(0, "GetCurrentChannelInfo")}}));
}

TEST_F(PreviousChannelInfo, IsTheDocumentOfTheChannelBefore) {
  std::string info;
  EXPECT_EQ(worker.GetPreviousChannelInfo(info), 1);
  EXPECT_EQ(info, radioDocument);
  EXPECT_EQ(logs(), Lines({"3 previous channel SERVICE_ID = 282", "3 previous channel MAJOR = 8,MINOR = 0"}));
  const Lines asked = calls();
  ASSERT_EQ(asked.size(), 3U);
  EXPECT_EQ(asked[2].find("IService[set#1]::FindService(fetch 12 16 41 15 18 1 2 6 37 4 13 14, where 12=282, count=1)"),
            0U);
}

TEST_F(PreviousChannelInfo, WithoutTheChannelAnswersMinus1AndLeavesTheTextAsItWas) {
  const std::string error = banner(0, "GetPreviousChannelInfo");
  const std::vector<std::pair<std::string, Lines>> ways{
      {"IServiceNavigation::GetTvMode", {banner(0, "t_GetPreviousChannel"), error}},
      {"IServiceNavigation::GetPreviousServiceId", {"0 Fail to get previous service id\n", error}},
      {"IService::FindService", {"0 Fail to find previous service\n", error}}};
  for (const auto& [call, lines] : ways) {
    for (const std::string way : {"result=0", "result=-1", "result=throw"}) {
      SCOPED_TRACE(call + " " + way);
      std::string info = "as it was";
      EXPECT_EQ(under(call + " " + way, [&] { return worker.GetPreviousChannelInfo(info); }), -1);
      EXPECT_EQ(info, "as it was");
      const Lines thrown = way == "result=throw" ? Lines{channels::caught("t_GetPreviousChannel", call)} : Lines{};
      EXPECT_EQ(logs(), join({thrown, lines}));
    }
  }
}

TEST_F(PreviousChannelInfo, WithoutServiceProxyAnswersMinus1) {
  loseService();
  std::string info = "as it was";
  EXPECT_EQ(worker.GetPreviousChannelInfo(info), -1);
  EXPECT_EQ(logs(), join({channels::noService(), {"0 Serviceproxy is NULL", banner(0, "GetPreviousChannelInfo")}}));
}

}  // namespace
