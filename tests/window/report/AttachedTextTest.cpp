// SPDX-License-Identifier: MIT
// The text attached to a service: its conversion, and the query for it by position.
#include <string>
#include <utility>
#include <vector>

#include "window/report/Documents.h"

namespace {

using channels::banner;
using channels::ChannelTest;
using channels::join;
using support::Lines;

constexpr int attached = TCServiceData::SERVICE_FIELD_110;

class AttachedText : public ChannelTest {
 protected:
  std::string converted(std::u16string_view units) {
    TCServiceData service;
    channels::setText(service, attached, units);
    return worker.t_GetServiceJsonText(service);
  }
};

TEST_F(AttachedText, IsConvertedFromBigEndianUnits) {
  TCServiceData service;
  const unsigned char bytes[] = {0x00, '{', 0x04, 0x1D, 0x00, '}'};
  service.Set(attached, reinterpret_cast<const unsigned short*>(bytes), 3);
  EXPECT_EQ(worker.t_GetServiceJsonText(service), "{Н}");
  EXPECT_EQ(logs(), Lines{});
}

TEST_F(AttachedText, EveryUnitTakesItsOneTwoOrThreeBytes) {
  const std::vector<std::pair<char16_t, std::string>> units{
      {0x0001, "\x01"},         {0x007F, "\x7F"},         {0x0080, "\xC2\x80"},
      {0x07FF, "\xDF\xBF"},     {0x0800, "\xE0\xA0\x80"}, {0xD7FF, "\xED\x9F\xBF"},
      {0xE000, "\xEE\x80\x80"}, {0xFFFF, "\xEF\xBF\xBF"}, {u'日', "日"}};
  for (const auto& [unit, utf8] : units) EXPECT_EQ(converted(std::u16string(1, unit)), utf8) << static_cast<int>(unit);
  EXPECT_EQ(converted(std::u16string(u"a\0b", 3)), std::string("a\0b", 3));
}

TEST_F(AttachedText, APairOfSurrogatesIsOneCharacterOfFourBytes) {
  EXPECT_EQ(converted(u"\xD800\xDC00"), "\xF0\x90\x80\x80");
  EXPECT_EQ(converted(u"x\xD83D\xDE00y"), "x😀y");
  EXPECT_EQ(converted(u"\xD83D\xDCFA"), "📺");
  EXPECT_EQ(converted(u"\xDBFF\xDFFF"), "\xF4\x8F\xBF\xBF");
}

TEST_F(AttachedText, AHighSurrogateWithoutItsLowOneSwallowsTheUnitBehindIt) {
  EXPECT_EQ(converted(u"x\xD83D"
                      u"Ay"),
            "xy");
  EXPECT_EQ(converted(u"x\xDBFF\xE000y"), "xy");
  EXPECT_EQ(converted(u"x\xD83D\xD83D\xDE00y"), "xy") << "the low one is then alone";
  EXPECT_EQ(converted(u"x\xD83D\xD83Dy"), "xy");
}

TEST_F(AttachedText, SurrogatesAloneAreDropped) {
  EXPECT_EQ(converted(u"x\xDC00y"), "xy");
  EXPECT_EQ(converted(u"x\xDFFFy"), "xy");
  EXPECT_EQ(converted(u"x\xDE00\xD83Dy"), "x") << "the high one takes what follows with it";
  EXPECT_EQ(converted(u"xy\xD83D"), "xy") << "a high one at the end";
  EXPECT_EQ(converted(u"\xD83D"), "");
  EXPECT_EQ(converted(u"\xDE00"), "");
}

TEST_F(AttachedText, OfAServiceWithoutOneIsEmpty) {
  EXPECT_EQ(worker.t_GetServiceJsonText(TCServiceData()), "");
  EXPECT_EQ(converted(u""), "");
  EXPECT_EQ(worker.t_GetServiceJsonText(channels::record("{110=7}")), "") << "a number is no text";
  EXPECT_EQ(logs(), Lines{});
}

TEST_F(AttachedText, HasNoLongestLength) {
  EXPECT_EQ(converted(std::u16string(100000, u'日')).size(), 300000U);
}

class OnTvJson : public ChannelTest {
 protected:
  /// Sets the found-channel list to one service with this attached text.
  void give(std::u16string_view text) {
    worker.Destroy();
    worker.m_ChannelList.push_back(new TCServiceData());
    channels::setText(*worker.m_ChannelList.front(), attached, text);
    forget();
  }
  static Lines begin(int position) {
    return {message(position, "call begin."), channels::place("GetChannel_OnTVJson")};
  }
  static std::string message(int position, const std::string& text, int level = 3) {
    return std::to_string(level) + " [CEmpTaskWindow::GetChannel_OnTVJson][Idx:" + std::to_string(position) + "] " +
           text;
  }
};

TEST_F(OnTvJson, IsTheAttachedTextAsItStandsOrEmpty) {
  for (const std::u16string stored : {u"{\"logo\": \"Н\"}", u"no JSON", u"[1, 2]", u""}) {
    give(stored);
    std::string json = "as it was";
    EXPECT_EQ(worker.GetChannel_OnTVJson(0, json), 1);
    EXPECT_EQ(json, worker.t_GetServiceJsonText(*worker.m_ChannelList.front()));
    EXPECT_EQ(json.empty(), stored.empty());
    const Lines empty = stored.empty() ? Lines{"3 JSON has zero length"} : Lines();
    EXPECT_EQ(logs(), join({begin(0), empty, {message(0, "call end. Success.")}}));
    EXPECT_EQ(calls(), Lines{});
  }
}

TEST_F(OnTvJson, OutsideTheListAnswersMinus1AndLeavesTheTextAsItWas) {
  give(u"{}");
  for (const int position : {-1, 1, 2147483647}) {
    std::string json = "as it was";
    EXPECT_EQ(worker.GetChannel_OnTVJson(position, json), -1);
    EXPECT_EQ(json, "as it was");
    EXPECT_EQ(logs(),
              join({begin(position), {banner(0, "GetChannel_OnTVJson"), message(position, "Failed to get data.", 0)}}));
  }
}

}  // namespace
