#include "CrashLoop.h"

#include <algorithm>
#include <iostream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "PowerLoss.h"
#include "Scenarios.h"

namespace virtualtv::proof {

namespace {

/// Most power cuts leave something of what was not synced.
constexpr Rest rests[] = {Rest::none, Rest::some, Rest::some, Rest::some, Rest::some, Rest::all};

/// What was kept from some moment on: after so many changes of the disk.
struct Moment {
  std::size_t changes;
  Content content;
};

/// The day without a power cut: what was done to the disk, and what was acknowledged when.
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
    television.watch(note);
    for (const std::string& line : lines) {
      television.run(line);
      note();
      if (line == ".reset") television.watch(note);
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

/// What was acknowledged before a change is kept, and it alone or with the write that was under way.
void judge(const Day& day, std::size_t crash, const Content& found, const std::string& where, Findings& findings) {
  const auto underWay = std::find_if(day.moments.begin() + 1, day.moments.end(),
                                     [&](const Moment& moment) { return moment.changes > crash; });
  const Moment& acknowledged = *(underWay - 1);
  findings.writes += static_cast<std::uint64_t>(underWay - day.moments.begin()) - 1;
  if (found == acknowledged.content || (underWay != day.moments.end() && found == underWay->content)) return;
  findings.note(findings.lost, where, "the set is not what it was\n" + difference(acknowledged.content, found));
}

}  // namespace

void loopOverCrashes(const std::filesystem::path& directory, std::uint64_t crashes, std::uint32_t seed,
                     Findings& findings) {
  const Day day = live(directory);
  std::cout << "a day of " << day.moments.size() - 1 << " writes, " << day.changes.size() << " changes of the disk\n";
  std::mt19937 random(seed);
  PowerLoss power({});
  std::size_t done = 0;
  for (const std::size_t crash : choose(day.changes.size(), crashes, random)) {
    for (; done < crash; ++done) power.apply(day.changes[done]);
    const std::string where = "power cut before change " + std::to_string(crash);
    const Image image = power.image(rests[random() % std::size(rests)], random);
    const std::string damage = damageOn(image);
    if (!damage.empty()) findings.note(findings.corrupt, where, damage);
    Disk::instance().insert(image);
    judge(day, crash, contentOn(directory), where, findings);
    ++findings.crashes;
  }
}

}  // namespace virtualtv::proof
