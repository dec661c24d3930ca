// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "kel/CEmpEngineBase.h"

namespace kel {

class CEmpTaskWindow;

/// The command engine: takes a command by name with its text parameters, has the worker run it, and encodes the
/// worker's answer. It contains no TV logic; the command table defines what each command does with its parameters. An
/// exception that reaches the engine is logged and answered with -1, and the command counts as run. Called by the
/// framework, from one thread.
class CEmpEngineWindow : public CEmpEngineBase {
 public:
  /// Encodes a command's reply. Used by the rows of the command table.
  class Reply;

  /// Creates the worker and connects it to the TV service. A worker that could not connect is kept, since most of its
  /// commands connect on first use.
  CEmpEngineWindow();
  ~CEmpEngineWindow() override;

  /// Runs a command of the table.
  /// @param ret  receives the reply; unchanged when false is returned. @return true when the command was recognised and
  /// run, whatever its reply; false when there is no such command or no worker.
  bool Execute(std::string& ret, const std::string& cmd, const std::string& p1, const std::string& p2,
               const std::string& p3, const std::string& p4) override;

  /// Runs a command with a parameter list. The only such command is "SetScreenCropRect": x, y, width and height of the
  /// crop rectangle, the same for the display rectangle, and a plane, which is 0 when missing or not a number. @param
  /// ret receives the worker's result, or -1 without a worker. It is unchanged when one of the first eight parameters
  /// is not a number. For any other name it receives -1; for the empty name it is unchanged. @return true for
  /// "SetScreenCropRect", whatever the result; false for any other name.
  bool ExecuteWithParamList(std::string& ret, const std::string& cmd, const ParamList& params) override;

 private:
  CEmpTaskWindow* m_pEmpTaskWindow;  ///< owned; null only when it could not be created
};

}  // namespace kel
