// SPDX-License-Identifier: MIT
#include "device/Device.h"

#include <algorithm>
#include <stdexcept>
#include <utility>
#include <vector>

#include "broadcast/Found.h"
#include "channels/EditList.h"
#include "services/ServiceStore.h"
#include "set/Knobs.h"

namespace virtualtv::device {

namespace {

using framework::LogLine;
using seam::Fault;
using seam::Seam;

}  // namespace

Device::Device(kel::CEmpAppBase& app, Storage& storage)
    : app_(app), host_(framework::Host::of(app)), storage_(storage) {
  engines_.push_back(host().onOpened([this](const framework::EngineOpened& opened) { happened(opened); }));
  engines_.push_back(host().onClosed([this](const framework::EngineClosed& closed) {
    if (tv_) tv_->interfaces().release(closed.engine);
    happened(closed);
  }));
  Seam::instance().reset();
  tv_.emplace(storage_);
}

Device::~Device() {
  closeEngines("device gone");
  tv_.reset();
  Seam::instance().reset();
}

Tv& Device::tv() {
  if (!tv_) throw std::runtime_error("the set is off, it could not be started");
  return *tv_;
}

std::shared_ptr<Feed> Device::subscribe(Wants wants) {
  auto feed = std::make_shared<Feed>(std::move(wants));
  feeds_.push_back(feed);
  refresh();
  return feed;
}

void Device::unsubscribe(const std::shared_ptr<Feed>& feed) {
  std::erase_if(feeds_, [&](const std::weak_ptr<Feed>& listed) { return listed.lock() == feed; });
  refresh();
}

void Device::restart() {
  switchOff("restart");
  switchOn("restart");
}

void Device::reset() {
  closeEngines("reset");
  tv().reset();
  switchOff("reset");
  switchOn("reset");
}

void Device::restore(const Snapshot& snapshot) {
  closeEngines("restore");  // first, since closing may still write settings keys
  tv().restore(snapshot);
  if (hearsActs_) tell(SnapshotRestored{std::make_shared<const Snapshot>(snapshot)});
  switchOff("restore");
  switchOn("restore");
}

void Device::closeEngines(const std::string& why) {
  host().closeAll(why);
}

void Device::setKnob(const std::string& name, const std::string& value) {
  virtualtv::setKnob(tv(), name, value);
  if (hearsActs_) tell(KnobTurned{name, value});
}

void Device::editService(const std::string& service, const std::string& edit, const std::string& value) {
  virtualtv::editService(tv(), service, edit, value);
  if (hearsActs_) tell(ServiceEdited{service, edit, value});
}

void Device::setSetting(const std::string& key, const Setting& value) {
  tv().setSetting(key, value);
  if (hearsActs_) tell(SettingGiven{key, value});
}

bool Device::removeSetting(const std::string& key) {
  if (!tv().removeSetting(key)) return false;
  if (hearsActs_) tell(SettingGiven{key, std::nullopt});
  return true;
}

ImportReport Device::import(const std::string& name, const std::string& content, const ImportOptions& options) {
  ImportReport report = importServices(tv(), name, content, options);
  if (hearsActs_ && report.error().empty()) tell(ListImported{content, options, report});
  return report;
}

ImportReport Device::import(const std::vector<std::string>& files, const broadcast::Scan& scan, bool add,
                            const RecordingFiles& recordings) {
  ImportReport report = importScan(tv(), files.empty() ? "recording" : files.front(), scan, add, recordings);
  if (hearsActs_ && report.error().empty()) {
    tell(ScanImported{files, std::make_shared<const broadcast::Scan>(scan), add, report});
  }
  return report;
}

std::uint64_t Device::addFault(Fault fault) {
  const std::string words = seam::describe(fault);
  const std::uint64_t id = Seam::instance().add(std::move(fault));
  refresh();
  happened(FaultSet{id, words});
  return id;
}

bool Device::removeFault(std::uint64_t id) {
  return dropFault(id, false);
}

bool Device::dropFault(std::uint64_t id, bool withSet) {
  if (!Seam::instance().remove(id)) return false;
  refresh();
  happened(FaultGone{id, withSet});
  return true;
}

void Device::clearFaults() {
  while (!faults().empty()) removeFault(faults().front().id);
}

void Device::remember(History::Bounds bounds) {
  if (!history_) history_ = std::make_unique<History>(bounds);
  refresh();
}

void Device::goBack(std::uint64_t command) {
  if (!history_) throw std::invalid_argument("no commands are held");
  restore(history_->behind(command, tv()).set.snapshot());
}

void Device::tell(CommandRun command) {
  happened(std::move(command));
  running_ = 0;
}

void Device::tell(const Act& act) {
  happened(act);
}

std::vector<std::string> Device::takeComplaints() {
  std::vector<std::string> complaints = std::exchange(complaints_, {});
  if (tv_) {
    for (std::string& complaint : tv_->takeComplaints()) complaints.push_back(std::move(complaint));
  }
  return complaints;
}

void Device::switchOff(const std::string& why) {
  closeEngines(why);
  if (!tv_) return;
  while (!faults().empty()) dropFault(faults().front().id, true);
  for (const seam::Operation& operation : seam::operations) tv_->setLatency(operation, 0);
  complaints_ = takeComplaints();
  before_ = tv_->state();
  revision_ = tv_->revision();
  tv_.reset();
}

/// Reports the state that was not persisted, and so was reset, as ordinary changes.
void Device::switchOn(const char* why) {
  tv_.emplace(storage_, revision_);
  if (hearsSet_) listenToSet(true);
  happened(SetStarted{why});
  std::vector<Change> changes;
  appendChanges(before_, tv_->state(), changes);
  for (const Change& change : changes) happened(change);
}

/// When memory runs out the happening goes unreported, and the history starts again.
template <typename What>
void Device::happened(What&& what) noexcept {
  try {
    forgetEndedFeeds();
    const auto wanted = [&](const std::weak_ptr<Feed>& listed) {
      const std::shared_ptr<Feed> feed = listed.lock();
      return feed && feed->wants(what);
    };
    if (!history_ && std::none_of(feeds_.begin(), feeds_.end(), wanted)) return;
    const auto happening = std::make_shared<const Happening>(
        Happening{revision(), Seam::instance().caller(), running_, std::forward<What>(what)});
    if (history_) history_->add(happening, std::exchange(replacing_, nullptr));
    deliver(happening);
  } catch (...) {
    if (history_) history_->forget();
  }
}

void Device::deliver(const std::shared_ptr<const Happening>& happening) {
  for (const std::weak_ptr<Feed>& listed : feeds_) {
    const std::shared_ptr<Feed> feed = listed.lock();
    if (!feed || !std::visit([&](const auto& what) { return feed->wants(what); }, happening->what)) continue;
    const bool first = feed->push(happening);
    if (first && feed->wants().wake && !feed->isAttended()) loop_.post([this, listed] { wake(listed); });
  }
}

/// Does nothing when the subscription has ended meanwhile.
void Device::wake(const std::weak_ptr<Feed>& listed) {
  const std::shared_ptr<Feed> feed = listed.lock();
  const auto isIt = [&](const std::weak_ptr<Feed>& other) { return other.lock() == feed; };
  if (feed && std::any_of(feeds_.begin(), feeds_.end(), isIt)) feed->wants().wake();
}

/// This runs inside a listener to the set, the seam or the log, so the listeners are changed later.
void Device::forgetEndedFeeds() {
  const auto ended = std::erase_if(feeds_, [](const std::weak_ptr<Feed>& feed) { return feed.expired(); });
  if (ended > 0) loop_.post([this] { refresh(); });
}

/// Listens to the set, the seam and the log exactly as far as the feeds and the history need it.
void Device::refresh() {
  bool events = history_ != nullptr;
  bool calls = events;
  bool acts = false;
  int level = events ? allLevels : -1;
  for (const std::weak_ptr<Feed>& listed : feeds_) {
    const std::shared_ptr<Feed> feed = listed.lock();
    if (!feed) continue;
    events = events || feed->wants().events;
    calls = calls || feed->wants().calls || (feed->wants().events && !faults().empty());
    acts = acts || feed->wants().acts;
    level = std::max(level, feed->wants().logLevel);
  }
  hearsActs_ = acts;
  if (events != hearsSet_) listenToSet(events);
  if (calls != hearsCalls_) listenToCalls(calls);
  if (level == logLevel_) return;
  logLevel_ = level;
  log_.end();
  if (level >= 0) log_ = framework::listenToLog(level, [this](const LogLine& line) { happened(line); });
}

void Device::listenToSet(bool on) {
  hearsSet_ = on;
  set_.end();
  services_.end();
  if (!on || !tv_) return;
  set_ = tv_->onEvent([this](const Event& event) { happened(event.change); });
  services_ = tv_->onReplacing([this] { keepServices(); });
}

/// When this fails, `history_->add` finds no image and starts the history again.
void Device::keepServices() noexcept {
  try {
    replacing_.reset();
    if (history_ && history_->wantsServices()) {
      replacing_ = std::make_shared<const ServiceImage>(tv_->services().image());
    }
  } catch (...) {  // NOLINT(bugprone-empty-catch)
  }
}

void Device::listenToCalls(bool on) {
  hearsCalls_ = on;
  if (!on) return Seam::instance().onCall({});
  Seam::instance().onCall([this](const seam::Call& call) {
    happened(call);
    if (!call.fault) return;
    const auto fault = std::find_if(faults().begin(), faults().end(),
                                    [&](const Fault& candidate) { return candidate.id == call.faultId; });
    if (fault != faults().end()) happened(FaultHit{fault->id, fault->hits});
  });
}

}  // namespace virtualtv::device
