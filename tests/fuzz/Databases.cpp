// SPDX-License-Identifier: MIT
// Opens, reads and writes a user's database that is damaged in some places. The set must refuse it with one line, or
// report what the damaged file says. The built-in set must never replace it, and a refused file must stay unchanged.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "fuzz/support/Demand.h"
#include "fuzz/support/Draw.h"
#include "fuzz/support/Kept.h"
#include "services/ServiceStore.h"
#include "set/Tv.h"
#include "store/SettingsStore.h"
#include "store/StoreError.h"
#include "virtualtv/support/Support.h"

namespace {

namespace fs = std::filesystem;
using fuzz::demand;
using fuzz::Draw;
using fuzz::Kept;
using virtualtv::Storage;
using virtualtv::StoreError;
using virtualtv::Tv;
using virtualtv::WindowId;
using virtualtv::test::contentOf;

constexpr std::size_t mostDamages = 8;
constexpr std::size_t page = 4096;

/// The files of a set.
struct Files {
  std::string database;
  std::string log;  ///< the writes since the last checkpoint

  bool operator==(const Files&) const = default;
};

fs::path databaseIn(const fs::path& folder) {
  return folder / "tv.db";
}
fs::path logIn(const fs::path& folder) {
  return folder / "tv.db-wal";
}

Files filesIn(const fs::path& folder) {
  return {contentOf(databaseIn(folder)), contentOf(logIn(folder))};
}

void putInto(const fs::path& folder, const Files& files) {
  fs::remove(databaseIn(folder).string() + "-shm");
  virtualtv::test::write(databaseIn(folder), files.database);
  if (files.log.empty()) {
    fs::remove(logIn(folder));
  } else {
    virtualtv::test::write(logIn(folder), files.log);
  }
}

constexpr std::uint64_t firstId = 9001;
constexpr int users = 6;
constexpr int hdmi = 13;
constexpr const char* sourceKey = "db/emp/mainsource";

/// Services that the built-in set does not have.
std::vector<virtualtv::Service> usersServices() {
  std::vector<virtualtv::Service> services;
  for (int number = 0; number < users; ++number) {
    virtualtv::Service& service = services.emplace_back();
    const auto position = static_cast<std::uint64_t>(number);
    service.numbers = {{TCServiceData::SERVICE_ID, firstId + position},
                       {TCServiceData::CHANNEL_TYPE, 9},
                       {TCServiceData::MAJOR, 100 + position},
                       {TCServiceData::ANTENNA_MODE, 0}};
    service.texts[TCServiceData::CHANNEL_NAME] = u"Mine";
    service.audio = {{.pid = 256 + number}};
    service.subtitles = {{.pid = 512 + number}};
    service.favourites = {{3, true}};
  }
  return services;
}

void use(Tv& tv) {
  tv.switchSource(WindowId::main, hdmi);
  // Undetectable damage may have left no services at all.
  for (const virtualtv::ServiceKey key : tv.services().keys()) {
    if (tv.tune(WindowId::main, key)) break;
  }
  tv.setFavourites(3, {{firstId, false}});
  tv.setSetting(sourceKey, 20);
}

/// The files of a set that was switched off, and of a set that lost its power.
struct Examples {
  Examples() {
    const virtualtv::test::TemporaryDirectory folder;
    {
      Storage storage(folder.path());
      Tv tv(storage);
      builtIn = fuzz::keptBy(tv);
      tv.import(usersServices(), false);
      keptSwitchedOff = fuzz::keptBy(tv);
    }
    switchedOff = filesIn(folder.path());
    Storage storage(folder.path());
    Tv tv(storage);
    use(tv);
    keptPowerLost = fuzz::keptBy(tv);
    powerLost = filesIn(folder.path());
  }

