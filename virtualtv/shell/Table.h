// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <vector>

#include "shell/Lines.h"

namespace virtualtv::shell {

/// Formats rows of cells as lines with aligned columns. The first row has the headings. Lines start with two blanks.
/// @param columns  width in characters to wrap to, as far as the words allow; 0 for one line per row.
Lines table(const std::vector<Lines>& rows, std::size_t columns = 0);

/// Wraps a line between words so that no part is wider than `columns`, as far as the words allow. All parts but the
/// first start with `indent` blanks. With 0 columns the line stays whole.
Lines wrapped(const std::string& line, std::size_t columns, std::size_t indent);

/// Formats a text as comments, `# ` before each line, wrapped in the same way.
Lines remark(const std::string& text, std::size_t columns);

}  // namespace virtualtv::shell
