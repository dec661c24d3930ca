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

/// Keeps the engines of an application object: opens them, carries commands to them, closes them. While an engine
/// runs, its platform calls carry its name and the number of its command.
namespace virtualtv::framework {

/// Who opened an engine: the number under which it was opened (0 for those with a name), and for whom.
struct Client {
  int id = 0;
  std::string appId;
  std::string widgetId;
  std::string profile;
};

/// Names and numbers of engines do not mix: engine 5 is "#5" here, and a name that begins with '#' gets another.
std::string engineKey(int id);
std::string engineKey(const std::string& name);

/// An engine that a host has opened or closed.
struct EngineOpened {
  std::string engine;  ///< its key
  Client client;
};
struct EngineClosed {
  std::string engine;
  std::string why;  ///< in a word or two: "closed", "restart"
};

class Host {
 public:
  /// Becomes the host of `app`, which outlives it; where it has one already, in place of that for as long as this
  /// lives.
  explicit Host(kel::CEmpAppBase& app);
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;
  ~Host();

  /// The host of an application object; it has one as long as it lives.
  static Host& of(const kel::CEmpAppBase& app);

  /// @return true when a new engine stands; false when `key` is taken, or when the application object made none
  /// or threw.
  bool open(const std::string& key, const Client& client);

  bool isOpen(const std::string& key) const { return engines_.count(key) > 0; }

  /// Tells an engine that another application calls it now. @return false when there is no such engine.
  bool setClient(const std::string& key, const Client& client);

  /// Runs a command; what the engine throws passes. @return its answer; false when there is no such engine.
  bool execute(const std::string& key, const std::function<bool(kel::CEmpEngineBase&)>& command);

  /// Number of commands that the engine has been given since it was opened; 0 when there is no such engine.
  std::uint64_t commands(const std::string& key) const;

  /// Destroys and deletes the engine, whatever it throws. @return false when there is none.
  bool close(const std::string& key, const std::string& why = "closed");
  void closeAll(const std::string& why = "closed");

  /// Keys of the engines that are open.
  std::vector<std::string> engines() const;

  /// Tells of each engine that stands, and of each that is gone, also of one that could not be made, so that what the
  /// set made on its behalf can be freed.
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