  Files switchedOff;
  Files powerLost;
  Kept builtIn;
  Kept keptSwitchedOff;
  Kept keptPowerLost;
};

void damage(Draw& draw, std::string& file) {
  if (file.empty()) return;
  // Most of the structure is at the front of a page.
  const std::size_t start = draw.below(file.size() / page + 1) * page;
  const std::size_t at = std::min(start + (draw.chance() ? draw.below(256) : draw.below(page)), file.size() - 1);
  switch (draw.below(6)) {
    case 0:
      file.resize(at);
      break;
    case 1:
      std::fill(file.begin() + static_cast<std::ptrdiff_t>(at),
                file.begin() + static_cast<std::ptrdiff_t>(std::min(at + draw.below(page), file.size())),
                static_cast<char>(draw.byte()));
      break;
    case 2:
      file.append(draw.below(page), static_cast<char>(draw.byte()));
      break;
    case 3:
      file[at] = static_cast<char>(static_cast<unsigned char>(file[at]) ^ (1U << draw.below(8)));
      break;
    default:
      file.replace(at, 1, 1, static_cast<char>(draw.byte()));
  }
}

/// Runs a step on the set in a folder. @return why it was refused; nothing when it was not.
template <typename Step>
std::optional<std::string> refusal(const fs::path& folder, Step step) {
  try {
    Storage storage(folder);
    Tv tv(storage);
    step(tv);
    return std::nullopt;
  } catch (const StoreError& error) {
    return error.what();
  }
}

/// A database after SQLite has switched it to a write-ahead log, which changes the header and its change counter. If
/// the header says otherwise, by damage or because somebody switched it, SQLite switches it before reading.
std::string withLog(std::string database) {
  constexpr std::size_t formats =
      18;  // position of the format bytes for reading and writing; 2 means a write-ahead log
  constexpr std::size_t changes = 24;
  constexpr std::size_t changesSeen = 92;
  if (database.size() < page || database.compare(formats, 2, "\2\2") == 0) return database;
  database.replace(formats, 2, "\2\2");
  for (const std::size_t count : {changes, changesSeen}) database[count + 3]++;
  return database;
}

/// The reason may quote data of the database as it is; whoever shows it turns it into one line.
void demandReason(const std::string& text) {
  demand(text.find_first_not_of(" \n") != text.npos, "it is refused without a reason");
}

bool isService(const std::string& name) {
  return name.starts_with("service ");
}

/// Requires that the built-in services have not replaced the user's.
void demandUsersServices(const Kept& kept, const Kept& builtIn) {
  for (const auto& [name, line] : kept) {
    const auto other = isService(name) ? builtIn.find(name) : builtIn.end();
    demand(other == builtIn.end() || line != other->second, "the built-in set is there: " + name + " " + line);
  }
}

/// Requires that the set reports what its database holds. Of the state, compares only undamaged values: the set may
/// write a damaged number in another form, and the state of an earlier version lacks some names.
void demandSame(const Kept& kept, const Kept& plain, const Kept& original) {
  const auto isAsItWas = [&](const auto& entry) {
    const auto before = original.find(entry.first);
    return before != original.end() && before->second == entry.second;
  };
  for (const auto& entry : plain) {
    if (entry.first.starts_with("state ") && !isAsItWas(entry)) continue;
    const auto found = kept.find(entry.first);
    demand(found != kept.end(), entry.first + " is kept, but not there");
    demand(found->second == entry.second, entry.first + " is " + found->second + ", not " + entry.second);
  }
  for (const auto& [name, line] : kept) {
    demand(name.starts_with("state ") || plain.contains(name), name + " is there, but not kept: " + line);
  }
}

/// Uses a set with damaged files.
class Attempt {
 public:
  Attempt(const Examples& examples, const Files& files, const Kept& original)
      : examples_(examples), files_(files), original_(original) {
    putInto(plain_.path(), files);
    plainly_ = fuzz::plainlyKeptIn(plain_.path());
    putInto(folder_.path(), files);
  }

  void readAll() {
    Kept kept;
    const auto reason = refusal(folder_.path(), [&](Tv& tv) { kept = fuzz::keptBy(tv); });
    if (reason) return judge(*reason);
    demandUsersServices(kept, examples_.builtIn);
    if (plainly_) demandSame(kept, *plainly_, original_);
    isSound_ = plainly_.has_value();
  }

  void write() {
    if (isSound_) return writeSound();
    isDone([](Tv& tv) {
      use(tv);
      tv.reset();
    });
  }

 private:
  /// Requires that acknowledged writes are there the next time, and that a reset restores the built-in set.
  void writeSound() {
    if (!isDone(use)) return;
    bool isOn = false;
    const bool isReset = isDone([&](Tv& tv) {
      isOn = true;
      demand(tv.state()[WindowId::main].source == hdmi, "the source that was chosen is not kept");
      demand(tv.settings().get(sourceKey) == virtualtv::Setting(20), "a key that was set is not kept");
      tv.reset();
    });
    demand(isOn, "a set that was written to does not start again");
    if (!isReset) return;
    Kept kept;
    demand(isDone([&](Tv& tv) { kept = fuzz::keptBy(tv); }), "a set that was reset does not start again");
    demandSame(kept, examples_.builtIn, examples_.builtIn);
  }

  template <typename Step>
  bool isDone(Step step) {
    const auto reason = refusal(folder_.path(), step);
    if (reason) demandReason(*reason);
    return !reason;
  }

  void judge(const std::string& reason) const {
    demandReason(reason);
    demand(files_ != examples_.switchedOff && files_ != examples_.powerLost, "a sound one is refused: " + reason);
    // An intact file with values that the set can't use may still absorb its log.
    const bool damaged = reason.find("the file is damaged") != reason.npos;
    const std::string left = filesIn(folder_.path()).database;
    const bool isAsItWas = left == files_.database || left == withLog(files_.database);
    demand(!damaged || isAsItWas, "no longer as it was, yet " + reason);
  }

  const Examples& examples_;
  const Files& files_;
  const Kept& original_;  ///< before the damage
  const virtualtv::test::TemporaryDirectory plain_;
  const virtualtv::test::TemporaryDirectory folder_;
  std::optional<Kept> plainly_;  ///< null if SQLite can't read the files
  bool isSound_ = false;         ///< the set could read everything, and it was valid
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const Examples examples;
  Draw draw(data, size);
  const bool powerLost = draw.chance();
  Files files = powerLost ? examples.powerLost : examples.switchedOff;
  for (std::size_t at = 0; at < mostDamages && !draw.isEmpty(); ++at) {
    damage(draw, !files.log.empty() && draw.chance() ? files.log : files.database);
  }
  Attempt attempt(examples, files, powerLost ? examples.keptPowerLost : examples.keptSwitchedOff);
  attempt.readAll();
  attempt.write();
  return 0;
}
