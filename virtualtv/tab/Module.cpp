// SPDX-License-Identifier: MIT
#include "tab/Host.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <deque>
#include <exception>
#include <functional>
#include <map>
#include <memory>
#include <new>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include "device/Device.h"
#include "kel/CEmpAppBase.h"
#include "kel/EmpMain.h"
#include "rpc/Server.h"
#include "set/SnapshotJson.h"
#include "shell/FileAccess.h"

namespace virtualtv::tab {

namespace {

/// A connected client. Passes on its messages one after the other.
class Connection : rpc::Outlet {
 public:
  Connection(int number, rpc::Server& server, const std::optional<std::string>& session)
      : number_(number), client_(server.connect(*this, session)) {}

  void take(std::string_view message) {
    waiting_.emplace_back(message);
    proceed();
  }
  /// Whether it waits for the answer to a message.
  bool isAsking() const { return isAsking_; }

 private:
  void send(std::shared_ptr<const std::string> message) override {
    emp_host_send(number_, message->data(), message->size());
  }
  // The script receives each message at once, so no client is too slow.
  std::size_t unsent() const override { return 0; }
  void cutOff() override {}

  void proceed() {
    while (!isAsking_ && !waiting_.empty()) {
      const std::string message = std::move(waiting_.front());
      waiting_.pop_front();
      isAsking_ = isHandingOn_ = true;
      try {
        client_->take(message, [this] { answered(); });
      } catch (...) {
        isAsking_ = isHandingOn_ = false;
        throw;
      }
      isHandingOn_ = false;
    }
  }
  void answered() {
    isAsking_ = false;
    if (!isHandingOn_) proceed();
  }

  int number_;
  std::deque<std::string> waiting_;
  bool isAsking_ = false;
  bool isHandingOn_ = false;  ///< a call further up the stack passes on the following messages
  std::unique_ptr<rpc::Client> client_;
};

/// Why a call fails, with the numbers that the script knows.
enum class Failure { other, memory, session, snapshot };

struct NoSnapshot : std::invalid_argument {
  using std::invalid_argument::invalid_argument;
};

Snapshot snapshotIn(std::string_view text) try {
  return readSnapshot(std::string(text));
} catch (const std::invalid_argument& error) {
  throw NoSnapshot(error.what());
}

/// The set and its clients.
class Module {
 public:
  explicit Module(kel::CEmpAppBase& app) : device_(app, storage_) {}

  void start(std::string_view snapshot, bool waits) {
    if (server_) throw std::logic_error("the set was started already");
    if (!snapshot.empty()) device_.restore(snapshotIn(snapshot));
    server_.emplace(device_, options(waits));
  }
  bool isStarted() const { return server_.has_value(); }

  int connect(const std::optional<std::string>& session) {
    const int number = ++lastClient_;
    connections_.emplace(number, std::make_unique<Connection>(number, *server_, session));
    return number;
  }
  void take(int client, std::string_view message) { connections_.at(client)->take(message); }
  void disconnect(int client) { connections_.erase(client); }

  void post(int call, std::string_view message, const std::optional<std::string>& session) {
    server_->post(message, session, [call](const std::optional<std::string>& reply) {
      const std::string_view text = reply ? *reply : std::string_view();
      emp_host_answer(call, text.data(), text.size());
    });
  }

  void elapse(int timer) {
    const auto node = timers_.extract(timer);
    if (!node.empty()) node.mapped()();
  }
  void turn() {
    while (device_.loop().turn()) {
    }
  }

 private:
  rpc::Options options(bool waits) {
    rpc::Options options;
    options.after = [this](std::chrono::milliseconds time, std::function<void()> then) { add(time, std::move(then)); };
    options.waits = waits;
    options.files = std::make_shared<shell::NoFiles>(
        "a TV in memory reaches no files; tv.import, tv.restore and tv.check take what is in one, tv.snapshot answers "
        "it");
    options.complain = [](const std::string& line) { emp_host_complain(line.data(), line.size()); };
    return options;
  }

