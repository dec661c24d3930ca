// SPDX-License-Identifier: MIT
// Writes the services of a set as a list.

#include "import/Export.h"

#include <algorithm>
#include <utility>

#include "import/Words.h"
#include "import/Writing.h"
#include "services/FieldNames.h"
#include "services/Fields.h"
#include "text/Units.h"

namespace virtualtv::import {

namespace {

using Data = TCServiceData;

std::optional<std::uint64_t> numberOf(const Service& service, int field) {
  const auto found = service.numbers.find(field);
  return found == service.numbers.end() ? std::nullopt : std::optional(found->second);
}

std::string nameOf(const Service& service) {
  const auto found = service.texts.find(Data::CHANNEL_NAME);
  return found == service.texts.end() ? std::string() : text::toUtf8(found->second);
}

/// Overwrites an entry with the current data of the set.
void update(Entry& entry, const Service& service) {
  const auto read = [&](int field) { return static_cast<int>(numberOf(service, field).value_or(0)); };
  const auto readIfThere = [&](int field) -> std::optional<int> {
    const auto number = numberOf(service, field);
    return number ? std::optional(static_cast<int>(*number)) : std::nullopt;
  };
  entry.group = service.group;
  entry.antenna = static_cast<EAntennaMode>(read(Data::ANTENNA_MODE));
  entry.frequency = read(Data::FREQUENCY);
  entry.modulation = static_cast<Modulation>(read(Data::MODULATION));
  entry.symbolRate = read(Data::SYMBOL_RATE);
  entry.source = readIfThere(Data::SOURCE_ID);
  entry.network = readIfThere(Data::ORIGINAL_NETWORK_ID);
  entry.transportStream = readIfThere(Data::TRANSPORT_STREAM_ID);
  entry.program = read(Data::PROGRAM_NUMBER);
  entry.audio = service.audio;
  entry.subtitles = service.subtitles;
  entry.major = numberOf(service, Data::MAJOR);
  entry.kind = virtualtv::kindOf(numberOf(service, Data::CHANNEL_TYPE).value_or(0));
  if (entry.kind != ServiceKind::television) entry.video = 0;
}

/// The format of the list that the service was imported from, and the service's entry in it. The format is null when
/// the service came from no list.
std::pair<const Format*, std::string_view> listEntryOf(const Service& service) {
  std::string_view text = service.listEntry;
  const std::string_view name = cut(text, '\n');
  return {formatNamed(name), text};
}

/// True for fields whose absence reads as 0.
bool isZeroByItself(int field) {
  return field == Data::LOCK || field == HIDDEN || field == SERVICE_MODE || field == Data::MINOR;
}

/// True for ids that differ only in the number that distinguishes otherwise equal services.
bool areAlike(std::uint64_t left, std::uint64_t right) {
  constexpr std::uint64_t counted = 0x0FFF'0000'0000'0000U;
  return ((left ^ right) & ~counted) == 0;
}

bool isSame(int field, const std::optional<std::uint64_t>& left, const std::optional<std::uint64_t>& right) {
  if (field == Data::PTC) return true;  // computed again when a list is read
  if (field == Data::SERVICE_ID && left && right) return areAlike(*left, *right);
  return isZeroByItself(field) ? left.value_or(0) == right.value_or(0) : left == right;
}

}  // namespace

/// Reads a list that should contain one service. @return false when it does not contain exactly one.
bool Exporter::read(const Format& format, std::string text, Reading& reading) const {
  reading.text = std::move(text);
  ListBuilder list(format, "");
  list.continueFrom(next_);
  Problems problems;
  format.read(reading.text, list, problems);
  if (list.entries().size() != 1) return false;
  reading.entry = list.entries().front();
  reading.next = list.nextNumber();
  reading.service = std::move(list.finish().front());
  reading.name = nameOf(reading.service);
  reading.entry.name = reading.name;
  reading.entry.group = reading.service.group;
  return true;
}

void Exporter::add(const Service& service) {
  if (format_.writing->service == nullptr) return addEntry(service);
  put(format_.writing->service(service));
}

void Exporter::put(const std::string& text) {
  exported_.content.append(exported_.services == 0 ? format_.writing->start : format_.writing->between).append(text);
  ++exported_.services;
}

/// The line before a service that starts its group or sets its number; empty if none is needed.
std::string Exporter::groupLine(const Service& service) {
  if (!format_.writing->hasGroupLines) return "";
  const std::uint64_t major = numberOf(service, Data::MAJOR).value_or(0);
  const bool jumps = major > next_ && major <= greatestChannelNumber;
  const bool named = service.group.starts_with('@');
  if (service.group == group_ && !jumps) return "";
  group_ = service.group;
  if (jumps) next_ = major;
  return vdrGroup(group_, jumps || named ? std::optional(next_) : std::nullopt) + "\n";
}

void Exporter::addEntry(const Service& service) {
  const auto [format, kept] = listEntryOf(service);
  Reading before;
  const bool known = format != nullptr && read(*format, std::string(kept), before);
  const bool same = known && format == &format_;
  Entry now = known ? before.entry : Entry();
  const std::string name = nameOf(service);
  now.name = name;
  update(now, service);
  const std::uint64_t next = next_;
  const std::string group = group_;
  const std::string line = groupLine(service);
  const std::string text = format_.writing->entry({now, same ? &before.entry : nullptr, before.text, next_});
  const bool isAsItWas = same && line.empty() && text == before.text;  // the entry was just read
  Reading again;
  if (!isAsItWas && (text.empty() || !read(format_, line + text, again))) {
    ++exported_.leftOut;
    next_ = next;
    group_ = group;
    return;
  }
  Reading& back = isAsItWas ? before : again;
  put(line + text);
  next_ = back.next;
  if (!line.empty()) readGroup_ = back.service.group;
  if (format_.writing->hasGroupLines) back.service.group = readGroup_;
  compare(service, back.service);
  if (format != nullptr && !same) lose("what only " + std::string(format->name) + " says");
}

void Exporter::compare(const Service& service, const Service& back) {
  for (const KnownField& field : knownFields()) {
    if (!isSame(field.id, numberOf(service, field.id), numberOf(back, field.id))) lose(nameOfField(field.id));
  }
  for (const auto& [field, number] : service.numbers) {
    if (knownField(field) == nullptr) lose(nameOfField(field));
  }
  for (const auto& [field, units] : service.texts) {
    const auto found = back.texts.find(field);
    if (found == back.texts.end() || found->second != units) lose(nameOfField(field));
  }
  if (service.group != back.group) lose("group");
  if (service.audio != back.audio) lose("audio");
  if (service.subtitles != back.subtitles) lose("subtitles");
  const auto isMember = [](const auto& favourite) { return favourite.second; };
  if (std::any_of(service.favourites.begin(), service.favourites.end(), isMember)) lose("favourites");
}

Exported Exporter::finish() {
  if (exported_.services == 0) exported_.content = format_.writing->start;
  if (exported_.services > 0 && !exported_.content.ends_with('\n')) exported_.content += '\n';
  exported_.content += format_.writing->end;
  return std::exchange(exported_, {});
}

}  // namespace virtualtv::import
