// SPDX-License-Identifier: MIT
// The commands for the set. To add one, write its function, add its row to the table at the end, and describe it in
// docs/virtual-tv.md.
#include "shell/DotCommands.h"

#include <algorithm>
#include <array>
#include <optional>
#include <stdexcept>

#include "set/Knobs.h"
#include "set/SnapshotJson.h"
#include "shell/Help.h"
#include "shell/ListWishes.h"
#include "shell/Scan.h"
#include "shell/ServiceTable.h"
#include "shell/Session.h"
#include "shell/Show.h"
#include "text/Numbers.h"

namespace virtualtv::shell {

namespace {

using Words = std::vector<std::string>;

[[noreturn]] void refuse(const std::string& reason) {
  throw std::invalid_argument(reason);
}

void wantCount(const Words& words, std::size_t least, std::size_t most, const char* usage) {
  if (words.size() < least || words.size() > most) refuse(std::string("usage: ") + usage);
}

bool onOrOff(const std::string& word, const char* usage) {
  if (word != "on" && word != "off") refuse(std::string("usage: ") + usage);
  return word == "on";
}

/// A transcript must not name operations that do not exist, even if it expects the error.
void noteIfUnknown(Session& session, const std::string& operation) {
  if (seam::findOperation(operation) == nullptr) session.note("unknown operation " + operation);
}

void noteKnob(Session& session, const std::string& knob) {
  constexpr std::string_view latency = "latency.";
  if (knob.starts_with(latency)) noteIfUnknown(session, knob.substr(latency.size()));
}

// Faults and the printing of calls.

Lines listFaults(Session& session) {
  Lines lines;
  for (const seam::Fault& fault : session.device().faults()) {
    lines.push_back("fault " + std::to_string(fault.id) + ": " + oneLine(session.describe(fault)) +
                    " (hits: " + std::to_string(fault.hits) + ")");
  }
  if (lines.empty()) lines.emplace_back("no faults");
  return lines;
}

Lines clearFaults(Session& session, const Words& words) {
  wantCount(words, 1, 2, ".fault clear [NUMBER]");
  const bool all = words.size() == 1;
  const auto id = all ? std::nullopt : text::numberIn<std::uint64_t>(words[1]);
  if (!all && !id) refuse("the number of a fault is wanted, not '" + words[1] + "'");
  const std::vector<seam::Fault>& faults = session.device().faults();
  const auto isMeant = [&](const seam::Fault& fault) { return all || fault.id == id; };
  if (!all && std::none_of(faults.begin(), faults.end(), isMeant)) refuse("there is no fault " + words[1]);
  session.noteIdleFaults(isMeant);
  if (id) {
    session.device().removeFault(*id);
  } else {
    session.device().clearFaults();
  }
  return {};
}

Lines fault(Session& session, const Words& words) {
  if (words.empty()) return listFaults(session);
  if (words[0] == "clear") return clearFaults(session, words);
  noteIfUnknown(session, words[0]);
  seam::Fault fault = seam::parseFault(words);
  fault.input = session.input();
  if (!fault.engine.empty()) fault.engine = session.client().key(fault.engine);
  session.device().addFault(std::move(fault));
  return {};
}

Lines trace(Session& session, const Words& words) {
  constexpr const char* usage = ".trace on|off";
  wantCount(words, 1, 1, usage);
  session.trace = onOrOff(words[0], usage);
  return {};
}

Lines log(Session& session, const Words& words) {
  constexpr const char* usage = ".log on|off [LEVEL]";
  wantCount(words, 1, 2, usage);
  const bool on = onOrOff(words[0], usage);
  if (!on) wantCount(words, 1, 1, usage);
  const int level = words.size() == 2 ? text::requireNumber<int>(words[1], logLevels) : everyLevel;
  session.logLevel = on ? level : -1;
  return {};
}

Lines why(Session& session, const Words& words) {
  wantCount(words, 0, 0, ".why");
  if (session.lastCommand().empty()) {
    refuse(session.client().lastCommand() == 0 ? "no command has run yet" : "the last command is not held any more");
  }
  const device::Deed& deed = session.lastDeed();
  Lines lines{"command " + oneLine(deed.engine) + " " + std::to_string(deed.command) + ": " +
              oneLine(session.lastCommand())};
  for (const Lines& more : {callLines(deed), keyLines(deed), logLines(deed, everyLevel)}) {
    lines.insert(lines.end(), more.begin(), more.end());
  }
  return lines;
}

// The set.

std::string knobLine(Session& session, const std::string& name) {
  return name + " = " + getKnob(session.device().tv(), name);
}

/// The knobs of a group that have a value; none when there is no such group.
Lines groupLines(Session& session, const std::string& group) {
  Lines lines;
  for (const std::string& name : knobsOf(session.device().tv(), group)) {
    const std::string line = knobLine(session, name);
    if (!line.ends_with(" = unset")) lines.push_back(line);
  }
  return lines;
}

Lines get(Session& session, const Words& words) {
  wantCount(words, 0, 1, ".get [NAME]");
  if (words.size() == 1) {
    noteKnob(session, words[0]);
    Lines group = groupLines(session, words[0]);
    return group.empty() ? Lines{knobLine(session, words[0])} : group;
  }
  Lines lines;
  for (const std::string& name : knobNames(session.device().tv())) lines.push_back(knobLine(session, name));
  return lines;
}

Lines set(Session& session, const Words& words) {
  wantCount(words, 2, 2, ".set NAME VALUE");
  noteKnob(session, words[0]);
  session.device().setKnob(words[0], words[1]);
  return {};
}

Setting settingFrom(const Words& words) {
  if (words[2] == "str") return words[3];
  if (words[2] == "int") return text::requireNumber<int>(words[3]);
  refuse("'" + words[2] + "': int or str is wanted");
}

Lines listSettings(const SettingsStore& settings) {
  Lines lines;
  for (const auto& [key, value] : settings.list()) lines.push_back("key " + oneLine(key) + " " + show(value));
  if (lines.empty()) lines.emplace_back("no keys");
  return lines;
}

Lines vconf(Session& session, const Words& words) {
  device::Device& device = session.device();
  const SettingsStore& settings = device.tv().settings();
  if (words.empty()) return listSettings(settings);
  const std::string& key = words.size() > 1 ? words[1] : words[0];
  if (words[0] == "get" && words.size() == 2) {
    const std::optional<Setting> value = settings.get(key);
    return {value ? show(*value) : "unset"};
  }
  if (words[0] == "set" && words.size() == 4) {
    device.setSetting(key, settingFrom(words));
    return {};
  }
  if (words[0] == "unset" && words.size() == 2) {
    if (!device.removeSetting(key)) refuse("the key " + key + " is not set");
    return {};
  }
  refuse("usage: .vconf [get KEY | set KEY int NUMBER | set KEY str TEXT | unset KEY]");
}

Lines import(Session& session, const Words& words) {
  const ImportWishes wishes = importWishes(words);
  const NamedList list = session.readList(wishes.file);
  const ImportReport report = session.device().import(list.name, list.content, wishes.options);
  Lines lines = report.problemLines();
  lines.push_back(report.summary());
  const std::string error = report.error();
  if (!error.empty()) lines.push_back(session.errorLine(error));
  return lines;
}

Lines exportList(Session& session, const Words& words) {
  const ExportWishes wishes = exportWishes(words);
  const ExportReport report = exportServices(session.device().tv().services(), *wishes.format);
  if (!report.error().empty()) refuse(report.error());
  session.save(wishes.file, report.exported.content);
  Lines lines{report.summary()};
  if (!report.losses().empty()) lines.push_back(report.losses());
  return lines;
}

Lines scan(Session& session, const Words& words) {
  const ScanWishes wishes = scanWishes(words);
  const broadcast::Scan found =
      scanFiles(wishes.files, [&](const std::string& file, const TakeBlock& take) { session.readBlocks(file, take); });
  Lines lines = scanLines(found, wishes);
  if (found.services.empty()) lines.push_back(session.errorLine(noServiceIn(wishes.files)));
  if (!wishes.import || found.services.empty()) return lines;
  lines.push_back(session.device().import(wishes.files, found, wishes.add, session.recordings(wishes.files)).summary());
  return lines;
}

Lines service(Session& session, const Words& words) {
  wantCount(words, 2, 3, ".service ID rename|renumber|move|hide|lock|remove [VALUE]");
  session.device().editService(words[0], words[1], words.size() == 3 ? words[2] : "");
  return {};
}

Lines services(Session& session, const Words& words) {
  wantCount(words, 0, 1, ".services [COUNT | TEXT]");
  return serviceTable(session.device().tv().services(), words.empty() ? "" : words[0]);
}

Lines restart(Session& session, const Words& words) {
  wantCount(words, 0, 0, ".restart");
  session.device().closeEngines("restart");  // closing may still hit a fault
  session.noteIdleFaults();
  session.device().restart();
  return {};
}

Lines reset(Session& session, const Words& words) {
  wantCount(words, 0, 0, ".reset");
  session.device().closeEngines("reset");
  session.noteIdleFaults();
  session.reset();
  return {};
}

Lines snapshot(Session& session, const Words& words) {
  wantCount(words, 1, 1, ".snapshot FILE");
  session.save(words[0], writeSnapshot(session.device().tv().snapshot()));
  return {};
}

Snapshot snapshotOf(Session& session, const std::string& file) {
  const std::string content = session.read(file);
  try {
    return readSnapshot(content);
  } catch (const std::invalid_argument& error) {
    refuse(file + ": " + error.what());
  }
}

Lines restore(Session& session, const Words& words) {
  wantCount(words, 1, 1, ".restore FILE");
  const Snapshot wanted = snapshotOf(session, words[0]);
  session.device().closeEngines("restore");  // closing may still hit a fault
  session.noteIdleFaults();
  session.device().restore(wanted);
  return {};
}

// Engines.

Lines engine(Session& session, const Words& words) {
  wantCount(words, 0, 1, ".engine [NAME]");
  device::Session& client = session.client();
  if (!words.empty()) {
    if (words[0].empty()) refuse("an engine needs a name");
    client.use(words[0]);
    return {};
  }
  Lines lines;
  for (const std::string& name : client.openEngines()) {
    lines.push_back("engine " + oneLine(name) + (name == client.engine() ? " (in use)" : ""));
  }
  if (lines.empty()) lines.emplace_back("no engine is open");
  return lines;
}

Lines close(Session& session, const Words& words) {
  wantCount(words, 0, 1, ".close [NAME]");
  const std::string name = words.empty() ? session.client().engine() : words[0];
  if (!session.client().close(name)) refuse("the engine '" + name + "' is not open");
  return {};
}

Lines reopen(Session& session, const Words& words) {
  wantCount(words, 0, 0, ".reopen");
  session.client().reopen();
  return {};
}

Lines app(Session& session, const Words& words) {
  wantCount(words, 1, 2, ".app APPID [WIDGETID]");
  session.client().setApplication({words[0], words.size() == 2 ? words[1] : ""});
  return {};
}

// Others.

Lines source(Session& session, const Words& words) {
  wantCount(words, 1, 1, ".source FILE");
  return session.source(words[0]);
}

Lines recorded(Session& session, const Words& words) {
  wantCount(words, 0, 0, ".recorded");
  session.setRecorded();
  return {};
}

Lines help(Session& session, const Words& words) {
  wantCount(words, 0, 1, ".help [TOPIC]");
  return helpOn(words.empty() ? "" : words[0], session.columns);
}

Lines quit(Session& session, const Words& words) {
  wantCount(words, 0, 0, ".quit");
  session.ended = true;
  return {};
}

constexpr std::array commands{
    DotCommand{".app", "APPID [WIDGETID]", "set the application that calls the engine in use", app},
    DotCommand{".close", "[NAME]",
               "close an engine; without a name, the one in use. The next command on it opens a new one", close, true},
    DotCommand{".engine", "[NAME]", "open an engine or switch to it; without a name, list the open ones", engine, true},
    DotCommand{".export", "FILE [--format NAME]",
               "write the services into a file as a channel list, of the format json, vdr, dvbv5 or m3u", exportList},
    DotCommand{".fault",
               "[OPERATION [nth=N] [times=N|always] [window=W] [engine=NAME] [result=R] [out.NAME=VALUE ...] | clear "
               "[NUMBER]]",
               "make calls to the set fail; without words, list the faults; see '.help faults'", fault},
    DotCommand{".get", "[NAME]", "print a knob, a group of knobs such as main or service.ID, or all knobs", get},
    DotCommand{".help", "[TOPIC]",
               "print help; topics are commands, operations, knobs, faults and the name of each command", help},
    DotCommand{".import", "FILE [--add] [--format NAME] [--encoding NAME]",
               "replace the services by those of a channel list, or add to them", import},
    DotCommand{".log", "on|off [LEVEL]", "print the plug-in's log messages, up to a level, after each reply", log},
    DotCommand{".quit", "", "end the shell, or the file that .source runs", quit},
    DotCommand{".recorded", "",
               "first in a transcript: marks a recording of serve, in which faults that are never hit are no failure",
               recorded, false, false},
    DotCommand{".reopen", "", "close the engine in use and open a new one", reopen, true},
    DotCommand{".reset", "", "go back to the built-in set and a fresh session", reset, true},
    DotCommand{".restart", "", "switch the set off and on; removes faults and latencies", restart, true},
    DotCommand{".restore", "FILE", "restore a snapshot, as if the set had been switched on with it", restore, true},
    DotCommand{".scan", "FILE... [--json] [--import [--add]]",
               "find the services in recordings of broadcasts; optionally import them, or add them", scan},
    DotCommand{".service", "ID rename NAME|renumber NUMBER|move NUMBER|hide on|off|lock on|off|remove",
               "edit a service of the list; ID is a service id, or #KEY as .services shows it", service},
    DotCommand{".services", "[COUNT | TEXT]", "list all services, the first COUNT, or those whose name contains TEXT",
               services},
    DotCommand{".set", "NAME VALUE", "set a knob", set},
    DotCommand{".snapshot", "FILE", "write everything that the set persists into a file", snapshot},
    DotCommand{".source", "FILE", "run the '>' lines of a file", source},
    DotCommand{".trace", "on|off", "print the calls to the set after each reply", trace},
    DotCommand{".vconf", "[get KEY | set KEY int|str VALUE | unset KEY]",
               "read, write or remove a settings key; without words, list them", vconf},
    DotCommand{".why", "", "print the calls, changed keys and log messages of the last plug-in command", why},
};

}  // namespace

std::span<const DotCommand> dotCommands() {
  return commands;
}

const DotCommand& dotCommand(const std::string& name) {
  for (const DotCommand& command : commands) {
    if (command.name == name) return command;
  }
  refuse("there is no command '" + name + "'; '.help' lists them");
}

}  // namespace virtualtv::shell
