#include "support/TvTest.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <utility>

#include "settings/vconf.h"

namespace support {

namespace {

/// An exception that is none of the standard library's.
struct Silent {};

using virtualtv::framework::LogLine;
using virtualtv::framework::Reply;
using virtualtv::seam::Fault;
using virtualtv::seam::Seam;

constexpr const char* untouched = "nobody wrote this";

/// Takes the records out of the words of a fault and leaves empty ones there. @return the records by output.
std::map<std::string, std::string> takeRecords(Lines& words) {
  std::map<std::string, std::string> taken;
  for (const auto& [output, none] : {std::pair("service", "{}"), std::pair("services", "[]")}) {
    const std::string start = std::string("out.") + output + "=";
    for (std::string& word : words) {
      if (!word.starts_with(start)) continue;
      taken[output] = word.substr(start.size());
      word = start + none;
    }
  }
  return taken;
}

/// While it lives, calls pass without trace and without faults.
class Unseen {
 public:
  Unseen() : faults_(Seam::instance().faults()) {
    Seam::instance().clearFaults();
    Seam::instance().record(false);
  }
  Unseen(const Unseen&) = delete;
  Unseen& operator=(const Unseen&) = delete;
  ~Unseen() {
    for (Fault& fault : faults_) Seam::instance().add(std::move(fault));
    Seam::instance().record(true);
  }

 private:
  std::vector<Fault> faults_;
};

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
  Seam::instance().reset();
  virtualtv::framework::setLogLevel(3);
  virtualtv::framework::setLogListener([this](const LogLine& line) {
    if (!breaking_.empty() && line.masked == breaking_) {
      breaking_.clear();
      if (saying_ == Saying::nothing) throw Silent();
      throw std::runtime_error("no log");
    }
    lines_.push_back(line);
  });
  storage_.emplace();
  tv_.emplace(*storage_);
  app_.emplace();
  Seam::instance().record(true);
}

TvTest::~TvTest() {
  app_.reset();
  tv_.reset();
  virtualtv::framework::setLogListener({});
  virtualtv::framework::setLogLevel(-1);
  Seam::instance().reset();
}

bool TvTest::open(const std::string& name, const std::string& app, const std::string& widget) {
  use(name);
  return app_->Open(name, app, widget, "");
}

bool TvTest::close(const std::string& name) {
  return app_->Close(name, kel::EmpType::type{});
}

Answer TvTest::ask(const std::string& command, const Lines& parameters) {
  std::array<std::string, 4> p;
  EXPECT_LE(parameters.size(), p.size());
  std::copy_n(parameters.begin(), std::min(parameters.size(), p.size()), p.begin());
  std::string ret = untouched;
  const bool accepted = app_->Execute(ret, engine_, command, p[0], p[1], p[2], p[3]);
  return answer(accepted, ret);
}

Answer TvTest::askWithParamList(const std::string& command, const Lines& parameters) {
  std::string ret = untouched;
  const bool accepted = app_->ExecuteWithParamList(ret, engine_, command, kel::ParamList(parameters));
  return answer(accepted, ret);
}

Lines TvTest::calls() {
  Lines lines;
  for (const virtualtv::seam::Call& call : Seam::instance().take()) lines.push_back(virtualtv::seam::line(call));
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
    lines.push_back(std::to_string(line.level) + " " + line.masked);
  }
  return lines;
}

void TvTest::forget() {
  Seam::instance().take();
  lines_.clear();
}

void TvTest::fault(const std::string& words) {
  Lines all = split(words);
  const std::map<std::string, std::string> records = takeRecords(all);
  Fault fault = virtualtv::seam::parseFault(all);
  for (const auto& [name, text] : records) fault.outputs[name] = text;
  Seam::instance().add(std::move(fault));
}

void TvTest::clearFaults() {
  Seam::instance().clearFaults();
}

bool TvTest::faultsHit() const {
  const std::vector<Fault>& faults = Seam::instance().faults();
  return std::all_of(faults.begin(), faults.end(), [](const Fault& fault) { return fault.hits > 0; });
}

std::optional<int> TvTest::intSetting(const std::string& key) {
  const Unseen unseen;
  int value = 0;
  if (vconf_get_int(key.c_str(), &value) != 0) return std::nullopt;
  return value;
}

std::optional<std::string> TvTest::textSetting(const std::string& key) {
  const Unseen unseen;
  const std::unique_ptr<char, decltype(&std::free)> value(vconf_get_str(key.c_str()), &std::free);
  if (value == nullptr) return std::nullopt;
  return value.get();
}

void TvTest::setSetting(const std::string& key, int value) {
  const Unseen unseen;
  ASSERT_EQ(vconf_set_int(key.c_str(), value), 0) << key;
}

void TvTest::setSetting(const std::string& key, const std::string& value) {
  const Unseen unseen;
  ASSERT_EQ(vconf_set_str(key.c_str(), value.c_str()), 0) << key;
}

void TvTest::setServices(const std::vector<virtualtv::Service>& services) {
  tv_->services().replaceAll({});  // of which nothing shall stay
  tv_->import(services, false);
}

void TvTest::showSource(virtualtv::WindowId window, int source) {
  tv_->adjust([=](virtualtv::TvState& state) {
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
