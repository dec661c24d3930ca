// SPDX-License-Identifier: MIT
#include "window/cases/Walker.h"

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <set>
#include <tuple>
#include <utility>

#include "kel/StringToNumber.h"

namespace cases {

namespace {

using virtualtv::Catalogue;
using virtualtv::CatalogueCommand;

/// True when the text parses. Where parsing can't fail, the empty text and garbage read as 0; this counts them as not
/// parsed.
bool parses(kel::Parse parse, const std::string& text) {
  const char* const start = text.c_str();
  char* end = nullptr;
  int number = 0;
  switch (parse) {
    case kel::Parse::num:
      return kel::StringToNumber(text, number);
    case kel::Parse::dec:
      std::strtol(start, &end, 10);
      return end != start;
    case kel::Parse::u64:
      std::strtoull(start, &end, 0);
      return end != start;
    case kel::Parse::none:
    case kel::Parse::text:
      return true;
  }
  return false;
}

bool fails(const CatalogueCommand& told, int code) {
  return std::any_of(told.failures.begin(), told.failures.end(),
                     [&](const auto& failure) { return failure.code == code; });
}

bool alwaysFails(const CatalogueCommand& told) {
  return told.answerValues == "none";
}

/// True where the catalogue has a preset and its help does not say that it is never returned.
bool answersPreset(const CatalogueCommand& told) {
  return told.preset && told.presetMeans.find("ever returned") == std::string::npos;
}

std::string textAt(const Lines& words, std::size_t parameter) {
  return parameter + 1 < words.size() ? words[parameter + 1] : "";
}

/// The number after "reads as"; null where the catalogue says something else about a text that does not parse.
std::optional<std::string> readsAs(const CatalogueCommand::Parameter& parameter) {
  constexpr std::string_view mark = "reads as ";
  if (!parameter.unparsed.starts_with(mark)) return std::nullopt;
  const std::string rest = parameter.unparsed.substr(mark.size());
  return rest.substr(0, rest.find_first_not_of("-0123456789"));
}

/// One row: what its cases show, and the errors in them.
class Row {
 public:
  Row(const kel::Command& row, const CatalogueCommand& told, const Results& results, Runner& runner)
      : row_(row), told_(told), results_(results), runner_(runner) {}

  void show(const Case& shown) {
    const Seen seen = runner_.run(shown);
    complaints_.insert(complaints_.end(), seen.complaints.begin(), seen.complaints.end());
    const std::string reason = flaw(shown, seen);
    if (!reason.empty()) complaints_.push_back(shown.place() + ": '" + shown.title + "': " + reason);
    shown_.insert({shown.kind, shown.parameter, shown.result});
    const auto number = seen.number();
    if (!number) return;
    replied_.insert(*number);
    if (shown.kind != Case::Kind::success) failed_.insert(*number);
  }

  void demand() {
    if (!alwaysFails(told_)) demand(Case::Kind::success, "success");
    for (std::size_t at = 0; at < told_.parameters.size(); ++at) {
      if (row_.parameters[at].parse == kel::Parse::text) continue;
      const std::string& name = told_.parameters[at].name;
      demand(Case::Kind::unparsed, "unparsed " + name, name);
      demand(Case::Kind::missing, "missing " + name, name);
    }
    for (const int number : results_.numbers) demand(Case::Kind::result, std::to_string(number), "", number);
    if (results_.others && !showsAnotherResult()) lacks("any other number");
    for (const auto& failure : told_.failures) {
      if (failed_.count(failure.code) == 0) lacks(std::to_string(failure.code) + " as the reply to a failure");
    }
    if (answersPreset(told_) && replied_.count(*told_.preset) == 0) {
      lacks("its preset as the reply: " + std::to_string(*told_.preset));
    }
  }

  const Lines& complaints() const { return complaints_; }

 private:
  void lacks(const std::string& what) { complaints_.push_back(told_.name + " has no case: " + what); }

  void demand(Case::Kind kind, const std::string& what, const std::string& parameter = "", int result = 0) {
    if (shown_.count({kind, parameter, result}) == 0) lacks(what);
  }

  bool showsAnotherResult() const {
    return std::any_of(shown_.begin(), shown_.end(), [&](const auto& shown) {
      const auto& [kind, parameter, result] = shown;
      return kind == Case::Kind::result && results_.numbers.count(result) == 0;
    });
  }

  /// Why a case does not show what its title says; empty when it does.
  std::string flaw(const Case& shown, const Seen& seen) {
    if (!seen.finish || seen.reply.empty()) return "the command did not finish";
    std::string reason = flawOfTexts(shown, seen.words);
    if (!reason.empty()) return reason;
    switch (shown.kind) {
      case Case::Kind::success:
        return flawOfSuccess(seen);
      case Case::Kind::result:
        return flawOfResult(shown.result, seen);
      case Case::Kind::unparsed:
      case Case::Kind::missing:
        return flawOfText(shown, seen);
    }
    return "a case of no kind";
  }

