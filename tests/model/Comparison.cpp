#include "Comparison.h"

#include <algorithm>

#include "EmpAppWindow.h"
#include "framework/Reply.h"
#include "seam/Seam.h"
#include "services/ServiceStore.h"
#include "set/Tv.h"
#include "shell/Session.h"
#include "store/SettingsStore.h"
#include "support/model/Tracks.h"

namespace comparison {

namespace {

using model::Service;
using model::Set;
using model::Setting;
using virtualtv::framework::Reply;
using virtualtv::shell::Lines;
using virtualtv::shell::Session;

// What is seen of the two, in the same words.

struct Show {
  std::string operator()(int number) const { return shown({Reply::Kind::integer, number, {}, {}}); }
  std::string operator()(const std::string& text) const { return shown({Reply::Kind::ascii, 0, text, {}}); }
  std::string operator()(const std::u16string& units) const { return shown({Reply::Kind::unicode, 0, {}, units}); }
  std::string operator()(model::Nothing) const { return "empty"; }

  static std::string shown(const Reply& reply) { return virtualtv::framework::show(reply); }
};

std::string joined(const Lines& lines) {
  std::string text;
  for (const std::string& line : lines) text += (text.empty() ? "" : "\n") + line;
  return text;
}

std::string shown(const Setting& setting) {
  const int* const number = std::get_if<int>(&setting);
  return number != nullptr ? std::to_string(*number) : '"' + std::get<std::string>(setting) + '"';
}

std::string shown(const std::map<std::string, Setting>& settings) {
  std::string text;
  for (const auto& [key, value] : settings) text += "  " + key + " = " + shown(value) + "\n";
  return text;
}

std::string shown(const virtualtv::Rect& rect) {
  return std::to_string(rect.x) + "," + std::to_string(rect.y) + "," + std::to_string(rect.width) + "," +
         std::to_string(rect.height);
}

std::string shown(const virtualtv::Plane& plane) {
  return "\n    at " + shown(plane.rect) + ", crop " +
         (plane.crop ? shown(plane.crop->crop) + " at " + shown(plane.crop->display) : "none") + ", order " +
         std::to_string(plane.order) + (plane.muted ? ", hidden" : ", not hidden");
}

std::string shown(const virtualtv::TracksInUse& inUse) {
  return ", audio " + std::to_string(inUse.audio) + ", subtitle " + std::to_string(inUse.subtitle);
}

std::string marked(bool readable) {
  return readable ? "" : "!";
}

std::string shown(const std::vector<model::AudioTrack>& tracks) {
  std::string text;
  for (const model::AudioTrack& track : tracks) {
    text += " " + marked(track.readable) + std::to_string(track.pid);
    for (const int part : {track.lang, track.decodeType, track.audioMode, track.audioType}) {
      text += ":" + std::to_string(part);
    }
  }
  return text;
}

std::string shown(const std::vector<model::SubtitleTrack>& tracks) {
  std::string text;
  for (const model::SubtitleTrack& track : tracks) {
    text += " " + marked(track.readable) + std::to_string(track.pid) + ":" + std::to_string(track.lang) + ":" +
            std::to_string(track.type);
  }
  return text;
}

std::string shown(const Service& service) {
  std::string text =
      "    audio" + shown(service.audio) + "\n    subtitles" + shown(service.subtitles) + "\n    favourites";
  for (const auto& [group, member] : service.favourites) {
    text += " " + std::to_string(group) + "=" + (member ? "1" : "0");
  }
  return text + "\n";
}

std::string shown(const virtualtv::TvState& state) {
  std::string text = "  isp " + std::to_string(state.isp.present) + std::to_string(state.isp.shown) +
                     shown(state.isp.inUse) + "\n    audio" + shown(state.isp.audio) + "\n    subtitles" +
                     shown(state.isp.subtitles) + "\n  region " + std::to_string(state.region) + ", country " +
                     std::to_string(state.country) + ", start " + std::to_string(state.startServiceId) + ", fade " +
                     std::to_string(state.fade) + "\n  unplugged:";
  for (const virtualtv::Input& input : state.inputs) text += input.plugged ? "" : " " + std::to_string(input.source);
  for (const virtualtv::WindowId id : virtualtv::windowIds) {
    const virtualtv::WindowState& window = state[id];
    text += std::string("\n  ") + nameOf(id) + ": state " + std::to_string(window.sourceState) + ", source " +
            std::to_string(window.source) + ", before " + std::to_string(window.previousSource) + ", mode " +
            std::to_string(window.mode.antenna) + "," + std::to_string(window.mode.service) + ", service #" +
            std::to_string(window.service) + shown(window.inUse) + ", before #" +
            std::to_string(window.previousService) + ", resolution " +
            (window.resolution ? std::to_string(*window.resolution) : "auto") + shown(window.plane);
  }
  return text + "\n";
}

std::string written(const std::vector<std::pair<std::string, Setting>>& writes) {
  std::string text;
  for (const auto& [key, value] : writes) {
    const char* const type = std::holds_alternative<int>(value) ? "int" : "str";
    text += std::string("  vconf_set_") + type + "(key=\"" + key + "\", value=" + shown(value) + ") -> 0\n";
  }
  return text;
}

std::string written(const std::vector<virtualtv::seam::Call>& calls) {
  std::string text;
  for (const virtualtv::seam::Call& call : calls) {
    const std::string line = virtualtv::seam::line(call);
    if (line.starts_with("vconf_set_")) text += "  " + line + "\n";
  }
  return text;
}

/// Whether a line is about what services have beside their fields.
bool changesServices(const std::string& line) {
  if (line.starts_with("UpdateFavorites")) return true;
  if (!line.starts_with(".set service.")) return false;
  return line.find(".audio ") != std::string::npos || line.find(".subtitles ") != std::string::npos ||
         line.find(".favourites ") != std::string::npos;
}

Set copyOf(virtualtv::Tv& tv) {
  Set set;
  set.state = tv.state();
  set.settings = tv.settings().list();
  for (const model::ServiceKey key : tv.services().keys()) set.services[key] = *tv.services().read(key);
  return set;
}

/// The plug-in on a set of its own, and the model of both.
class Pair {
 public:
  Pair() { world_.set = copyOf(session_.rig().tv()); }

