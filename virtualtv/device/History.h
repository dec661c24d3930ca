#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <stdexcept>
#include <vector>

#include "device/Feed.h"
#include "services/ServiceImage.h"
#include "set/Past.h"

namespace virtualtv::device {

/// Why a command that is not held can't be told of.
std::invalid_argument notHeld(std::uint64_t command);

/// The last commands that ran on a device, each with all that it caused, and what changed between them: from that the
/// set is told as it was right behind each of them, by undoing what has changed since. So a command costs what it
/// changes. Only where all services are replaced, those that were there before are held, as an image.
class History {
 public:
  struct Bounds {
    std::size_t commands = 1000;
    std::size_t bytes = 64U << 20U;  ///< that they take together; the oldest are let go of
  };

  using Happened = std::shared_ptr<const Happening>;

  explicit History(Bounds bounds) : bounds_(bounds) {}

  // For the device.

  /// True when it takes an image of the services before they are replaced.
  bool wantsServices() const { return !commands_.empty() && !next_.image; }
  /// Adds what happened. Without the services before them, where they were wanted, it begins anew behind a change of
  /// all services. @param services  as `wantsServices` asks for them, or null.
  void add(const Happened& happening, std::shared_ptr<const ServiceImage> services);
  /// Begins anew: what happened was lost.
  void forget();

  // What is held.

  /// Calls `take` with all that a command caused, in order; the last is that it ran. @return false when it is not held.
  bool replay(std::uint64_t command, const std::function<void(const Happening&)>& take) const;
  /// A set as it was, and its revision then.
  struct Moment {
    Past set;
    std::uint64_t revision = 0;
  };
  /// The set right behind a command. @param tv  the set now. It outlives what is answered, which is to be used before
  /// anything happens. @throws std::invalid_argument when the command is not held.
  Moment behind(std::uint64_t command, const Tv& tv) const;
  /// The same right before it, and before its engine was opened for it. What was done to the set from outside between
  /// the command before and this one has happened by then.
  Past before(std::uint64_t command, const Tv& tv) const;

  std::size_t size() const { return commands_.size(); }
  /// Number of the last command that is held; 0 where none is.
  std::uint64_t last() const { return commands_.empty() ? 0 : commands_.back().end().command; }
  /// What it takes of memory, in bytes.
  std::size_t bytes() const { return bytes_; }

 private:
  /// What happened behind the command before, up to the end of a command.
  struct Step {
    std::vector<Happened> happenings;
    std::shared_ptr<const ServiceImage> image;  ///< the services before they were first replaced
    std::size_t bytes = 0;

    const Happening& end() const { return *happenings.back(); }
  };

  bool isNeeded(const Happening& happening) const;
  std::deque<Step>::const_iterator find(std::uint64_t command) const;
  void keepBounds();
  static constexpr std::uint64_t all = 0;
  /// @param command  undoes only what it caused; `all` for everything of the step.
  static void undo(const Step& step, Past& past, std::uint64_t command = all);

  Bounds bounds_;
  std::deque<Step> commands_;  ///< by their numbers
  Step next_;
  std::size_t bytes_ = 0;  ///< of all steps
};

}  // namespace virtualtv::device
