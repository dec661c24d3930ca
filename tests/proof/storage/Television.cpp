// SPDX-License-Identifier: MIT
#include "Television.h"

#include <algorithm>
#include <stdexcept>
#include <string_view>
#include <variant>

#include "seam/Seam.h"
#include "services/ListText.h"
#include "set/Keeping.h"
#include "set/StorageParts.h"
#include "store/StoreError.h"
#include "text/Units.h"

namespace virtualtv::proof {

namespace {

std::string lineOf(const Setting& setting) {
  if (const int* number = std::get_if<int>(&setting)) return "int " + std::to_string(*number);
  return "str " + std::get<std::string>(setting);
}

std::string lineOf(const Service& service) {
  std::string line;
  for (const auto& [field, number] : service.numbers)
    line += std::to_string(field) + "=" + std::to_string(number) + " ";
  for (const auto& [field, text] : service.texts) line += std::to_string(field) + "=" + text::quoted(text) + " ";
  line += "audio " + textOf(service.audio) + " subtitles " + textOf(service.subtitles) + " favourites " +
          textOf(service.favourites) + " in " + service.group + " as " + service.listEntry;
  if (const auto& footage = service.footage) {
    line += " plays " + footage->path + " " + std::to_string(footage->video) + " " + std::to_string(footage->type) +
            (footage->isTrusted ? " trusted" : "");
  }
  return line;
}

Content contentOf(Storage::Parts& parts) {
  Content content;
  for (const auto& [key, value] : parts.settings.list()) content["key " + key] = lineOf(value);
  for (const auto& [name, value] : parts.state.all()) content["state " + name] = value;
  for (const ServiceKey key : parts.services.keys()) {
    content["service " + std::to_string(key)] = lineOf(*parts.services.read(key));
  }
  return content;
}

bool hasMark() {
  const Image image = Disk::instance().image();
  return std::any_of(image.begin(), image.end(), [](const auto& file) { return file.first.ends_with("-new"); });
}

std::string answerTo(sqlite3* database, const char* query) {
  std::string answer;
  const auto note = [](void* text, int, char** values, char**) {
    static_cast<std::string*>(text)->append(values[0] == nullptr ? "" : values[0]).append("\n");
    return 0;
  };
  const int code = sqlite3_exec(database, query, note, &answer, nullptr);
  return code == SQLITE_OK ? answer : std::string(sqlite3_errmsg(database)) + "\n";
}

}  // namespace

std::string difference(const Content& expected, const Content& found) {
  std::string text;
  for (const auto& [name, value] : expected) {
    const auto other = found.find(name);
    if (other == found.end()) {
      text += "  lost: " + name + " = " + value + "\n";
    } else if (other->second != value) {
      text += "  changed: " + name + " = " + other->second + " instead of " + value + "\n";
    }
  }
  for (const auto& [name, value] : found) {
    if (expected.count(name) == 0) text += "  too much: " + name + " = " + value + "\n";
  }
  return text;
}

Television::Television(const std::filesystem::path& directory)
    : television_(directory), session_(television_.device, directory) {}

Outcome Television::run(const std::string& line) {
  Outcome outcome;
  outcome.printed = session_.run(line);
  shell::Session::Remarks remarks = session_.takeRemarks();
  outcome.reported = std::move(remarks.errors);
  for (std::string& complaint : remarks.complaints) outcome.reported.push_back(std::move(complaint));
  return outcome;
}

Content Television::content() {
  return contentOf(television_.storage->parts());
}

bool Television::isOff() {
  try {
    television_.tv();
    return false;
  } catch (const std::runtime_error&) {
    return true;
  }
}

bool Television::isOfOneMind() {
  return keptOf(television_.tv().state()) == television_.storage->parts().state.all();
}

void Television::onWrite(const std::function<void()>& seen) {
  subscription_ = television_.tv().onEvent([seen](const Event&) { seen(); });
  seam::Seam& seam = seam::Seam::instance();
  seam.onDelay([seen](std::uint64_t) { seen(); });
  for (const seam::Operation& operation : seam::operations) seam.setLatency(operation, 1);
}

Content contentOn(const std::filesystem::path& directory) {
  Storage storage(directory);
  if (hasMark()) throw StoreError("the mark that the file is being made is still there");
  return contentOf(storage.parts());
}

std::string damageOn(const Image& image) {
  Disk::instance().insert(image);
  std::string damage;
  for (const auto& [name, content] : image) {
    if (!std::string_view(name).ends_with(".db")) continue;
    sqlite3* database = nullptr;
    sqlite3_open(name.c_str(), &database);
    answerTo(database, "PRAGMA locking_mode = EXCLUSIVE");
    const std::string answer = answerTo(database, "PRAGMA integrity_check");
    if (answer != "ok\n") damage += name + ": " + answer;
    sqlite3_close(database);
  }
  return damage;
}

}  // namespace virtualtv::proof
