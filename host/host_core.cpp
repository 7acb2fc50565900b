#include "host/host_core.hpp"

#include <log4cxx/appenderskeleton.h>
#include <log4cxx/helpers/object.h>
#include <log4cxx/level.h>
#include <log4cxx/spi/loggingevent.h>

using namespace log4cxx;

namespace vlthost {
class CHostCore;
}

// Hands each event of one sink to the host core.
class CSinkAppender : public log4cxx::AppenderSkeleton {
 public:
  DECLARE_LOG4CXX_OBJECT(CSinkAppender)
  BEGIN_LOG4CXX_CAST_MAP()
  LOG4CXX_CAST_ENTRY(CSinkAppender)
  LOG4CXX_CAST_ENTRY_CHAIN(AppenderSkeleton)
  END_LOG4CXX_CAST_MAP()

  CSinkAppender() = default;
  CSinkAppender(vlthost::CHostCore* core, std::string sink) : mCore(core), mSink(std::move(sink)) {}

  void append(const log4cxx::spi::LoggingEventPtr& event, log4cxx::helpers::Pool&) override {
    if (mCore != nullptr) mCore->record(mSink, event->getLevel()->toString(), event->getMessage());
  }
  void close() override {}
  bool requiresLayout() const override { return false; }

 private:
  vlthost::CHostCore* mCore = nullptr;
  std::string mSink;
};

IMPLEMENT_LOG4CXX_OBJECT(CSinkAppender)

namespace vlthost {

namespace {
CHostCore* gCurrent = nullptr;
}  // namespace

namespace {

log4cxx::LoggerPtr makeSink(CHostCore* core, const std::string& sink, bool attach) {
  log4cxx::LoggerPtr logger = log4cxx::Logger::getLogger("vlt2hrw.host." + sink);
  logger->removeAllAppenders();
  logger->setAdditivity(false);
  logger->setLevel(log4cxx::Level::getInfo());
  if (attach) logger->addAppender(std::make_shared<CSinkAppender>(core, sink));
  return logger;
}

}  // namespace

CHostCore::CHostCore()
    : mLevel(log4cxx::Level::getInfo()), mComponentLevel(log4cxx::Level::getInfo()), mPrevious(gCurrent) {
  gCurrent = this;
  mInit = makeSink(this, "init", true);
  mTranslation = makeSink(this, "translation", true);
  mComponent = makeSink(this, "component", false);
  mStrings["get config"] = "config";
  mStrings["get log"] = "log";
  mStrings["get neutral"] = "neutral";
  mStrings["get qlln QRN_HOME dir name"] = "QRN_HOME";
}

CHostCore::~CHostCore() {
  for (const auto& logger : {mInit, mTranslation, mComponent}) logger->removeAllAppenders();
  gCurrent = mPrevious;
}

NComponent::TPlatformServices CHostCore::services() const {
  NComponent::TPlatformServices services;
  services.getParameter = &getParameterTrampoline;
  services.setParameter = &setParameterTrampoline;
  services.requestService = &requestServiceTrampoline;
  services.componentDirectory = mComponentDirectory;
  return services;
}

void CHostCore::setService(const std::string& name, const std::string& value) { mStrings[name] = value; }
void CHostCore::clearService(const std::string& name) { mStrings.erase(name); }

void CHostCore::failService(const std::string& name, bool on) {
  if (on)
    mFailing.insert(name);
  else
    mFailing.erase(name);
}

void CHostCore::setLevel(const std::string& level) {
  mLevel = mComponentLevel = log4cxx::Level::toLevel(level, log4cxx::Level::getInfo());
  applyLevels();
}

void CHostCore::setComponentLevel(const std::string& level) {
  mComponentLevel = log4cxx::Level::toLevel(level, log4cxx::Level::getInfo());
  applyLevels();
}

void CHostCore::setTap(const std::string& level, std::function<void(const TLogRecord&)> tap) {
  mTap = std::move(tap);
  mTapLevel = mTap ? log4cxx::Level::toLevel(level, log4cxx::Level::getDebug()) : log4cxx::LevelPtr();
  applyLevels();
}

namespace {
log4cxx::LevelPtr lower(const log4cxx::LevelPtr& a, const log4cxx::LevelPtr& b) {
  if (!b) return a;
  return b->toInt() < a->toInt() ? b : a;
}
}  // namespace

void CHostCore::applyLevels() {
  mInit->setLevel(lower(mLevel, mTapLevel));
  mTranslation->setLevel(lower(mLevel, mTapLevel));
  mComponent->setLevel(lower(mComponentLevel, mTapLevel));
}

void CHostCore::record(const std::string& sink, const std::string& level, const std::string& message) {
  TLogRecord entry{sink, level, message};
  if (mTap) mTap(entry);
  const log4cxx::LevelPtr& threshold = sink == "component" ? mComponentLevel : mLevel;
  if (log4cxx::Level::toLevel(level, log4cxx::Level::getInfo())->toInt() < threshold->toInt()) return;
  mRecords.push_back(entry);
  if (mEcho != nullptr) (*mEcho) << sink << ' ' << level << ' ' << message << '\n' << std::flush;
  if (mObserver) mObserver(mRecords.back());
}

bool CHostCore::serve(const std::string& service, const std::string* component, void* out) {
  (void)component;
  if (mFailing.count(service) != 0) return false;
  if (service == "get component initialization logger") {
    *static_cast<log4cxx::LoggerPtr*>(out) = mInit;
    return true;
  }
  if (service == "get component translation logger") {
    *static_cast<log4cxx::LoggerPtr*>(out) = mTranslation;
    return true;
  }
  // Opening is counted: a helper that opens the logger again inside a
  // script function must not close it under the function's feet.
  if (service == "create component logger") {
    ++mOpened;
    if (mComponentDepth++ == 0) mComponent->addAppender(std::make_shared<CSinkAppender>(this, "component"));
    *static_cast<log4cxx::LoggerPtr*>(out) = mComponent;
    return true;
  }
  if (service == "close component logger") {
    ++mClosed;
    if (mComponentDepth > 0 && --mComponentDepth == 0) mComponent->removeAllAppenders();
    return true;
  }
  if (service == "get platform") {
    *static_cast<int*>(out) = mPlatform;
    return true;
  }
  auto found = mStrings.find(service);
  if (found == mStrings.end()) return false;
  *static_cast<std::string*>(out) = found->second;
  return true;
}

std::string CHostCore::getParameterTrampoline(const std::string& key) {
  auto found = gCurrent->mParameters.find(key);
  return found == gCurrent->mParameters.end() ? std::string() : found->second;
}

void CHostCore::setParameterTrampoline(const std::string& key, const std::string& value) {
  gCurrent->mParameters[key] = value;
}

bool CHostCore::requestServiceTrampoline(const std::string& service, const std::string* component, void* out) {
  return gCurrent->serve(service, component, out);
}

}  // namespace vlthost
