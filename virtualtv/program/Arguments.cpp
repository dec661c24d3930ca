// SPDX-License-Identifier: MIT
#include "program/Arguments.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iostream>
#include <iterator>
#include <stdexcept>
#include <utility>

#include "catalogue/Catalogue.h"
#include "json/Write.h"
#include "shell/Nearest.h"
#include "shell/Options.h"
#include "shell/Show.h"
#include "text/Numbers.h"

namespace virtualtv::program {

using namespace shell;

namespace {

/// Splits `--NAME=` with an empty value into two words. Otherwise the parser would take the next word as the value.
/// Words after a `--` stay unchanged.
void keepEmptyValues(std::vector<std::string>& arguments) {
  for (std::size_t at = 0; at < arguments.size() && arguments[at] != "--"; ++at) {
    if (!arguments[at].starts_with("--") || arguments[at].find('=') != arguments[at].size() - 1) continue;
    arguments[at].pop_back();
    arguments.insert(arguments.begin() + static_cast<std::ptrdiff_t>(at) + 1, "");
  }
}

/// Runs `body`, which throws std::invalid_argument for an invalid value.
template <typename Body>
std::string refusalOf(Body body) {
  try {
    body();
    return {};
  } catch (const std::invalid_argument& refusal) {
    return refusal.what();
  }
}

/// A validator that refuses the empty text.
CLI::Validator notEmpty(const std::string& wanted) {
  return {[wanted](const std::string& value) { return refusalOf([&] { refuseEmpty(value, wanted); }); }, ""};
}

/// Passes a value to an option. @throws CLI::ValidationError with the option's name if the value is invalid.
void takeValue(const Option& option, const std::string& value) {
  try {
    take(option, value);
  } catch (const std::invalid_argument& refusal) {
    throw CLI::ValidationError(refusal.what());
  }
}

/// Adds an option that a dot command has too.
void addOption(CLI::App& grammar, const Option& option) {
  const auto takeOne = [option](const std::string& value) { takeValue(option, value); };
  const auto takeAll = [takeOne](const Lines& values) { std::for_each(values.begin(), values.end(), takeOne); };
  CLI::Option* added = nullptr;
  if (option.value.empty()) {
    added = grammar.add_flag_callback(
        option.name, [takeOne] { takeOne(""); }, option.help);
  } else if (option.isSeveral) {
    added = grammar.add_option_function<Lines>(option.name, takeAll, option.help);
  } else {
    added = grammar.add_option_function<std::string>(option.name, takeOne, option.help);
  }
  if (!option.value.empty()) added->type_name(option.value);
  if (!option.needs.empty()) added->needs(grammar.get_option(option.needs));
  added->required(option.standsAlone());
}

void addOptions(CLI::App& grammar, const Options& options) {
  for (const Option& option : options) addOption(grammar, option);
}

std::string refusalOfCount(const std::string& value) {
  return refusalOf([&] { text::requireNumber<std::uint32_t>(value, {1, 1'000'000}); });
}

/// Adds the options of `serve` to a grammar, which writes them into `wishes`.
void addServeOptions(CLI::App& grammar, ServeWishes& wishes) {
  const auto add = [&grammar](const char* name, auto& value, const char* wanted, const char* help) {
    return grammar.add_option(name, value, help)->type_name(wanted);
  };
  add("--listen", wishes.listen, "ADDRESS:PORT",
      "where to listen, by default 127.0.0.1:8090; port 0 means any free port");
  add("--allow-origin", wishes.origins, "ORIGIN", "let pages of this origin use the whole set; :* means every port")
      ->allow_extra_args(false);
  add("--allow-host", wishes.hosts, "NAME", "accept another name of this machine, besides localhost and addresses")
      ->allow_extra_args(false);
  CLI::Option* token = add("--token", wishes.token, "FILE", "require of clients the token on its first line");
  token->check(notEmpty("a file"));
  grammar.add_flag("--fresh", wishes.fresh, "serve a built-in set in memory, which persists nothing");
  add("--record", wishes.record, "FILE", "record everything that is done as a new transcript, for 'emp-window check'")
      ->check(notEmpty("a file"));
  add("--files", wishes.files, "DIR", "let clients read and write files beneath it")
      ->check(notEmpty("a directory"))
      ->needs(token);
  grammar.add_flag("--until-eof", wishes.untilEof, "also end at the end of standard input");
  grammar.add_flag("--no-wait", wishes.noWait, "do not delay replies for latencies");
  add("--max-sessions", wishes.mostSessions, "N", "the most sessions at a time, 2000 by default")
      ->check(CLI::Validator(refusalOfCount, ""));
  add("--snapshot", wishes.snapshot, "FILE", "serve a set in memory that starts from this snapshot")
      ->check(notEmpty("a file"));
}

/// A filter that accepts all subcommands.
bool all(const CLI::App*) {
  return true;
}

[[noreturn]] void refuseArguments(const std::string& reason) {
  throw CLI::ValidationError(reason);
}

/// The position of the first word, from `from` on, that is neither an option nor the value of `--state` or `--log`.
std::size_t behindOptions(const std::vector<std::string>& arguments, std::size_t from) {
  while (from < arguments.size() && arguments[from].starts_with('-') && arguments[from] != "--") {
    const bool takesValue = arguments[from] == "--state" || arguments[from] == "--log";
    from += takesValue ? 2U : 1U;
  }
  return std::min(from, arguments.size());
}

constexpr const char* execNotes =
    R"(NAME and up to four ARGS are passed to the plug-in, even if they look like options;
options of exec come before NAME.

The exit status is 0 when the plug-in accepted the command, whatever it answered,
1 when it refused it, and 2 when the command could not be run. --raw prints only
the reply's value, and for a refused command only an error on standard error.

The set persists its state, but the engine exists for one command only: found
channels and the window selection are lost after it. To run several commands on
one engine, use a pipe:
  printf 'FindChannel 0 1\nGetChannel_Name 0\n' | emp-window
or a transcript, which 'emp-window check' runs on a fresh set.)";

/// The arguments' grammar.
struct Grammar {
  Grammar(Wishes& wished, const kel::CEmpAppBase& app)
      : wishes(wished), program("A TV set in software with the " + app.Name() + " plug-in on it", "emp-window") {
    program.set_version_flag("--version", "emp-window, plug-in " + app.Name() + " " + app.Id() + " " + app.Version());
    program.require_subcommand(0, 1);

    shell = program.add_subcommand("shell", "talk to the plug-in and the set; the default");
    exec = program.add_subcommand("exec", "run one plug-in command: exec [--raw] [--] NAME ARGS...");
    exec->add_flag("--raw", wishes.raw, "print the bare reply");
    exec->footer(execNotes);
    exec->allow_extras();  // so that `wantCommand` reports an unknown option
    check = program.add_subcommand("check", "run transcripts on a fresh set in memory and compare");
    check->add_option("FILE", wishes.check.files, "transcripts")->required()->check(notEmpty("a file"));
    check->add_flag("--update", wishes.check.update, "write the actual output into the transcripts");
    CLI::Option* junit = check->add_option("--junit", wishes.check.junit, "write a JUnit report");
    junit->type_name("FILE")->check(notEmpty("a file"));
    import = program.add_subcommand("import", "replace the set's services by those of a channel list");
    addOptions(*import, importOptions(wishes.list));
    exportList = program.add_subcommand("export", "print the set's services as a channel list");
    addOptions(*exportList, exportOptions(wishes.exported));
    scan = program.add_subcommand("scan", "find the services in recordings of broadcasts (MPEG transport streams)");
    addOptions(*scan, scanOptions(wishes.scan));
    serve = program.add_subcommand("serve", "let web applications and other programs use the set over the network");
    addServeOptions(*serve, wishes.serve);
    demo = program.add_subcommand(
        "demo", "serve a set with a recording that plays, made by ffmpeg; in memory unless --state says where");
    addServeOptions(*demo, wishes.serve);
    addSetOptions(program);
    for (CLI::App* part : program.get_subcommands({})) addSetOptions(*part);
  }

