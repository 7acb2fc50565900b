#include "host/progress.hpp"

#include <cstdio>
#include <regex>

#include "host/log_text.hpp"

namespace vlthost {

namespace {

bool startsWith(const std::string& text, const char* prefix) { return text.rfind(prefix, 0) == 0; }

// "/lib/catalogs/digital" -> "digital"
std::string leafName(std::string path) {
  while (!path.empty() && (path.back() == '/' || path.back() == '\\')) path.pop_back();
  size_t slash = path.find_last_of("/\\");
  return slash == std::string::npos ? path : path.substr(slash + 1);
}

}  // namespace

bool CProgress::isQuiet(const std::string& function) {
  static const std::regex quiet("(get|set|find|new|remove|use)_.*|add_(item|row|row_item|two_col_item)_to_.*");
  return std::regex_match(function, quiet);
}

std::string CProgress::durationText(TClock::duration duration) {
  double seconds = std::chrono::duration<double>(duration).count();
  char text[32];
  if (seconds < 60)
    std::snprintf(text, sizeof(text), "%.1f s", seconds);
  else
    std::snprintf(text, sizeof(text), "%d min %02d s", static_cast<int>(seconds) / 60, static_cast<int>(seconds) % 60);
  return text;
}

CProgress::CProgress(std::ostream& out, EProgress mode) : mOut(out), mMode(mode) {
  if (mMode == EProgress::Bar) mTicker = std::thread([this] { tick(); });
}

CProgress::~CProgress() {
  {
    std::lock_guard<std::mutex> lock(mMutex);
    mStopping = true;
  }
  mStop.notify_all();
  if (mTicker.joinable()) mTicker.join();
}

void CProgress::tick() {
  std::unique_lock<std::mutex> lock(mMutex);
  while (!mStop.wait_for(lock, std::chrono::seconds(1), [this] { return mStopping; }))
    if (mBarShown) draw(true);
}

void CProgress::step(const std::string& title) {
  std::lock_guard<std::mutex> lock(mMutex);
  end();
  begin(title, true);
}

void CProgress::callBegin(const std::string& function) {
  std::lock_guard<std::mutex> lock(mMutex);
  if (mNamed) draw(false);
  if (mNamed || isQuiet(function)) return;
  end();
  begin(function, false);
}

void CProgress::callEnd(const std::string& function, const std::string& result) {
  std::lock_guard<std::mutex> lock(mMutex);
  if (isQuiet(function)) return;
  if (result == "false" || result == "-1" || result.empty()) {
    mFailed = true;
    if (mFailure.empty()) mFailure = function + " answered " + (result.empty() ? "\"\"" : result);
  }
  if (!mNamed) end();
  // Between two calls of a named step the script may print: the bar makes
  // way and comes back with the next call or message.
  clearLocked();
}

void CProgress::callError(const std::string& function) {
  std::lock_guard<std::mutex> lock(mMutex);
  mFailed = true;
  if (mFailure.empty()) mFailure = function + " stopped with a Lua error";
  if (!mNamed) end();
}

// The component's messages that tell of items: one per catalog or symbol.
void CProgress::message(const std::string& sink, const std::string& level, const std::string& text) {
  std::lock_guard<std::mutex> lock(mMutex);
  bool twin = sink != mLastSink && level == mLastLevel && text == mLastText;
  mLastSink = twin ? std::string() : sink;
  mLastLevel = twin ? std::string() : level;
  mLastText = twin ? std::string() : text;
  if (!mOpen || twin) return;
  if (level == "WARN") ++mWarnings;
  if (level == "ERROR" || level == "FATAL") ++mErrors;
  static const std::regex total("[Ff]ollowing number of symbols found for partition (.*): ([0-9]+)");
  std::smatch match;
  if (startsWith(text, "Saving catalog: ")) {
    ++mItems;
    mCurrent = leafName(text.substr(16));
  } else if (startsWith(text, "Processing neutral data for catalog: ")) {
    ++mItems;
    mCurrent = text.substr(37);
  } else if (std::regex_search(text, match, total)) {
    mTotal += std::stol(match[2]);
    mCurrent = "partition " + match[1].str();
  } else if (text.find("following symbol will be excluded from translation: ") != std::string::npos) {
    ++mItems;
    mCurrent = leafName(text.substr(text.find(": ", text.find("translation")) + 2)) + " (excluded)";
  } else if (startsWith(text, "Piped process starter: creating process: '") &&
             text.find("sksym2td") != std::string::npos) {
    ++mItems;  // one run of the symbol tool per symbol
  } else if (startsWith(text, "Process starter: creating process: '") &&
             (text.find("tlx2partsdb") != std::string::npos)) {
    ++mItems;
  } else {
    return;
  }
  draw(false);
}

void CProgress::begin(const std::string& title, bool named) {
  mOpen = true;
  mNamed = named;
  mFailed = false;
  mTitle = title;
  mCurrent.clear();
  mFailure.clear();
  mItems = mTotal = mWarnings = mErrors = 0;
  mStart = TClock::now();
  mLastDraw = TClock::time_point();
  draw(true);
}

void CProgress::end() {
  if (!mOpen || mMode == EProgress::Off) {
    mOpen = false;
    return;
  }
  mOpen = false;
  clearLocked();
  std::fflush(stdout);  // what the script printed comes first
  std::string line = mTitle + ": " + (mFailed ? "FAILED (" + mFailure + ")" : std::string("done"));
  if (mItems > 0) line += ", " + std::to_string(mItems) + (mItems == 1 ? " item" : " items");
  if (mWarnings > 0) line += ", " + std::to_string(mWarnings) + (mWarnings == 1 ? " warning" : " warnings");
  if (mErrors > 0) line += ", " + std::to_string(mErrors) + (mErrors == 1 ? " error" : " errors");
  mOut << escapeControlBytes(shortenMiddle(line + ", " + durationText(TClock::now() - mStart))) << '\n' << std::flush;
}

void CProgress::finish() {
  std::lock_guard<std::mutex> lock(mMutex);
  end();
}

void CProgress::draw(bool force) {
  if (mMode != EProgress::Bar || !mOpen) return;
  TClock::time_point now = TClock::now();
  if (!force && now - mLastDraw < std::chrono::milliseconds(100)) return;
  mLastDraw = now;
  std::string line = mTitle;
  if (mItems > 0 || mTotal > 0)
    line += "  " + std::to_string(mItems) + (mTotal > 0 ? "/" + std::to_string(mTotal) : "");
  if (!mCurrent.empty()) line += "  " + mCurrent;
  line += "  " + durationText(now - mStart);
  line = escapeControlBytes(shortenMiddle(line, 100));
  std::fflush(stdout);
  mOut << "\r\033[K" << line << std::flush;
  mBarShown = true;
}

void CProgress::clearLine() {
  std::lock_guard<std::mutex> lock(mMutex);
  clearLocked();
}

void CProgress::clearLocked() {
  if (!mBarShown) return;
  mOut << "\r\033[K" << std::flush;
  mBarShown = false;
  mLastDraw = TClock::time_point();
}

void CProgress::redraw() {
  std::lock_guard<std::mutex> lock(mMutex);
  draw(true);
}

}  // namespace vlthost
