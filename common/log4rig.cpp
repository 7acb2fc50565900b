#include "common/log4rig.hpp"

namespace rig_common {
namespace log4rig {

void logAt(const log4cxx::LoggerPtr& logger, const log4cxx::LevelPtr& level, const std::string& message) {
  if (logger != nullptr && level != nullptr && logger->isEnabledFor(level))
    logger->forcedLog(level, message, LOG4CXX_LOCATION);
}

void Log4Cxx::operator()(int level, const std::string& message) {
  const log4cxx::LevelPtr lvl = toLevel(level);
  logAt(mSinks.translation, lvl, message);
  logAt(mSinks.component, lvl, message);
}

log4cxx::LevelPtr Log4Cxx::toLevel(int level) {
  switch (level) {
    case kDebug:
      return log4cxx::Level::getDebug();
    case kInfo:
      return log4cxx::Level::getInfo();
    case kWarn:
      return log4cxx::Level::getWarn();
    case kError:
      return log4cxx::Level::getError();
    case kFatal:
      return log4cxx::Level::getFatal();
    default:
      return log4cxx::LevelPtr();
  }
}

}  // namespace log4rig
}  // namespace rig_common
