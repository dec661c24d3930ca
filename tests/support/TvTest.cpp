// SPDX-License-Identifier: MIT
#include "support/TvTest.h"

#include <algorithm>
#include <array>
#include <sstream>
#include <stdexcept>
#include <utility>
#include <variant>

#include "store/SettingsStore.h"
#include "support/Faults.h"

namespace support {

namespace {

/// An exception that is not derived from std::exception.
struct Silent {};

using virtualtv::framework::LogLine;
using virtualtv::framework::Reply;
using virtualtv::seam::Fault;

constexpr const char* untouched = "nobody wrote this";

Answer answer(bool accepted, const std::string& ret) {
  Answer answer{accepted, ret != untouched, std::nullopt};
  if (answer.written) answer.reply = virtualtv::framework::decode(ret);
  return answer;
}

std::vector<std::string> split(const std::string& text) {
  std::istringstream stream(text);
  std::vector<std::string> found;
  for (std::string word; stream >> word;) found.push_back(word);
  return found;
}

}  // namespace

std::string Answer::shown() const {
  if (!written) return accepted ? "empty" : "refused";
  const std::string text = reply ? virtualtv::framework::show(*reply) : "undecodable";
  return accepted ? text : "refused " + text;
}

std::string Answer::text() const {
  const bool ascii = accepted && reply && reply->kind == Reply::Kind::ascii;
  EXPECT_TRUE(ascii) << "an ascii reply is wanted, not " << shown();
  return ascii ? reply->text : "";
}

virtualtv::Service service(std::map<int, std::uint64_t> numbers, std::u16string name) {
  virtualtv::Service made;
  made.numbers = std::move(numbers);
  if (!name.empty()) made.texts[TCServiceData::CHANNEL_NAME] = std::move(name);
  return made;
}

TvTest::TvTest() {
  calls_ = device().subscribe({.calls = true});
  log_ = virtualtv::framework::listenToLog(3, [this](const LogLine& line) {
    if (!breaking_.empty() && line.message.masked() == breaking_) {
      breaking_.clear();
      if (saying_ == Saying::nothing) throw Silent();
      throw std::runtime_error("no log");
    }
    lines_.push_back(line);
  });
}

TvTest::~TvTest() = default;

bool TvTest::open(const std::string& name, const std::string& app, const std::string& widget) {
  use(name);
  return television_.app.Open(name, app, widget, "");
}

bool TvTest::close(const std::string& name) {
  return app().Close(name, kel::EmpType::type{});
}

Answer TvTest::ask(const std::string& command, const Lines& parameters) {
  std::array<std::string, 4> p;
  EXPECT_LE(parameters.size(), p.size());
  std::copy_n(parameters.begin(), std::min(parameters.size(), p.size()), p.begin());
  std::string ret = untouched;
  const bool accepted = app().Execute(ret, engine_, command, p[0], p[1], p[2], p[3]);
  return answer(accepted, ret);
}

Answer TvTest::askWithParamList(const std::string& command, const Lines& parameters) {
  std::string ret = untouched;
  const bool accepted = app().ExecuteWithParamList(ret, engine_, command, kel::ParamList(parameters));
  return answer(accepted, ret);
}

std::vector<virtualtv::seam::Call> TvTest::takeCalls() {
  std::vector<virtualtv::seam::Call> calls;
  for (const auto& happening : calls_->take().happenings) {
    calls.push_back(std::get<virtualtv::seam::Call>(happening->what));
  }
  return calls;
}

Lines TvTest::calls() {
  Lines lines;
  for (const virtualtv::seam::Call& call : takeCalls()) lines.push_back(virtualtv::seam::line(call));
  return lines;
}

Lines TvTest::callsOf(const std::string& operation) {
  Lines lines = calls();
  const auto isOther = [&](const std::string& call) { return !call.substr(0, call.find('(')).ends_with(operation); };
  lines.erase(std::remove_if(lines.begin(), lines.end(), isOther), lines.end());
  return lines;
}

Lines TvTest::logs() {
  Lines lines;
  for (const LogLine& line : messages()) {
    lines.push_back(std::to_string(line.level) + " " + line.message.masked());
  }
  return lines;
}

void TvTest::forget() {
  takeCalls();
  lines_.clear();
}

void TvTest::listenNoMore() {
  device().unsubscribe(calls_);
  log_.end();
}

void TvTest::fault(const std::string& words) {
  device().addFault(oddFault(split(words)));
}

void TvTest::clearFaults() {
  device().clearFaults();
}

bool TvTest::faultsHit() const {
  const std::vector<Fault>& faults = virtualtv::seam::Seam::instance().faults();
  return std::all_of(faults.begin(), faults.end(), [](const Fault& fault) { return fault.hits > 0; });
}

std::optional<int> TvTest::intSetting(const std::string& key) {
  const auto value = tv().settings().get(key);
  const int* const number = value ? std::get_if<int>(&*value) : nullptr;
  return number == nullptr ? std::nullopt : std::optional(*number);
}

std::optional<std::string> TvTest::textSetting(const std::string& key) {
  const auto value = tv().settings().get(key);
  const std::string* const text = value ? std::get_if<std::string>(&*value) : nullptr;
  return text == nullptr ? std::nullopt : std::optional(*text);
}

void TvTest::setSetting(const std::string& key, int value) {
  tv().setSetting(key, value);
}

void TvTest::setSetting(const std::string& key, const std::string& value) {
  tv().setSetting(key, value);
}

void TvTest::setServices(const std::vector<virtualtv::Service>& services) {
  tv().removeServices();  // removes the built-in services
  tv().import(services, false);
}

void TvTest::showSource(virtualtv::WindowId window, int source) {
  tv().adjust([=](virtualtv::TvState& state) {
    state[window].sourceState = virtualtv::SOURCE_STATE_SHOWN;
    state[window].source = source;
  });
  forget();
}

void EngineTest::SetUp() {
  ASSERT_TRUE(open());
  forget();
}

BareWorkerTest::BareWorkerTest() {
  engine.SetAppInfo(1, appId, widgetId, "");
  forget();
}

void WorkerTest::SetUp() {
  ASSERT_TRUE(create());
  forget();
}

}  // namespace support
