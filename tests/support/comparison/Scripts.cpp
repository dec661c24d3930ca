// SPDX-License-Identifier: MIT
#include "support/comparison/Scripts.h"

#include <random>

#include "catalogue/Catalogue.h"
#include "support/comparison/Ways.h"

namespace comparison {

namespace {

using Data = TCServiceData;
using virtualtv::CatalogueCommand;
using Words = std::vector<std::string>;

/// Joins pieces to one text. Compilers evaluate the pieces of a braced list from left to right. The operands of a plus
/// sign have no fixed order, so that a seed could give different scripts.
std::string join(const Words& pieces) {
  std::string text;
  for (const std::string& piece : pieces) text += piece;
  return text;
}

/// Queries without parameters.
bool isQuestion(const CatalogueCommand& command) {
  return command.name.starts_with("Get") && command.parameters.empty();
}

/// Queries for a channel of the found list, whose only parameter is the position.
bool asksForFound(const CatalogueCommand& command) {
  return command.name.starts_with("GetChannel_") && command.parameters.size() == 1;
}

Words commandsThat(bool (*are)(const CatalogueCommand&)) {
  Words names;
  for (const CatalogueCommand& command : virtualtv::catalogue()) {
    if (are(command)) names.push_back(command.name);
  }
  return names;
}

class Author {
 public:
  Author(std::uint64_t seed, const model::Set& set) : random_(seed), set_(set) {
    for (const auto& [key, service] : set.services) keys_.push_back("#" + std::to_string(key));
  }

  std::size_t below(std::size_t limit) { return random_() % limit; }
  bool oneIn(std::size_t parts) { return below(parts) == 0; }

  /// A random line, followed by lines that fit it.
  Script lines() { return followed(line()); }

  /// Faults, and commands that may hit them.
  Script failing() {
    Script script;
    for (std::size_t faults = 1 + below(5); faults > 0; --faults) script.push_back(fault());
    for (std::size_t commands = 1 + below(6); commands > 0; --commands) {
      const Script more = lines();
      script.insert(script.end(), more.begin(), more.end());
    }
    if (!oneIn(4)) script.emplace_back(".fault clear");
    return script;
  }

 private:
  std::string line() {
    const std::size_t kind = below(156);
    if (kind < 15) return switching();
    if (kind < 33) return tuning();
    if (kind < 60) return asking();
    if (kind < 69) return showing();
    if (kind < 78) return askPicture();
    if (kind < 84) return askTracks();
    if (kind < 92) return changeTracks();
    if (kind < 96) return favourites();
    if (kind < 120) return fromOutside();
    if (kind < 128) return reporting();
    if (kind < 132) return any();
    if (kind < 150) return oneOf(questions_);
    return engines();
  }

  /// A fault, mostly for an operation that many commands call.
  std::string fault() {
    const auto& all = virtualtv::seam::operations;
    const auto& common = commonOperations();
    const auto& operation = oneIn(3) ? all[below(all.size())] : *common[below(common.size())];
    const Words& ways = waysOf(operation);
    const std::size_t nth = 1 + below(3);
    const std::string times = oneOf({"always", "times=1", "times=1", "times=2"});
    return faultLine(operation, nth, times, ways[below(ways.size())]);
  }

  std::string number(std::size_t limit) { return std::to_string(below(limit)); }
  std::string oneOf(const Words& words) { return words[below(words.size())]; }

  // Following lines.

  Script followed(const std::string& first) {
    Script script = following(first);
    script.insert(script.begin(), first);
    return script;
  }

  /// Lines about the same subject as the first one. Random lines would rarely hit it.
  Script following(const std::string& first) {
    if (first.starts_with("FindChannel")) return {askFound(), askFound(), askFound()};
    if (first.starts_with("SetSource 48")) return followed(".set " + ispTracks());
    if (first == "DisconnectSource" || first.ends_with(".source -1")) return {"GetScreenRect", askPicture()};
    if (first == ".set isp.present off") return {askTracks(), changeTracks()};
    if (first.find(".id 1") != std::string::npos) return {".set main.service " + keys_[1], askAudio()};
    if (first.find(".attached ") != std::string::npos) {
      const std::size_t key = first.find('#');
      return {".set main.service " + first.substr(key, first.find('.', key) - key), "GetCurrentChannelInfo"};
    }
    if (first.find(".audio ") != std::string::npos) return {changeAudio(), askAudio(), changeAudio()};
    if (first.find(".subtitles ") != std::string::npos) return {askSubtitles(), changeSubtitle(), askSubtitles()};
    return {};
  }

