// SPDX-License-Identifier: MIT
#include "shell/Options.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <optional>
#include <stdexcept>

namespace virtualtv::shell {

namespace {

/// The values of each option, by the index of the option.
using Given = std::map<std::size_t, Lines>;

/// Assigns words to options.
class Sorting {
 public:
  Sorting(const Options& options, const Lines& words) : options_(options), words_(words) {}

  /// @return nothing when the words do not match the options.
  std::optional<Given> result() {
    while (at_ < words_.size()) {
      if (!next()) return std::nullopt;
    }
    return isWhole() ? std::optional(given_) : std::nullopt;
  }

 private:
  bool next() {
    const std::string& word = words_[at_++];
    if (isAlone_ || word == "-" || !word.starts_with('-')) return giveAlone(word);
    if (word == "--") return isAlone_ = true;
    const std::size_t equals = word.find('=');
    const std::optional<std::size_t> place = placeOf(word.substr(0, equals));
    if (!place) return false;
    if (equals != std::string::npos) return give(*place, word.substr(equals + 1));
    if (options_[*place].value.empty()) return give(*place, "");
    return at_ < words_.size() && give(*place, words_[at_++]);
  }

  bool giveAlone(const std::string& word) {
    const bool isTaken = !options_.empty() && options_.front().standsAlone();
    return isTaken && give(0, word);
  }
  bool give(std::size_t place, const std::string& value) {
    const Option& option = options_[place];
    if (option.value.empty() && !value.empty()) return false;
    Lines& values = given_[place];
    values.push_back(value);
    return values.size() == 1 || option.isSeveral || option.value.empty();
  }

  std::optional<std::size_t> placeOf(const std::string& name) const {
    const auto found = std::find_if(options_.begin(), options_.end(),
                                    [&](const Option& option) { return !option.standsAlone() && option.name == name; });
    if (found == options_.end()) return std::nullopt;
    return static_cast<std::size_t>(found - options_.begin());
  }

  /// True when no required option is missing.
  bool isWhole() const {
    for (std::size_t place = 0; place < options_.size(); ++place) {
      const Option& option = options_[place];
      const bool isGiven = given_.contains(place);
      if (option.standsAlone() && !isGiven) return false;
      if (isGiven && !option.needs.empty() && !given_.contains(placeOf(option.needs).value())) return false;
    }
    return true;
  }

  const Options& options_;
  const Lines& words_;
  std::size_t at_ = 0;
  bool isAlone_ = false;  ///< a `--` was read
  Given given_;
};

}  // namespace

bool readWords(const Options& options, const Lines& words) {
  const std::optional<Given> given = Sorting(options, words).result();
  if (!given) return false;
  for (const auto& [place, values] : *given) {
    for (const std::string& value : values) take(options[place], value);
  }
  return true;
}

void take(const Option& option, const std::string& value) {
  try {
    option.take(value);
  } catch (const std::invalid_argument& refusal) {
    throw std::invalid_argument(option.name + ": " + refusal.what());
  }
}

void refuseEmpty(const std::string& value, const std::string& wanted) {
  if (value.empty()) throw std::invalid_argument(wanted + " is wanted, not an empty text");
}

}  // namespace virtualtv::shell