  /// Only the parameter that the case names may fail to parse. An optional parameter may be left out.
  std::string flawOfTexts(const Case& shown, const Lines& words) const {
    bool found = shown.parameter.empty();
    for (std::size_t at = 0; at < told_.parameters.size(); ++at) {
      const std::string& name = told_.parameters[at].name;
      const std::string text = textAt(words, at);
      const bool named = name == shown.parameter;
      found = found || named;
      if (named && shown.kind == Case::Kind::missing && !text.empty()) return name + " is '" + text + "'";
      if (named && shown.kind == Case::Kind::unparsed && text.empty()) return name + " is left out";
      const bool parsed = parses(row_.parameters[at].parse, text);
      if (named && parsed) return "'" + text + "' parses as " + name;
      const bool leftOut = text.empty() && !row_.parameters[at].required;
      if (!named && !parsed && !leftOut) return "'" + text + "' does not parse as " + name;
    }
    return found ? "" : "the command has no parameter " + shown.parameter;
  }

  std::string flawOfSuccess(const Seen& seen) const {
    if (alwaysFails(told_)) return "the catalogue says that the command always fails";
    const auto number = seen.number();
    const bool good = told_.answerKind == "code" ? number == 1 : !number || !fails(told_, *number);
    if (!good || !replies(seen, told_.reply)) return "'" + seen.reply.front() + "' is no success";
    const bool failed = results_.others ? seen.finish != 1 : results_.numbers.count(*seen.finish) > 0;
    return failed ? "the operation came to " + std::to_string(*seen.finish) : "";
  }

  std::string flawOfResult(int result, const Seen& seen) const {
    const bool known = results_.numbers.count(result) > 0 || (results_.others && result != 1);
    if (!known) return "the operation has no such result";
    if (seen.finish != result) return "the operation came to " + std::to_string(*seen.finish);
    const auto number = seen.number();
    if (!number) return replies(seen, told_.reply) ? "" : "'" + seen.reply.front() + "' is no " + told_.reply;
    const bool preset = answersPreset(told_) && number == told_.preset;
    if (preset || fails(told_, *number) || (results_.others && number == result)) return "";
    return "the catalogue tells of no failure " + std::to_string(*number);
  }

  /// A text that does not parse must be refused without a call to the set, or read as the number in the catalogue.
  std::string flawOfText(const Case& shown, const Seen& seen) {
    const std::size_t at = position(shown.parameter);
    const auto number = seen.number();
    const bool refusal = number ? fails(told_, *number) : seen.reply.front() == told_.reply;
    const bool refused = refusal && seen.calls.empty();
    const std::optional<std::string> readAs = readsAs(told_.parameters[at]);
    if (!readAs || row_.parameters[at].required) return refused ? "" : "the command did not refuse it";
    if (refused && shown.kind == Case::Kind::missing) return "";
    return seen.same(runner_.runWith(shown, at, *readAs)) ? "" : "it did not read as " + *readAs;
  }

  std::size_t position(const std::string& parameter) const {
    const auto found = std::find_if(told_.parameters.begin(), told_.parameters.end(),
                                    [&](const auto& candidate) { return candidate.name == parameter; });
    return static_cast<std::size_t>(found - told_.parameters.begin());
  }

  static bool replies(const Seen& seen, const std::string& kind) {
    return seen.reply.front() == kind || seen.reply.front().starts_with(kind + " ");
  }

  const kel::Command& row_;
  const CatalogueCommand& told_;
  const Results& results_;
  Runner& runner_;
  Lines complaints_;
  std::set<std::tuple<Case::Kind, std::string, int>> shown_;
  std::set<int> replied_;
  std::set<int> failed_;  ///< those replied in cases other than successes
};

}  // namespace

Walker::Walker(const Catalogue& catalogue, std::map<std::string, Results> results)
    : catalogue_(catalogue), results_(std::move(results)) {}

Lines Walker::walk(const kel::Command& row, const std::vector<Case>& cases) {
  const std::string name(row.name);
  const CatalogueCommand* const told = catalogue_.find(name);
  const auto results = results_.find(name);
  if (told == nullptr) return {"the catalogue has no command " + name};
  if (results == results_.end()) return {"the table of results has no command " + name};
  Row walked(row, *told, results->second, runner_);
  for (const Case& shown : cases) {
    if (shown.command == name) walked.show(shown);
  }
  walked.demand();
  return walked.complaints();
}

Lines Walker::strays(const std::vector<Case>& cases) const {
  Lines all;
  for (const Case& shown : cases) {
    if (kel::FindCommand(shown.command) == nullptr)
      all.push_back(shown.place() + ": there is no command " + shown.command);
  }
  for (const auto& [name, results] : results_) {
    if (kel::FindCommand(name) == nullptr) all.push_back("the table of results: there is no command " + name);
  }
  return all;
}

}  // namespace cases
