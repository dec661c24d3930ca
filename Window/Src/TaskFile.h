#pragma once

namespace kel {

/// The name that the worker's sources give in log lines.
inline constexpr const char* kTaskFile = "Window/Src/EmpTaskWindow";

}  // namespace kel