  /// Reads the arguments into the wishes.
  /// @throws CLI::ParseError for what can't be understood, and for `--help` and `--version`.
  void parse(std::vector<std::string> arguments) {
    const std::size_t subcommand = behindOptions(arguments, 0);
    if (subcommand < arguments.size()) wantSubcommand(arguments[subcommand]);
    if (subcommand < arguments.size() && arguments[subcommand] == "exec") takeCommand(arguments, subcommand + 1);
    keepEmptyValues(arguments);
    std::reverse(arguments.begin(), arguments.end());  // the parser expects this order
    program.parse(arguments);
    wantSetOptionsOnce();
    if (exec->parsed()) wantCommand();
    if (demo->parsed() && wishes.state.empty()) wishes.serve.fresh = true;
    if (check->parsed() && !wishes.state.empty()) {
      refuseArguments("check runs in memory, --state has no meaning for it");
    }
  }

  Task task() const {
    for (const auto& [part, task] :
         {std::pair(exec, Task::exec), std::pair(check, Task::check), std::pair(import, Task::import),
          std::pair(exportList, Task::exportList), std::pair(scan, Task::scan), std::pair(serve, Task::serve),
          std::pair(demo, Task::demo)}) {
      if (part->parsed()) return task;
    }
    return Task::shell;
  }

  Wishes& wishes;
  CLI::App program;
  CLI::App* shell = nullptr;
  CLI::App* exec = nullptr;
  CLI::App* check = nullptr;
  CLI::App* import = nullptr;
  CLI::App* exportList = nullptr;
  CLI::App* scan = nullptr;
  CLI::App* serve = nullptr;
  CLI::App* demo = nullptr;

