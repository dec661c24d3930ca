// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

namespace virtualtv::import {

/// Judges whether the names of a list are in ISO 6937 or in ISO 8859. A single name is often plausible in both:
/// L\xC4NDER is LÑDER in the one and LÄNDER in the other. So the names of a list are judged together.
class Judgement {
 public:
  /// Takes a name into account. It must be neither ASCII nor UTF-8.
  void learn(std::string_view name);

  /// True when ISO 6937 is more likely.
  bool isIso6937() const { return points_ > 0; }

 private:
  long long points_ = 0;
};

}  // namespace virtualtv::import
