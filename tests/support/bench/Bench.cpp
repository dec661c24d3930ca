// SPDX-License-Identifier: MIT
#include "support/bench/Bench.h"

#include <algorithm>
#include <array>
#include <utility>

#include "EmpConverterWindow.h"
#include "catalogue/Catalogue.h"
#include "framework/Host.h"
#include "framework/Log.h"
#include "set/Keeping.h"
#include "set/StorageParts.h"

namespace support {

namespace {

using virtualtv::Event;
using virtualtv::WindowId;
using virtualtv::framework::Reply;

constexpr const char* engineName = "bench";
constexpr const char* untouched = "nobody wrote this";

Outcome outcome(bool accepted, const std::string& ret) {
  Outcome outcome{accepted, ret != untouched, std::nullopt};
  if (outcome.written) outcome.reply = virtualtv::framework::decode(ret);
  return outcome;
}

}  // namespace

bool Outcome::isNumber(int number) const {
  return accepted && reply && reply->kind == Reply::Kind::integer && reply->number == number;
}

std::string Outcome::shown() const {
  if (!written) return accepted ? "empty" : "refused";
  const std::string text = reply ? virtualtv::framework::show(*reply) : "undecodable";
  return accepted ? text : "refused " + text;
}

Bench::Bench(std::vector<virtualtv::Service> services, const std::filesystem::path& directory)
    : television_(directory), services_(std::move(services)) {
  log_ = virtualtv::framework::listenToLog(3, [](const virtualtv::framework::LogLine&) {});
  furnish();
  firstState_ = tv().state();
  firstSettings_ = tv().settings().list();
  subscription_ = tv().onEvent([this](const Event& event) {
    servicesChanged_ = servicesChanged_ || std::holds_alternative<virtualtv::ServicesChanged>(event.change) ||
                       std::holds_alternative<virtualtv::FavouritesChanged>(event.change);
  });
}

void Bench::furnish() {
  tv().reset();
  if (!services_.empty()) tv().import(services_, false);
}

void Bench::renew() {
  app().Destroy();
  rest();
}

void Bench::rest() {
  device().clearFaults();
  if (servicesChanged_) furnish();
  servicesChanged_ = false;
  tv().adjust([this](virtualtv::TvState& state) { state = firstState_; });
  for (const auto& [key, value] : tv().settings().list()) {
    if (firstSettings_.count(key) == 0) tv().removeSetting(key);
  }
  for (const auto& [key, value] : firstSettings_) tv().setSetting(key, value);
}

bool Bench::open() {
  return app().Open(engineName, "bench.app", "bench.widget", "");
}

bool Bench::close() {
  return app().Close(engineName, kel::EmpType::type{});
}

Outcome Bench::run(const std::function<bool(kel::CEmpEngineBase&, std::string& ret)>& command, const Around& around) {
  std::string ret = untouched;
  const bool accepted = virtualtv::framework::Host::of(app()).execute(
      virtualtv::framework::engineKey(engineName), [&](kel::CEmpEngineBase& engine) {
        const std::function<bool()> own = [&] { return command(engine, ret); };
        return around ? around(own) : own();
      });
  return outcome(accepted, ret);
}

Outcome Bench::execute(const std::string& command, const std::vector<std::string>& parameters, const Around& around) {
  std::array<std::string, 4> p;
  std::copy_n(parameters.begin(), std::min(parameters.size(), p.size()), p.begin());
  return run([&](auto& engine, std::string& ret) { return engine.Execute(ret, command, p[0], p[1], p[2], p[3]); },
             around);
}

Outcome Bench::executeWithParamList(const std::string& command, const std::vector<std::string>& parameters,
                                    const Around& around) {
  const kel::ParamList list(parameters);
  return run([&](auto& engine, std::string& ret) { return engine.ExecuteWithParamList(ret, command, list); }, around);
}

void Bench::showIsp() {
  tv().showIsp();
  tv().adjust([](virtualtv::TvState& state) {
    state.isp.audio = {{.pid = 301, .lang = 6514802, .decodeType = virtualtv::CODING_AC3}};
    state.isp.subtitles = {{.pid = 401, .lang = 6514802}};
  });
}

std::string Bench::unhealthy() {
  device().clearFaults();
  const auto& main = tv().state()[WindowId::main];
  const int mode = kel::CEmpConverterWindow::GetPLTVModeValue(
      TSTvMode(static_cast<EAntennaMode>(main.mode.antenna), static_cast<EServiceMode>(main.mode.service)));
  const struct {
    const char* command;
    std::vector<std::string> parameters;
    int answer;
  } questions[] = {{"SetWindow", {"0"}, 1}, {"GetSourceState", {}, main.sourceState}, {"GetTVMode", {}, mode}};
  for (const auto& question : questions) {
    const Outcome answer = execute(question.command, question.parameters);
    if (answer.isNumber(question.answer)) continue;
    return std::string(question.command) + " answers " + answer.shown() + ", not int " +
           std::to_string(question.answer);
  }
  return {};
}

bool Bench::isKept() {
  return virtualtv::keptOf(tv().state()) == storage().parts().state.all();
}

std::string undocumented(const std::string& command, const Outcome& outcome) {
  const virtualtv::CatalogueCommand* const described = virtualtv::catalogue().find(command);
  if (described == nullptr) {
    return outcome.accepted || outcome.written ? "unknown, yet answered " + outcome.shown() : std::string();
  }
  if (!outcome.accepted || !outcome.reply) return "answered " + outcome.shown();
  const std::string shown = outcome.shown();
  const std::string kind = shown.substr(0, shown.find(' '));
  if (kind == "int" || kind == described->reply) return {};
  return "answered with another kind: " + shown;
}

}  // namespace support
