#include "rpc/Core.h"

#include <algorithm>
#include <random>
#include <utility>

#include "json/Read.h"
#include "json/Write.h"
#include "rpc/Failure.h"
#include "rpc/Method.h"
#include "rpc/OpenRpc.h"

namespace virtualtv::rpc {

namespace {

constexpr json::Limits limits{.depth = 100, .values = 1'000'000};
constexpr Json::ArrayIndex longestBatch = 1000;
constexpr std::size_t mostWaiting = 64;
constexpr std::chrono::seconds longestUnused{30};
constexpr std::size_t mostUnsent = 8U << 20U;

std::string randomId() {
  std::random_device random;
  constexpr std::string_view digits = "0123456789abcdef";
  std::string id;
  for (int digit = 0; digit < 16; ++digit) id += digits[random() % digits.size()];
  return id;
}

/// A response. @param part  "result" or "error".
std::string response(const Json::Value& id, const char* part, const Json::Value& value) {
  std::string text = R"({"jsonrpc":"2.0","id":)";
  json::append(text, id);
  text.append(",\"").append(part).append("\":");
  json::append(text, value);
  return text += '}';
}

std::string refusal(const Failure& failure) {
  return response(Json::nullValue, "error", errorOf(failure));
}

bool isId(const Json::Value& id) {
  return id.isNull() || id.isString() || id.isNumeric();
}

/// What is wrong with a request's form; nothing where it is right.
std::optional<std::string> flawOf(const Json::Value& request) {
  if (!request.isObject()) return "a request is an object";
  if (request["jsonrpc"] != "2.0") return "\"jsonrpc\": \"2.0\" is wanted";
  if (!request["method"].isString()) return "\"method\": a text is wanted";
  const Json::Value& params = request["params"];
  if (request.isMember("params") && !params.isArray() && !params.isObject()) {
    return "\"params\": an array or an object is wanted";
  }
  if (!isId(request["id"])) return "\"id\": a text, a number or null is wanted";
  return std::nullopt;
}

}  // namespace

/// A message at work.
struct Job {
  Json::Value document;
  bool isBatch = false;
  Json::ArrayIndex at = 0;  ///< the next request of a batch
  std::string reply;
  std::vector<std::function<void()>> behind;
  std::function<void(std::string)> answered;