  // Parameters.

  std::string source() {
    if (oneIn(12)) return std::to_string(static_cast<int>(below(120)) - 8);
    return oneOf({"0",  "0",  "0",  "8",  "15", "27", "31", "31",  "32",   "33", "35",   "16",
                  "42", "43", "48", "48", "48", "53", "1",  "100", "1234", "-1", "-100", "x"});
  }

  std::string seek() { return oneOf({"", "0", "2", "6", "7", "8", "9", "101", "-1", "x"}); }

  /// Mostly one of a few services, so that the lines of a script often concern the same one.
  std::string service() { return oneIn(3) ? oneOf(keys_) : keys_[below(4)]; }

  /// A field's value in a random service, sometimes a value that no service has.
  std::string fieldOfSome(int field) {
    if (oneIn(8)) return oneOf({"-1", "0", "7", "65535", "70000", "x"});
    const model::Service& service = set_.services.at(std::stoll(this->service().substr(1)));
    return std::to_string(model::number(service, field).value_or(0));
  }

  std::string major() { return fieldOfSome(Data::MAJOR); }
  std::string minor() { return oneOf({"0", "0", "0", "1", "2", "65535", "x"}); }
  std::string index() {
    return oneIn(3) ? oneOf({"-1", "99", "", "x", "81", "21", "21", "22", "22", "23"}) : number(oneIn(3) ? 30 : 6);
  }
  std::string type() { return oneOf({"0", "0", "0", "0", "4", "5", "12", "13", "28", "20", "2", "1", "99", "x"}); }
  std::string mode() {
    return oneOf({"1", "1", "1", "1", "1", "2", "3", "4", "23", "24", "25", "31", "12", "20", "0", "21", "-1", "x"});
  }

  // Commands.

  std::string switching() {
    switch (below(9)) {
      case 0:
        return join({"SetSourceAndTune ", source(), " ", major()});
      case 1:
        return "SetPreviousSource";
      case 2:
        return "DisconnectSource";
      case 3:
        return join({"SetSource ", source(), " '", seek(), "'"});
      case 4:
      case 5:
        return "SetWindow " + oneOf({"0", "1"});
      default:
        return "SetSource " + source();
    }
  }

  std::string tuning() {
    switch (below(11)) {
      case 0:
        return join({"SetChannel ", major(), " ", minor()});
      case 1:
        return "SetChannel_PTC " + fieldOfSome(Data::PTC);
      case 2:
        return "SetChannelByServiceid " + fieldOfSome(Data::SERVICE_ID);
      case 3:
        return join({"SetChannelDirect ", fieldOfSome(Data::PTC), " ", fieldOfSome(Data::CHANNEL_TYPE), " ", minor(),
                     " ", type()});
      case 4:
        return "SetTVMode " + mode();
      case 5:
      case 6:
        return join({"FindChannel ", type(), " ", mode()});
      case 7:
        return join({"SetChannel_Seek ", oneOf({"3", "4", "0", "5", "x"}), " ", oneOf({"0", "1", "x"})});
      default:
        return "SetChannel_Seek " + oneOf({"3", "4"}) + " 0";
    }
  }

  /// Any command with any parameters, so that no command is left out.
  std::string any() {
    const std::vector<CatalogueCommand>& all = virtualtv::catalogue().commands();
    const CatalogueCommand& command = all[below(all.size())];
    std::string line = command.name;
    for (std::size_t parameters = command.parameters.size(); parameters > 0; --parameters) {
      line += " '" + oneOf({"0", "0", "1", "1", "2", "3", "8", "-1", "65535", "x", ""}) + "'";
    }
    return line;
  }

  std::string asking() {
    switch (below(18)) {
      case 8:
      case 9:
        return "GetSource '" + seek() + "'";
      case 10:
        return "GetChannel_ServiceId '" + index() + "'";
      case 11:
        return join({"GetChannel_ServiceId ", major(), " ", minor(), " ", type()});
      case 12:
      case 13:
      case 14:
      case 15:
      case 16:
      case 17:
        return askFound();
      default:
        return oneOf(questions_);
    }
  }

  std::string askFound() { return join({oneOf(found_), " '", index(), "'"}); }

