// SPDX-License-Identifier: MIT
#include "import/LineReader.h"

#include <limits>

#include "import/Words.h"
#include "text/Units.h"

namespace virtualtv::import {

LineReader::LineReader(std::string_view content) : start_(content.data()), rest_(text::withoutMark(content)) {}

bool LineReader::next() {
  if (rest_.empty()) return false;
  line_ = trimmedEnd(cut(rest_, '\n'));
  if (number_ < std::numeric_limits<int>::max()) ++number_;
  return true;
}

std::string_view LineReader::line() const {
  return line_;
}

int LineReader::number() const {
  return number_;
}

std::size_t LineReader::offset() const {
  return static_cast<std::size_t>(line_.data() - start_);
}

bool LineReader::isComment() const {
  return trimmed(line_).starts_with('#');
}

}  // namespace virtualtv::import
