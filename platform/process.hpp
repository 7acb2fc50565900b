#pragma once
// POSIX process layer: the handful of process, pipe and environment
// services the process starter needs, with the calling conventions of the
// platform the translator was first written for (handles, wait results,
// unsigned exit codes, an error code read after a failed call).
//
// How command lines are turned into programs (the "cmd /c" and "ksh -c"
// interpreters) is described in platform/README.md.

#include <sys/types.h>

#include <string>

namespace NPlatform {

// A file descriptor; kNullHandle stands for "no handle".
using THandle = int;
constexpr THandle kNullHandle = -1;

constexpr unsigned long kInfinite = 0xFFFFFFFFul;
// Wait results.
constexpr unsigned long kWaitObject0 = 0;
constexpr unsigned long kWaitTimeout = 258;
constexpr unsigned long kWaitFailed = 0xFFFFFFFFul;
// The exit code of a child that has not ended yet.
constexpr unsigned long kStillActive = 259;
// Creation flags: accepted and without effect here (no console windows).
constexpr unsigned long kCreateNoWindow = 0x08000000ul;
constexpr unsigned long kCreateDefaultErrorMode = 0x04000000ul;

// The error code of the last failed call of this layer (an errno value).
int lastError();
void setLastError(int code);
// "System error: <code> (<message>)." with the message of the system category.
std::string systemErrorText(int code);

// A copy of the process environment as one block: "name=value" entries each
// ended by a NUL, one more NUL at the end. Null on failure (see lastError).
char* getEnvironmentStrings();
void freeEnvironmentStrings(char* block);
// A variable of the host process. False when it is not set.
bool getEnvironmentVariable(const std::string& name, std::string& value);

// The standard handles a child gets. Without useStdHandles it shares the
// parent's standard input, output and error.
struct TStartupInfo {
  bool useStdHandles = false;
  THandle stdInput = kNullHandle;
  THandle stdOutput = kNullHandle;
  THandle stdError = kNullHandle;
  // The child leads a process group of its own, so that terminate() also
  // ends what it started (an interpreter's children).
  bool newProcessGroup = false;
};

// One child process, from its start to the moment its code has been read.
class CChildProcess {
 public:
  CChildProcess() = default;
  ~CChildProcess();
  CChildProcess(const CChildProcess&) = delete;
  CChildProcess& operator=(const CChildProcess&) = delete;

  // Starts `commandLine` (see README.md) with `environmentBlock` (the block
  // form of getEnvironmentStrings; null: the child inherits the host's
  // environment), in the current directory, with no descriptor of the parent
  // beyond the standard three. False with lastError() set when nothing could
  // be started.
  bool create(const std::string& commandLine, const char* environmentBlock, const TStartupInfo& startup);

  // Waits for the end, up to timeoutMs (kInfinite: no limit). Gives
  // kWaitObject0, kWaitTimeout or kWaitFailed.
  unsigned long wait(unsigned long timeoutMs);
  // Waits until the child is idle: blocked waiting for something (input, a
  // child, a timer) rather than running, or ended. Gives kWaitObject0,
  // kWaitTimeout or kWaitFailed.
  unsigned long waitForInputIdle(unsigned long timeoutMs);
  // The exit code: kStillActive while it runs, 128 + signal for a child
  // killed by a signal, the given code after terminate(). False on failure.
  bool exitCode(unsigned long& code);
  // Ends the child (and its process group, when it has one) with `code` as
  // its exit code.
  bool terminate(unsigned long code);
  // Gives up the handle of the child. False when there is none.
  bool close();

  bool valid() const { return mState != kNone; }
  pid_t id() const { return mPid; }

 private:
  enum TState { kNone, kRunning, kEnded };
  // Reaps the child without blocking; true when it has ended.
  bool poll();
  void ended(int status);

  TState mState = kNone;
  pid_t mPid = -1;
  bool mGroup = false;
  unsigned long mCode = 0;
};

// Pipes and handles.
// A pipe whose two ends are not inherited by children.
bool createPipe(THandle& readEnd, THandle& writeEnd);
// Writes all of `size` bytes; `written` is the count that went through. A
// reader that has gone gives false (EPIPE), never a signal.
bool writeFile(THandle handle, const void* data, unsigned long size, unsigned long& written);
bool writeFile(THandle handle, const std::string& text, unsigned long& written);
// Closes the handle and makes it null, so that a record holding it cannot
// close it twice. False for a null handle or a failed close.
bool closeHandle(THandle& handle);
// The parent's standard input (0) and output (1) handles.
THandle getStdHandle(int which);

}  // namespace NPlatform