  void add(std::chrono::milliseconds time, std::function<void()> then) {
    const bool isAwaited = std::any_of(connections_.begin(), connections_.end(),
                                       [](const auto& connection) { return connection.second->isAsking(); });
    timers_.emplace(++lastTimer_, std::move(then));
    emp_host_after(static_cast<double>(time.count()), lastTimer_, isAwaited ? 1 : 0);
  }

  Storage storage_;
  device::Device device_;
  std::map<int, std::function<void()>> timers_;
  int lastTimer_ = 0;
  std::optional<rpc::Server> server_;
  std::map<int, std::unique_ptr<Connection>> connections_;
  int lastClient_ = 0;
};

// NOLINTBEGIN: a process has one of each
std::unique_ptr<kel::CEmpAppBase> application;
std::unique_ptr<Module> theModule;
std::string laid;  // texts from the script
// NOLINTEND

std::string_view laidText(std::size_t size) {
  return std::string_view(laid).substr(0, size);
}

std::optional<std::string> laidSession(std::size_t size) {
  return size == 0 ? std::nullopt : std::optional<std::string>(laidText(size));
}

Module& made() {
  if (!theModule) throw std::logic_error("the set is not in this module: its package was not laid");
  return *theModule;
}

Module& running() {
  if (!made().isStarted()) throw std::logic_error("the set was not started");
  return *theModule;
}

int fail(Failure kind, std::string_view line) {
  emp_host_fail(static_cast<int>(kind), line.data(), line.size());
  return -1;
}

/// Runs `action` for the script, which no exception may reach. @return its result.
template <typename Action>
int guarded(Action action) {
  try {
    const int answer = action();
    if (theModule) theModule->turn();
    return answer;
  } catch (const std::bad_alloc&) {
    return fail(Failure::memory, "the virtual TV has not enough memory");
  } catch (const std::length_error&) {
    return fail(Failure::memory, "this is more than the virtual TV can hold");
  } catch (const rpc::NoSuchSession& error) {
    return fail(Failure::session, error.what());
  } catch (const NoSnapshot& error) {
    return fail(Failure::snapshot, error.what());
  } catch (const std::exception& error) {
    return fail(Failure::other, error.what());
  }
}

}  // namespace

}  // namespace virtualtv::tab

using namespace virtualtv::tab;

/// The framework's entry runs when the package is built: the memory it leaves becomes part of the package. So it
/// creates the set and reads everything that a start would need, but nothing that differs between starts, such as the
/// time or random numbers.
int kel::EmpMain(int, char**, CEmpAppBase* app) {
  application.reset(app);
  theModule = std::make_unique<Module>(*app);
  virtualtv::rpc::prepare();
  return 0;
}

char* emp_place(std::size_t size) {
  constexpr std::size_t mostKept = 1U << 16U;
  const int answer = guarded([&] {
    if (size < mostKept && laid.size() > mostKept) laid = {};
    if (size > laid.size()) laid.resize(size);
    return 0;
  });
  return answer == 0 ? laid.data() : nullptr;
}

int emp_start(std::size_t size, int waits) {
  return guarded([&] {
    made().start(laidText(size), waits != 0);
    return 0;
  });
}

int emp_connect(std::size_t size) {
  return guarded([&] { return running().connect(laidSession(size)); });
}

int emp_take(int client, std::size_t size) {
  return guarded([&] {
    running().take(client, laidText(size));
    return 0;
  });
}

int emp_disconnect(int client) {
  return guarded([&] {
    running().disconnect(client);
    return 0;
  });
}

int emp_post(int call, std::size_t sessionSize, std::size_t size) {
  return guarded([&] {
    running().post(call, laidText(size).substr(sessionSize), laidSession(sessionSize));
    return 0;
  });
}

int emp_elapse(int timer) {
  return guarded([&] {
    running().elapse(timer);
    return 0;
  });
}
