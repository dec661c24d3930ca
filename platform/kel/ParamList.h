// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace kel {

/// The ordered text parameters of a call that does not fit the four of `Execute`. A plain value.
class ParamList {
 public:
  ParamList();
  /// A list with these parameters.
  explicit ParamList(std::vector<std::string> parameters);

  /// Number of parameters that the caller gave.
  std::size_t Size() const;

  /// The parameter at `index`, counted from 0; the empty text when the list is shorter.
  /// The reference is valid as long as the list.
  const std::string& At(std::size_t index) const;

 private:
  std::vector<std::string> m_parameters;
};

}  // namespace kel
