// SPDX-License-Identifier: MIT
#pragma once

/// @file
/// The framework's side of a command engine.

#include <string>

#include "kel/ParamList.h"

namespace kel {

/// The values that `CEmpEngineBase::GetAppInfo` can return.
enum eAPP_INFO_TYPE : int {
  eAPP_INFO_APP_ID = 1,     ///< id of the calling application
  eAPP_INFO_WIDGET_ID = 2,  ///< id of the widget that the application runs in
};

/// Base of a plug-in's command engine. The framework creates one for each client that opens the plug-in, calls it from
/// one thread, and deletes it through this class.
class CEmpEngineBase {
 public:
  CEmpEngineBase();
  CEmpEngineBase(const CEmpEngineBase&) = delete;
  CEmpEngineBase& operator=(const CEmpEngineBase&) = delete;
  virtual ~CEmpEngineBase();

  /// Runs a command with four text parameters.
  ///
  /// @param ret  receives the reply, encoded by one of the `SetReturnValue` operations.
  /// @return true when the command was recognised and run, regardless of its reply.
  virtual bool Execute(std::string& ret, const std::string& cmd, const std::string& p1, const std::string& p2,
                       const std::string& p3, const std::string& p4) = 0;

  /// Runs a command with a parameter list; `ret` and the result as in `Execute`. A command may leave `ret` unchanged.
  virtual bool ExecuteWithParamList(std::string& ret, const std::string& cmd, const ParamList& params) = 0;

  /// Called by the framework before it deletes the engine. The base does nothing.
  virtual void Destroy();

  /// Called by the framework right after the engine was created, and when the calling application changes.
  ///
  /// @param id         number under which the engine was opened; 0 if it was opened under a name.
  /// @param appId      id of the calling application, empty when unknown.
  /// @param widgetId   id of its widget, empty when unknown.
  /// @param profile    the framework's own profile text, not used here.
  virtual void SetAppInfo(int id, std::string appId, std::string widgetId, std::string profile);

  /// The calling application's id or widget id; empty when unknown, and for any other type.
  std::string GetAppInfo(eAPP_INFO_TYPE type);

 protected:
  /// The result encoders: each replaces `ret` with the encoded value. Called once a command's result is known.
  void SetReturnValueInteger(std::string& ret, int value);
  /// @param text  zero-terminated bytes; null counts as the empty text.
  /// @{
  void SetReturnValueASCII(std::string& ret, const char* text);
  void SetReturnValueASCII(std::string& ret, std::string& text);
  /// @}
  /// @param text  zero-terminated 16-bit units in host order; null counts as the empty text.
  void SetReturnValueUNICODE(std::string& ret, unsigned short* text);

 private:
  std::string m_appId;
  std::string m_widgetId;
};

}  // namespace kel