  std::string reporting() {
    switch (below(8)) {
      case 3:
      case 4:
        return "GetChannel_OnTVJson '" + index() + "'";
      case 5:
        return join({"SetDVBSIChannelDirectEx '", description(), "' ", oneOf({"0", "0", "0", "1", "x"})});
      default:
        return oneOf(questions_);
    }
  }

  /// A description of a satellite service, mostly of an existing service.
  std::string description() {
    static const Words broken{"", " {}", "{", "{}", "{\"TYPE\": \"x\"}", "{\"SatelliteId\": [1]}", "[]"};
    if (oneIn(4)) return oneOf(broken);
    const model::Service& service = set_.services.at(std::stoll(oneOf(keys_).substr(1)));
    const auto field = [&](int id) { return std::to_string(model::number(service, id).value_or(0)); };
    return join({"{\"TYPE\": ", field(Data::CHANNEL_TYPE), ", \"ProgNum\": ", field(Data::CHANNEL_TYPE),
                 ", \"ModulationType\": ", oneOf({field(Data::MODULATION), "0", "5"}),
                 ", \"SymbolRate\": ", field(Data::SYMBOL_RATE), ", \"ProgramNumber\": ", field(Data::PROGRAM_NUMBER),
                 ", \"PTC\": ", field(Data::PTC), ", \"MINOR_NUMBER_ONE_PART\": ", oneOf({"0", field(Data::MINOR)}),
                 ", \"SatelliteId\": \"1A\", \"Frequency\": ", field(Data::FREQUENCY), ", \"Polarization\": 1}"});
  }

  // Pictures.

  /// The length of a rectangle's side, mostly a common one.
  std::string side() {
    static const Words odd{"-2147483648", "2147483647", "1073741824", "99999999999", "-5", "0", "0", "", "x"};
    return oneIn(8) ? "'" + oneOf(odd) + "'" : number(oneIn(3) ? 2000 : 60);
  }

  std::string sides(int count) {
    std::string text;
    for (; count > 0; --count) text += " " + side();
    return text;
  }

  std::string showing() {
    switch (below(9)) {
      case 0:
      case 1:
        return "SetScreenRect" + sides(4);
      case 2:
        return "SetScreenRect -1";
      case 3:
        return "SetScreenCropRect" + sides(4);
      case 4:
      case 8:
        return "+ SetScreenCropRect" + sides(oneOf({"8", "9", "9", "7"})[0] - '0');
      case 5:
        return "SetScreenZorder '" + oneOf({"0", "1", "-7", "", "x"}) + "'";
      case 6:
        return "Show '" + oneOf({"0", "1", "2", "3", "4", "6", "7", "-1", "x", ""}) + "'";
      default:
        return oneIn(8) ? "SetScreenRect_PosSizeMode 1 1" : "MuteVideo '" + oneOf({"0", "1", "2", "-1", "x", ""}) + "'";
    }
  }

  std::string askPicture() {
    switch (below(9)) {
      case 0:
        return "GetState_Show";
      case 1:
      case 2:
        return "GetResolution";
      case 3:
        return "GetResolutionDetail";
      case 4:
      case 8:
        return "GetScreenCropRect" + oneOf({"", " 3", " x", " ''"});
      case 5:
        return "GetAFDGeometryRectSize";
      case 6:
        return "GetScreenRect" + oneOf({"", "", "", "_PosMode", "_SizeMode"});
      default:
        return oneOf({"GetScreenRect", "GetAFDGeometryRectSize", "GetScreenCropRect"});
    }
  }

  std::string pictureKnob() {
    switch (below(3)) {
      case 0:
        return join({oneOf({"main", "main", "pip"}), ".resolution ",
                     oneOf({"auto", "auto", "-1", "0", "5", "10", "15", "18", "21", "134", "154"})});
      case 1:
        return join({"input.", oneOf({"13", "14", "31"}), ".picture ",
                     oneOf({"640x480@60", "1x1@1", "1366x768@60", "2147483647x2147483647@3", "3840x2160@50"})});
      default:
        return "isp.picture " + oneOf({"1280x720", "1x1", "3840x2160", "2147483647x2147483647"});
    }
  }

  /// A picture field of a service, and a value.
  std::string pictureField() {
    static const Words lengths{"720", "576", "1", "0", "-1", "2147483647", "2147483648", "4294967297", "unset"};
    switch (below(4)) {
      case 0:
        return ".picture_shape " + oneOf({"0", "1", "2", "unset"});
      case 1:
      case 2:
        return ".active_format " + oneOf({"8", "9", "10", "11", "13", "14", "15", "0", "16", "-1", "unset"});
      default:
        return join({oneOf({".picture_width ", ".picture_height ", ".frame_rate "}), oneOf(lengths)});
    }
  }

