// SPDX-License-Identifier: MIT
#include "PowerLoss.h"

#include <algorithm>
#include <utility>

namespace virtualtv::proof {

namespace {

using Content = std::optional<std::string>;

constexpr std::size_t sector = 512;

void carryOut(const Change& change, Content& content) {
  switch (change.kind) {
    case Change::Kind::remove:
      content.reset();
      return;
    case Change::Kind::create:
      content = "";
      return;
    case Change::Kind::truncate:
      if (content) content->resize(std::min(content->size(), change.position));
      return;
    case Change::Kind::write:
      if (content) writeInto(*content, change.position, change.bytes);
      return;
    case Change::Kind::sync:
      return;
  }
}

bool isCreation(const Change& change) {
  return change.kind == Change::Kind::create;
}
bool isRemoval(const Change& change) {
  return change.kind == Change::Kind::remove;
}

bool toss(std::mt19937& random) {
  return (random() & 1) != 0;
}

/// Applies some sectors of a write, and leaves out others.
void tear(const Change& write, Content& content, std::mt19937& random) {
  for (std::size_t at = 0; at < write.bytes.size();) {
    const std::size_t end = std::min(write.bytes.size(), at + sector - (write.position + at) % sector);
    if (toss(random) && content) writeInto(*content, write.position + at, write.bytes.substr(at, end - at));
    at = end;
  }
}

/// Applies creations, truncations and removals of files in order, up to a random moment, and a random subset of the
/// writes before it.
void carryOutSome(const std::vector<Change>& changes, Content& content, std::mt19937& random) {
  const std::size_t end = random() % (changes.size() + 1);
  for (std::size_t at = 0; at < end; ++at) {
    const Change& change = changes[at];
    const bool isWrite = change.kind == Change::Kind::write;
    if (isWrite && random() % 4 == 0) {
      tear(change, content, random);
    } else if (!isWrite || toss(random)) {
      carryOut(change, content);
    }
  }
}

}  // namespace

PowerLoss::PowerLoss(const Image& start) {
  for (const auto& [name, content] : start) files_[name].synced = content;
}

void PowerLoss::apply(const Change& change) {
  File& file = files_[change.file];
  if (change.kind != Change::Kind::sync) {
    file.pending.push_back(change);
    return;
  }
  const bool isNew = std::any_of(file.pending.begin(), file.pending.end(), isCreation);
  for (const Change& written : file.pending) carryOut(written, file.synced);
  file.pending.clear();
  if (isNew) syncRemovals();
}

/// Syncing a new file also syncs its directory, and so all earlier removals.
void PowerLoss::syncRemovals() {
  for (auto& [name, file] : files_) {
    const auto last = std::find_if(file.pending.rbegin(), file.pending.rend(), isRemoval);
    if (last == file.pending.rend()) continue;
    file.synced.reset();
    file.pending.erase(file.pending.begin(), last.base());
  }
}

Image PowerLoss::image(Rest rest, std::mt19937& random) const {
  Image image;
  for (const auto& [name, file] : files_) {
    Content content = file.synced;
    if (rest == Rest::some) carryOutSome(file.pending, content, random);
    if (rest == Rest::all) {
      for (const Change& change : file.pending) carryOut(change, content);
    }
    if (content) image[name] = std::move(*content);
  }
  return image;
}

}  // namespace virtualtv::proof
