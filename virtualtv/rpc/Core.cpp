// SPDX-License-Identifier: MIT
#include "rpc/Core.h"

#include <algorithm>
#include <random>
#include <utility>

#include "json/Parts.h"
#include "json/Read.h"
#include "json/Write.h"
#include "rpc/Failure.h"
#include "rpc/Method.h"
#include "rpc/OpenRpc.h"
#include "rpc/Request.h"

namespace virtualtv::rpc {

namespace {

constexpr json::Limits limits{.depth = 100, .values = 1'000'000, .loneSurrogates = true};
constexpr std::size_t longestBatch = 1000;
constexpr std::size_t mostWaiting = 64;
constexpr std::chrono::seconds longestUnused{30};
constexpr std::size_t mostUnsent = 8U << 20U;
constexpr std::size_t mostEngines = 16;         // a session
constexpr std::uint64_t longestHeld = 600'000;  // milliseconds

std::string randomId() {
  std::random_device random;
  constexpr std::string_view digits = "0123456789abcdef";
  std::string id;
  for (int digit = 0; digit < 16; ++digit) id += digits[random() % digits.size()];
  return id;
}

std::string responseTo(std::string_view id) {
  return std::string(R"({"jsonrpc":"2.0","id":)").append(id).append(",");
}

void appendError(std::string& response, const Failure& failure) {
  response += "\"error\":";
  json::append(response, errorOf(failure));
}

std::string refusal(const Failure& failure, std::string_view id = "null") {
  std::string response = responseTo(id);
  appendError(response, failure);
  return response += '}';
}

/// The response to a request that is refused without being run; empty for a notification.
std::string refusalOf(std::string_view text, const Failure& failure) {
  try {
    const Request request = requestIn(text);
    return request.id.empty() ? "" : refusal(failure, request.id);
  } catch (const NotARequest& wrong) {
    return refusal(wrong, wrong.id);
  }
}

Failure sessionEnded() {
  return {Code::noSuchSession, "the session has ended"};
}

/// True when a message only opens a session.
bool isOpening(std::string_view message) {
  if (message.find("session.open") == std::string_view::npos) return false;
  try {
    json::check(message, limits);
    return requestIn(message).method == "session.open";
  } catch (const std::exception&) {
    return false;  // a batch, or an invalid message
  }
}

}  // namespace

/// A message being handled.
struct Job {
  /// A message that is refused as a whole gets its reply at once.
  Job(std::string_view text, Core::Answered receiver) : answered(std::move(receiver)) {
    try {
      read(text);
    } catch (const json::NotJson& error) {
      reply = refusal({Code::notJson, error.what()});
    } catch (const Failure& failure) {
      reply = refusal(failure);
    } catch (const std::bad_alloc&) {
      reply = refusal({Code::internal, "not enough memory to read the message"});
    }
  }

  /// @throws json::NotJson, Failure for a message that is refused as a whole.
  void read(std::string_view text) {
    json::check(text, limits);
    message = text;
    json::Parts parts(message);
    isBatch = parts.isArray();
    if (isBatch) requireBatch(parts);
    rest.emplace(message);
  }
  static void requireBatch(json::Parts parts) {
    std::size_t count = 0;
    while (count <= longestBatch && parts.next()) ++count;
    if (count == 0) throw Failure(Code::notARequest, "the batch is empty");
    if (count > longestBatch) throw Failure(Code::notARequest, "a batch has at most 1,000 requests");
  }

  /// Returns the next request; nothing at the end.
  std::optional<std::string_view> next() {
    if (!rest) return std::nullopt;
    if (isBatch) return rest->next() ? std::optional(rest->value()) : std::nullopt;
    rest.reset();
    return message;
  }
  void add(std::string response) {
    if (response.empty()) return;
    if (!isBatch) {
      reply = std::move(response);
      return;
    }
    reply += reply.empty() ? "[" : ",";
    reply += response;
  }

  /// Answers the remaining requests with a failure, including the current one.
  void refuseRest(const Failure& failure) {
    if (!under.empty()) add(refusal(failure, under));
    while (const auto request = next()) add(refusalOf(*request, failure));
    close();
  }
  /// Completes the reply.
  void close() {
    if (isBatch && reply.starts_with('[')) reply += ']';
  }

