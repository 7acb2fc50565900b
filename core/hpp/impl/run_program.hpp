#pragma once
// The process starter: an editable copy of an environment, and the runs of
// a command line with it, blocking or with pipes to the child.
//
//   NMisc::CRunProgram<std::string> run(logger);
//   run.obtainCurrentEnvironment();            // optional: else the child inherits
//   run.replaceVariable("QRN_HOME", home);
//   if (run.runProgram("cmd /c tool > log 2>>&1", true, NMisc::kCreateNoWindow)) use(run.exitCode());
//
// Piped run:
//   auto* process = run.createProcess("ksh -c \"tool -nostart >> log 2>&1\"", 10000);
//   NPlatform::writeFile(process->writingEnd(), text, written);   // compare written with text.size()
//   NPlatform::closeHandle(process->writingEnd());                // also nulls the record's handle
//   run.closeProcess(process, NMisc::kInfinite, 1);

#include <log4cxx/logger.h>

#include <list>
#include <memory>
#include <string>
#include <utility>

#include "platform/process.hpp"

namespace NMisc {

constexpr unsigned long kCreateNoWindow = NPlatform::kCreateNoWindow;
constexpr unsigned long kCreateDefaultErrorMode = NPlatform::kCreateDefaultErrorMode;
constexpr unsigned int kInfinite = 0xFFFFFFFFu;

// "System error: <code> (<message>)."
std::string systemErrorText(int code);

template <class TString>
class CRunProgram;

template <>
class CRunProgram<std::string> {
 public:
  using TEnvironment = std::list<std::pair<std::string, std::string>>;

  // A child started with pipes on its standard handles.
  struct TProcess {
    NPlatform::TStartupInfo startupInfo;
    NPlatform::CChildProcess processInformation;
    // Child's reading end, saved standard input, the parent's writing end,
    // a spare (always null).
    NPlatform::THandle readingPipe[4] = {NPlatform::kNullHandle, NPlatform::kNullHandle, NPlatform::kNullHandle,
                                         NPlatform::kNullHandle};
    // The parent's reading end, a spare (always null), the child's writing
    // end, saved standard output.
    NPlatform::THandle writingPipe[4] = {NPlatform::kNullHandle, NPlatform::kNullHandle, NPlatform::kNullHandle,
                                         NPlatform::kNullHandle};

    // Where the caller writes the child's input, and closes it with
    // NPlatform::closeHandle (which nulls it here).
    NPlatform::THandle& writingEnd() { return readingPipe[2]; }
  };

  explicit CRunProgram(log4cxx::LoggerPtr logger);
  ~CRunProgram();
  CRunProgram(const CRunProgram&) = delete;
  CRunProgram& operator=(const CRunProgram&) = delete;

  // Copies the host's environment into the list, in the host's order.
  bool obtainCurrentEnvironment();
  // Drops the variable (any spelling) and appends it as `name`=`value`.
  void replaceVariable(const std::string& name, const std::string& value);
  // Prepends `value` to the variable in place, or appends a new one.
  void pushValueFront(const std::string& name, const std::string& value);

  // Starts `command` and, with `wait`, blocks until it ends. True when the
  // child started and its code could be read; the code is exitCode().
  bool runProgram(const std::string& command, bool wait, unsigned long creationFlags);

  // Starts `command` with its standard input from a pipe and its output and
  // error into another. Null on failure. The TProcess belongs to this object
  // and lives as long as it.
  TProcess* createProcess(const std::string& command, unsigned int initTimeoutMs);
  // Waits for the end (kInfinite: no limit); a child still running after
  // `timeoutMs` is ended with `exitCodeIfKilled`, and the result is false.
  bool closeProcess(TProcess* process, unsigned int timeoutMs, unsigned int exitCodeIfKilled);

  unsigned long exitCode() const { return mExitCode; }
  const TEnvironment& environment() const { return mEnvironment; }

 private:
  TEnvironment::iterator findVariable(const std::string& name);
  void logEnvironment() const;
  // "name=value\0...\0\0" in list order; empty when there is no environment.
  std::unique_ptr<char[]> environmentBlock() const;
  bool makePipe(NPlatform::THandle handles[4], bool reading);

  log4cxx::LoggerPtr mLogger;
  TEnvironment mEnvironment;
  unsigned long mExitCode = 0;
  std::list<std::unique_ptr<TProcess>> mProcesses;
};

}  // namespace NMisc
