#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <list>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "services/Service.h"
#include "set/Interfaces.h"
#include "set/State.h"

namespace virtualtv {

class ServiceStore;
class SettingsStore;

/// What a verb did, for those who watch the set.
struct Event {
  enum class Kind {
    started,
    tuned,
    modeChanged,
    sourceChanged,
    servicesChanged,
    planeChanged,
    audioChanged,
    subtitleChanged,
    favouritesChanged,
    adjusted
  };
  Kind kind;
  WindowId window;  ///< which window it concerns; `main` where it concerns the whole set
  std::uint64_t revision;
};

/// Where a set keeps what it keeps: its databases. Outlives the set that runs on it.
class Storage {
 public:
  /// A store in memory, gone with this object.
  Storage();
  /// The store in a state directory, which it makes and holds for this process alone.
  /// @throws StoreError when it can't be had.
  explicit Storage(const std::filesystem::path& directory);
  ~Storage();

  struct Parts;
  Parts& parts() { return *parts_; }

 private:
  std::unique_ptr<Parts> parts_;
};

/// The TV set. One a process at a time; the adapters behind the platform interfaces find it by `current`. Its
/// state is plain data that only the verbs change; each verb keeps what a set keeps, raises the revision and
/// tells the watchers. Used from one thread. A verb throws `StoreError` when the set can't keep what it should;
/// the state is then as it was.
class Tv {
 public:
  /// Switches the set on: loads what `storage` keeps, which for a new one is the embedded set.
  /// @throws StoreError when that can't be read.
  explicit Tv(Storage& storage);
  Tv(const Tv&) = delete;
  Tv& operator=(const Tv&) = delete;
  ~Tv();

  /// The set of this process. There must be one.
  static Tv& current();

  const TvState& state() const { return state_; }
  std::uint64_t revision() const { return revision_; }
  ServiceStore& services();
  SettingsStore& settings();
  /// What the set made for those who connected to it.
  Interfaces& interfaces() { return interfaces_; }

  /// Calls `watcher` after each verb, for as long as the set lives.
  void watch(std::function<void(const Event&)> watcher);

  /// Strength of the tuner's signal for what a window shows, 0 to 255: it depends on the frequency, less what fades.
  /// Nothing when no service is on its screen.
  std::optional<int> signalStrength(WindowId window);

  // Verbs.

  /// Puts a service on a window's screen; the one before becomes its previous one, and the TV mode follows the
  /// service's antenna. @return false when there is no such service.
  bool tune(WindowId window, ServiceKey service);
  /// Shows an input in a window and, where `service` is not 0, that service. @return false when the set has no such
  /// input or no such service; nothing is changed then.
  bool switchSource(WindowId id, int source, ServiceKey service = 0);
  /// Leaves a window without a source.
  void deactivate(WindowId id);
  /// Has the secondary TV stack show the ISP source. @return false when it can't be reached.
  bool showIsp();
  /// Plugs something into an input, or out of it; windows that show the input gain or lose its picture.
  void plug(int source, bool plugged);
  void setMode(WindowId window, TvMode mode);
  /// Places a window's picture, which ends a crop. @return false, and nothing changed, for an empty rectangle.
  bool place(WindowId window, const Rect& rect);
  /// Places it where it stands when the set is switched on: the main window fills the screen.
  void placeDefault(WindowId window);
  /// Shows a part of the picture. @return false, and nothing changed, where one of the rectangles is empty.
  bool crop(WindowId window, const Crop& crop);
  /// @return false, and nothing changed, for a negative one.
  bool setOrder(WindowId window, int order);
  void mute(WindowId window, bool muted);
  /// Takes the audio track at a position of the service on a window's screen into use, and likewise a subtitle. A
  /// service comes on screen with its first audio track and without subtitles. @return false, and nothing changed,
  /// where it has no track there.
  bool selectAudio(WindowId window, int position);
  bool selectSubtitle(WindowId window, int position);
  /// The same on the secondary TV stack. @return false also while it does not show the ISP source.
  bool selectIspAudio(int position);
  bool selectIspSubtitle(int position);
  /// Puts services into a favourite group or takes them out, by their ids: all of them, or none and false where the set
  /// does not have one.
  bool setFavourites(std::uint8_t group, const std::list<std::pair<unsigned long long, bool>>& members);
  /// Takes the services of a channel list in, in place of those of the set or, to `add`, beside them. A service is the
  /// same where its id is: what the user made of it stays, and so does what a window shows and the set starts with,
  /// where that is still there. What is gone gives way to the first service of the list; the TV mode of a window
  /// follows it then. All of it or nothing.
  /// @throws std::invalid_argument when there are no services.
  ServiceChanges import(const std::vector<Service>& services, bool add);
  /// Back to the embedded set, settings keys included.
  void reset();
  /// Anything else that is set from outside: `change` edits the state.
  void adjust(WindowId window, const std::function<void(TvState&)>& change);
  /// Moves the clock.
  void pass(std::uint64_t milliseconds);

  /// What could not be kept, a line each, since the last call; the adapters report here what they can't answer.
  std::vector<std::string> takeComplaints();
  void complain(std::string line);

 private:
  void commit(Event::Kind kind, WindowId window, TvState next, const char* lastService = nullptr);
  bool follow(WindowState& window, ServiceKey service);
  void show(WindowId window, const Plane& plane);
  void change(Event::Kind kind, WindowId window, const std::function<void(TvState&)>& change);
  void announce(Event::Kind kind, WindowId window);

  Storage& storage_;
  Interfaces interfaces_;
  TvState state_;
  std::uint64_t revision_ = 0;
  std::vector<std::function<void(const Event&)>> watchers_;
  std::vector<std::string> complaints_;
};

}  // namespace virtualtv