  std::string message;
  std::optional<json::Parts> rest;  ///< remaining requests; nothing for a refused message
  bool isBatch = false;
  std::string under;  ///< id of the delayed request; empty for none and for a notification
  std::string reply;
  std::vector<std::function<void()>> behind;
  bool lacksSession = false;  ///< refused as a whole, since no session is free
  Core::Answered answered;
};

Core::Core(device::Device& device, Options options)
    : device_(device),
      options_(std::move(options)),
      id_(randomId()),
      events_(device, [this](Event& event) { deliver(event); }) {
  events_.onWake([this, alive = std::weak_ptr(alive_)] {
    if (!alive.expired()) events_.tell(events_.collect());
  });
}

Core::~Core() = default;

const shell::FileAccess& Core::files() const {
  return options_.files ? *options_.files : shell::noFiles();
}

// Sessions.

Seat& Core::open() {
  if (seats_.size() >= options_.mostSessions) {
    throw TooManySessions("there are " + std::to_string(seats_.size()) + " sessions, as many as may be");
  }
  device_.remember();  // only now, so that an unused server costs nothing
  const std::string name = id_ + "-" + std::to_string(++lastSession_);
  const auto seat = std::make_shared<Seat>(device_, name, files());
  seat->shell.client().limitEngines(mostEngines);
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
  scans_.forget(seat->id);
  seat->hasEnded = true;
  seat->outlet = nullptr;
  const std::deque<std::shared_ptr<Job>> waiting = std::exchange(seat->queue, {});
  for (const std::shared_ptr<Job>& job : waiting) {
    const bool isRunning = job == waiting.front() && seat->isAtWork && !seat->isHeld;
    if (isRunning) continue;
    job->refuseRest(sessionEnded());
    job->answered(std::move(job->reply));
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

/// Ends a session without a connection after a while, unless it is used or taken over before that.
void Core::endWhenUnused(const Seat& seat) {
  options_.after(longestUnused, [this, id = seat.id, uses = seat.uses, alive = std::weak_ptr(alive_)] {
    if (alive.expired()) return;
    const auto found = seats_.find(id);
    if (found == seats_.end() || found->second->outlet != nullptr || found->second->uses != uses) return;
    if (!found->second->queue.empty()) return endWhenUnused(*found->second);  // a call is delayed
    close(id);
  });
}

// Calls.

void Core::enqueue(Seat& seat, std::string_view message, Answered answered) {
  ++seat.uses;
  if (seat.outlet == nullptr && !seat.isShared) endWhenUnused(seat);
  seat.queue.push_back(std::make_shared<Job>(message, std::move(answered)));
  const std::shared_ptr<Seat> kept = seats_.at(seat.id);  // keep the session: a message may end it
  work(kept);
}

void Core::post(std::string_view message, const std::optional<std::string>& session, Answered answered) {
  if (!session && isOpening(message)) return openFor(message, std::move(answered));
  Seat* found = nullptr;
  try {
    found = session ? &seat(*session) : &shared();
  } catch (const NoSuchSession& error) {
    return refuse(message, {Code::noSuchSession, error.what()}, answered);
  } catch (const TooManySessions&) {
    return answered(std::nullopt);
  }
  enqueue(*found, message, std::move(answered));
}

void Core::refuse(std::string_view message, const Failure& failure, const Answered& answered) {
  Job job(message, {});
  job.refuseRest(failure);
  answered(std::move(job.reply));
}

/// Opens a session without using the shared session, which may be waiting for a delay or not exist yet.
void Core::openFor(std::string_view message, Answered answered) {
  const auto nobody = std::make_shared<Seat>(device_, id_ + "-0", files());
  nobody->isShared = true;
  nobody->queue.push_back(std::make_shared<Job>(message, std::move(answered)));
  work(nobody);
}

/// Handles the waiting messages of a session, until one of them has to wait for a delay.
void Core::work(const std::shared_ptr<Seat>& seat) {
  if (seat->isAtWork) return;
  seat->isAtWork = true;
  while (!seat->queue.empty()) {
    const std::shared_ptr<Job> job = seat->queue.front();
    const auto leave = [&] {
      if (!seat->queue.empty()) seat->queue.pop_front();  // empty when the message ended the session
    };
    try {
      if (!goOn(seat, *job)) return;
    } catch (...) {  // this message stays unanswered; later ones are handled
      leave();
      seat->isAtWork = false;
      throw;
    }
    leave();
    job->close();
    job->answered(job->lacksSession ? std::nullopt : std::optional(std::move(job->reply)));
    for (const auto& behind : job->behind) behind();
  }
  seat->isAtWork = false;
}

/// Runs the requests of a message. @return false when the rest has to wait.
bool Core::goOn(const std::shared_ptr<Seat>& seat, Job& job) {
  while (const auto request = job.next()) {
    if (seat->hasEnded) {  // ended by an earlier request
      job.add(refusalOf(*request, sessionEnded()));
      continue;
    }
    std::string response;
    Events::Ran ran = events_.collectFrom([&] { response = answer(*seat, *request, job); });
    if (ran.delay > 0 && options_.waits) {
      job.under = response.empty() ? "" : requestIn(*request).id;
      hold(seat, std::move(ran), std::move(response));
      return false;
    }
    events_.tell(std::move(ran));
    job.add(std::move(response));
  }
  return true;
}

/// Continues the work of a session after the delay of its command on the set.
void Core::hold(const std::shared_ptr<Seat>& seat, Events::Ran ran, std::string response) {
  const std::chrono::milliseconds delay(std::min(ran.delay, longestHeld));
  seat->isHeld = true;
  const auto held = std::make_shared<std::pair<Events::Ran, std::string>>(std::move(ran), std::move(response));
  options_.after(delay, [this, seat, held, alive = std::weak_ptr(alive_)] {
    if (alive.expired()) return;
    events_.tell(std::move(held->first));
    if (seat->queue.empty()) return;  // the session has ended
    seat->queue.front()->under.clear();
    seat->queue.front()->add(std::move(held->second));
    seat->isHeld = false;
    seat->isAtWork = false;
    work(seat);
  });
}

/// Carries out a request. @return its response, empty for a notification.
std::string Core::answer(Seat& seat, std::string_view text, Job& job) {
  Request request;
  try {
    request = requestIn(text);
  } catch (const NotARequest& wrong) {
    return refusal(wrong, wrong.id);
  }
  std::string response = responseTo(request.id);
  const std::size_t start = response.size();
  try {
    appendResult(seat, request, job.behind, response);
  } catch (const TooManySessions& error) {
    job.lacksSession = !job.isBatch;  // in a batch the other requests have replies
    response.resize(start);
    appendError(response, {Code::badValue, error.what()});
  } catch (...) {
    response.resize(start);
    appendError(response, currentFailure(request.method));
  }
  complain(device_.takeComplaints());
  return request.id.empty() ? "" : std::move(response += '}');
}

void Core::appendResult(Seat& seat, const Request& request, std::vector<std::function<void()>>& behind,
                        std::string& response) {
  const Method* const method = findMethod(request.method);
  if (method == nullptr) throw Failure(Code::noSuchMethod, "there is no method '" + nameShown(request.method) + "'");
  const Params params(method->parameters, request.params);
  const Context context{*this, seat, *method, params, behind};
  response += "\"result\":";
  if (method->write != nullptr) return method->write(context, response);
  json::append(response, method->run(context));
}

void Core::complain(const std::vector<std::string>& complaints) const {
  if (!options_.complain) return;
  for (const std::string& complaint : complaints) options_.complain(complaint);
}

const std::string& Core::openRpc() {
  if (openRpc_.empty()) openRpc_ = json::write(openRpcDocument());
  return openRpc_;
}

Json::Value Core::revision() const {
  Json::Value answer;
  answer["revision"] = Json::UInt64{device_.revision()};
  return answer;
}

// Events.

void Core::deliver(Event& event) {
  for (const auto& [id, seat] : seats_) {
    if (seat->topics.contains(event.topic)) send(*seat, event);
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
