// SPDX-License-Identifier: MIT
// Documents that are not valid snapshots, and what the errors say about them.
#include <gtest/gtest.h>

#include "set/SnapshotJson.h"
#include "text/Units.h"
#include "virtualtv/set/SetTest.h"
#include "virtualtv/set/snapshot/RandomSet.h"

namespace virtualtv::test {
namespace {

/// The error of reading, "" on success.
template <typename Read>
std::string refusal(Read read) {
  try {
    read();
    return "";
  } catch (const std::invalid_argument& error) {
    return error.what();
  }
}
std::string refusalOf(const std::string& text) {
  return refusal([&] { readSnapshot(text); });
}
std::string refusalOf(const Json::Value& document) {
  return refusal([&] { snapshotIn(document); });
}

/// The line of a text that contains the first occurrence of a part, counted from 1.
std::size_t lineOf(const std::string& text, const std::string& part) {
  const std::string before = text.substr(0, text.find(part));
  return 1 + static_cast<std::size_t>(std::count(before.begin(), before.end(), '\n'));
}

void expectOneLine(const std::string& text) {
  EXPECT_TRUE(text::isPrintable(text)) << text;
  EXPECT_LT(text.size(), 1000U);
}

class BadSnapshot : public SetTest {
 protected:
  BadSnapshot() {
    tv->import({serviceOf(10, 0, 1), serviceOf(20, 1, 2)}, false);
    tv->setField(1, TCServiceData::CHANNEL_NAME, u"One\xD800");
    tv->setField(1, 200, std::uint64_t{1} << 60);
    tv->setAudioTracks(1, {{.pid = 7}});
    tv->setSubtitleTracks(1, {{.pid = 8}});
    tv->setFavouritesOf(1, {{3, true}});
    tv->setSetting("db/a", "\xFF");
    tv->setSetting("db/b", 5);
    document = documentOf(tv->snapshot());
  }

