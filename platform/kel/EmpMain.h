// SPDX-License-Identifier: MIT
#pragma once

/// @file
/// The framework's entry.

namespace kel {

class CEmpAppBase;

/// Runs the plug-in process. Called once, by the process entry.
///
/// @param argc, argv  the process's own arguments, unchanged.
/// @param app         the application object, created with `new`; the framework takes ownership.
/// @return the framework's exit status; the entry does not use it.
int EmpMain(int argc, char** argv, CEmpAppBase* app);

}  // namespace kel
