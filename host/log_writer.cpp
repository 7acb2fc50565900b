#include "host/log_writer.hpp"

#include <algorithm>
#include <cstdio>
#include <ctime>

#include "host/log_text.hpp"

namespace vlthost {

std::string clockText(std::chrono::system_clock::time_point time) {
  std::time_t seconds = std::chrono::system_clock::to_time_t(time);
  auto millis = std::chrono::duration_cast<std::chrono::milliseconds>(time.time_since_epoch()).count() % 1000;
  std::tm parts{};
  gmtime_r(&seconds, &parts);
  char text[32];
  std::snprintf(text, sizeof(text), "%02d:%02d:%02d.%03d", parts.tm_hour, parts.tm_min, parts.tm_sec,
                static_cast<int>(millis));
  return text;
}

void CLogWriter::header(const std::string& text) {
  if (mFormat != ELogFormat::People) return;
  flush();
  std::time_t now = std::time(nullptr);
  std::tm parts{};
  gmtime_r(&now, &parts);
  char date[40];
  std::strftime(date, sizeof(date), "%Y-%m-%d %H:%M:%S UTC", &parts);
  mOut << "=== " << date << ' ' << escapeControlBytes(shortenMiddle(text)) << " ===\n" << std::flush;
}

void CLogWriter::write(const std::string& sink, const std::string& level, const std::string& message) {
  if (mFormat == ELogFormat::Exact) {
    mOut << sink << ' ' << level << ' ' << escapeControlBytes(message) << '\n' << std::flush;
    return;
  }
  if (mHasPending && mPending.level == level && mPending.message == message &&
      std::find(mPending.sinks.begin(), mPending.sinks.end(), sink) == mPending.sinks.end()) {
    mPending.sinks.push_back(sink);
    return;
  }
  flush();
  mPending = {std::chrono::system_clock::now(), {sink}, level, message};
  mHasPending = true;
}

void CLogWriter::flush() {
  if (!mHasPending) return;
  mHasPending = false;
  std::string sinks;
  for (const std::string& s : mPending.sinks) sinks += (sinks.empty() ? "" : "+") + s;
  std::string level = mPending.level;
  level.resize(std::max<size_t>(level.size(), 5), ' ');
  mOut << clockText(mPending.time) << ' ' << level << ' ' << sinks << ": "
       << escapeControlBytes(shortenMiddle(mPending.message)) << '\n'
       << std::flush;
}

}  // namespace vlthost