  model::World& world() { return world_; }

  /// Runs a line on both. @return what differs, empty when nothing does.
  std::string run(const std::string& line, std::string& reply) {
    const model::Words words = virtualtv::shell::splitWords(line);
    const bool command = line.front() != '.';
    const auto expected = model::run(world_, words);
    const std::string actual = joined(session_.run(line));
    reply = expected ? std::visit(Show(), *expected) : std::string();
    std::string details = difference("reply", reply + "\n", actual + "\n");
    if (command) {
      details += difference("written keys", written(world_.set.written), written(session_.lastDeed().calls));
    }
    virtualtv::Tv& tv = session_.rig().tv();
    virtualtv::TvState state = tv.state();
    state.clock = world_.set.state.clock;
    if (state != world_.set.state) details += difference("state", shown(world_.set.state), shown(state));
    const auto settings = tv.settings().list();
    if (settings != world_.set.settings) details += difference("keys", shown(world_.set.settings), shown(settings));
    if (changesServices(line)) details += differingServices();
    return details;
  }

  /// Holds the tracks and favourites of all services against each other; it takes too long to do it after each line.
  /// @return what differs. Fields are left to those who ask for them.
  std::string differingServices() {
    virtualtv::ServiceStore& services = session_.rig().tv().services();
    std::string details;
    for (const auto& [key, expected] : world_.set.services) {
      const Service actual = services.read(key).value();
      const bool agree = actual.audio == expected.audio && actual.subtitles == expected.subtitles &&
                         actual.favourites == expected.favourites;
      if (!agree) details += difference("service #" + std::to_string(key), shown(expected), shown(actual));
    }
    return details;
  }

 private:
  static std::string difference(const std::string& what, const std::string& expected, const std::string& actual) {
    if (expected == actual && what != "state") return {};
    return what + ", by the model:\n" + expected + what + ", really:\n" + actual;
  }

  virtualtv::Storage storage_;
  kel::CEmpAppWindow app_;
  Session session_{app_, storage_, "."};
  model::World world_;
};

}  // namespace

model::Set startingSet() {
  virtualtv::Storage storage;
  virtualtv::Tv tv(storage);
  return copyOf(tv);
}

std::optional<Difference> compare(const Script& script, Replies* replies,
                                  const std::function<void(model::World&)>& spoil) {
  Pair pair;
  if (spoil) spoil(pair.world());
  std::string transcript;
  for (std::size_t line = 0; line < script.size(); ++line) {
    std::string reply;
    const std::string details = pair.run(script[line], reply);
    transcript += "> " + script[line] + "\n" + (reply.empty() ? "" : reply + "\n");
    if (!details.empty()) return Difference{line, transcript, details};
    if (replies != nullptr) (*replies)[script[line].substr(0, script[line].find(' '))].insert(reply);
  }
  const std::string details = script.empty() ? std::string() : pair.differingServices();
  if (!details.empty()) return Difference{script.size() - 1, transcript, details};
  return std::nullopt;
}

Script shrunk(Script script, const std::function<bool(const Script&)>& fails) {
  for (std::size_t size = std::max<std::size_t>(script.size() / 2, 1); size > 0;) {
    bool dropped = false;
    for (std::size_t end = script.size(); end > 0;) {
      const std::size_t start = end > size ? end - size : 0;
      Script rest(script.begin(), script.begin() + static_cast<std::ptrdiff_t>(start));
      rest.insert(rest.end(), script.begin() + static_cast<std::ptrdiff_t>(end), script.end());
      if (fails(rest)) {
        script = std::move(rest);
        dropped = true;
      }
      end = start;
    }
    if (!dropped || size > 1) size = size == 1 ? 0 : size / 2;
  }
  return script;
}

}  // namespace comparison
