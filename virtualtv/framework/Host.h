// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "kel/CEmpAppBase.h"
#include "kel/CEmpEngineBase.h"
#include "notify/Listeners.h"
#include "text/Shared.h"

/// Manages the engines of an application object: opens them, runs commands on them, closes them. While an engine runs,
/// its platform calls are marked with its name and the number of its command.
namespace virtualtv::framework {

/// Who opened an engine: the number under which it was opened (0 for an engine with a name), and the application.
struct Client {
  int id = 0;
  std::string appId;
  std::string widgetId;
  std::string profile;
};

/// The key of an engine. Names and numbers can't clash: engine 5 is "#5", and a name that starts with '#' gets another
/// '#' in front.
std::string engineKey(int id);
std::string engineKey(const std::string& name);

/// An engine that a host has opened or closed.
struct EngineOpened {
  std::string engine;  ///< its key
  Client client;
};
struct EngineClosed {
  std::string engine;
  std::string why;  ///< reason in a word or two: "closed", "restart"
};

class Host {
 public:
  /// Becomes the host of `app`, which outlives it. If `app` has a host already, replaces that one for the lifetime of
  /// this object.
  explicit Host(kel::CEmpAppBase& app);
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;
  ~Host();

  /// The host of an application object, which always has one.
  static Host& of(const kel::CEmpAppBase& app);

  /// Opens an engine. @return true when a new engine was opened; false when `key` is in use, or when the application
  /// object created no engine or threw.
  bool open(const std::string& key, const Client& client);

  bool isOpen(const std::string& key) const { return engines_.count(key) > 0; }

  /// Tells an engine which application calls it from now on. Exceptions of the engine propagate. @return false when
  /// there is no such engine.
  bool setClient(const std::string& key, const Client& client);

  /// Runs a command. Exceptions of the engine propagate. @return the result of the engine; false when there is no such
  /// engine.
  bool execute(const std::string& key, const std::function<bool(kel::CEmpEngineBase&)>& command);

  /// The number of commands that the engine has run since it was opened; 0 when there is no such engine.
  std::uint64_t commands(const std::string& key) const;

  /// Destroys and deletes the engine, ignoring its exceptions. @return false when there is none.
  bool close(const std::string& key, const std::string& why = "closed");
  void closeAll(const std::string& why = "closed");

  /// Keys of the engines that are open.
  std::vector<std::string> engines() const;

  /// Subscribe to the opening and the closing of engines. A failed opening is reported as a closing too, so that
  /// whatever the set created for the engine can be freed.
  notify::Subscription onOpened(std::function<void(const EngineOpened&)> told) { return opened_.add(std::move(told)); }
  notify::Subscription onClosed(std::function<void(const EngineClosed&)> told) { return closed_.add(std::move(told)); }

 private:
  struct Hosted {
    text::Shared key;
    std::unique_ptr<kel::CEmpEngineBase> engine;
    std::uint64_t commands = 0;
  };

  kel::CEmpAppBase& app_;
  Host* before_;
  std::map<std::string, Hosted> engines_;
  notify::Listeners<EngineOpened> opened_;
  notify::Listeners<EngineClosed> closed_;
};

}  // namespace virtualtv::framework
