#pragma once
// The host side of the component boundary: parameter store, named services,
// the three loggers and a record of every message. Used by vlt2hrw-host and,
// in process, by the unit tests as their fake host.

#include <log4cxx/logger.h>

#include <functional>
#include <map>
#include <ostream>
#include <set>
#include <string>
#include <vector>

#include "components/hpp/component.hpp"

namespace vlthost {

struct TLogRecord {
  std::string sink;   // "init", "translation" or "component"
  std::string level;  // "TRACE", "DEBUG", "INFO", "WARN", "ERROR", "FATAL"
  std::string message;
};

class CHostCore {
 public:
  // The newest core serves the services; there is one at a time.
  CHostCore();
  ~CHostCore();
  CHostCore(const CHostCore&) = delete;
  CHostCore& operator=(const CHostCore&) = delete;

  // The services record to hand to InitComponent.
  NComponent::TPlatformServices services() const;

  // String services by name ("get wdir", "get config", ...). An unset
  // "get wdir" or "get library location" answers false.
  void setService(const std::string& name, const std::string& value);
  void clearService(const std::string& name);
  void setPlatform(int platform) { mPlatform = platform; }
  void failService(const std::string& name, bool on = true);
  bool serviceFails(const std::string& name) const { return mFailing.count(name) != 0; }

  std::map<std::string, std::string>& parameters() { return mParameters; }
  std::string& componentDirectory() { return mComponentDirectory; }

  // Thresholds, as log4cxx level names.
  void setLevel(const std::string& level);           // all three sinks
  void setComponentLevel(const std::string& level);  // the per-component sink
  // Every message also goes to this stream as "<sink> <LEVEL> <message>".
  void setEcho(std::ostream* out) { mEcho = out; }
  // Every recorded message also goes to this function.
  void setObserver(std::function<void(const TLogRecord&)> observer) { mObserver = std::move(observer); }
  // The loggers pass messages down to `level` to the tap, whatever the
  // thresholds are; the thresholds still decide what is recorded and logged.
  // The progress display reads the component's Debug messages so.
  void setTap(const std::string& level, std::function<void(const TLogRecord&)> tap);

  const std::vector<TLogRecord>& records() const { return mRecords; }
  void clearRecords() { mRecords.clear(); }
  int opened() const { return mOpened; }
  int closed() const { return mClosed; }
  bool componentLoggerOpen() const { return mComponentDepth > 0; }

  // Called by the appender.
  void record(const std::string& sink, const std::string& level, const std::string& message);

 private:
  bool serve(const std::string& service, const std::string* component, void* out);
  static std::string getParameterTrampoline(const std::string& key);
  static void setParameterTrampoline(const std::string& key, const std::string& value);
  static bool requestServiceTrampoline(const std::string& service, const std::string* component, void* out);

  std::map<std::string, std::string> mParameters;
  std::map<std::string, std::string> mStrings;
  std::set<std::string> mFailing;
  std::string mComponentDirectory;
  int mPlatform = 1;
  log4cxx::LoggerPtr mInit, mTranslation, mComponent;
  int mComponentDepth = 0;
  int mOpened = 0, mClosed = 0;
  std::vector<TLogRecord> mRecords;
  std::ostream* mEcho = nullptr;
  std::function<void(const TLogRecord&)> mObserver, mTap;
  log4cxx::LevelPtr mLevel, mComponentLevel, mTapLevel;
  void applyLevels();
  CHostCore* mPrevious = nullptr;
};

}  // namespace vlthost