  Json::Value document;
};

TEST_F(BadSnapshot, IsToldFromOneThatIsNone) {
  EXPECT_EQ(refusalOf(std::string()).find("not a snapshot of a set: line 1, column 1: "), 0U);
  EXPECT_EQ(refusalOf(std::string("hello")).find("not a snapshot of a set: line 1, column 1: "), 0U);
  for (const char* const text : {"{}", "[]", R"({"services": []})"}) {
    EXPECT_EQ(refusalOf(std::string(text)), "not a snapshot of a set") << text;
  }
  EXPECT_EQ(refusalOf(std::string(200, '[')), "not a snapshot of a set: line 1, column 17: nested deeper than 16");
  EXPECT_EQ(refusalOf(std::string("{\"version\": 1,\n \"version\": 1}")),
            "not a snapshot of a set: line 2, column 2: Duplicate key: 'version'");
  EXPECT_EQ(refusalOf(std::string("{\"version\": 1}\0", 15)),
            "not a snapshot of a set: line 1, column 15: nothing more is wanted behind the value");
}

TEST_F(BadSnapshot, OfAnotherVersionSaysWhichIsRead) {
  const std::vector<std::pair<Json::Value, std::string>> versions{
      {2, "2"}, {1.0, "1.0"}, {"1", "\"1\""}, {Json::Value(), "null"}};
  for (const auto& [version, shown] : versions) {
    document["version"] = version;
    EXPECT_EQ(refusalOf(document), "version: this program reads version 1, not " + shown);
  }
}

TEST_F(BadSnapshot, HasNoComments) {
  const std::string text = writeSnapshot(tv->snapshot());
  ASSERT_EQ(refusalOf(text), "");
  const std::string none = "not a snapshot of a set: ";
  const auto with = [&](const std::string& comment, const std::string& place) {
    std::string commented = text;
    return refusalOf(commented.insert(commented.find(place), comment));
  };
  EXPECT_EQ(with("/* a */", "\"version\""), none + "line 1, column 2: JSON has no comments");
  EXPECT_EQ(with("// a\n", ",\n\"state\""), none + "line 1, column 14: JSON has no comments");
  EXPECT_EQ(with(" /* a */", "\"key\""),
            none + "line " + std::to_string(lineOf(text, "\"key\"")) + ", column 3: JSON has no comments");
  for (const std::string behind : {"// a", "/* a */", "x", "{}", "1", ",", "\"", "/"}) {
    EXPECT_TRUE(refusalOf(text + behind).starts_with(none + "line ")) << behind;
    EXPECT_TRUE(refusalOf(behind + "\n" + text).starts_with(none + "line ")) << behind;
  }
  tv->setSetting("db/\"\\// a", "/* b */ \"\\");
  EXPECT_EQ(refusalOf(writeSnapshot(tv->snapshot())), "") << "slashes within texts";
}

const std::string of64 = "a number from -9223372036854775808 to 9223372036854775807";

TEST_F(BadSnapshot, SaysWhereAndWhatIsWanted) {
  const std::vector<std::pair<std::function<void(Json::Value&)>, std::string>> cases{
      {[](Json::Value& d) { d["more"] = 1; }, "more: nothing of that name is known"},
      {[](Json::Value& d) { d.removeMember("settings"); }, "there is no \"settings\""},
      {[](Json::Value& d) { d["state"].removeMember("main.source"); }, "state: there is no \"main.source\""},
      {[](Json::Value& d) { d["state"]["main.colour"] = 1; }, "state[\"main.colour\"]: nothing of that name is known"},
      {[](Json::Value& d) { d["state"]["main.source"] = 2147483648U; },
       "state[\"main.source\"]: a number from -2147483648 to 2147483647 is wanted, not 2147483648"},
      {[](Json::Value& d) { d["state"]["tuner.fade"] = 256; },
       "state[\"tuner.fade\"]: a number from 0 to 255 is wanted, not 256"},
      {[](Json::Value& d) { d["state"]["isp.width"] = 0; },
       "state[\"isp.width\"]: a number from 1 to 2147483647 is wanted, not 0"},
      {[](Json::Value& d) { d["state"]["isp.present"] = 1; }, "state[\"isp.present\"]: true or false is wanted, not 1"},
      {[](Json::Value& d) { d["state"]["start.service"] = 5; },
       "state[\"start.service\"]: a number from 0 to 18446744073709551615 as a text is wanted, not 5"},
      {[](Json::Value& d) { d["state"]["isp.audio"] = "1:x"; },
       "state[\"isp.audio\"]: track 1, '1:x': a language (three letters, und or a number from -2147483648 to "
       "2147483647) is "
       "wanted, not 'x'"},
      {[](Json::Value& d) { d["state"]["main.service"] = 9; }, "state[\"main.service\"]: there is no service #9"},
      {[](Json::Value& d) { d["state"]["main.service"] = -1; },
       "state[\"main.service\"]: a number from 0 to 268435455 is wanted, not -1"},
      {[](Json::Value& d) { d["state"]["pip.previous_service"] = 268435456; },
       "state[\"pip.previous_service\"]: a number from 0 to 268435455 is wanted, not 268435456"},
      {[](Json::Value& d) { d["state"]["pip.service"] = Json::UInt64{18446744073709551615U}; },
       "state[\"pip.service\"]: a number from 0 to 268435455 is wanted, not 18446744073709551615"},
      {[](Json::Value& d) { d["settings"][0]["value"] = 1.5; },
       "settings[0].value: a number from -2147483648 to 2147483647 is wanted, not 1.5"},
      {[](Json::Value& d) { d["settings"][1]["key"] = d["settings"][0]["key"]; },
       "settings[1].key: the key stands there already"},
      {[](Json::Value& d) { d["settings"][0]["key"] = "\xFF"; }, "settings[0].key: not a text in UTF-8"},
      {[](Json::Value& d) { d["services"][0]["key"] = 0; },
       "services[0].key: a number from 1 to 268435455 is wanted, not 0"},
      {[](Json::Value& d) { d["services"][1]["key"] = 1; }, "services[1].key: the key stands there already"},
      {[](Json::Value& d) { d["services"][0]["numbers"]["ptc"] = 70000; },
       "services[0].numbers.ptc: a number from 0 to 65535 is wanted, not 70000"},
      {[](Json::Value& d) { d["services"][0]["numbers"]["colour"] = 1; },
       "services[0].numbers.colour: there is no field of that name"},
      {[](Json::Value& d) { d["services"][0]["numbers"]["12"] = 1; },
       "services[0].numbers.id: the field stands there already"},
      {[](Json::Value& d) { d["services"][0]["numbers"]["200"] = "18446744073709551616"; },
       "services[0].numbers.200: " + of64 + ", as a text beyond 53 bits, is wanted, not \"18446744073709551616\""},
      {[](Json::Value& d) { d["services"][0]["numbers"]["name"] = 1; },
       "services[0].numbers.name: the field takes a text, not a number"},
      {[](Json::Value& d) { d["services"][0]["texts"]["200"] = "x"; },
       "services[0].texts.200: the field stands there already"},
      {[](Json::Value& d) { d["services"][0]["texts"]["ptc"] = "x"; },
       "services[0].texts.ptc: field 2 (PTC) takes a number from 0 to 65535, not a text"},
      {[](Json::Value& d) { d["services"][0]["texts"]["name"]["units"][1] = 65536; },
       "services[0].texts.name.units[1]: a number from 0 to 65535 is wanted, not 65536"},
      {[](Json::Value& d) { d["services"][0]["favourites"] = "1=1,1=0"; },
       "services[0].favourites: favourite 2, '1=0': the group stands there already"},
  };
  for (const auto& [spoil, wanted] : cases) {
    Json::Value spoiled = document;
    spoil(spoiled);
    EXPECT_EQ(refusalOf(spoiled), wanted);
  }
}

/// A snapshot can't set what the knobs of the set refuse.
TEST_F(BadSnapshot, HoldsNoFieldThatAKnobRefuses) {
  const std::string ofId =
      "a number from 1 to 18446744073709551615 (0 stands for no service), as a text beyond 53 bits,";
  const std::vector<std::tuple<std::string, Json::Value, std::string>> cases{
      {"id", -5, ofId + " is wanted, not -5"},
      {"id", "-5", ofId + " is wanted, not \"-5\""},
      {"id", 0, ofId + " is wanted, not 0"},
      {"id", "0", ofId + " is wanted, not \"0\""},
      {"id", "18446744073709551616", ofId + " is wanted, not \"18446744073709551616\""},
      {"frequency", 4294967295U, "a number from -2147483648 to 2147483647 is wanted, not 4294967295"},
      {"frequency", "-2147483649", "a number from -2147483648 to 2147483647 is wanted, not \"-2147483649\""},
      {"major", "65536", "a number from 0 to 65535 is wanted, not \"65536\""},
      {"200", "9223372036854775808", of64 + ", as a text beyond 53 bits, is wanted, not \"9223372036854775808\""},
      {"-7", 1, "there is no field of that name"},
  };
  for (const auto& [field, value, wanted] : cases) {
    Json::Value spoiled = document;
    spoiled["services"][0]["numbers"][field] = value;
    const std::string path = field == "-7" ? "numbers[\"-7\"]" : "numbers." + field;
    EXPECT_EQ(refusalOf(spoiled), "services[0]." + path + ": " + wanted);
    EXPECT_NE(refusal("service.#1." + field, value.asString()), "") << field << " " << value.asString();
  }
}

TEST_F(BadSnapshot, HasNoNumbersThatOtherProgramsCutShort) {
  document["services"][0]["numbers"]["id"] = Json::Value(Json::Int64{1} << 53);
  EXPECT_EQ(
      refusalOf(document),
      "services[0].numbers.id: a number from 1 to 18446744073709551615 (0 stands for no service), as a text beyond "
      "53 bits, is wanted, not 9007199254740992");
}

TEST_F(BadSnapshot, HoldsNoTextWhereAKnobTakesANumber) {
  document["services"][0]["texts"]["picture_width"] = "wide";
  const std::string wanted = "field 1003 (picture_width) takes " + of64 + ", not a text";
  EXPECT_EQ(refusalOf(document), "services[0].texts.picture_width: " + wanted);
  EXPECT_EQ(refusal("service.#1.picture_width", "\"wide\""), wanted);
}

TEST_F(BadSnapshot, HoldsNoTracksThatAKnobRefuses) {
  const std::string pid = "track 1, '65536': a PID from 0 to 65535 is wanted, not '65536'";
  const std::string kind =
      "track 1, '1:eng:teletext-subtitle': a kind (dvb or teletext) is wanted, not 'teletext-subtitle'";
  for (const char* const list : {"audio", "subtitles"}) {
    Json::Value spoiled = document;
    spoiled["services"][0][list] = "65536";
    EXPECT_EQ(refusalOf(spoiled), "services[0]." + std::string(list) + ": " + pid);
    spoiled = document;
    spoiled["state"]["isp." + std::string(list)] = "65536";
    EXPECT_EQ(refusalOf(spoiled), "state[\"isp." + std::string(list) + "\"]: " + pid);
  }
  document["services"][0]["subtitles"] = "1:eng:teletext-subtitle";
  EXPECT_EQ(refusalOf(document), "services[0].subtitles: " + kind);
}

TEST_F(BadSnapshot, IsNotShownAtLength) {
  const std::string noise(100000, '\n');
  document["state"]["isp.audio"] = noise;
  expectOneLine(refusalOf(document));
  document["state"][noise] = 1;
  expectOneLine(refusalOf(document));
  document[noise] = noise;
  expectOneLine(refusalOf(document));
}

TEST_F(BadSnapshot, IsEachPartOfATextThatWasCutOff) {
  const std::string text = writeSnapshot(tv->snapshot());
  ASSERT_EQ(refusalOf(text), "");
  for (std::size_t size = 0; size + 1 < text.size(); ++size) {
    const std::string said = refusalOf(text.substr(0, size));
    ASSERT_EQ(said.find("not a snapshot of a set: line "), 0U) << size << ": " << said;
    expectOneLine(said);
  }
}

/// Replaces each value of a document by other values, one at a time.
class Spoiler {
 public:
  explicit Spoiler(Json::Value document) : document_(std::move(document)) {}