 private:
  /// Adds the options that may precede or follow the subcommand.
  void addSetOptions(CLI::App& part) {
    CLI::Option* state =
        part.add_option("--state", wishes.state, "the directory for the set's state")->type_name("DIR");
    state->check(notEmpty("a directory"))->take_last();  // a second --state is reported below
    CLI::Option* log =
        part.add_option("--log", wishes.logLevel, "print the plug-in's log messages up to a level on standard error");
    const auto refusalOfLevel = [](const std::string& value) {
      return refusalOf([&] { text::requireNumber<int>(value, logLevels); });
    };
    log->type_name("LEVEL")->check(CLI::Validator(refusalOfLevel, ""))->take_last();
    if (&part != check) return;
    state->group("");  // hides it from the help
    log->group("");
  }

  void wantSetOptionsOnce() const {
    for (const char* name : {"--state", "--log"}) {
      std::size_t count = program.count(name);
      for (const CLI::App* parsed : program.get_subcommands()) count += parsed->count(name);
      if (count > 1) refuseArguments(std::string(name) + " stands twice");
    }
  }

  void wantSubcommand(const std::string& word) const {
    Lines names;
    for (const CLI::App* part : program.get_subcommands(all)) names.push_back(part->get_name());
    if (std::find(names.begin(), names.end(), word) != names.end()) return;
    std::string meant = "there are " + names.front();
    for (auto name = names.begin() + 1; name != names.end(); ++name) {
      meant += (name + 1 == names.end() ? " and " : ", ") + *name;
    }
    if (const Lines near = nearest(word, names); near.size() == 1) {
      meant = "did you mean 'emp-window " + near[0] + "'?";
    } else if (const Lines command = nearest(word, commandNames()); command.size() == 1) {
      meant = "did you mean 'emp-window exec " + command[0] + "'?";
    }
    refuseArguments("there is no subcommand '" + word + "'; " + meant);
  }

  /// Removes the plug-in's command from the arguments of `exec`, which start at `from`. Everything from the command's
  /// name or after a `--` belongs to it, even words that look like options.
  void takeCommand(std::vector<std::string>& arguments, std::size_t from) {
    const auto end = arguments.begin() + static_cast<std::ptrdiff_t>(behindOptions(arguments, from));
    wishes.marked = end != arguments.end() && *end == "--";
    wishes.command.assign(wishes.marked ? std::next(end) : end, arguments.end());
    arguments.erase(end, arguments.end());
  }

  void wantCommand() const {
    const std::vector<std::string> words = exec->remaining();
    if (!words.empty()) refuseArguments("exec: there is no option " + words.front());
    if (wishes.command.empty()) refuseArguments("exec: the name of a command is wanted");
  }
};

Json::Value described(const CLI::Option& option) {
  Json::Value result(Json::objectValue);
  result["name"] = option.get_single_name();
  result["names"] = Json::Value(Json::arrayValue);
  for (const std::string& name : option.get_snames()) result["names"].append("-" + name);
  for (const std::string& name : option.get_lnames()) result["names"].append("--" + name);
  result["help"] = option.get_description();
  result["value"] = option.get_expected_max() > 0 && !option.get_positional() ? option.get_type_name() : "";
  result["repeats"] = option.get_items_expected_max() > 1;
  result["needs"] = Json::Value(Json::arrayValue);
  for (const CLI::Option* needed : option.get_needs()) result["needs"].append("--" + needed->get_single_name());
  return result;
}

/// A part of the grammar as JSON, with the content of its help.
Json::Value described(const CLI::App& part) {
  Json::Value result(Json::objectValue);
  result["name"] = part.get_name();
  result["help"] = part.get_description();
  result["notes"] = part.get_footer();
  result["options"] = result["positionals"] = result["subcommands"] = Json::Value(Json::arrayValue);
  for (const CLI::Option* option : part.get_options()) {
    if (option->get_group().empty()) continue;
    result[option->get_positional() ? "positionals" : "options"].append(described(*option));
  }
  for (const CLI::App* subcommand : part.get_subcommands(all)) {
    result["subcommands"].append(described(*subcommand));
  }
  return result;
}

}  // namespace

std::optional<Wishes> readArguments(std::vector<std::string> arguments, const kel::CEmpAppBase& app) {
  Wishes wishes;
  Grammar grammar(wishes, app);
  if (arguments.size() == 1 && arguments.front() == "--grammar") {
    std::cout << json::write(described(grammar.program)) << "\n";
    return std::nullopt;
  }
  try {
    grammar.parse(std::move(arguments));
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() != 0) throw std::invalid_argument(error.what());
    grammar.program.exit(error);  // prints the help or the version
    return std::nullopt;
  }
  wishes.task = grammar.task();
  return wishes;
}

}  // namespace virtualtv::program