  // Tracks and favourites.

  std::string askAudio() { return oneOf({"GetMultiAudioInfo", "GetCurrentAudioInfo", "GetCurrentAudioInfo"}); }
  std::string askSubtitles() { return oneOf({"GetSubtitleInfo", "GetSubtitleInfo", "GetCurrentSubtitle"}); }
  std::string askTracks() { return oneIn(2) ? askAudio() : askSubtitles(); }

  std::string changeAudio() {
    static const Words odd{"-1", "65792", "65792", "-65280", "99", "x", ""};
    if (oneIn(2)) return "ChangeAudioByIndex " + position();
    return "ChangeAudioPID '" + (oneIn(4) ? oneOf(odd) : pid()) + "'";
  }

  std::string changeSubtitle() { return "ChangeSubtitle " + position(); }

  std::string changeTracks() {
    if (oneIn(12)) return "SetSourceVolume '" + oneOf({"0", "50", "300", "-1", "x", ""}) + "'";
    return oneIn(3) ? changeSubtitle() : changeAudio();
  }

  std::string pid() {
    return oneOf({"256", "256", "256", "257", "258", "1012", "7012", "7013", "0", "0", "65535", "40000"});
  }

  std::string position() {
    static const Words odd{"-1", "-2", "99", "2147483647", "-2147483648", "4294967296", "x", "''", "+1"};
    return oneIn(5) ? oneOf(odd) : number(3);
  }

  /// A track: PID and language, and then `rest` unless that is left out.
  std::string track(const std::string& rest) {
    std::string text = join({oneIn(3) ? "!" : "", pid()});
    if (oneIn(6)) return text;
    text += ":" + oneOf({"eng", "deu", "und", "und", "-1", "-1", "7"});
    return oneIn(6) ? text : text + ":" + rest;
  }

  std::string audio() {
    return track(join({oneOf({"aac", "ac3", "eac3", "mpeg", "unknown", "9"}), ":", oneOf({"2", "0", "-1"}), ":",
                       oneOf({"0", "3", "-2147483648"})}));
  }

  std::string subtitle(const Words& kinds) { return track(oneOf(kinds)); }

  /// Up to three pieces, as in the values of knobs.
  template <typename Piece>
  std::string list(Piece piece) {
    std::string text;
    for (std::size_t count = oneIn(3) ? 1 : below(4); count > 0; --count) text += (text.empty() ? "" : ",") + piece();
    return text.empty() ? "none" : text;
  }

  std::string favourites() {
    const std::string id = fieldOfSome(Data::SERVICE_ID);
    if (oneIn(2)) return "GetFavorites " + (oneIn(8) ? "''" : id);
    return join({"UpdateFavorites ", id, " ", oneOf({"0", "1", "1", "-1", "x"}), " ",
                 oneOf({"0", "1", "2", "9", "10", "12", "127", "128", "255", "256", "300", "-1", "-129", "x"})});
  }

  /// Favourite groups without duplicates.
  std::string groups() {
    std::string text;
    for (const char* const group : {"0", "1", "2", "12", "20", "128", "255"}) {
      if (oneIn(3)) text += (text.empty() ? "" : ",") + std::string(group) + oneOf({"=0", "=1"});
    }
    return text.empty() ? "none" : text;
  }

  std::string serviceTracks() {
    switch (below(5)) {
      case 0:
        return ".favourites " + groups();
      case 1:
      case 2:
        return ".subtitles " + list([this] { return subtitle({"dvb", "teletext"}); });
      default:
        return ".audio " + list([this] { return audio(); });
    }
  }

  std::string ispTracks() {
    switch (below(5)) {
      case 0:
        return "isp.audio " + list([this] { return audio(); });
      case 1:
      case 4:
        return "isp.subtitles " + list([this] { return subtitle({"dvb", "teletext", "teletext-subtitle"}); });
      case 2:
        return "isp.audio_in_use " + oneOf({"0", "1", "99"});
      default:
        return "isp.subtitle_in_use " + oneOf({"-1", "0", "1", "99"});
    }
  }

  // Changes from outside.

