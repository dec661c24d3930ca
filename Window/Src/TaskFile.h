// SPDX-License-Identifier: MIT
#pragma once

namespace kel {

/// The file name in log lines of the worker's sources, except EmpTaskWindow_D2TV.
inline constexpr const char* kTaskFile = "Window/Src/EmpTaskWindow";

}  // namespace kel
