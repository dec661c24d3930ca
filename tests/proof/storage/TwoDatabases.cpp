// SPDX-License-Identifier: MIT
#include "TwoDatabases.h"

#include <algorithm>
#include <map>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "Television.h"
#include "store/Database.h"
#include "store/SettingsStore.h"
#include "virtualtv/support/Support.h"

namespace virtualtv::proof {

namespace {

/// The values that a key of a database may hold: the last acknowledged one, or one tried since.
struct Ledger {
  std::string name;
  std::vector<int> may{0};
};

/// Writes numbers alternately to two databases, with the fault in between. @return what each may hold afterwards.
std::vector<Ledger> writeBoth(const std::filesystem::path& directory, Findings& findings, const std::string& where) {
  const Schema schema(&settingsTables, 1);
  std::vector<Ledger> ledgers{{(directory / "one.db").string()}, {(directory / "two.db").string()}};
  std::optional<Database> one;
  std::optional<Database> two;
  const std::string refused = test::failureOf([&] {
    one.emplace(ledgers[0].name, schema);
    two.emplace(ledgers[1].name, schema);
  });
  if (!refused.empty()) return ledgers;
  SettingsStore stores[] = {SettingsStore(*one), SettingsStore(*two)};
  for (int number = 1; number <= 3; ++number) {
    for (std::size_t at = 0; at < ledgers.size(); ++at) {
      Ledger& ledger = ledgers[at];
      const std::string failure = test::failureOf([&] { stores[at].set("number", number); });
      if (failure.empty()) ledger.may.clear();
      ledger.may.push_back(number);
      if (!failure.empty() && failure.rfind(ledger.name + ": cannot ", 0) != 0) {
        findings.note(findings.untold, where, "writing to " + ledger.name + " says " + failure);
      }
    }
  }
  return ledgers;
}

void judgeLedgers(const std::vector<Ledger>& ledgers, Findings& findings, const std::string& where) {
  for (const Ledger& ledger : ledgers) {
    Database database(ledger.name, Schema(&settingsTables, 1));
    const int found = std::get<int>(SettingsStore(database).get("number").value());
    ++findings.states;
    if (std::find(ledger.may.begin(), ledger.may.end(), found) == ledger.may.end()) {
      findings.note(findings.lost, where, ledger.name + " holds " + std::to_string(found));
    }
  }
}

}  // namespace

void loopOverTwoDatabases(const std::filesystem::path& directory, Choice& choice, Findings& findings) {
  Disk& disk = Disk::instance();
  disk.insert({});
  for (const char* name : {"one.db", "two.db"}) {
    Database database(directory / name, Schema(&settingsTables, 1));
    SettingsStore(database).set("number", 0);
  }
  const Image start = disk.image();
  disk.insert(start);
  writeBoth(directory, findings, "two databases");
  const std::map<Access, std::uint64_t> counts = countAll();
  forEachFault(
      choice, [&](Access access) { return counts.at(access); },
      [&](const Fault& fault, const std::string& name) {
        const std::string where = "two databases, " + name;
        disk.insert(start);
        disk.fail(fault);
        const std::vector<Ledger> ledgers = writeBoth(directory, findings, where);
        findings.noteFault(disk.hits(), where);
        const Image image = disk.image();
        const std::string damage = damageOn(image);
        if (!damage.empty()) findings.note(findings.corrupt, where, damage);
        disk.insert(image);
        judgeLedgers(ledgers, findings, where);
      });
}

}  // namespace virtualtv::proof