  std::string serviceField() {
    if (oneIn(4)) return pictureField();
    switch (below(11)) {
      case 0:
        return ".lock " + oneOf({"0", "1", "2", "unset"});
      case 1:
        return ".hidden " + oneOf({"0", "1", "unset"});
      case 2:
        return ".major " + oneOf({"1", "2", "3", "5", "7", "999", "unset"});
      case 3:
        return ".minor " + oneOf({"0", "1", "2", "unset"});
      case 4:
        return ".antenna " + oneOf({"0", "1", "2", "3", "-1", "unset"});
      case 5:
        return ".service_mode " + oneOf({"0", "21", "12", "unset"});
      case 6:
        return oneOf({".type 1", ".type 9", ".type -1", ".type unset", ".ptc 21", ".ptc unset", ".frequency unset"});
      case 7:
        return oneOf({".id 1152959734176350310", ".id unset", ".id 7"});
      case 8:
        return oneOf({".attached \'{\"major\": 7, \"new\": [1]}\'", ".attached \'[1]\'", ".attached open{",
                      ".attached unset", ".attached \'\"\\ud83c{} \\u6771\"\'"});
      default:
        return oneOf({".name Quayside", ".name unset", ".name unset", ".name \'\"caf\\u00e9 \\ud800 cut\"\'"});
    }
  }

  std::string windowKnob() {
    const std::string window = oneOf({"main", "main", "pip"});
    switch (below(7)) {
      case 0:
        return window + ".source_state " + oneOf({"-1", "1", "2", "2"});
      case 1:
        return window + ".source " + oneOf({"-1", "0", "0", "5", "13", "31", "23", "99"});
      case 2:
        return window + ".previous_source " + oneOf({"-1", "0", "13", "31", "30"});
      case 3:
        return window + ".mode " + oneOf({"0,1", "1,0", "2,0", "2,12", "0,21", "3,0", "3,1", "-1,-1"});
      case 4:
        return window + ".audio " + oneOf({"0", "1", "2", "99"});
      case 5:
        return window + ".subtitle " + oneOf({"-1", "0", "1", "99"});
      default:
        return window + ".service " + (oneIn(2) ? "0" : service());
    }
  }

  std::string fromOutside() {
    static const Words keys{"db/emp/mainsource", "db/emp/previousmainsource", "db/emp/pipsource",
                            "db/emp/previouspipsource", "db/kel/current_source_type"};
    switch (below(14)) {
      case 0:
      case 1:
        return join({".set input.", oneOf({"0", "13", "13", "14", "15", "31"}), ".plugged ", oneOf({"on", "off"})});
      case 2:
        return ".set isp.present " + oneOf({"on", "off", "on"});
      case 3:
        return oneIn(2) ? ".set region " + oneOf({"1", "17"}) : ".set country " + oneOf({"0", "1", "3", "34", "81"});
      case 4:
        return join(
            {".vconf set ", oneOf(keys), " ", oneOf({"int 0", "int 0", "int 31", "int 48", "int 77", "str odd"})});
      case 5:
        return ".set " + windowKnob();
      case 6:
        return oneIn(2) ? ".set tuner.fade " + oneOf({"0", "100", "255"})
                        : ".set start.service " + oneOf({"0", "1152959734176350311", "2305881256028602379"});
      case 7:
        return ".set " + pictureKnob();
      case 8:
        return ".set " + ispTracks();
      case 9:
        return oneIn(3) ? ".vconf set db/boot/last_service " + oneOf({"str isp-service", "str tv-service", "int 1"})
                        : ".set " + windowKnob();
      case 10:
        return join({".set service.", oneIn(2) ? keys_[0] : service(), serviceTracks()});
      default:
        return join({".set service.", service(), serviceField()});
    }
  }

  std::string engines() {
    switch (below(6)) {
      case 0:
        return ".reopen";
      case 1:
        return ".app " + oneOf({"an.app a.widget", "another.app another.widget", "an.app"});
      default:
        return ".engine " + oneOf({"main", "main", "second", "third"});
    }
  }

  std::mt19937_64 random_;
  const model::Set& set_;
  Words keys_;
  const Words questions_ = commandsThat(isQuestion);
  const Words found_ = commandsThat(asksForFound);
};

}  // namespace

Script randomScript(std::uint64_t seed, std::size_t lines, const model::Set& set, Faults faults) {
  Author author(seed, set);
  Script script;
  while (script.size() < lines) {
    const Script more = faults == Faults::some && author.oneIn(6) ? author.failing() : author.lines();
    script.insert(script.end(), more.begin(), more.end());
  }
  return script;
}

}  // namespace comparison
