// SPDX-License-Identifier: MIT
#include "kel/StringToNumber.h"

#include <charconv>
#include <string_view>

bool kel::StringToNumber(const std::string& text, int& number) {
  std::string_view digits = text;
  if (digits.starts_with('+')) digits.remove_prefix(1);
  if (digits.size() < text.size() && digits.starts_with('-')) return false;  // "+-1"
  int value = 0;
  const char* end = digits.data() + digits.size();
  const auto [stop, error] = std::from_chars(digits.data(), end, value);
  if (error != std::errc() || stop != end) return false;
  number = value;
  return true;
}
