#pragma once

#include <string>

#include "kel/CEmpEngineBase.h"

namespace kel {

class CEmpTaskWindow;

/// The command engine: takes a command by name with its text parameters, has the worker run it, and encodes the
/// worker's answer. It holds no TV logic; what each command does with its parameters stands in the command table.
/// Called by the framework, from one thread.
class CEmpEngineWindow : public CEmpEngineBase {
 public:
  /// Encodes a command's reply; the rows of the command table answer through it.
  class Reply;

  /// Makes the worker and connects it to the TV service. A worker that could not connect is kept: its commands
  /// connect on first use.
  CEmpEngineWindow();
  ~CEmpEngineWindow() override;

  /// Runs a command of the table.
  /// @param ret  receives the reply; untouched when false is returned.
  /// @return true when the command was recognised and run, whatever it answered; false when there is no such command
  ///         or no worker.
  bool Execute(std::string& ret, const std::string& cmd, const std::string& p1, const std::string& p2,
               const std::string& p3, const std::string& p4) override;

  /// Runs a command that takes more than four parameters; none does.
  /// @param ret  -1 for any command with a name; untouched for the empty name.
  /// @return false.
  bool ExecuteWithParamList(std::string& ret, const std::string& cmd, const ParamList& params) override;

 private:
  CEmpTaskWindow* m_pEmpTaskWindow;  ///< owned; null only when it could not be allocated
};

}  // namespace kel