  void add(const std::string& response) {
    reply += isBatch ? (reply.empty() ? "[" : ",") : "";
    reply += response;
  }
};

Core::Core(device::Device& device, Options options)
    : device_(device),
      options_(std::move(options)),
      filesBeneath_(options_.files.empty() ? nullptr : std::make_unique<shell::FilesBeneath>(options_.files)),
      id_(randomId()),
      events_(device, [this](Event& event) { deliver(event); }) {
  events_.onWake([this, alive = std::weak_ptr(alive_)] {
    if (!alive.expired()) events_.tell(events_.collect());
  });
}

Core::~Core() = default;

const shell::FileAccess& Core::files() const {
  return filesBeneath_ ? *filesBeneath_ : shell::noFiles();
}

// Sessions.

Seat& Core::open() {
  if (seats_.size() >= options_.mostSessions) {
    throw TooManySessions("there are " + std::to_string(seats_.size()) + " sessions, as many as may be");
  }
  const std::string name = id_ + "-" + std::to_string(++lastSession_);
  const auto seat = std::make_shared<Seat>(device_, name, files());
  seats_.emplace(name, seat);
  events_.tellOfSession(name, "opened");
  return *seat;
}

Seat& Core::openWaiting() {
  const auto isWaiting = [](const auto& entry) { return entry.second->outlet == nullptr && !entry.second->isShared; };
  if (std::cmp_greater_equal(std::count_if(seats_.begin(), seats_.end(), isWaiting), mostWaiting)) {
    throw Failure(Code::badValue, "64 sessions wait for a connection already");
  }
  Seat& seat = open();
  endWhenUnused(seat);
  return seat;
}

Seat& Core::seat(const std::string& id) {
  const auto found = seats_.find(id);
  if (found == seats_.end()) throw NoSuchSession("there is no session '" + id + "'");
  return *found->second;
}

void Core::close(const std::string& id) {
  const auto found = seats_.find(id);
  if (found == seats_.end()) return;
  const std::shared_ptr<Seat> seat = found->second;
  seats_.erase(found);
  seat->outlet = nullptr;
  const std::deque<std::shared_ptr<Job>> waiting = std::exchange(seat->queue, {});
  for (const std::shared_ptr<Job>& job : waiting) {
    const bool isRunning = job == waiting.front() && seat->isAtWork && !seat->isHeld;
    if (!isRunning) job->answered(refusal({Code::noSuchSession, "the session has ended"}));
  }
  seat->shell.client().closeEngines("session ended");
  events_.tell(events_.collect());
  events_.tellOfSession(id, "closed");
}

Seat& Core::shared() {
  const auto found = std::find_if(seats_.begin(), seats_.end(), [](const auto& seat) { return seat.second->isShared; });
  if (found != seats_.end()) return *found->second;
  Seat& seat = open();
  seat.isShared = true;
  return seat;
}

/// Ends a session that nobody is connected to, unless it is used or taken over within a while from now.
void Core::endWhenUnused(const Seat& seat) {
  options_.after(longestUnused, [this, id = seat.id, uses = seat.uses, alive = std::weak_ptr(alive_)] {
    if (alive.expired()) return;
    const auto found = seats_.find(id);
    if (found == seats_.end() || found->second->outlet != nullptr || found->second->uses != uses) return;
    close(id);
  });
}

// Calls.

void Core::enqueue(Seat& seat, std::string_view message, std::function<void(std::string)> answered) {
  ++seat.uses;
  if (seat.outlet == nullptr && !seat.isShared) endWhenUnused(seat);
  const auto job = std::make_shared<Job>();
  job->answered = std::move(answered);
  try {
    job->document = json::read(message, limits);
    job->isBatch = job->document.isArray();
    if (job->isBatch && job->document.empty()) throw Failure(Code::notARequest, "the batch is empty");
    if (job->isBatch && job->document.size() > longestBatch) {
      throw Failure(Code::notARequest, "a batch has at most 1,000 requests");
    }
  } catch (const json::NotJson& error) {
    job->reply = refusal({Code::notJson, error.what()});
  } catch (const Failure& failure) {
    job->reply = refusal(failure);
  } catch (const std::bad_alloc&) {
    job->reply = refusal({Code::internal, "not enough memory to read the message"});
  }
  seat.queue.push_back(job);
  const std::shared_ptr<Seat> kept = seats_.at(seat.id);  // a message may end the session
  work(kept);
}

void Core::post(std::string_view message, const std::optional<std::string>& session,
                std::function<void(std::string)> answered) {
  Seat* found = nullptr;
  try {
    found = session ? &seat(*session) : &shared();
  } catch (const NoSuchSession& error) {
    return answered(refusal({Code::noSuchSession, error.what()}));
  } catch (const TooManySessions& error) {
    return answered(refusal({Code::badValue, error.what()}));
  }
  enqueue(*found, message, std::move(answered));
}

/// Does what waits for a session, until something of it has to wait for a time.
void Core::work(const std::shared_ptr<Seat>& seat) {
  if (seat->isAtWork) return;
  seat->isAtWork = true;
  while (!seat->queue.empty()) {
    const std::shared_ptr<Job> job = seat->queue.front();
    if (!goOn(seat, *job)) return;
    if (!seat->queue.empty()) seat->queue.pop_front();  // it may have ended the session
    if (job->isBatch && job->reply.starts_with('[')) job->reply += ']';
    job->answered(std::move(job->reply));
    for (const auto& behind : job->behind) behind();
  }
  seat->isAtWork = false;
}

/// Runs the requests of a message. @return false when the rest has to wait.
bool Core::goOn(const std::shared_ptr<Seat>& seat, Job& job) {
  if (!job.reply.empty() && job.at == 0) return true;  // refused as a whole
  const Json::ArrayIndex count = job.isBatch ? job.document.size() : 1;
  while (job.at < count) {
    const Json::Value& request = job.isBatch ? job.document[job.at] : job.document;
    ++job.at;
    std::string response = answer(*seat, request, job.behind);
    Events::Ran ran = events_.collect();
    if (ran.delay > 0 && options_.waits) {
      hold(seat, std::move(ran), std::move(response));
      return false;
    }
    events_.tell(std::move(ran));
    if (!response.empty()) job.add(response);
  }
  return true;
}

/// Goes on with a session's work after the time that its command took on the set.
void Core::hold(const std::shared_ptr<Seat>& seat, Events::Ran ran, std::string response) {
  const std::chrono::milliseconds delay(ran.delay);
  seat->isHeld = true;
  const auto held = std::make_shared<std::pair<Events::Ran, std::string>>(std::move(ran), std::move(response));
  options_.after(delay, [this, seat, held, alive = std::weak_ptr(alive_)] {
    if (alive.expired()) return;
    events_.tell(std::move(held->first));
    if (seat->queue.empty()) return;  // the session has ended
    if (!held->second.empty()) seat->queue.front()->add(held->second);
    seat->isHeld = false;
    seat->isAtWork = false;
    work(seat);
  });
}

/// Carries out a request. @return its response, empty for a notification.
std::string Core::answer(Seat& seat, const Json::Value& request, std::vector<std::function<void()>>& behind) {
  if (const auto flaw = flawOf(request)) return refusal({Code::notARequest, *flaw});
  const char* part = "result";
  Json::Value value;
  try {
    value = result(seat, request, behind);
  } catch (...) {
    part = "error";
    value = errorOf(currentFailure(request["method"].asString()));
  }
  complain(device_.takeComplaints());
  return request.isMember("id") ? response(request["id"], part, value) : "";
}

Json::Value Core::result(Seat& seat, const Json::Value& request, std::vector<std::function<void()>>& behind) {
  const std::string name = request["method"].asString();
  const Method* const method = findMethod(name);
  if (method == nullptr) throw Failure(Code::noSuchMethod, "there is no method '" + name + "'");
  const Params params(method->parameters, request["params"]);
  return method->run({*this, seat, *method, params, behind});
}

void Core::complain(const std::vector<std::string>& complaints) const {
  if (!options_.complain) return;
  for (const std::string& complaint : complaints) options_.complain(complaint);
}

const std::string& Core::openRpc() {
  if (openRpc_.empty()) openRpc_ = json::write(openRpcDocument());
  return openRpc_;
}

// Events.

void Core::deliver(Event& event) {
  for (const auto& [id, seat] : seats_) {
    if (haveTopic(seat->topics, event.topic)) send(*seat, event);
  }
}

void Core::send(Seat& seat, Event& event) {
  if (seat.outlet == nullptr) return;
  const auto text = events_.textOf(event);
  if (seat.outlet->unsent() + text->size() > mostUnsent) {
    seat.topics.clear();
    return seat.outlet->cutOff();
  }
  seat.outlet->send(text);
}

}  // namespace virtualtv::rpc
