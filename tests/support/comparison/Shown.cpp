// SPDX-License-Identifier: MIT
#include "support/comparison/Shown.h"

#include <algorithm>

#include "framework/Reply.h"
#include "support/model/Tracks.h"

namespace comparison {

using model::Made;
using model::Service;
using model::Setting;
using virtualtv::framework::encode;
using virtualtv::framework::Reply;
using virtualtv::seam::Call;

namespace {

struct Encode {
  Answer operator()(int number) const { return {true, encode({Reply::Kind::integer, number, {}, {}})}; }
  Answer operator()(const std::string& text) const { return {true, encode({Reply::Kind::ascii, 0, text, {}})}; }
  Answer operator()(const std::u16string& units) const { return {true, encode({Reply::Kind::unicode, 0, {}, units})}; }
  Answer operator()(model::Nothing) const { return {true, ""}; }
  Answer operator()(const model::Refused& refused) const {
    return {false, refused.answer ? (*this)(*refused.answer).encoded : ""};
  }
};

std::string shown(const Setting& setting) {
  const int* const number = std::get_if<int>(&setting);
  return number != nullptr ? std::to_string(*number) : '"' + std::get<std::string>(setting) + '"';
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

bool isSame(const Call& call, const Made& expected) {
  return call.operation == expected.operation && call.handle == expected.handle &&
         call.arguments == expected.arguments && call.result == expected.result && call.fault == expected.fault;
}

}  // namespace

Answer answerOf(const model::Reply& reply) {
  return std::visit(Encode(), reply);
}

std::string shown(const Answer& answer) {
  return virtualtv::framework::showAnswer(answer.accepted, answer.encoded);
}

std::string shown(const Call& call) {
  Call unwritten = call;
  unwritten.outputs.clear();
  return virtualtv::seam::line(unwritten);
}

std::string shown(const Made& made) {
  return shown(callOf(made));
}

Call callOf(const Made& made) {
  Call call;
  call.operation = made.operation;
  call.handle = made.handle;
  call.arguments = made.arguments;
  call.outputs = made.outputs;
  call.result = made.result;
  call.fault = made.fault;
  return call;
}

bool areSame(const std::vector<Call>& calls, const std::vector<Made>& expected) {
  return std::equal(calls.begin(), calls.end(), expected.begin(), expected.end(), isSame);
}

std::string shown(const std::map<std::string, Setting>& settings) {
  std::string text;
  for (const auto& [key, value] : settings) text += "  " + key + " = " + shown(value) + "\n";
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

}  // namespace comparison
