#pragma once

#include <string>

#include "kel/CEmpEngineBase.h"

namespace kel {

class CEmpTaskWindow;

/// The command engine: takes a command by name with its text parameters, has the worker run it, and encodes the
/// worker's answer. It holds no TV logic; what each command does with its parameters stands in the command table.
/// An exception that nothing below has caught is logged and answered with -1, and the command counts as run.
/// Called by the framework, from one thread.
class CEmpEngineWindow : public CEmpEngineBase {
 public:
  /// Encodes a command's reply; the rows of the command table answer through it.
  class Reply;

  /// Makes the worker and connects it to the TV service. A worker that could not connect is kept: most of its commands
  /// connect on first use.
  CEmpEngineWindow();
  ~CEmpEngineWindow() override;

  /// Runs a command of the table.
  /// @param ret  receives the reply; untouched when false is returned.
  /// @return true when the command was recognised and run, whatever it answered; false when there is no such command
  ///         or no worker.
  bool Execute(std::string& ret, const std::string& cmd, const std::string& p1, const std::string& p2,
               const std::string& p3, const std::string& p4) override;

  /// Runs a command with a parameter list. One takes a list, "SetScreenCropRect": x, y, width and height of the crop
  /// rectangle, the same of the display rectangle, and a plane, which reads as 0 when it is missing or no number.
  /// @param ret  receives the worker's result, -1 without a worker; untouched where one of the first eight parameters
  ///             is no number. Any other name is answered with -1, the empty name not at all.
  /// @return true for "SetScreenCropRect", whatever came of it; false for any other name.
  bool ExecuteWithParamList(std::string& ret, const std::string& cmd, const ParamList& params) override;

 private:
  CEmpTaskWindow* m_pEmpTaskWindow;  ///< owned; null only when it could not be made
};

}  // namespace kel
