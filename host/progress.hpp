#pragma once
// What the user sees while a workflow runs. The display is driven by what
// the host sees anyway: the component's log messages and the script calls
// it makes; a workflow may name its steps with host.step(title).
//
// A step is the stretch between two host.step calls, or, in a script that
// names none, one call of a script function that does work (the list-handle
// functions and the getters and setters are not steps of their own).
//  - Bar: on a terminal, one line redrawn in place: the step, the number of
//    items so far (and of the total when the component has said it), the
//    current item and the time elapsed.
//  - Lines: one line when a step ends.
// In both forms a step ends with one line: its title, its result, its items,
// the warnings and errors it logged, and its duration.

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <ostream>
#include <string>
#include <thread>

namespace vlthost {

enum class EProgress { Off, Bar, Lines };

class CProgress {
 public:
  using TClock = std::chrono::steady_clock;
  // The bar is redrawn every second by a thread of its own, so that the
  // elapsed time runs on while a tool works on one item for a long time.
  CProgress(std::ostream& out, EProgress mode);
  ~CProgress();
  CProgress(const CProgress&) = delete;
  CProgress& operator=(const CProgress&) = delete;

  void step(const std::string& title);
  void callBegin(const std::string& function);
  // `result` is the script function's answer as text ("true", "false", "-1", ...).
  void callEnd(const std::string& function, const std::string& result);
  void callError(const std::string& function);
  // A message the component wrote on both sinks counts once.
  void message(const std::string& sink, const std::string& level, const std::string& text);
  // Ends the last step.
  void finish();
  // Wipes the bar before something else is written to the same terminal,
  // and draws it again afterwards.
  void clearLine();
  void redraw();

  static bool isQuiet(const std::string& function);
  // "0.4 s", "12.0 s", "3 min 07 s"
  static std::string durationText(TClock::duration duration);

 private:
  void begin(const std::string& title, bool named);
  void end();
  void draw(bool force);
  void clearLocked();
  void tick();

  std::ostream& mOut;
  EProgress mMode;
  bool mOpen = false, mNamed = false, mFailed = false, mBarShown = false;
  std::string mTitle, mCurrent, mFailure;
  std::string mLastSink, mLastLevel, mLastText;
  long mItems = 0, mTotal = 0, mWarnings = 0, mErrors = 0;
  TClock::time_point mStart, mLastDraw;
  std::mutex mMutex;
  std::condition_variable mStop;
  bool mStopping = false;
  std::thread mTicker;
};

}  // namespace vlthost
