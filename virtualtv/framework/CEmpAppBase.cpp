// SPDX-License-Identifier: MIT
#include "kel/CEmpAppBase.h"

#include "framework/Host.h"

namespace kel {

using virtualtv::framework::engineKey;
using virtualtv::framework::Host;

struct CEmpAppBase::Engines : Host {
  using Host::Host;
};

CEmpAppBase::CEmpAppBase() : m_engines(std::make_unique<Engines>(*this)) {}

CEmpAppBase::~CEmpAppBase() = default;

bool CEmpAppBase::Open(const std::string& name, const std::string& appId, const std::string& widgetId,
                       const std::string& profile) {
  return m_engines->open(engineKey(name), {0, appId, widgetId, profile});
}

bool CEmpAppBase::Close(const std::string& name, EmpType::type) {
  return m_engines->close(engineKey(name));
}

bool CEmpAppBase::Execute(std::string& ret, const std::string& name, const std::string& cmd, const std::string& p1,
                          const std::string& p2, const std::string& p3, const std::string& p4) {
  return m_engines->execute(engineKey(name),
                            [&](CEmpEngineBase& engine) { return engine.Execute(ret, cmd, p1, p2, p3, p4); });
}

bool CEmpAppBase::ExecuteWithParamList(std::string& ret, const std::string& name, const std::string& cmd,
                                       const ParamList& params) {
  return m_engines->execute(engineKey(name),
                            [&](CEmpEngineBase& engine) { return engine.ExecuteWithParamList(ret, cmd, params); });
}

void CEmpAppBase::Destroy() {
  m_engines->closeAll();
}

bool CEmpAppBase::Open(int id, const std::string& appId, const std::string& widgetId, const std::string& profile) {
  return m_engines->open(engineKey(id), {id, appId, widgetId, profile});
}

bool CEmpAppBase::Close(int id) {
  return m_engines->close(engineKey(id));
}

bool CEmpAppBase::Execute(std::string& ret, int id, const std::string& cmd, const std::string& p1,
                          const std::string& p2, const std::string& p3, const std::string& p4) {
  return m_engines->execute(engineKey(id),
                            [&](CEmpEngineBase& engine) { return engine.Execute(ret, cmd, p1, p2, p3, p4); });
}

bool CEmpAppBase::ExecuteWithParamList(std::string& ret, int id, const std::string& cmd, const ParamList& params) {
  return m_engines->execute(engineKey(id),
                            [&](CEmpEngineBase& engine) { return engine.ExecuteWithParamList(ret, cmd, params); });
}

const std::string& CEmpAppBase::Name() const {
  return m_name;
}

const std::string& CEmpAppBase::Id() const {
  return m_id;
}

const std::string& CEmpAppBase::Version() const {
  return m_version;
}

}  // namespace kel
