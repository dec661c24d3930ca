// SPDX-License-Identifier: MIT
// The TV service's factories. The set owns the created interfaces until the engine that requested them is closed.
#include "tvservice/TVServiceAPI.h"

#include "tvservice/Adapters.h"

namespace virtualtv::tvservice {

namespace {

using seam::args;
using seam::in;
using seam::op;
using seam::out;

/// Creates an interface for the current caller. @param kind  interfaces are numbered per kind.
template <typename Interface>
Interface* make(const char* kind, Identity identity, std::shared_ptr<Interface> (*maker)(const Identity&)) {
  Interfaces& interfaces = Tv::current().interfaces();
  identity.handle.number = interfaces.next(kind);
  return interfaces.keep(seam::Seam::instance().caller().engine, maker(identity));
}

/// Finds the window of a profile. @return false for an unknown profile, or an index other than 0.
bool windowOf(EProfile profile, int index, Identity& found) {
  if (index != 0 || (profile != PROFILE_MAIN && profile != PROFILE_PIP)) return false;
  found.window = profile == PROFILE_MAIN ? WindowId::main : WindowId::pip;
  found.handle.window = nameOf(found.window);
  return true;
}

template <typename Interface>
int create(const seam::Operation& operation, const char* kind, EProfile profile, int index, Interface** made,
           std::shared_ptr<Interface> (*maker)(const Identity&)) {
  return seam::pass(operation, {}, args(in("profile", profile), in("index", index), out("interface", *made)), [&] {
    Identity found;
    if (!windowOf(profile, index, found)) return operation.failure();
    *made = make(kind, found, maker);
    return operation.success();
  });
}

/// An interface of the whole set.
template <typename Interface>
int createForSet(const seam::Operation& operation, const char* kind, Interface** made,
                 std::shared_ptr<Interface> (*maker)(const Identity&)) {
  return seam::pass(operation, {}, args(out("interface", *made)), [&] {
    *made = make(kind, {WindowId::main, {"set", 0}}, maker);
    return operation.success();
  });
}

}  // namespace

}  // namespace virtualtv::tvservice

namespace tvs = virtualtv::tvservice;
using virtualtv::seam::op;

int TVServiceAPI::CreateService(IService** service) {
  return tvs::createForSet(op("TVServiceAPI::CreateService"), "IService", service, tvs::makeService);
}

int TVServiceAPI::CreateServiceNavigation(EProfile profile, int index, IServiceNavigation** navigation) {
  return tvs::create(op("TVServiceAPI::CreateServiceNavigation"), "IServiceNavigation", profile, index, navigation,
                     tvs::makeServiceNavigation);
}

int TVServiceAPI::CreateSourceControl(EProfile profile, int index, ISourceControl** control) {
  return tvs::create(op("TVServiceAPI::CreateSourceControl"), "ISourceControl", profile, index, control,
                     tvs::makeSourceControl);
}

int TVServiceAPI::CreateVideoControl(EProfile profile, int index, IVideoControl** control) {
  return tvs::create(op("TVServiceAPI::CreateVideoControl"), "IVideoControl", profile, index, control,
                     tvs::makeVideoControl);
}

int TVServiceAPI::CreateAVControl(EProfile profile, int index, IAVControl** control) {
  return tvs::create(op("TVServiceAPI::CreateAVControl"), "IAVControl", profile, index, control, tvs::makeAVControl);
}

int TVServiceAPI::CreateDataControl(EProfile profile, int index, IDataControl** control) {
  return tvs::create(op("TVServiceAPI::CreateDataControl"), "IDataControl", profile, index, control,
                     tvs::makeDataControl);
}

int TVServiceAPI::CreateTunerControl(EProfile profile, int index, ITunerControl** control) {
  return tvs::create(op("TVServiceAPI::CreateTunerControl"), "ITunerControl", profile, index, control,
                     tvs::makeTunerControl);
}

int TVServiceAPI::CreateSatellite(ISatellite** satellite) {
  const virtualtv::seam::Operation& operation = op("TVServiceAPI::CreateSatellite");
  return virtualtv::seam::pass(
      operation, {}, virtualtv::seam::args(virtualtv::seam::out("interface", *satellite)), [&] {
        static const std::shared_ptr<ISatellite> manager = tvs::makeSatellite({virtualtv::WindowId::main, {"set", 1}});
        *satellite = manager.get();
        return operation.success();
      });
}

::ServiceDataAux* TVServiceAPI::ServiceDataAux(EProfile profile, int index) {
  using virtualtv::seam::in;
  return virtualtv::seam::pass(op("TVServiceAPI::ServiceDataAux"), {},
                               virtualtv::seam::args(in("profile", profile), in("index", index)),
                               [&]() -> ::ServiceDataAux* {
                                 tvs::Identity found;
                                 if (!tvs::windowOf(profile, index, found)) return nullptr;
                                 return tvs::make("ServiceDataAux", found, tvs::makeServiceDataAux);
                               });
}
