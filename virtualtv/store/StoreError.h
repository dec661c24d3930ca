#pragma once

#include <stdexcept>

namespace virtualtv {

/// The set can't read or persist what it stores. Its text is a sentence for a person: the file, what was being done,
/// and why it can't be. It may quote what is stored, as it stands: whoever prints it escapes it, as all that is
/// printed.
class StoreError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace virtualtv