  void spoilAll() { spoil(document_, ""); }
  int refused = 0;

 private:
  void spoil(Json::Value& value, const std::string& path) {
    for (const char* const other :
         {"null", "true", "-1", "1.5", "1e300", "18446744073709551615", "\"x\"", "[]", "{}"}) {
      const Json::Value before = std::exchange(value, parsed(other));
      look(path, other);
      value = before;
    }
    if (value.isArray()) {
      for (Json::ArrayIndex at = 0; at < value.size(); ++at) spoil(value[at], path + "[" + std::to_string(at) + "]");
    } else if (value.isObject()) {
      for (const std::string& name : value.getMemberNames()) spoil(value[name], pathTo(path, name));
    }
  }

  void look(const std::string& path, const std::string& other) {
    const std::string said = refusalOf(document_);
    if (said.empty()) {
      const Snapshot read = snapshotIn(document_);
      EXPECT_EQ(readSnapshot(writeSnapshot(read)), read) << path << " as " << other;
      return;
    }
    ++refused;
    expectOneLine(said);
    const bool takesAwayServices = path == "services" && other == "[]";
    EXPECT_TRUE(said.starts_with(takesAwayServices ? "state[\"main.service\"]" : path))
        << path << " as " << other << ": " << said;
  }

  static std::string pathTo(const std::string& path, const std::string& name) {
    if (name.find('.') != name.npos) return path + "[\"" + name + "\"]";
    return path + (path.empty() ? "" : ".") + name;
  }

