#pragma once
// Host service accessors, the prologue checks of the script functions and
// the context a script function carries through its work.

#include <log4cxx/logger.h>

#include <boost/filesystem/path.hpp>
#include <optional>
#include <string>

#include "component.hpp"
#include "impl/log4rig_impl.hpp"

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

// What a script function holds from its prologue to its return: the
// translation logger and the per-component logger guard.
class CScriptCall {
 public:
  enum TChecks { kWdir, kWdirAndSource };

  // Runs the prologue; ok() tells whether the function may go on.
  explicit CScriptCall(TChecks checks = kWdir);
  CScriptCall(const CScriptCall&) = delete;
  CScriptCall& operator=(const CScriptCall&) = delete;

  bool ok() const { return mOk; }
  TPlatformServices& services() const { return *gComponent; }
  log4cxx::LoggerPtr component() const { return mPrivate ? mPrivate->get() : log4cxx::LoggerPtr(); }
  // An ILogger over both sinks, for handlers that take one.
  rig_common::log4rig::Log4Cxx logger() const { return {translation, component()}; }

  log4cxx::LoggerPtr translation;

 private:
  bool mOk = false;
  std::optional<CPrivateLogger> mPrivate;
};

}  // namespace NComponent
