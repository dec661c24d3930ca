// SPDX-License-Identifier: MIT
#include "FaultLoop.h"

#include <algorithm>
#include <iostream>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "PowerLoss.h"
#include "Scenarios.h"
#include "store/StoreError.h"
#include "virtualtv/support/Support.h"

namespace virtualtv::proof {

namespace {

constexpr const char* laterKey = "key later";
constexpr const char* probeKey = "key probe";
constexpr const char* later = ".vconf set later int 7";
constexpr const char* probe = ".vconf set probe int 1";

/// A scenario without faults: its output, and the stored content after each of its writes.
struct Course {
  Outcome outcome;
  std::vector<Content> contents;  ///< the first is from before all writes; neighbours differ
  std::map<Access, std::uint64_t> accesses;
  std::map<Access, std::uint64_t> accessesWithClose;
};

/// Runs scenarios under faults.
class Loop {
 public:
  Loop(std::filesystem::path directory, Findings& findings) : directory_(std::move(directory)), findings_(findings) {}

  void run(const Scenario& scenario, Choice& choice);

 private:
  Course follow(const Scenario& scenario) const;
  void runUnder(const Scenario& scenario, const Course& course, const Fault& fault, const std::string& where);
  void judge(const Course& course, const Outcome& outcome, const std::string& where);
  void judgeContent(const Course& course, Content content, const char* when, const std::string& where);
  void judgeDisk(const Course& course, const Image& image, const char* when, const std::string& where);
  void tryAgain(Television& television, const std::string& where);

  std::filesystem::path directory_;
  Findings& findings_;
  // Of the run under way.
  bool acknowledged_ = false;  ///< the scenario's own step was acknowledged
  bool laterAcknowledged_ = false;
};

Course Loop::follow(const Scenario& scenario) const {
  Disk& disk = Disk::instance();
  Course course;
  disk.insert(scenario.disk);
  if (scenario.startFails) course.contents.push_back(contentOn(directory_));
  disk.insert(scenario.disk);
  {
    Television television(directory_);
    const auto note = [&] {
      Content content = television.content();
      if (course.contents.empty() || content != course.contents.back()) course.contents.push_back(std::move(content));
    };
    note();
    television.onWrite(note);
    course.outcome = television.run(scenario.line);
    note();
  }
  disk.insert(scenario.disk);
  {
    Television television(directory_);
    if (!scenario.startFails) disk.heal();
    television.run(scenario.line);
    television.run(later);
    course.accesses = countAll();
  }
  course.accessesWithClose = countAll();
  return course;
}

void Loop::run(const Scenario& scenario, Choice& choice) {
  const Course course = follow(scenario);
  const std::uint64_t before = findings_.faults;
  if (!course.outcome.reported.empty()) {
    findings_.note(findings_.untold, scenario.name, "fails in health: " + course.outcome.reported.front());
    return;
  }
  const std::size_t writes = course.contents.size() - 1;
  if (writes != scenario.writes) {
    findings_.note(findings_.untold, scenario.name,
                   "makes " + std::to_string(writes) + " writes, not " + std::to_string(scenario.writes));
  }
  forEachFault(
      choice, [&](Access access) { return course.accessesWithClose.at(access); },
      [&](const Fault& fault, const std::string& name) {
        const std::string where = scenario.name + ", " + name;
        const std::string refused = test::failureOf([&] { runUnder(scenario, course, fault, where); });
        if (!refused.empty()) findings_.note(findings_.lost, where, "the set does not start again: " + refused);
      });
  std::cout << scenario.name << ": " << writes << " writes, " << findings_.faults - before << " faults\n";
}

void Loop::runUnder(const Scenario& scenario, const Course& course, const Fault& fault, const std::string& where) {
  Disk& disk = Disk::instance();
  disk.insert(scenario.disk);
  disk.note();
  acknowledged_ = laterAcknowledged_ = false;
  std::optional<Television> television;
  if (scenario.startFails) disk.fail(fault);
  const std::string refused = test::failureOf([&] { television.emplace(directory_); });
  if (!refused.empty() && refused.find(": cannot ") == std::string::npos) {
    findings_.note(findings_.untold, where, "the start says " + refused);
  }
  if (!scenario.startFails) disk.fail(fault);
  if (television) {
    judge(course, television->run(scenario.line), where);
    laterAcknowledged_ = television->run(later).reported.empty();
  }
  PowerLoss power(scenario.disk);
  for (const Change& change : disk.changes()) power.apply(change);

  // A permanently broken disk also fails when the set is switched off. After a single failure the set continues.
  const bool hitsClose = fault.nth > course.accesses.at(fault.access);
  if (!television || fault.lasts || hitsClose) {
    television.reset();
    findings_.noteFault(disk.hits(), where);
    disk.heal();
    television.emplace(directory_);
  } else {
    findings_.noteFault(disk.hits(), where);
    disk.heal();
  }
  judgeContent(course, television->content(), "in the set that goes on", where);
  tryAgain(*television, where);
  television.reset();
  judgeDisk(course, disk.image(), "after it was switched off", where);
  std::mt19937 unused;
  judgeDisk(course, power.image(Rest::none, unused), "after a power cut", where);
}

void Loop::judge(const Course& course, const Outcome& outcome, const std::string& where) {
  acknowledged_ = outcome.reported.empty();
  if (acknowledged_ && outcome != course.outcome) {
    const std::string printed = outcome.printed.empty() ? "nothing" : outcome.printed.front();
    findings_.note(findings_.untold, where, "prints " + printed + " and reports nothing");
  }
  for (const std::string& line : outcome.reported) {
    if (line.find(": cannot ") == std::string::npos) findings_.note(findings_.untold, where, "reports " + line);
  }
}

/// Requires that acknowledged content is stored. Of an unacknowledged step, the writes up to any point may be stored.
void Loop::judgeContent(const Course& course, Content content, const char* when, const std::string& where) {
  const std::size_t hasLater = content.erase(laterKey);
  content.erase(probeKey);
  ++findings_.states;
  if (laterAcknowledged_ && hasLater == 0) findings_.note(findings_.lost, where, std::string("loses a key ") + when);
  const auto& states = course.contents;
  if (!acknowledged_ && std::find(states.begin(), states.end(), content) != states.end()) return;
  const std::string differing = difference(acknowledged_ ? states.back() : states.front(), content);
  if (!differing.empty()) findings_.note(findings_.lost, where, std::string(when) + "\n" + differing);
}

void Loop::judgeDisk(const Course& course, const Image& image, const char* when, const std::string& where) {
  const std::string damage = damageOn(image);
  if (!damage.empty()) findings_.note(findings_.corrupt, where, std::string(when) + " " + damage);
  Disk::instance().insert(image);
  judgeContent(course, contentOn(directory_), when, where);
}

void Loop::tryAgain(Television& television, const std::string& where) {
  if (!acknowledged_ && television.isOff()) television.run(".restart");
  const Outcome outcome = television.run(probe);
  if (!outcome.reported.empty()) findings_.note(findings_.untold, where, "afterwards " + outcome.reported.front());
  if (!television.isOfOneMind()) findings_.note(findings_.untold, where, "the set is not what it has kept");
  if (television.content().count(probeKey) == 0) findings_.note(findings_.lost, where, "loses what is set afterwards");
}

}  // namespace

void loopOverFaults(const std::filesystem::path& directory, Choice& choice, Findings& findings) {
  Loop loop(directory, findings);
  for (const Scenario& scenario : makeScenarios(directory)) loop.run(scenario, choice);
}

}  // namespace virtualtv::proof
