// SPDX-License-Identifier: MIT
#pragma once

#include <random>

#include "set/Tv.h"

namespace virtualtv::test {

/// Creates random sets with any possible content. The same seed gives the same set.
class RandomSet {
 public:
  explicit RandomSet(unsigned seed) : engine_(seed) {}

  /// Imports services, edits them, sets settings keys, turns knobs and carries out other verbs.
  void use(Tv& tv);
  /// Carries out one of these actions.
  void step(Tv& tv);

 private:
  int below(int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(engine_); }
  bool in(int parts) { return below(parts) == 0; }
  template <typename Value>
  Value oneOf(const std::vector<Value>& values) {
    return values[static_cast<std::size_t>(below(static_cast<int>(values.size())))];
  }

  int number32();
  std::uint64_t number64();
  std::uint64_t serviceId();
  int pid();
  bool hasText(int field);
  std::string bytes();
  std::u16string units();
  Rect rect();
  int field();
  std::uint64_t numberFor(int field);
  Service service();
  std::vector<AudioTrack> audio();
  std::vector<SubtitleTrack> subtitles();
  std::map<std::uint8_t, bool> favourites();

  void import(Tv& tv);
  void edit(Tv& tv);
  void set(Tv& tv);
  void turn(Tv& tv);
  void act(Tv& tv);

  std::mt19937 engine_;
};

}  // namespace virtualtv::test
