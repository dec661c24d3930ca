// SPDX-License-Identifier: MIT
#include "rpc/Server.h"

#include <utility>

#include "broadcast/FoundJson.h"
#include "json/Write.h"
#include "rpc/Core.h"
#include "rpc/Method.h"
#include "rpc/Schemas.h"

namespace virtualtv::rpc {

void prepare() {
  topics();
  findMethod("");
}

Client::Client(Core& core, Outlet& outlet, std::string session)
    : core_(core), outlet_(outlet), session_(std::move(session)) {
  core_.seat(session_).outlet = &outlet_;
}

Client::~Client() {
  *alive_ = false;
  core_.close(session_);
}

void Client::take(std::string_view message, std::function<void()> done) {
  const auto answered = [this, alive = alive_, done = std::move(done)](std::optional<std::string> reply) {
    if (!*alive) return;
    if (reply && !reply->empty()) outlet_.send(std::make_shared<const std::string>(*std::move(reply)));
    done();
  };
  try {
    if (!core_.seats().contains(session_)) openAnother();
  } catch (const TooManySessions& error) {
    return Core::refuse(message, {Code::badValue, error.what()}, answered);
  }
  core_.enqueue(core_.seat(session_), message, answered);
}

/// Opens another session for a client that has closed its session.
void Client::openAnother() {
  Seat& seat = core_.open();
  seat.outlet = &outlet_;
  session_ = seat.id;
}

Server::Server(device::Device& device, Options options) : core_(std::make_unique<Core>(device, std::move(options))) {}

Server::~Server() = default;

std::unique_ptr<Client> Server::connect(Outlet& outlet, const std::optional<std::string>& session) {
  if (!session) return std::make_unique<Client>(*core_, outlet, core_->open().id);
  Seat& seat = core_->seat(*session);
  if (seat.outlet != nullptr || seat.isShared)
    throw NoSuchSession("session '" + *session + "' is not to be taken over");
  return std::make_unique<Client>(*core_, outlet, seat.id);
}

void Server::post(std::string_view body, const std::optional<std::string>& session,
                  std::function<void(std::optional<std::string> reply)> answer) {
  core_->post(body, session, std::move(answer));
}

std::string Server::scanned(const broadcast::Scan& scan, const ScanWishes& wishes) {
  // Store the result first, so that the recording need not be sent again when the import fails.
  if (wishes.session && core_->seats().contains(*wishes.session)) core_->scans().keep(*wishes.session, {{}, scan});
  if (wishes.imports) core_->device().import(std::vector<std::string>{}, scan, wishes.add);
  return json::write(broadcast::documentOf(scan));
}

void Server::requireSession(const std::string& session) const {
  core_->seat(session);
}

const std::string& Server::openRpc() {
  return core_->openRpc();
}

}  // namespace virtualtv::rpc
