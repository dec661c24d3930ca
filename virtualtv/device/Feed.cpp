// SPDX-License-Identifier: MIT
#include "device/Feed.h"

#include <iterator>
#include <new>
#include <utility>

namespace virtualtv::device {

namespace {

constexpr std::size_t aroundEach = 64;  ///< overhead of the allocation and of the containers

/// The memory that a happening holds outside of itself, for kinds where that can be large.
struct TextSize {
  std::size_t operator()(const CommandRun& command) const {
    std::size_t size = command.session.size() + command.engine.size() + command.reply.size();
    for (const std::string& word : command.words) size += word.size();
    return size;
  }
  std::size_t operator()(const seam::Call& call) const {
    return call.caller.engine.size() + call.arguments.size() + call.outputs.size() + call.result.size();
  }
  std::size_t operator()(const framework::LogLine& line) const { return line.function.size() + line.message.bytes(); }
  std::size_t operator()(const Change& change) const { return std::visit(*this, change); }
  std::size_t operator()(const SettingChanged& changed) const {
    return changed.key.size() + size(changed.before) + size(changed.after);
  }
  std::size_t operator()(const FieldChanged& changed) const { return size(changed.before) + size(changed.after); }
  std::size_t operator()(const FavouritesChanged& changed) const {
    constexpr std::size_t node = 48;
    return (changed.before.size() + changed.after.size()) * node;
  }
  std::size_t operator()(const IspChanged& changed) const {
    return sizeOfTracks(changed.before.audio, changed.after.audio) +
           sizeOfTracks(changed.before.subtitles, changed.after.subtitles);
  }
  std::size_t operator()(const AudioTracksChanged& changed) const {
    return sizeOfTracks(changed.before, changed.after);
  }
  std::size_t operator()(const SubtitleTracksChanged& changed) const {
    return sizeOfTracks(changed.before, changed.after);
  }
  template <typename Other>
  std::size_t operator()(const Other&) const {
    return 0;
  }

 private:
  static std::size_t size(const std::optional<Setting>& setting) {
    const auto* const text = setting ? std::get_if<std::string>(&*setting) : nullptr;
    return text == nullptr ? 0 : text->size();
  }
  static std::size_t size(const FieldValue& value) {
    const auto* const units = std::get_if<std::u16string>(&value);
    return units == nullptr ? 0 : units->size() * sizeof(char16_t);
  }
  template <typename Track>
  static std::size_t sizeOfTracks(const std::vector<Track>& before, const std::vector<Track>& after) {
    return (before.size() + after.size()) * sizeof(Track);
  }
};

}  // namespace

std::size_t sizeOf(const Happening& happening) {
  return aroundEach + sizeof happening + happening.caller.engine.size() + std::visit(TextSize(), happening.what);
}

Feed::Taken Feed::take() {
  const std::lock_guard lock(mutex_);
  Taken taken{{std::move_iterator(waiting_.begin()), std::move_iterator(waiting_.end())}, std::exchange(dropped_, 0)};
  waiting_.clear();
  return taken;
}

bool Feed::push(std::shared_ptr<const Happening> happening) noexcept {
  const std::lock_guard lock(mutex_);
  const bool wasEmpty = waiting_.empty();
  try {
    waiting_.push_back(std::move(happening));
  } catch (const std::bad_alloc&) {
    ++dropped_;  // no memory to store it
    return false;
  }
  if (waiting_.size() > wants_.limit) {
    waiting_.pop_front();
    ++dropped_;
  }
  return wasEmpty;
}

}  // namespace virtualtv::device
