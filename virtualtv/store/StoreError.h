#pragma once

#include <stdexcept>

namespace virtualtv {

/// The set can't read or keep what it stores. Its text is one line for a person, to be printed as it is: the file, what
/// was being done, and why it can't be.
class StoreError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace virtualtv
