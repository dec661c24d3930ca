#pragma once

#include <array>
#include <boost/asio/posix/basic_stream_descriptor.hpp>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "device/Device.h"
#include "live/Child.h"
#include "live/Playing.h"
#include "net/Asio.h"
#include "net/FilesBeneath.h"
#include "net/Limits.h"

namespace virtualtv::net {

/// A recording that plays for one viewer: a child makes of it what the viewer reads, no faster than that is read.
class Play : public std::enable_shared_from_this<Play> {
 public:
  /// @param file  the recording. @throws std::exception with a line for a person when there can be no child.
  Play(const Executor& executor, WindowId window, live::Playing playing, const shell::File& file,
       Limits::Time patience);
  Play(const Play&) = delete;
  Play& operator=(const Play&) = delete;
  ~Play() = default;

  WindowId window() const { return window_; }
  const live::Playing& playing() const { return playing_; }
  bool isEnded() const { return isEnded_; }

  /// Waits until it is known what is in it. @param then  called when `type` or `reason` tells.
  void begin(std::function<void()> then);
  /// What `typeOf` says of it; empty where it does not play.
  const std::string& type() const { return type_; }
  /// Why it does not.
  std::string reason() const;

  /// Reads on. @param take  called once, with a piece that stays until the next call, or an empty one at the end.
  void read(std::function<void(std::string_view)> take);
  /// Ends it now. What is waited for comes, at the end.
  void end();

 private:
  using Input = asio::posix::basic_stream_descriptor<Executor>;

  void readMore(std::function<void(std::size_t count)> then);
  void readHead(std::function<void()> then);
  bool readType();
  void awaitErrors();
  void readErrors();

  WindowId window_;
  live::Playing playing_;
  Limits::Time patience_;
  live::Child child_;
  Input output_;
  Input errors_;
  Input ending_;
  Timer timer_;
  std::vector<std::uint8_t> head_;  ///< what was read before it was known what is in it
  std::array<std::uint8_t, 65536> piece_{};
  std::string type_;
  std::string flaw_;  ///< why it does not play, where it is not the child that says so
  std::string said_;  ///< the last that the child wrote of them
  bool isEnded_ = false;
};

/// What plays for all viewers. What a window no longer shows ends.
class Plays {
 public:
  /// @param device  outlives it. @param files  what clients reach of files; null for none.
  Plays(const Executor& executor, device::Device& device, std::shared_ptr<const FilesBeneath> files,
        const Limits& limits);

  /// Begins with what a window shows. @throws live::NothingPlays where that comes from no recording, std::exception
  /// with a line for a person where the recording can't be played.
  std::shared_ptr<Play> open(WindowId window);

 private:
  shell::File fileOf(const Footage& footage) const;
  void endWhatIsNotShown();
  void listen();

  Executor executor_;
  device::Device& device_;
  std::shared_ptr<const FilesBeneath> files_;
  Limits::Time patience_;
  std::size_t most_;
  std::vector<std::weak_ptr<Play>> plays_;
  std::shared_ptr<device::Feed> feed_;  ///< while anything plays
};

}  // namespace virtualtv::net
