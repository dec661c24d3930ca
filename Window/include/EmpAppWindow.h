#pragma once

#include "kel/CEmpAppBase.h"

namespace kel {

/// The plug-in's application object: tells the framework who the plug-in is and makes its engines. Made by the
/// process entry and handed to `EmpMain`, which keeps it for the life of the process.
class CEmpAppWindow : public CEmpAppBase {
 public:
  CEmpAppWindow();
  ~CEmpAppWindow() override;

  /// A new engine, owned by the framework; null when none could be made. One whose worker could not be made or could
  /// not connect is an engine all the same. Called for each client that opens the plug-in.
  CEmpEngineBase* CreateEmpEngine() override;
};

}  // namespace kel
