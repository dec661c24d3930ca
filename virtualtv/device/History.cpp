// SPDX-License-Identifier: MIT
#include "device/History.h"

#include <algorithm>
#include <stdexcept>
#include <string>
#include <utility>
#include <variant>

namespace virtualtv::device {

std::invalid_argument notHeld(std::uint64_t command) {
  return std::invalid_argument("command " + std::to_string(command) + " is not held");
}

/// The history needs all changes, to undo them, and the calls and messages of commands. Once a command alone exceeds
/// the memory limit, only its end is still added: `keepBounds` then drops the whole command.
bool History::isNeeded(const Happening& happening) const {
  if (std::holds_alternative<CommandRun>(happening.what)) return true;
  if (next_.bytes > bounds_.bytes) return false;
  const bool isUndone = std::holds_alternative<Change>(happening.what) && !commands_.empty();
  return isUndone || happening.command != 0;
}

void History::add(const Happened& happening, std::shared_ptr<const ServiceImage> services) {
  if (!isNeeded(*happening)) return;
  const auto* const change = std::get_if<Change>(&happening->what);
  if (change != nullptr && std::holds_alternative<ServicesChanged>(*change) && wantsServices()) {
    if (!services) return forget();
    next_.image = std::move(services);
    next_.bytes += next_.image->bytes();
    bytes_ += next_.image->bytes();
  }
  constexpr std::size_t usual = 16;
  if (next_.happenings.empty()) next_.happenings.reserve(usual);
  const std::size_t bytes = sizeOf(*happening);
  next_.happenings.push_back(happening);
  next_.bytes += bytes;
  bytes_ += bytes;
  if (std::holds_alternative<CommandRun>(happening->what)) commands_.push_back(std::exchange(next_, {}));
  keepBounds();
}

void History::forget() {
  commands_.clear();
  next_ = {};
  bytes_ = 0;
}

/// When no command is left, the changes since the last command are not needed either.
void History::keepBounds() {
  const bool heldAny = !commands_.empty();
  while (!commands_.empty() && (commands_.size() > bounds_.commands || bytes_ > bounds_.bytes)) {
    bytes_ -= commands_.front().bytes;
    commands_.pop_front();
  }
  const bool isBetween = next_.happenings.empty() || next_.end().command == 0;
  if (heldAny && commands_.empty() && isBetween) forget();
}

std::deque<History::Step>::const_iterator History::find(std::uint64_t command) const {
  const auto found =
      std::lower_bound(commands_.begin(), commands_.end(), command,
                       [](const Step& step, std::uint64_t number) { return step.end().command < number; });
  return found == commands_.end() || found->end().command != command ? commands_.end() : found;
}

bool History::replay(std::uint64_t command, const std::function<void(const Happening&)>& take) const {
  const auto step = find(command);
  if (step == commands_.end()) return false;
  for (const Happened& happening : step->happenings) {
    if (happening->command == command) take(*happening);
  }
  return true;
}

History::Moment History::behind(std::uint64_t command, const Tv& tv) const {
  const auto found = find(command);
  if (found == commands_.end()) throw notHeld(command);
  Moment moment{Past(tv), found->end().revision};
  undo(next_, moment.set);
  for (auto step = commands_.end() - 1; step != found; --step) undo(*step, moment.set);
  return moment;
}

Past History::before(std::uint64_t command, const Tv& tv) const {
  Past past = behind(command, tv).set;
  undo(*find(command), past, command);
  return past;
}

/// If the services were replaced several times, the image from before the first time is right.
void History::undo(const Step& step, Past& past, std::uint64_t command) {
  const auto changeIn = [](const Happened& happening) { return std::get_if<Change>(&happening->what); };
  const auto replaces = [&](const Happened& happening) {
    const Change* const change = changeIn(happening);
    return change != nullptr && std::holds_alternative<ServicesChanged>(*change);
  };
  const auto first = std::find_if(step.happenings.begin(), step.happenings.end(), replaces);
  for (auto happening = step.happenings.end(); happening != step.happenings.begin();) {
    --happening;
    if (command != all && (*happening)->command != command) continue;
    const Change* const change = changeIn(*happening);
    if (change == nullptr || (happening != first && replaces(*happening))) continue;
    past.undo(*change, happening == first ? step.image : nullptr);
  }
}

}  // namespace virtualtv::device
