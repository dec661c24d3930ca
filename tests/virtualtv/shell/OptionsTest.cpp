// SPDX-License-Identifier: MIT
#include "shell/Options.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "import/Import.h"
#include "shell/ListWishes.h"

namespace virtualtv::shell {
namespace {

/// Collects what the options receive, as text.
class OptionsTest : public testing::Test {
 protected:
  Option noting(const std::string& name, const std::string& value) {
    Option option;
    option.name = name;
    option.value = value;
    option.take = [this, name](const std::string& given) {
      if (given == "bad") throw std::invalid_argument("not this");
      taken += name + "(" + given + ")";
    };
    return option;
  }

  /// FILE..., --level VALUE, --all and, with it, --more.
  Options options() {
    Options all{noting("FILE", "TEXT"), noting("--level", "LEVEL"), noting("--all", ""), noting("--more", "")};
    all[0].isSeveral = true;
    all[3].needs = "--all";
    return all;
  }

  /// What the options receive from the words, or the error.
  std::string read(const Lines& words) { return read(options(), words); }
  std::string read(const Options& options, const Lines& words) {
    taken.clear();
    try {
      return readWords(options, words) ? taken : "refused" + taken;
    } catch (const std::invalid_argument& error) {
      return error.what();
    }
  }

  std::string taken;
};

TEST_F(OptionsTest, TakeValuesInTheirOwnOrder) {
  EXPECT_EQ(read({"--all", "one", "--level", "3", "two"}), "FILE(one)FILE(two)--level(3)--all()");
  EXPECT_EQ(read({"--level=3", "one"}), "FILE(one)--level(3)");
  EXPECT_EQ(read({"--level=a=b", "one"}), "FILE(one)--level(a=b)");
}

TEST_F(OptionsTest, TakeEmptyValuesAndThoseThatLookLikeOptions) {
  EXPECT_EQ(read({"", "--level", "--all"}), "FILE()--level(--all)");
  EXPECT_EQ(read({"one", "--level="}), "FILE(one)--level()");
  EXPECT_EQ(read({"-"}), "FILE(-)");
  EXPECT_EQ(read({"--", "--all", "--"}), "FILE(--all)FILE(--)");
}

TEST_F(OptionsTest, RefuseWordsOfAnotherForm) {
  for (const Lines& words : {Lines{},
                             {"--all"},
                             {"one", "--level"},
                             {"one", "--none"},
                             {"one", "-a"},
                             {"one", "--al"},
                             {"one", "--all=yes"},
                             {"one", "--level", "1", "--level", "2"},
                             {"one", "FILE=two", "--FILE"}}) {
    EXPECT_EQ(read(words), "refused");
  }
}

TEST_F(OptionsTest, RefuseAnOptionWithoutTheOneThatItNeeds) {
  EXPECT_EQ(read({"one", "--more"}), "refused");
  EXPECT_EQ(read({"one", "--more", "--all", "--all"}), "FILE(one)--all()--all()--more()");
}

TEST_F(OptionsTest, RefuseASecondWordWhereOneIsWantedAndAnyWhereNone) {
  Options one = options();
  one[0].isSeveral = false;
  EXPECT_EQ(read(one, {"one"}), "FILE(one)");
  EXPECT_EQ(read(one, {"one", "two"}), "refused");
  one.erase(one.begin());
  EXPECT_EQ(read(one, {"--all"}), "--all()");
  EXPECT_EQ(read(one, {"one"}), "refused");
}

TEST_F(OptionsTest, TellWhichOptionDoesNotTakeAValue) {
  EXPECT_EQ(read({"one", "--level", "bad"}), "--level: not this");
  EXPECT_EQ(read({"bad", "--level", "bad"}), "FILE: not this");
}

TEST(ListWishesTest, AreReadFromTheWordsOfDotCommands) {
  const ImportWishes list = importWishes({"list.conf", "--add", "--format", "vdr", "--encoding=ISO-8859-2"});
  EXPECT_EQ(list.file, "list.conf");
  EXPECT_EQ(list.options.format, import::formatNamed("vdr"));
  EXPECT_EQ(list.options.encoding, "ISO-8859-2");
  EXPECT_TRUE(list.options.add);
  EXPECT_EQ(exportWishes({"out", "--format=m3u"}).format, import::formatNamed("m3u"));
  EXPECT_EQ(exportWishes({"out"}).format, &defaultExportFormat());
  const ScanWishes scan = scanWishes({"one.ts", "--import", "-", "--add"});
  EXPECT_EQ(scan.files, (Lines{"one.ts", "-"}));
  EXPECT_TRUE(scan.import && scan.add && !scan.json);
}

}  // namespace
}  // namespace virtualtv::shell
