// Host service accessors and the prologue of the script functions.

#include "misc.hpp"

namespace NComponent {

namespace {

bool requestString(TPlatformServices& services, const char* name, std::string& out) {
  std::string value;
  if (!services.requestService(name, nullptr, &value)) return false;
  out = value;
  return true;
}

std::string stringService(TPlatformServices& services, const char* name) {
  std::string value;
  requestString(services, name, value);
  return value;
}

}  // namespace

const std::string& componentName() {
  static const std::string name = "vlt2hrw_main";
  return name;
}

log4cxx::LoggerPtr getTranslationLogger(TPlatformServices& services) {
  log4cxx::LoggerPtr logger;
  if (!services.requestService("get component translation logger", &componentName(), &logger))
    return log4cxx::LoggerPtr();
  return logger;
}

log4cxx::LoggerPtr getInitializationLogger(TPlatformServices& services) {
  log4cxx::LoggerPtr logger;
  if (!services.requestService("get component initialization logger", nullptr, &logger)) return log4cxx::LoggerPtr();
  return logger;
}

std::string getWorkingDirectory(TPlatformServices& services) { return stringService(services, "get wdir"); }

std::string getLibraryLocation(TPlatformServices& services) { return stringService(services, "get library location"); }

std::string getConfigName(TPlatformServices& services) { return stringService(services, "get config"); }

boost::filesystem::path getRigInstallBin(TPlatformServices& services) {
  return stringService(services, "get rig install bin");
}

boost::filesystem::path getQrnHomeDir(TPlatformServices& services) {
  std::string install;
  std::string name;
  if (!requestString(services, "get qlln installation path", install)) return {};
  if (!requestString(services, "get qlln QRN_HOME dir name", name)) return {};
  return boost::filesystem::path(install) / name;
}

boost::filesystem::path getKveHomeDir(TPlatformServices& services) {
  std::string install;
  if (!requestString(services, "get qlln installation path", install)) return {};
  return boost::filesystem::path(install) / "KVE_HOME";
}

bool getLogName(TPlatformServices& services, std::string& name) { return requestString(services, "get log", name); }

bool getNeutralName(TPlatformServices& services, std::string& name) {
  return requestString(services, "get neutral", name);
}

bool getPlatform(TPlatformServices& services, int& platform) {
  int value = 0;
  if (!services.requestService("get platform", nullptr, &value) || value < 1) return false;
  platform = value;
  return true;
}

bool checkWdir(TPlatformServices& services, log4cxx::LoggerPtr logger) {
  if (getWorkingDirectory(services).empty()) {
    RIG_LOG1(logger, Error, "Working directory has not been set.");
    return false;
  }
  return true;
}

bool checkLibLoc(TPlatformServices& services, log4cxx::LoggerPtr logger) {
  if (getLibraryLocation(services).empty()) {
    RIG_LOG1(logger, Error, "Source library location has not been set.");
    return false;
  }
  return true;
}

CPrivateLogger::CPrivateLogger(TPlatformServices& services)
    : CAutoDestroy(services, "create component logger", &componentName(), "close component logger", &componentName()) {}

CScriptCall::CScriptCall(TChecks checks) {
  if (gComponent == nullptr) return;
  mSinks.translation = getTranslationLogger(*gComponent);
  if (mSinks.translation == nullptr) return;
  if (!checkWdir(*gComponent, mSinks.translation)) return;
  if (checks == kWdirAndSource && !checkLibLoc(*gComponent, mSinks.translation)) return;
  mPrivate.emplace(*gComponent);
  mSinks.component = mPrivate->get();
  mOk = true;
}

}  // namespace NComponent
