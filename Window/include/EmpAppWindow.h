// SPDX-License-Identifier: MIT
#pragma once

#include "kel/CEmpAppBase.h"

namespace kel {

/// The plug-in's application object: identifies the plug-in to the framework and creates its engines. Created by the
/// process entry and passed to `EmpMain`, which owns it for the life of the process.
class CEmpAppWindow : public CEmpAppBase {
 public:
  CEmpAppWindow();
  ~CEmpAppWindow() override;

  /// Creates an engine, owned by the framework. Returns null when no engine could be created. An engine is returned
  /// even if its worker could not be created or could not connect. Called for each client that opens the plug-in.
  CEmpEngineBase* CreateEmpEngine() override;
};

}  // namespace kel
