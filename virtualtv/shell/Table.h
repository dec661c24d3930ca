#pragma once

#include <cstddef>
#include <vector>

#include "shell/Lines.h"

namespace virtualtv::shell {

/// Rows of cells as lines with aligned columns, the first row being the heads. Lines start with two blanks.
/// @param columns  width in characters that lines are fitted to, as well as their words allow; 0 for one line a row.
Lines table(const std::vector<Lines>& rows, std::size_t columns = 0);

/// A line broken between words so that none of its parts is wider than `columns`, as well as its words allow. Parts
/// behind the first one start with `indent` blanks. 0 columns: the line as it is.
Lines wrapped(const std::string& line, std::size_t columns, std::size_t indent);

/// A text as comments, `# ` before each line, that fit the same way.
Lines remark(const std::string& text, std::size_t columns);

}  // namespace virtualtv::shell
