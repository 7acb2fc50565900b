#pragma once
// The host's log file. Two forms:
//  - for people (the default): a header line per run, then one line per
//    message: its time, its level, the sinks it went to, the text. A message
//    that the component writes on both sinks of a call arrives twice in a row
//    and becomes one line "translation+component".
//  - exact: one line per message and sink, "<sink> <LEVEL> <message>", as the
//    tests read it.
// Both forms escape control bytes; the form for people also shortens long
// messages in the middle.

#include <chrono>
#include <ostream>
#include <string>
#include <vector>

namespace vlthost {

enum class ELogFormat { People, Exact };

class CLogWriter {
 public:
  CLogWriter(std::ostream& out, ELogFormat format) : mOut(out), mFormat(format) {}
  ~CLogWriter() { flush(); }
  CLogWriter(const CLogWriter&) = delete;
  CLogWriter& operator=(const CLogWriter&) = delete;

  // "=== <text> ===" with the date and time (form for people only).
  void header(const std::string& text);
  void write(const std::string& sink, const std::string& level, const std::string& message);
  // Writes a message that waits for its twin on the second sink.
  void flush();

 private:
  struct TPending {
    std::chrono::system_clock::time_point time;
    std::vector<std::string> sinks;
    std::string level, message;
  };
  std::ostream& mOut;
  ELogFormat mFormat;
  bool mHasPending = false;
  TPending mPending;
};

// "HH:MM:SS.mmm" of a point in time, UTC.
std::string clockText(std::chrono::system_clock::time_point time);

}  // namespace vlthost
