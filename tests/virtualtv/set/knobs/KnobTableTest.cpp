// SPDX-License-Identifier: MIT
// What all knobs have in common: each one takes a value and shows it again, or refuses it and says which values it
// takes.
#include "services/FieldNames.h"
#include "set/Knobs.h"
#include "set/SnapshotJson.h"
#include "text/Units.h"
#include "virtualtv/set/SetTest.h"

namespace virtualtv::test {
namespace {

using Texts = std::vector<std::string>;

/// Values that are unusual for most knobs.
const Texts values{"",
                   " ",
                   "x",
                   "ON",
                   "off",
                   "Auto",
                   "auto",
                   "none",
                   "unset",
                   "0",
                   "1",
                   "-1",
                   "255",
                   "256",
                   "65535",
                   "65536",
                   "2147483647",
                   "2147483648",
                   "-2147483648",
                   "-2147483649",
                   "4294967295",
                   "9223372036854775807",
                   "9223372036854775808",
                   "-9223372036854775808",
                   "-9223372036854775809",
                   "18446744073709551615",
                   "18446744073709551616",
                   "99999999999999999999999999",
                   "+1",
                   " 1",
                   "1 ",
                   "1.5",
                   "1e3",
                   "0x10",
                   "1,",
                   ",1",
                   "1,2",
                   "1,x",
                   "1,2147483648",
                   "1x1",
                   "0x0",
                   "1x2147483648",
                   "1x1@1",
                   "1x1@0",
                   "-1x-1@-1",
                   "#",
                   "#0",
                   "#1",
                   "#-1",
                   "#x",
                   "#268435456",
                   "65536:eng",
                   "1:eng",
                   "1:99999999999",
                   "1:eng:ttx",
                   "!",
                   "256=1",
                   "1=2",
                   "1=1,1=0",
                   "\"\"",
                   "\"a\\u0000b\"",
                   "\xff"};

bool isNumber(const std::string& text) {
  const std::string digits = text.substr(text.starts_with('-') ? 1 : 0);
  return !digits.empty() && digits.find_first_not_of("0123456789") == digits.npos;
}

/// The names of the knobs that a row of the table describes, for one window, input, service and operation.
Texts namesOf(const Knob& knob) {
  std::string name(knob.name);
  for (const auto& [part, value] : {std::pair<std::string, const char*>("WINDOW", "pip"),
                                    {"SOURCE", "13"},
                                    {"OPERATION", "vconf_get_int"},
                                    {".ID.", ".#1."}}) {
    if (const std::size_t at = name.find(part); at != name.npos) name.replace(at, part.size(), value);
  }
  if (!name.ends_with(".FIELD")) return {name};
  Texts names{"service.#1.200"};
  for (const FieldName& field : fieldNames()) names.push_back("service.#1." + std::string(field.name));
  return names;
}

class KnobTable : public SetTest {
 protected:
  KnobTable() { tv->import({serviceOf(10, 0, 1), serviceOf(20, 1, 2)}, false); }

  void expectRefused(const std::string& name, const std::string& value, const std::string& said) {
    SCOPED_TRACE(name + " " + text::printable(value) + ": " + text::printable(said));
    EXPECT_EQ(said.find('\n'), said.npos);
    const bool tells = said.find(" is wanted") != said.npos || said.find(" takes ") != said.npos ||
                       said.find("there is no service ") != said.npos || said.find("stands there already") != said.npos;
    EXPECT_TRUE(tells) << "what it takes";
    EXPECT_EQ(said.find("a number"), said.find("a number from ")) << "of which range";
  }

  /// A knob shows the value that it took, and takes what it shows.
  void expectTaken(const std::string& name, const std::string& value) {
    SCOPED_TRACE(name + " " + text::printable(value));
    const std::string shown = knob(name);
    const bool isTrack = shown.starts_with(value + ":");
    EXPECT_TRUE(!isNumber(value) || shown == value || shown == "\"" + value + "\"" || isTrack) << shown;
    EXPECT_EQ(refusal(name, shown), "");
    EXPECT_EQ(knob(name), shown);
  }
};

TEST_F(KnobTable, TakesAValueAsItIsOrRefusesItWithTheRange) {
  int taken = 0;
  int refused = 0;
  for (const Knob& row : knobs()) {
    if (row.set == nullptr) continue;
    for (const std::string& name : namesOf(row)) {
      for (const std::string& value : values) {
        const std::string before = knob(name);
        const std::uint64_t revision = tv->revision();
        const std::string said = refusal(name, value);
        if (said.empty()) {
          expectTaken(name, value);
          ++taken;
        } else {
          expectRefused(name, value, said);
          EXPECT_EQ(knob(name), before) << name << " " << text::printable(value);
          EXPECT_EQ(tv->revision(), revision) << name << " " << text::printable(value);
          ++refused;
        }
      }
    }
  }
  EXPECT_GT(taken, 300);
  EXPECT_GT(refused, 1500);
}

/// Snapshots accept every value that the knobs accept.
TEST_F(KnobTable, TakesWhatASnapshotBringsBack) {
  for (const Knob& row : knobs()) {
    if (row.set == nullptr || row.name.starts_with("latency.")) continue;
    for (const std::string& name : namesOf(row)) {
      for (const std::string& value : values) {
        if (!refusal(name, value).empty()) continue;
        const Snapshot snapshot = tv->snapshot();
        EXPECT_EQ(readSnapshot(writeSnapshot(snapshot)), snapshot) << name << " " << text::printable(value);
      }
    }
  }
}

}  // namespace
}  // namespace virtualtv::test
