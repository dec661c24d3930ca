// SPDX-License-Identifier: MIT
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

/// The exception for a command that is not in the history.
std::invalid_argument notHeld(std::uint64_t command);

/// The last commands that ran on a device, each with everything that it caused, and the changes between them. The set
/// as it was right after a command is reconstructed by undoing all later changes. So a command uses as much memory as
/// its changes need. Before all services are replaced, the history stores an image of them.
class History {
 public:
  struct Bounds {
    std::size_t commands = 1000;
    std::size_t bytes = 64U << 20U;  ///< total memory for commands; beyond it the oldest are dropped
  };

  using Happened = std::shared_ptr<const Happening>;

  explicit History(Bounds bounds) : bounds_(bounds) {}

  // For the device.

  /// True when the history needs an image of the services before they are replaced.
  bool wantsServices() const { return !commands_.empty() && !next_.image; }
  /// Adds a happening. When all services change and the wanted image is missing, the history starts again after the
  /// change. @param services  the image that `wantsServices` asks for, or null.
  void add(const Happened& happening, std::shared_ptr<const ServiceImage> services);
  /// Empties the history, after a happening could not be recorded.
  void forget();

  // Access to the history.

  /// Calls `take` with everything that a command caused, in order. The last item is the command itself. @return false
  /// when the command is not in the history.
  bool replay(std::uint64_t command, const std::function<void(const Happening&)>& take) const;
  /// A set as it was, with its revision at that time.
  struct Moment {
    Past set;
    std::uint64_t revision = 0;
  };
  /// The set right after a command. Use the result before anything else happens. @param tv  the current set; outlives
  /// the result. @throws std::invalid_argument when the command is not in the history.
  Moment behind(std::uint64_t command, const Tv& tv) const;
  /// The set right before a command, and before an engine was opened for it. It includes the changes made from outside
  /// between the previous command and this one.
  Past before(std::uint64_t command, const Tv& tv) const;

  std::size_t size() const { return commands_.size(); }
  /// The number of the last command in the history; 0 when it is empty.
  std::uint64_t last() const { return commands_.empty() ? 0 : commands_.back().end().command; }
  /// Memory use, in bytes.
  std::size_t bytes() const { return bytes_; }

 private:
  /// What happened after the previous command, up to the end of a command.
  struct Step {
    std::vector<Happened> happenings;
    std::shared_ptr<const ServiceImage> image;  ///< the services before their first replacement in this step
    std::size_t bytes = 0;

    const Happening& end() const { return *happenings.back(); }
  };

  bool isNeeded(const Happening& happening) const;
  std::deque<Step>::const_iterator find(std::uint64_t command) const;
  void keepBounds();
  static constexpr std::uint64_t all = 0;
  /// @param command  undoes only the changes that this command caused; `all` for all changes of the step.
  static void undo(const Step& step, Past& past, std::uint64_t command = all);

  Bounds bounds_;
  std::deque<Step> commands_;  ///< in the order of their numbers
  Step next_;
  std::size_t bytes_ = 0;  ///< of all steps
};

}  // namespace virtualtv::device
