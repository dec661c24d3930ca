#pragma once

#include <stdexcept>
#include <string>
#include <vector>

/// What the grammars of the program's arguments and of `.import` share.
namespace virtualtv::shell {

/// Writes `--NAME=` with nothing behind it as the two words that it stands for; the parser would take the next word for
/// the value. Words behind a `--` stay.
void keepEmptyValues(std::vector<std::string>& arguments);

/// Runs what throws std::invalid_argument for a value that an option does not take.
/// @return why it does not, as a validator answers it; empty when it does.
template <typename Body>
std::string refusalOf(Body body) {
  try {
    body();
    return {};
  } catch (const std::invalid_argument& refusal) {
    return refusal.what();
  }
}

/// @throws std::invalid_argument when it is empty. @param wanted  names what is wanted, as in `a directory`.
void refuseEmpty(const std::string& value, const std::string& wanted);

}  // namespace virtualtv::shell
