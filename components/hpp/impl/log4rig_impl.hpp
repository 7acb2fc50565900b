#pragma once
// Logging facade: the two-sink log statement, the ILogger interface handed
// to file handlers that do not know log4cxx, and the per-component logger
// guard.

#include <log4cxx/logger.h>

#include <string>

#include "../component.hpp"

// Writes one message on one logger. The text is built only when the logger
// exists and the level is enabled on it.
#define RIG_LOG_ONE(logger, level, message)                                                      \
  do {                                                                                           \
    const ::log4cxx::LoggerPtr& rigLogger_ = (logger);                                           \
    const ::log4cxx::LevelPtr& rigLevel_ = (level);                                              \
    if (rigLogger_ != nullptr && rigLogger_->isEnabledFor(rigLevel_)) {                          \
      ::log4cxx::helpers::MessageBuffer rigBuffer_;                                              \
      rigLogger_->forcedLog(rigLevel_, rigBuffer_.str(rigBuffer_ << message), LOG4CXX_LOCATION); \
    }                                                                                            \
  } while (0)

// The log statement of the component: the translation logger first, then
// the per-component logger, each checked on its own.
#define RIG_LOG(translationLogger, componentLogger, level, message) \
  do {                                                              \
    RIG_LOG_ONE(translationLogger, level, message);                 \
    RIG_LOG_ONE(componentLogger, level, message);                   \
  } while (0)

#define RIG_LEVEL(name) ::log4cxx::Level::get##name()

// Shorthands on a script call context (see misc.hpp): VLT_LOG(ctx, Debug, "x" << y).
#define VLT_LOG(ctx, levelName, message) RIG_LOG((ctx).translation, (ctx).component(), RIG_LEVEL(levelName), message)
// The per-component logger alone (short progress messages).
#define VLT_LOG_PRIVATE(ctx, levelName, message) RIG_LOG_ONE((ctx).component(), RIG_LEVEL(levelName), message)
// One given logger alone.
#define VLT_LOG1(logger, levelName, message) RIG_LOG_ONE(logger, RIG_LEVEL(levelName), message)

namespace rig_common {
namespace log4rig {

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
  Log4Cxx(log4cxx::LoggerPtr first, log4cxx::LoggerPtr second) : mFirst(std::move(first)), mSecond(std::move(second)) {}

  void operator()(int level, const std::string& message) override {
    log4cxx::LevelPtr lvl = toLevel(level);
    if (lvl == nullptr) return;
    RIG_LOG_ONE(mFirst, lvl, message);
    RIG_LOG_ONE(mSecond, lvl, message);
  }

  static log4cxx::LevelPtr toLevel(int level) {
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

 private:
  log4cxx::LoggerPtr mFirst;
  log4cxx::LoggerPtr mSecond;
};

}  // namespace log4rig
}  // namespace rig_common

namespace NComponent {

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

}  // namespace NComponent
