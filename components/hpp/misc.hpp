#pragma once
// Host service accessors, the prologue checks of the script functions and
// the context a script function carries through its work.

#include <log4cxx/logger.h>

#include <boost/filesystem/path.hpp>
#include <optional>
#include <string>

#include "common/log4rig.hpp"
#include "component.hpp"

namespace NComponent {

// The component name as the services expect it.
const std::string& componentName();

log4cxx::LoggerPtr getTranslationLogger(TPlatformServices& services);
log4cxx::LoggerPtr getInitializationLogger(TPlatformServices& services);
std::string getWorkingDirectory(TPlatformServices& services);
std::string getLibraryLocation(TPlatformServices& services);
std::string getConfigName(TPlatformServices& services);
boost::filesystem::path getRigInstallBin(TPlatformServices& services);
boost::filesystem::path getQrnHomeDir(TPlatformServices& services);
boost::filesystem::path getKveHomeDir(TPlatformServices& services);
// "get log" and "get neutral": false when the host does not serve them.
bool getLogName(TPlatformServices& services, std::string& name);
bool getNeutralName(TPlatformServices& services, std::string& name);
// "get platform": false when not served or below 1.
bool getPlatform(TPlatformServices& services, int& platform);

bool checkWdir(TPlatformServices& services, log4cxx::LoggerPtr logger);
bool checkLibLoc(TPlatformServices& services, log4cxx::LoggerPtr logger);

// Scope guard over a resource obtained by one named service and given back
// by another.
template <class TServices, class TComponent, class TResource>
class CAutoDestroy {
 public:
  CAutoDestroy(TServices& services, const std::string& openName, TComponent component, const std::string& closeName,
               TComponent component2)
      : mServices(&services), mCloseName(closeName), mComponent(component2) {
    services.requestService(openName, component, &mResource);
  }
  virtual ~CAutoDestroy() {
    mServices->requestService(mCloseName, mComponent, &mResource);
    mResource = TResource();
  }
  CAutoDestroy(const CAutoDestroy&) = delete;
  CAutoDestroy& operator=(const CAutoDestroy&) = delete;

  const TResource& get() const { return mResource; }

 private:
  TResource mResource;
  TServices* mServices;
  std::string mCloseName;
  TComponent mComponent;
};

// The per-component logger of one script call.
class CPrivateLogger : public CAutoDestroy<TPlatformServices, const std::string*, log4cxx::LoggerPtr> {
 public:
  explicit CPrivateLogger(TPlatformServices& services);
};

using rig_common::log4rig::TSinks;

// What a script function holds from its prologue to its return: the two
// sinks and the per-component logger guard. It converts to TSinks, so
// RIG_LOG(call, ...) writes on both sinks.
class CScriptCall {
 public:
  enum TChecks { kWdir, kWdirAndSource };

  // Runs the prologue; ok() tells whether the function may go on. A call
  // after the component was released is refused without a message.
  explicit CScriptCall(TChecks checks = kWdir);
  CScriptCall(const CScriptCall&) = delete;
  CScriptCall& operator=(const CScriptCall&) = delete;

  bool ok() const { return mOk; }
  TPlatformServices& services() const { return *gComponent; }
  const TSinks& sinks() const { return mSinks; }
  operator const TSinks&() const { return mSinks; }
  const log4cxx::LoggerPtr& translation() const { return mSinks.translation; }
  const log4cxx::LoggerPtr& component() const { return mSinks.component; }
  // An ILogger over both sinks, for handlers that take one.
  rig_common::log4rig::Log4Cxx logger() const { return rig_common::log4rig::Log4Cxx(mSinks); }

 private:
  bool mOk = false;
  std::optional<CPrivateLogger> mPrivate;
  TSinks mSinks;  // after the guard, so its copy of the logger goes first
};

}  // namespace NComponent
