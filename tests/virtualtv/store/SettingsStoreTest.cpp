// SPDX-License-Identifier: MIT
#include "store/SettingsStore.h"

#include <gtest/gtest.h>

#include <limits>

#include "store/Transaction.h"
#include "virtualtv/support/Support.h"

namespace virtualtv::test {
namespace {

using State = std::map<std::string, std::string>;

const char* const schema[] = {settingsTables};

class Settings : public testing::Test {
 public:
  Database database{Database::inMemory, schema};
  SettingsStore settings{database};
  SetStateStore state{database};
};

TEST_F(Settings, AKeyThatIsNotSetHasNoValue) {
  EXPECT_EQ(settings.get("db/emp/mainsource"), std::nullopt);
}

TEST_F(Settings, KeepsNumbersAndTextsAsWhatTheyAre) {
  settings.set("number", 7);
  settings.set("text", "7");
  EXPECT_EQ(settings.get("number"), Setting(7));
  EXPECT_EQ(settings.get("text"), Setting("7"));
}

TEST_F(Settings, KeepsAnyNumberAndAnyText) {
  using Int = std::numeric_limits<int>;
  for (const Setting& value : {Setting(Int::min()), Setting(-1), Setting(Int::max()), Setting(""),
                               Setting(std::string("a\0b\xff", 4)), Setting(std::string(100000, 'x'))}) {
    settings.set("key", value);
    EXPECT_EQ(settings.get("key"), value);
  }
}

TEST_F(Settings, AllCanBeReplaced) {
  settings.set("gone", 1);
  settings.set("same", "x");
  settings.set("other", 2);
  const std::map<std::string, Setting> wanted{{"same", "x"}, {"other", "2"}, {std::string("a\0\xff", 3), 5}};
  settings.replaceAll(wanted);
  EXPECT_EQ(settings.list(), wanted);
  settings.replaceAll({});
  EXPECT_TRUE(settings.list().empty());
}

TEST_F(Settings, ASecondValueReplacesTheFirstWhateverItsType) {
  settings.set("key", 7);
  settings.set("key", "text");
  EXPECT_EQ(settings.get("key"), Setting("text"));
  EXPECT_EQ(settings.list().size(), 1U);
}

TEST_F(Settings, KeysAreTakenToTheLetter) {
  settings.set("db/key", 1);
  EXPECT_EQ(settings.get("DB/KEY"), std::nullopt);
  EXPECT_EQ(settings.get("db/key "), std::nullopt);
}

TEST_F(Settings, ListsAllKeys) {
  settings.set("b", 1);
  settings.set("a", "text");
  EXPECT_EQ(settings.list(), (std::map<std::string, Setting>{{"a", "text"}, {"b", 1}}));
}

TEST_F(Settings, AKeyCanBeUnset) {
  settings.set("key", 1);
  EXPECT_TRUE(settings.unset("key"));
  EXPECT_FALSE(settings.unset("key"));
  EXPECT_EQ(settings.get("key"), std::nullopt);
}

TEST_F(Settings, TheStateOfTheSetIsReplacedAsAWhole) {
  EXPECT_EQ(state.all(), State());
  state.setAll({{"main.source", "0"}, {"region", "1"}});
  const State next{{"main.source", "3"}, {"country", std::string("a\0b", 3)}};
  state.setAll(next);
  EXPECT_EQ(state.all(), next);
  state.setAll(next);
  EXPECT_EQ(state.all(), next);
  state.setAll({});
  EXPECT_EQ(state.all(), State());
}

/// All states of three keys with one of two values or none. One of the keys is a prefix of another.
std::vector<State> smallStates() {
  std::vector<State> states{{}};
  for (const char* key : {"a", "a.b", "b"}) {
    const std::vector<State> others = states;
    for (const char* value : {"1", "2"}) {
      for (State added : others) {
        added.emplace(key, value);
        states.push_back(std::move(added));
      }
    }
  }
  return states;
}

TEST_F(Settings, AnyStateOfTheSetTakesThePlaceOfAnyOther) {
  for (const State& before : smallStates()) {
    for (const State& after : smallStates()) {
      state.setAll(before);
      state.setAll(after);
      ASSERT_EQ(state.all(), after);
    }
  }
}

TEST_F(Settings, OfTheStateOfTheSetOnlyWhatIsNewIsWritten) {
  state.setAll({{"a", "1"}, {"b", "2"}, {"c", "3"}});
  const int before = sqlite3_total_changes(database.handle());
  state.setAll({{"a", "1"}, {"b", "4"}, {"d", "5"}});
  EXPECT_EQ(sqlite3_total_changes(database.handle()) - before, 3);
  state.setAll({{"a", "1"}, {"b", "4"}, {"d", "5"}});
  EXPECT_EQ(sqlite3_total_changes(database.handle()) - before, 3);
}

TEST_F(Settings, TheStateOfTheSetStaysWhenItCantBeWritten) {
  const State kept{{"a", "1"}, {"b", "2"}};
  state.setAll(kept);
  database.execute("PRAGMA max_page_count = 4", "limit it");
  EXPECT_EQ(failureOf([&] {
              state.setAll({{"a", "3"}, {"c", std::string(100000, 'x')}});
            }),
            "memory: cannot keep the state of the set: no space left on the disk");
  EXPECT_EQ(state.all(), kept);
}

TEST_F(Settings, AreUndoneWithTheTransactionAroundThem) {
  state.setAll({{"a", "1"}});
  {
    Transaction transaction(database, "do both");
    settings.set("key", 1);
    state.setAll({{"a", "2"}});
  }
  EXPECT_EQ(settings.get("key"), std::nullopt);
  EXPECT_EQ(state.all(), (State{{"a", "1"}}));
}

TEST(SettingsFile, AWriteIsKeptWhenTheProcessDies) {
  TemporaryDirectory directory;
  const std::string end = inChild([&]() -> std::string {
    Database database(directory / "a.db", schema);
    SettingsStore(database).set("number", 7);
    SettingsStore(database).set("text", "seven");
    SetStateStore(database).setAll({{"a", "1"}});
    std::_Exit(0);
  });
  ASSERT_EQ(end, "");
  Database database(directory / "a.db", schema);
  EXPECT_EQ(SettingsStore(database).list(), (std::map<std::string, Setting>{{"number", 7}, {"text", "seven"}}));
  EXPECT_EQ(SetStateStore(database).all(), (State{{"a", "1"}}));
}

TEST(SettingsFile, AWriteOnAFullDiskKeepsTheFormerValue) {
  TemporaryDirectory directory;
  const auto file = directory / "a.db";
  const std::string text = inChild([&] {
    Database database(file, schema);
    SettingsStore settings(database);
    settings.set("key", "former");
    limitFileSize(std::filesystem::file_size(file.string() + "-wal"));
    return failureOf([&] { settings.set("key", "latter"); });
  });
  EXPECT_EQ(text, file.string() + ": cannot keep a setting: writing to the disk failed");
  Database database(file, schema);
  EXPECT_EQ(SettingsStore(database).get("key"), Setting("former"));
}

}  // namespace
}  // namespace virtualtv::test
