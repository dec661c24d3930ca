// SPDX-License-Identifier: MIT
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

/// A recording that plays for one viewer. A child process converts it, no faster than the viewer reads.
class Play : public std::enable_shared_from_this<Play> {
 public:
  /// @param file  the recording. @throws std::exception with a line for a person when the child can't be started.
  Play(const Executor& executor, WindowId window, live::Playing playing, const shell::File& file,
       Limits::Time patience);
  Play(const Play&) = delete;
  Play& operator=(const Play&) = delete;
  ~Play() = default;

  WindowId window() const { return window_; }
  const live::Playing& playing() const { return playing_; }
  bool isEnded() const { return isEnded_; }

  /// Waits until the type of the stream is known. @param then  called when `type` or `reason` is set.
  void begin(std::function<void()> then);
  /// The media type, see `typeOf`; empty when the recording does not play.
  const std::string& type() const { return type_; }
  /// Why the recording does not play.
  std::string reason() const;

  /// Reads the next piece. @param take  called once with a piece, which is valid until the next call; the piece is
  /// empty at the end.
  void read(std::function<void(std::string_view)> take);
  /// Ends playing now. A pending `begin` or `read` is still answered.
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
  std::vector<std::uint8_t> head_;  ///< data read before the type was known
  std::array<std::uint8_t, 65536> piece_{};
  std::string type_;
  std::string flaw_;  ///< why it does not play, unless the child reports the reason
  std::string said_;  ///< the last error text of the child
  bool isEnded_ = false;
};

/// The recordings that play for all viewers. A recording ends when its window no longer shows it.
class Plays {
 public:
  /// @param device  must outlive this object. @param files  the files that clients can use; null for none.
  Plays(const Executor& executor, device::Device& device, std::shared_ptr<const FilesBeneath> files,
        const Limits& limits);

  /// Plays what a window shows. @throws live::NothingPlays when the window shows no recording, std::exception with a
  /// line for a person when the recording can't be played.
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
  std::shared_ptr<device::Feed> feed_;  ///< subscribed while anything plays
};

}  // namespace virtualtv::net
