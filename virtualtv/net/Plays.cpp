// SPDX-License-Identifier: MIT
#include "net/Plays.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <boost/asio/buffer.hpp>
#include <boost/asio/post.hpp>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <utility>

#include "live/Ffmpeg.h"
#include "live/Mp4.h"
#include "text/Units.h"

namespace virtualtv::net {

namespace {

/// The last line that is not empty, for a person.
std::string lastLine(std::string text) {
  while (text.ends_with('\n')) text.pop_back();
  text.erase(0, text.rfind('\n') + 1);  // removes nothing when there is none
  constexpr std::string_view file = "/dev/fd/3: ";
  if (text.starts_with(file)) text.erase(0, file.size());
  constexpr std::size_t most = 200;
  return text::printable(text.substr(0, most));
}

std::string nameOf(const Footage& footage) {
  return text::printable(std::filesystem::path(footage.path).filename().string());
}

}  // namespace

Play::Play(const Executor& executor, WindowId window, live::Playing playing, const shell::File& file,
           Limits::Time patience)
    : window_(window),
      playing_(std::move(playing)),
      patience_(patience),
      child_(live::ffmpeg(), live::playingArguments(playing_), ::fileno(file.get())),
      output_(executor, child_.output.release()),
      errors_(executor, child_.errors.release()),
      ending_(executor, child_.ending.release()),
      timer_(executor) {}

void Play::begin(std::function<void()> then) {
  awaitErrors();
  readHead(std::move(then));
}

void Play::readHead(std::function<void()> then) {
  readMore([this, then = std::move(then)](std::size_t count) mutable {
    head_.insert(head_.end(), piece_.begin(), piece_.begin() + static_cast<std::ptrdiff_t>(count));
    if (count > 0 && !readType()) return readHead(std::move(then));
    if (type_.empty()) end();
    then();
  });
}

/// @return false when more must be read first.
bool Play::readType() {
  try {
    const std::optional<std::size_t> length = live::lengthOfHead(head_);
    if (length) type_ = live::typeOf({head_.data(), *length});
    return length.has_value();
  } catch (const std::invalid_argument& error) {
    flaw_ = error.what();
    return true;
  }
}

std::string Play::reason() const {
  const std::string told = flaw_.empty() ? lastLine(said_) : flaw_;
  return "cannot play " + nameOf(playing_.footage) + ": " + (told.empty() ? "ffmpeg has ended" : told);
}

void Play::read(std::function<void(std::string_view)> take) {
  const auto textOf = [](const std::uint8_t* bytes, std::size_t count) {
    return std::string_view(reinterpret_cast<const char*>(bytes), count);
  };
  if (!head_.empty()) {
    const std::size_t count = std::min(head_.size(), piece_.size());
    std::copy_n(head_.begin(), count, piece_.begin());
    head_.erase(head_.begin(), head_.begin() + static_cast<std::ptrdiff_t>(count));
    return take(textOf(piece_.data(), count));
  }
  readMore([this, textOf, take = std::move(take)](std::size_t count) {
    if (count == 0) end();
    take(textOf(piece_.data(), count));
  });
}

/// Reads into the piece. @param then  called with the number of bytes; 0 at the end.
void Play::readMore(std::function<void(std::size_t count)> then) {
  timer_.expires_after(patience_);
  timer_.async_wait([weak = weak_from_this()](error_code error) {
    const auto self = error ? nullptr : weak.lock();
    if (!self || self->timer_.expiry() > std::chrono::steady_clock::now()) return;
    self->flaw_ = "ffmpeg makes nothing of it";
    self->end();
  });
  output_.async_read_some(asio::buffer(piece_),
                          [self = shared_from_this(), then = std::move(then)](error_code error, std::size_t count) {
                            self->timer_.cancel();
                            if (error) self->readErrors();
                            then(error || self->isEnded_ ? 0 : count);
                          });
}

void Play::awaitErrors() {
  errors_.async_wait(Input::wait_read, [self = shared_from_this()](error_code error) {
    if (error || self->isEnded_) return;
    self->readErrors();
    if (self->errors_.is_open()) self->awaitErrors();
  });
}

/// Reads the error output of the child and keeps the end of it.
void Play::readErrors() {
  constexpr std::size_t kept = 1024;
  std::array<char, 4096> bytes{};
  while (errors_.is_open()) {
    const ssize_t count = ::read(errors_.native_handle(), bytes.data(), bytes.size());
    if (count < 0) return;  // nothing more now
    if (count == 0) errors_.close();
    said_.append(bytes.data(), static_cast<std::size_t>(count));
    said_.erase(0, said_.size() - std::min(said_.size(), kept));
  }
}

void Play::end() {
  if (std::exchange(isEnded_, true)) return;
  child_.kill();
  timer_.cancel();
  output_.close();
  if (errors_.is_open()) errors_.close();
  ending_.async_wait(Input::wait_read, [self = shared_from_this()](error_code) { self->child_.wait(); });
}

Plays::Plays(const Executor& executor, device::Device& device, std::shared_ptr<const FilesBeneath> files,
             const Limits& limits)
    : executor_(executor),
      device_(device),
      files_(std::move(files)),
      patience_(limits.forPicture),
      most_(limits.mostPlays) {}

std::shared_ptr<Play> Plays::open(WindowId window) {
  live::Playing playing = live::playingOn(device_.tv(), window);
  endWhatIsNotShown();
  if (plays_.size() >= most_) {
    throw std::runtime_error("as many recordings are playing as may be: " + std::to_string(most_));
  }
  const shell::File file = fileOf(playing.footage);
  auto play = std::make_shared<Play>(executor_, window, std::move(playing), file, patience_);
  plays_.push_back(play);
  if (!feed_) listen();
  return play;
}

/// Opens a recording: any file if the user who runs the program has named it, otherwise only a file that clients can
/// use.
shell::File Plays::fileOf(const Footage& footage) const {
  const std::string name = nameOf(footage);
  if (footage.isTrusted) return openRegular(footage.path, name);
  if (files_) return files_->openToRead(footage.path, name);
  throw std::runtime_error("cannot play " + name +
                           ": clients reach no files unless the server is started with --files");
}

/// Calls `endWhatIsNotShown` after every change of the set.
void Plays::listen() {
  device::Wants wants;
  wants.events = true;
  wants.limit = 1;
  wants.wake = [this] {
    if (!feed_) return;
    feed_->take();
    asio::post(executor_, [this] { endWhatIsNotShown(); });
  };
  feed_ = device_.subscribe(std::move(wants));
}

void Plays::endWhatIsNotShown() {
  const auto isShown = [this](const Play& play) {
    try {
      return live::playingOn(device_.tv(), play.window()) == play.playing();
    } catch (const std::exception&) {
      return false;
    }
  };
  std::erase_if(plays_, [&](const std::weak_ptr<Play>& listed) {
    const auto play = listed.lock();
    if (play && !play->isEnded() && !isShown(*play)) play->end();
    return !play || play->isEnded();
  });
  if (plays_.empty()) feed_.reset();
}

}  // namespace virtualtv::net
