// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>

#include "kel/ParamList.h"

namespace kel {

class CEmpEngineBase;

/// The framework's kinds of closing.
struct EmpType {
  /// The kind; only its number is fixed.
  enum type : int {};
};

/// Base of a plug-in's application object. It hosts the engines that clients open, each under a name or under a number;
/// names and numbers are separate. All operations are called by the framework, from one thread.
class CEmpAppBase {
 public:
  CEmpAppBase();
  CEmpAppBase(const CEmpAppBase&) = delete;
  CEmpAppBase& operator=(const CEmpAppBase&) = delete;
  virtual ~CEmpAppBase();

  /// Opens an engine under `name`.
  /// @return true when a new engine was created; false when the name is in use or no engine could be created.
  virtual bool Open(const std::string& name, const std::string& appId, const std::string& widgetId,
                    const std::string& profile);
  /// Closes and deletes the engine with this name. @return false when there is none.
  virtual bool Close(const std::string& name, EmpType::type type);
  /// Runs a command on the engine with this name. @return the engine's answer; false when there is no such engine, in
  /// which case `ret` is unchanged.
  virtual bool Execute(std::string& ret, const std::string& name, const std::string& cmd, const std::string& p1,
                       const std::string& p2, const std::string& p3, const std::string& p4);
  /// The same for a command with a parameter list.
  virtual bool ExecuteWithParamList(std::string& ret, const std::string& name, const std::string& cmd,
                                    const ParamList& params);
  /// Closes every engine.
  virtual void Destroy();

  /// The operations above except `Destroy`, for an engine that is opened under a number.
  /// @{
  virtual bool Open(int id, const std::string& appId, const std::string& widgetId, const std::string& profile);
  virtual bool Close(int id);
  virtual bool Execute(std::string& ret, int id, const std::string& cmd, const std::string& p1, const std::string& p2,
                       const std::string& p3, const std::string& p4);
  virtual bool ExecuteWithParamList(std::string& ret, int id, const std::string& cmd, const ParamList& params);
  /// @}

  /// Creates a new engine, owned by the caller; null on failure.
  virtual CEmpEngineBase* CreateEmpEngine() = 0;

  /// The three texts that the plug-in passed to its constructor.
  /// @{
  const std::string& Name() const;
  const std::string& Id() const;
  const std::string& Version() const;
  /// @}

 protected:
  /// The texts that `Name`, `Id` and `Version` return.
  /// @{
  std::string m_name;
  std::string m_id;
  std::string m_version;
  /// @}

 private:
  struct Engines;
  std::unique_ptr<Engines> m_engines;
};

}  // namespace kel
