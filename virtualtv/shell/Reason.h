#pragma once

#include <exception>
#include <string>

namespace virtualtv::shell {

inline constexpr const char* notEnoughMemory = "not enough memory";

/// Why something failed, for a person at the shell: what the exception says, and of a name that nothing has where the
/// names are listed. A lack of memory says nothing by itself; it becomes `not enough memory to DOING`.
/// @param thrown  not null. @param doing  what failed, as in "import a.conf".
std::string reasonOf(const std::exception_ptr& thrown, const std::string& doing);

}  // namespace virtualtv::shell
