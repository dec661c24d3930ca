// A set's database with damage at any places: opened, read and written to, it is right or refused with one line, and a
// file that is refused for its damage is as it was.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

#include "fuzz/support/Demand.h"
#include "fuzz/support/Draw.h"
#include "services/ServiceStore.h"
#include "set/Tv.h"
#include "store/SettingsStore.h"
#include "store/StoreError.h"
#include "virtualtv/support/Support.h"

namespace {

namespace fs = std::filesystem;
using fuzz::demand;
using fuzz::Draw;
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
  std::string log;  ///< what was written since the last checkpoint

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

void use(Tv& tv) {
  tv.switchSource(WindowId::main, 5);
  // Damage may have left none, in a way that nobody can tell.
  for (const virtualtv::ServiceKey key : tv.services().keys()) {
    if (tv.tune(WindowId::main, key)) break;
  }
  tv.settings().set("db/emp/mainsource", 20);
}

/// The files of a set that was switched off, and of one that lost its power.
struct Examples {
  Examples() {
    const virtualtv::test::TemporaryDirectory folder;
    {
      Storage storage(folder.path());
      const Tv tv(storage);
    }
    switchedOff = filesIn(folder.path());
    Storage storage(folder.path());
    Tv tv(storage);
    use(tv);
    powerLost = filesIn(folder.path());
  }

  Files switchedOff;
  Files powerLost;
};

void damage(Draw& draw, std::string& file) {
  if (file.empty()) return;
  // Most of what matters stands at the front of a page.
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

void readAll(Tv& tv) {
  for (const virtualtv::ServiceKey key : tv.services().keys()) tv.services().read(key);
  tv.settings().list();
}

void writeAll(Tv& tv) {
  use(tv);
  tv.services().setFavourite(281, 3, true);
  tv.reset();
}

void demandOneLine(const std::string& text) {
  demand(!text.empty() && text.find('\n') == text.npos, "it is refused with: " + text);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const Examples examples;
  static const virtualtv::test::TemporaryDirectory folder;
  Draw draw(data, size);
  Files files = draw.chance() ? examples.powerLost : examples.switchedOff;
  for (std::size_t at = 0; at < mostDamages && !draw.isEmpty(); ++at) {
    damage(draw, !files.log.empty() && draw.chance() ? files.log : files.database);
  }
  putInto(folder.path(), files);
  if (const auto reason = refusal(folder.path(), readAll)) {
    demandOneLine(*reason);
    // One that is whole, but keeps what the set can't use, may take what its log has.
    const bool damaged = reason->find("the file is damaged") != reason->npos;
    demand(!damaged || filesIn(folder.path()).database == files.database, "no longer as it was, yet " + *reason);
  }
  if (const auto reason = refusal(folder.path(), writeAll)) demandOneLine(*reason);
  return 0;
}
