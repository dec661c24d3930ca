#pragma once

namespace kel {

/// The name that the worker's sources give in log lines, all but EmpTaskWindow_D2TV.
inline constexpr const char* kTaskFile = "Window/Src/EmpTaskWindow";

}  // namespace kel