  static Json::Value parsed(const std::string& text) {
    Json::Value value;
    std::istringstream("[" + text + "]") >> value;
    return value[0];
  }

  Json::Value document_;
};

TEST_F(BadSnapshot, IsRefusedWhereAValueIsNone) {
  Spoiler spoiler(document);
  spoiler.spoilAll();
  EXPECT_GT(spoiler.refused, 700);
}

/// The text is the snapshot of a random set.
TEST(BadSnapshots, WithBytesInTheWrongPlaceAreReadOrRefusedWithOneLine) {
  std::mt19937 engine(7);
  std::string text;
  {
    Storage storage;
    Tv tv(storage);
    RandomSet(1).use(tv);
    text = writeSnapshot(tv.snapshot());
  }
  int refused = 0;
  for (int round = 0; round < 300; ++round) {
    std::string spoiled = text;
    for (auto count = 1 + engine() % 3; count > 0; --count) {
      const std::size_t at = engine() % spoiled.size();
      if (engine() % 2 == 0) {
        spoiled[at] = "0{}[]\",:-.e\x80\x00"[engine() % 13];
      } else {
        spoiled.erase(at, engine() % 100);
      }
    }
    const std::string said = refusalOf(spoiled);
    expectOneLine(said);
    refused += said.empty() ? 0 : 1;
  }
  EXPECT_GT(refused, 200);
}

}  // namespace
}  // namespace virtualtv::test
