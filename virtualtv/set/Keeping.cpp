#include "set/Keeping.h"

#include <array>
#include <functional>
#include <sstream>

namespace virtualtv {

namespace {

const std::array schema{settingsTables, serviceTables};

/// Visits every kept number of a state under its name.
template <typename State, typename Visit>
void visit(State& state, Visit visitor) {
  visitor("region", state.region);
  visitor("country", state.country);
  visitor("isp.present", state.ispPresent);
  visitor("isp.shown", state.ispShown);
  visitor("isp.width", state.ispWidth);
  visitor("isp.height", state.ispHeight);
  visitor("tuner.fade", state.fade);
  visitor("start.service", state.startServiceId);
  visitor("start.source", state.startSource);
  for (auto& input : state.inputs) {
    const std::string prefix = "input." + std::to_string(input.source) + ".";
    visitor(prefix + "plugged", input.plugged);
    visitor(prefix + "width", input.picture.width);
    visitor(prefix + "height", input.picture.height);
    visitor(prefix + "rate", input.picture.rate);
  }
  for (const WindowId id : windowIds) {
    auto& window = state[id];
    const std::string prefix = std::string(nameOf(id)) + ".";
    visitor(prefix + "source_state", window.sourceState);
    visitor(prefix + "source", window.source);
    visitor(prefix + "previous_source", window.previousSource);
    visitor(prefix + "antenna", window.mode.antenna);
    visitor(prefix + "service_mode", window.mode.service);
    visitor(prefix + "service", window.service);
    visitor(prefix + "previous_service", window.previousService);
  }
}

}  // namespace

Storage::Parts::Parts()
    : database(Database::inMemory, schema), services(database), settings(database), state(database) {}

Storage::Parts::Parts(const std::filesystem::path& path)
    : directory(path),
      database(directory->databaseFile(), schema),
      services(database),
      settings(database),
      state(database) {}

Storage::Storage() : parts_(std::make_unique<Parts>()) {}
Storage::Storage(const std::filesystem::path& directory) : parts_(std::make_unique<Parts>(directory)) {}
Storage::~Storage() = default;

std::map<std::string, std::string> keptOf(const TvState& state) {
  std::map<std::string, std::string> kept;
  visit(state, [&](const std::string& name, auto value) { kept[name] = std::to_string(value); });
  return kept;
}

void restore(const std::map<std::string, std::string>& kept, TvState& state) {
  visit(state, [&](const std::string& name, auto& value) {
    if (const auto found = kept.find(name); found != kept.end()) std::istringstream(found->second) >> value;
  });
}

}  // namespace virtualtv
