// SPDX-License-Identifier: MIT
// The queries for a channel's name.
#include <algorithm>
#include <cerrno>
#include <string>
#include <vector>

#include "support/Converter.h"
#include "window/channel/FieldQueries.h"

namespace {

using channels::fieldQueries;
using channels::FieldQuery;
using channels::FieldTest;
using channels::join;
using channels::Output;
using support::Lines;

/// The record of a channel with this name.
std::string named(std::u16string_view name) {
  return "{12=281,13=5,16=" + channels::quoted(name) + "}";
}

std::vector<FieldQuery> nameQueries() {
  std::vector<FieldQuery> names;
  std::copy_if(fieldQueries().begin(), fieldQueries().end(), std::back_inserter(names),
               [](const FieldQuery& query) { return query.isName(); });
  return names;
}

/// The name of a query's output in its message for a channel without a name. Elsewhere all queries call it "ptwName".
std::string pointerOf(const FieldQuery& query) {
  return query.name.ends_with("ServiceName") ? "ptwServiceName" : "ptwName";
}

std::string levelled(const FieldQuery& query, const std::string& text) {
  return std::to_string(channels::levelOf(query.family)) + " " + text;
}

/// The written units: the byte-order mark and the name. The rest of the buffer must be unchanged.
std::u16string written(const Output& output) {
  const auto end = std::find(output.units.begin(), output.units.end(), 0);
  EXPECT_TRUE(std::all_of(end, output.units.end(), [](unsigned short unit) { return unit == 0; }));
  return {output.units.begin(), end};
}

std::u16string marked(std::u16string_view name) {
  return u"\uFEFF" + std::u16string(name);
}

/// The output as a log line shows it: its bytes before the first zero.
std::string bytesOf(std::u16string_view units) {
  const std::string bytes(reinterpret_cast<const char*>(units.data()), units.size() * sizeof(char16_t));
  return bytes.substr(0, bytes.find('\0'));
}

/// The lines of a query for a name, before and after those of the conversion.
Lines before(const FieldQuery& query) {
  return join({channels::begin(query), channels::lookup(query, "281", "5")});
}
Lines success(const FieldQuery& query, std::u16string_view name) {
  return join({{levelled(query, "ptwName = " + bytesOf(marked(name)))}, channels::end(query, "281", 0, 0)});
}

class NameTest : public FieldTest {
 protected:
  /// Expects that the query for the name of a channel with `name` returns `answered`.
  void expectName(const FieldQuery& query, std::u16string_view name, std::u16string_view answered,
                  const Lines& conversion) {
    SCOPED_TRACE(query.name);
    give(named(name));
    Output output;
    EXPECT_EQ(query.ask(worker, &output), 1);
    EXPECT_EQ(written(output), marked(answered));
    EXPECT_EQ(logs(), join({before(query), conversion, success(query, answered)}));
  }
};

TEST_F(NameTest, IsUtf16BehindAByteOrderMark) {
  for (const FieldQuery& query : nameQueries()) {
    expectName(query, u"News 24", u"News 24", {});
    expectName(query, u"Новости", u"Новости", {});
    expectName(query, u"日本 é", u"日本 é", {});
  }
}

TEST_F(NameTest, ThatJustFitsIsWhole) {
  const std::u16string name(255, u'a');
  for (const FieldQuery& query : nameQueries()) expectName(query, name, name, {});
}

TEST_F(NameTest, IsCutWhereTheRoomEnds) {
  const Lines full{"3 iconv failed: " + std::to_string(E2BIG)};
  for (const FieldQuery& query : nameQueries()) {
    for (const char16_t letter : {u'a', u'Ж'}) {  // no byte of the second is 0, which would end the log line
      for (const std::size_t length : std::vector<std::size_t>{256, 257, 258, 300, 5000}) {
        SCOPED_TRACE(length);
        expectName(query, std::u16string(length, letter), std::u16string(255, letter), full);
      }
    }
  }
}

TEST_F(NameTest, EndsBeforeASurrogate) {
  const Lines broken{"3 iconv failed: " + std::to_string(EILSEQ)};
  for (const FieldQuery& query : nameQueries()) {
    expectName(query, u"ab\xD83D\xDE00yz", u"ab", broken);
    expectName(query, u"ab\xDC00", u"ab", broken);
  }
}

TEST_F(NameTest, ThatCanNotBeConvertedIsASuccessAllTheSame) {
  for (const FieldQuery& query : nameQueries()) {
    SCOPED_TRACE(query.name);
    give(named(u"News"));
    converter::Spy spy;
    spy.use.failOpen = EMFILE;
    Output output;
    converter::onNewThread([&] { EXPECT_EQ(query.ask(worker, &output), 1); });
    EXPECT_EQ(written(output), u"");
    EXPECT_EQ(logs(), join({before(query),
                            {"3 Iconv open failed", levelled(query, "ptwName = ")},
                            channels::end(query, "281", 0, 0)}));
  }
}

TEST_F(NameTest, OfAnIndexedChannelWithoutOneFailsForNameAlone) {
  for (const FieldQuery& query : nameQueries()) {
    for (const std::string record : {"{12=281,13=5}", "{12=281,13=5,16=\"\"}", "{12=281,13=5,16=7}"}) {
      SCOPED_TRACE(query.name + " " + record);
      give(record);
      Output output;
      output.units.fill(0x5555);
      const bool fails = query.name == "GetChannel_Name";
      EXPECT_EQ(query.ask(worker, &output), fails ? -1 : 1);
      EXPECT_TRUE(std::all_of(output.units.begin(), output.units.end(), [](unsigned short u) { return u == 0x5555; }));
      const Lines end =
          fails ? Lines{channels::message(query, "call end. Failed. length is 0")}
                : Lines{levelled(query, pointerOf(query) + " is NULL"), channels::message(query, "call end. Success.")};
      EXPECT_EQ(logs(), join({before(query), end}));
    }
  }
}

}  // namespace
