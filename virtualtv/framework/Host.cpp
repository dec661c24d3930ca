// SPDX-License-Identifier: MIT
#include "framework/Host.h"

#include <exception>
#include <utility>
#include <vector>

#include "seam/Seam.h"

namespace virtualtv::framework {

namespace {

std::map<const kel::CEmpAppBase*, Host*>& hosts() {
  static std::map<const kel::CEmpAppBase*, Host*> all;
  return all;
}

/// Runs a step of the plug-in that must not stop the framework. @return false when it threw.
template <typename Step>
bool survive(Step step) {
  try {
    step();
    return true;
  } catch (...) {
    return false;
  }
}

}  // namespace

std::string engineKey(int id) {
  return "#" + std::to_string(id);
}

std::string engineKey(const std::string& name) {
  return name.starts_with('#') ? "#" + name : name;
}

Host::Host(kel::CEmpAppBase& app) : app_(app), before_(std::exchange(hosts()[&app], this)) {}

Host::~Host() {
  closeAll();
  if (before_ != nullptr) {
    hosts()[&app_] = before_;
  } else {
    hosts().erase(&app_);
  }
}

Host& Host::of(const kel::CEmpAppBase& app) {
  return *hosts().at(&app);
}

bool Host::open(const std::string& key, const Client& client) {
  if (isOpen(key)) return false;
  const seam::CallerScope scope({key, 0});
  Hosted hosted;
  hosted.key = seam::Seam::instance().caller().engine;
  const bool made = survive([&] {
    hosted.engine.reset(app_.CreateEmpEngine());
    if (hosted.engine) hosted.engine->SetAppInfo(client.id, client.appId, client.widgetId, client.profile);
  });
  if (made && hosted.engine) {
    engines_.emplace(key, std::move(hosted));
    opened_.tell({key, client});
    return true;
  }
  hosted.engine.reset();
  closed_.tell({key, "not made"});
  return false;
}

bool Host::setClient(const std::string& key, const Client& client) {
  const auto found = engines_.find(key);
  if (found == engines_.end()) return false;
  const seam::CallerScope scope({found->second.key, found->second.commands});
  found->second.engine->SetAppInfo(client.id, client.appId, client.widgetId, client.profile);
  return true;
}

bool Host::execute(const std::string& key, const std::function<bool(kel::CEmpEngineBase&)>& command) {
  const auto found = engines_.find(key);
  if (found == engines_.end()) return false;
  const seam::CallerScope scope({found->second.key, ++found->second.commands});
  return command(*found->second.engine);
}

std::uint64_t Host::commands(const std::string& key) const {
  const auto found = engines_.find(key);
  return found == engines_.end() ? 0 : found->second.commands;
}

bool Host::close(const std::string& key, const std::string& why) {
  auto closing = engines_.extract(key);
  if (closing.empty()) return false;
  {
    const seam::CallerScope scope({key, 0});
    survive([&] { closing.mapped().engine->Destroy(); });
    closing.mapped().engine.reset();
  }
  closed_.tell({key, why});
  return true;
}

void Host::closeAll(const std::string& why) {
  while (!engines_.empty()) close(engines_.begin()->first, why);
}

std::vector<std::string> Host::engines() const {
  std::vector<std::string> keys;
  for (const auto& [key, hosted] : engines_) keys.push_back(key);
  return keys;
}

}  // namespace virtualtv::framework
