// SPDX-License-Identifier: MIT
#include "CrashLoop.h"

#include <algorithm>
#include <iostream>
#include <iterator>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "PowerLoss.h"
#include "Scenarios.h"
#include "virtualtv/support/Support.h"

namespace virtualtv::proof {

namespace {

/// What a power cut leaves of unsynced writes; mostly some of them.
constexpr Rest rests[] = {Rest::none, Rest::some, Rest::some, Rest::some, Rest::some, Rest::all};

/// The acknowledged content from some moment on, counted in changes of the disk.
struct Moment {
  std::size_t changes;
  Content content;
};

/// A day without a power cut: the changes of the disk, and when each content was acknowledged.
struct Day {
  std::vector<Change> changes;
  std::vector<Moment> moments;
};

Day live(const std::filesystem::path& directory) {
  Disk& disk = Disk::instance();
  disk.insert({});
  disk.note();
  Day day;
  day.moments.push_back({0, {}});
  for (const Lines& lines : sessionsOfADay(directory)) {
    Television television(directory);
    const auto note = [&] {
      Content content = television.content();
      if (content != day.moments.back().content) day.moments.push_back({disk.changes().size(), std::move(content)});
    };
    note();
    television.onWrite(note);
    for (const std::string& line : lines) {
      television.run(line);
      note();
      if (line == ".reset") television.onWrite(note);
    }
  }
  day.changes = disk.changes();
  return day;
}

std::vector<std::size_t> choose(std::size_t changes, std::uint64_t crashes, std::mt19937& random) {
  std::vector<std::size_t> chosen;
  for (std::uint64_t at = 0; at < crashes; ++at) chosen.push_back(random() % (changes + 1));
  std::sort(chosen.begin(), chosen.end());
  return chosen;
}

/// Requires that the content found is what was acknowledged before the cut, with or without the write in progress.
void judge(const Day& day, std::size_t crash, const Content& found, const std::string& where, Findings& findings) {
  const auto underWay = std::find_if(day.moments.begin() + 1, day.moments.end(),
                                     [&](const Moment& moment) { return moment.changes > crash; });
  const Moment& acknowledged = *(underWay - 1);
  ++findings.states;
  if (found == acknowledged.content || (underWay != day.moments.end() && found == underWay->content)) return;
  findings.note(findings.lost, where, "the set is not what it was\n" + difference(acknowledged.content, found));
}

/// Power cuts in a day, in chronological order.
class Cuts {
 public:
  Cuts(const Day& day, std::filesystem::path directory, Findings& findings)
      : day_(day), directory_(std::move(directory)), findings_(findings) {}

  void cut(std::size_t crash, Rest rest, std::mt19937& random) {
    for (; done_ < crash; ++done_) power_.apply(day_.changes[done_]);
    const std::string where = "power cut before change " + std::to_string(crash);
    const Image image = power_.image(rest, random);
    const std::string damage = damageOn(image);
    if (!damage.empty()) findings_.note(findings_.corrupt, where, damage);
    Disk::instance().insert(image);
    ++findings_.crashes;
    Content found;
    const std::string refused = test::failureOf([&] { found = contentOn(directory_); });
    if (refused.empty()) return judge(day_, crash, found, where, findings_);
    findings_.note(findings_.lost, where, "the set does not start: " + refused);
  }

 private:
  const Day& day_;
  std::filesystem::path directory_;
  Findings& findings_;
  PowerLoss power_{{}};
  std::size_t done_ = 0;  ///< changes of the disk so far
};

/// The first start of a set is the most vulnerable: cuts the power at each of its changes, with every kind of
/// remainder.
void cutFirstStart(const Day& day, Cuts& cuts, std::mt19937& random) {
  for (std::size_t crash = 0; crash <= day.moments.at(1).changes; ++crash) {
    for (const Rest rest : rests) cuts.cut(crash, rest, random);
  }
}

}  // namespace

void loopOverCrashes(const std::filesystem::path& directory, std::uint64_t crashes, std::uint32_t seed,
                     Findings& findings) {
  const Day day = live(directory);
  std::cout << "a day of " << day.moments.size() - 1 << " writes, " << day.changes.size() << " changes of the disk\n";
  std::mt19937 random(seed);
  Cuts firstStart(day, directory, findings);
  cutFirstStart(day, firstStart, random);
  Cuts cuts(day, directory, findings);
  for (const std::size_t crash : choose(day.changes.size(), crashes, random)) {
    cuts.cut(crash, rests[random() % std::size(rests)], random);
  }
}

}  // namespace virtualtv::proof
