// SPDX-License-Identifier: MIT
#include "Scenarios.h"

#include <map>
#include <set>
#include <span>
#include <stdexcept>
#include <string>
#include <utility>

#include "import/Import.h"
#include "services/ServiceStore.h"
#include "store/SettingsStore.h"
#include "support/ListsApart.h"
#include "virtualtv/support/Support.h"

namespace virtualtv::proof {

namespace {

namespace fs = std::filesystem;

constexpr const char* inTheGuide = ".app com.example.guide guide";

/// Small lists and recordings of all kinds, from which the fuzzers start.
constexpr const char* lists = PROOF_SAMPLES "/lists";
constexpr const char* broadcasts = PROOF_SAMPLES "/broadcasts/";
constexpr const char* recordings[] = {"american-packets", "cable-packets", "dvb-packets", "satellite-packets",
                                      "second-packets"};

/// A channel list in the format of VDR. @param first  number of its first service.
std::string channelList(int first, int count) {
  std::string list;
  for (int number = first; number < first + count; ++number) {
    const std::string digits = std::to_string(number);
    list += "Service " + digits + ";Net:474000:B8C23D12G4M64T8Y0:T:27500:" + digits + "1:" + digits +
            "2=eng:0:0:" + digits + ":1:1:0\n";
  }
  return list;
}

/// The samples that contain services, by their names. @throws std::logic_error when a format has none.
std::map<std::string, std::string> listsOfAllFormats() {
  std::map<std::string, std::string> found;
  std::set<const import::Format*> formats;
  for (const fs::directory_entry& entry : fs::directory_iterator(lists)) {
    const std::string list = test::contentOf(entry.path());
    const import::Format* format = import::recognise(list);
    if (format == nullptr || import::read(list, *format).services.empty()) continue;
    found.emplace(entry.path().stem(), list);
    formats.insert(format);
  }
  if (formats.size() != import::formats().size()) throw std::logic_error("a format of lists has no sample");
  return found;
}

/// Lines that import these lists and recordings. A lamedb with bouquets comes as one text and as a directory.
Lines importsOfAllKinds(const fs::path& directory) {
  Lines lines;
  for (const auto& [name, list] : listsOfAllFormats()) {
    test::write(directory / name, list);
    lines.push_back(".import " + name);
    const auto files = support::listsApart(list);
    if (files.size() == 1) continue;
    const std::string folder = name + "-files";
    fs::create_directory(directory / folder);
    for (const auto& [file, content] : files) test::write(directory / folder / file, content);
    lines.push_back(".import " + folder);
  }
  for (const std::string name : recordings) {
    test::write(directory / name, test::contentOf(broadcasts + name + ".input"));
    lines.push_back(".scan " + name + " --import");
  }
  return lines;
}

/// The disk after a fresh set has run some lines. @param killed  true if the set was not switched off properly.
Image after(const fs::path& directory, const Lines& lines, bool killed = false) {
  Disk& disk = Disk::instance();
  disk.insert({});
  Image image;
  {
    Television television(directory);
    for (const std::string& line : lines) television.run(line);
    image = disk.image();
  }
  return killed ? image : disk.image();
}

/// The disk with a database of the first version, which stored only settings keys, and one key.
Image ofFirstVersion(const fs::path& directory) {
  Disk& disk = Disk::instance();
  disk.insert({});
  {
    Database database(directory / "tv.db", std::span(&settingsTables, 1));
    SettingsStore(database).set("db/emp/mainsource", 31);
  }
  return disk.image();
}

/// Settings writes that make SQLite's log so long that the next write triggers a checkpoint.
Lines writesUpToACheckpoint() {
  Lines lines;
  for (int number = 0; number < 494; ++number) {
    lines.push_back(".vconf set db/many/" + std::to_string(number % 40) + " int " + std::to_string(number));
  }
  return lines;
}

}  // namespace

std::vector<Scenario> makeScenarios(const fs::path& directory) {
  test::write(directory / "some.conf", channelList(1, 40));
  test::write(directory / "more.conf", channelList(31, 20));
  const Image set = after(directory, {inTheGuide, "SetChannel 3 0"});
  const Image killed = after(directory, {inTheGuide, "SetSource 31 0", ".vconf set db/a int 1"}, true);
  const Image nearCheckpoint = after(directory, writesUpToACheckpoint(), true);

  std::vector<Scenario> scenarios{
      {"first start", {}, true, "", 0},
      {"start", set, true, "", 0},
      {"start after a kill", killed, true, "", 0},
      {"migration", ofFirstVersion(directory), true, "", 0},
      {"first command", set, true, "GetSource 0", 0},
      {"checkpoint", nearCheckpoint, true, ".vconf set db/a int 2", 1},
  };
  const std::pair<const char*, std::size_t> lines[] = {
      {".vconf set db/a int 2", 1},
      {".vconf set db/a str text", 1},
      {".vconf unset db/emp/mainsource", 1},
      {"SetChannel 2 0", 1},
      {"SetSource 31 0", 3},         // the source and two keys
      {"SetSource 48 0", 4},         // the same, and the state of the secondary stack
      {"SetSourceAndTune 31 2", 3},  // as for SetSource
      {"SetPreviousSource", 0},
      {"SetTVMode 2", 1},
      {"UpdateFavorites 1152959734176350309 0 12", 1},
      {".import some.conf", 1},
      {".import more.conf --add", 1},
      {".set country 44", 1},
      {".set main.source -1", 1},
      {".set service.#1.name Other", 1},
      {".set service.#2.audio 256:eng:aac,257:deu:ac3", 1},
      {".set service.#2.subtitles none", 1},
      {".reset", 1},
      {".restart", 0},
  };
  for (const auto& [line, writes] : lines) scenarios.push_back({line, set, false, line, writes});
  for (const std::string& line : importsOfAllKinds(directory)) scenarios.push_back({line, set, false, line, 1});
  return scenarios;
}

std::vector<Lines> sessionsOfADay(const fs::path& directory) {
  test::write(directory / "some.conf", channelList(1, 40));
  test::write(directory / "more.conf", channelList(31, 20));
  test::write(directory / "many.conf", channelList(1, 1000));
  Lines evening{inTheGuide};
  for (int round = 0; round < 40; ++round) {
    const std::string number = std::to_string(round);
    for (const std::string& line :
         {".vconf set db/round int " + number, std::string("SetSource 31 0"), ".vconf set db/round str r" + number,
          std::string("SetChannel 2 0"), std::string("SetSource 48 0"), std::string("SetChannel 9 1"),
          "UpdateFavorites 1152959734176350309 " + std::to_string(round % 2) + " 12", ".set country " + number}) {
      evening.push_back(line);
    }
  }
  return {
      {inTheGuide, "SetChannel 3 0", "SetSource 32 0", "SetWindow 1", "SetSource 33 0", ".vconf set db/a int 1"},
      {".import some.conf", "SetChannel 7 0", ".import more.conf --add", ".set service.#3.name Other",
       ".set service.#3.audio 256:eng:aac,257:deu:ac3", ".reset", "SetTVMode 2", ".vconf set db/a str b"},
      evening,
      {".import many.conf", ".vconf set db/a int 3", "SetSource 31 0", ".import some.conf", ".vconf unset db/a",
       ".reset", "SetChannel 2 0"},
      importsOfAllKinds(directory),
      {},
      {"GetSource 0"},
  };
}

}  // namespace virtualtv::proof
