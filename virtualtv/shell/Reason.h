// SPDX-License-Identifier: MIT
#pragma once

#include <exception>
#include <string>

namespace virtualtv::shell {

inline constexpr const char* notEnoughMemory = "not enough memory";

/// Why something failed, for a person at the shell: the message of the exception. For an unknown name it adds where the
/// names are listed. A lack of memory, which has no useful message, becomes `not enough memory to DOING`. @param thrown
/// not null. @param doing  the failed action, as in "import a.conf".
std::string reasonOf(const std::exception_ptr& thrown, const std::string& doing);

}  // namespace virtualtv::shell
