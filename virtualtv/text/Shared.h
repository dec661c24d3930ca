// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace virtualtv::text {

/// An immutable text. Copies share its memory.
class Shared {
 public:
  Shared() = default;
  Shared(std::string text)  // NOLINT(google-explicit-constructor): a drop-in for std::string
      : text_(text.empty() ? nullptr : std::make_shared<const std::string>(std::move(text))) {}

  const std::string& str() const { return text_ ? *text_ : none(); }
  operator const std::string&() const { return str(); }  // NOLINT(google-explicit-constructor)
  bool empty() const { return !text_; }
  std::size_t size() const { return str().size(); }

  friend bool operator==(const Shared& left, std::string_view right) { return left.str() == right; }

 private:
  static const std::string& none() {
    static const std::string text;
    return text;
  }

  std::shared_ptr<const std::string> text_;
};

}  // namespace virtualtv::text
