// SPDX-License-Identifier: MIT
#pragma once

#include <stdexcept>

namespace virtualtv {

/// The set can't read or persist its data. The message is a sentence for a person: the file, the failed action and the
/// reason. It may quote stored bytes unescaped, so whoever prints it must escape it.
class StoreError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace virtualtv
