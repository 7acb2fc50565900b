#pragma once
// Logging facade of the whole project: the two sinks of a script call as one
// record, the two log statements, and the ILogger interface handed to file
// handlers that do not know log4cxx.
//
//   RIG_LOG(sinks, Warn, "text " << value);   both sinks of a call, each checked
//   RIG_LOG1(logger, Debug, "text");          one logger
//
// `sinks` is a TSinks or anything that converts to one (the script call).
// The text is built only behind the level check of each logger.

#include <log4cxx/logger.h>

#include <string>

namespace rig_common {
namespace log4rig {

// The two sinks of a script call: the run's translation logger first, the
// call's per-component logger second. Either may be null.
struct TSinks {
  log4cxx::LoggerPtr translation;
  log4cxx::LoggerPtr component;
};

// Forces an already built text on one logger when the level is enabled.
void logAt(const log4cxx::LoggerPtr& logger, const log4cxx::LevelPtr& level, const std::string& message);

// Levels of ILogger::operator().
enum { kDebug = 2, kInfo = 3, kWarn = 4, kError = 5, kFatal = 6 };

class ILogger {
 public:
  virtual void operator()(int level, const std::string& message) = 0;
  virtual ~ILogger() = default;
};

// ILogger on the two sinks of a script call.
class Log4Cxx : public ILogger {
 public:
  explicit Log4Cxx(TSinks sinks) : mSinks(std::move(sinks)) {}

  void operator()(int level, const std::string& message) override;

  // The log4cxx level of an ILogger level; null for any other number.
  static log4cxx::LevelPtr toLevel(int level);

 private:
  TSinks mSinks;
};

}  // namespace log4rig
}  // namespace rig_common

#define RIG_LOG1(logger, levelName, message)                                                     \
  do {                                                                                           \
    const ::log4cxx::LoggerPtr& rigLogger_ = (logger);                                           \
    const ::log4cxx::LevelPtr& rigLevel_ = ::log4cxx::Level::get##levelName();                   \
    if (rigLogger_ != nullptr && rigLogger_->isEnabledFor(rigLevel_)) {                          \
      ::log4cxx::helpers::MessageBuffer rigBuffer_;                                              \
      rigLogger_->forcedLog(rigLevel_, rigBuffer_.str(rigBuffer_ << message), LOG4CXX_LOCATION); \
    }                                                                                            \
  } while (0)

#define RIG_LOG(sinks, levelName, message)                    \
  do {                                                        \
    const ::rig_common::log4rig::TSinks& rigSinks_ = (sinks); \
    RIG_LOG1(rigSinks_.translation, levelName, message);      \
    RIG_LOG1(rigSinks_.component, levelName, message);        \
  } while (0)
