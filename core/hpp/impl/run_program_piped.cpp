// The process starter's piped run: the child reads its commands from a pipe
// that the caller fills and closes; its output and error go into a second
// pipe that nobody reads (the tools are told to write to a file).

#include <log4cxx/level.h>

#include "common/log4rig.hpp"
#include "core/hpp/impl/run_program.hpp"

namespace NMisc {

namespace {

void closeEnd(NPlatform::THandle& handle) {
  if (handle != NPlatform::kNullHandle) NPlatform::closeHandle(handle);
}

}  // namespace

bool CRunProgram<std::string>::makePipe(NPlatform::THandle handles[4], bool reading) {
  NPlatform::THandle readEnd = NPlatform::kNullHandle;
  NPlatform::THandle writeEnd = NPlatform::kNullHandle;
  // Neither end is inherited as such: the child gets its own end as a
  // standard handle, and nothing else of the parent.
  if (!NPlatform::createPipe(readEnd, writeEnd)) return false;
  if (reading) {
    handles[0] = readEnd;
    handles[1] = NPlatform::getStdHandle(0);
    handles[2] = writeEnd;
  } else {
    handles[0] = readEnd;
    handles[2] = writeEnd;
    handles[3] = NPlatform::getStdHandle(1);
  }
  return true;
}

CRunProgram<std::string>::TProcess* CRunProgram<std::string>::createProcess(const std::string& command,
                                                                            unsigned int initTimeoutMs) {
  RIG_LOG1(mLogger, Debug, "Piped process starter: creating process: '" << command << "'");
  if (command.empty()) {
    RIG_LOG1(mLogger, Error, "Piped process starter: process cannot be created - empty command");
    return nullptr;
  }
  logEnvironment();
  // The record belongs to this object from now on, whatever happens: its
  // pipe ends are closed when the runner goes.
  mProcesses.push_back(std::make_unique<TProcess>());
  TProcess* process = mProcesses.back().get();
  if (!makePipe(process->readingPipe, true)) {
    RIG_LOG1(mLogger, Error, "Piped process starter: cannot create reading pipe.");
    return nullptr;
  }
  if (!makePipe(process->writingPipe, false)) {
    RIG_LOG1(mLogger, Error, "Piped process starter: cannot create writing pipe.");
    return nullptr;
  }
  process->startupInfo = NPlatform::TStartupInfo();
  process->startupInfo.useStdHandles = true;
  process->startupInfo.stdInput = process->readingPipe[0];
  process->startupInfo.stdOutput = process->writingPipe[2];
  process->startupInfo.stdError = process->writingPipe[2];
  process->startupInfo.newProcessGroup = true;
  std::unique_ptr<char[]> block = environmentBlock();
  if (!process->processInformation.create(command, block.get(), process->startupInfo)) {
    int error = NPlatform::lastError();
    RIG_LOG1(mLogger, Error, "Piped process starter: process cannot be created. Reason: " << systemErrorText(error));
    return nullptr;
  }
  // The child has its own copies now. Keeping the parent's copy of the
  // child's reading end would let a write to a child that has gone block
  // instead of failing.
  closeEnd(process->readingPipe[0]);
  closeEnd(process->writingPipe[2]);

  RIG_LOG1(mLogger, Debug,
           "Piped process starter: process created successfully; waiting until it has finished its initialization, "
           "up to "
               << initTimeoutMs << " milliseconds...");
  for (int attempt = 0; attempt < 1; ++attempt) {
    unsigned long waited = process->processInformation.waitForInputIdle(initTimeoutMs);
    if (waited == NPlatform::kWaitTimeout) {
      RIG_LOG1(mLogger, Error,
               "Piped process starter: process has not finished its initialization after: " << initTimeoutMs
                                                                                            << "milliseconds.");
      closeEnd(process->writingEnd());
      closeProcess(process, kInfinite, 1);
      return nullptr;
    }
    if (waited == NPlatform::kWaitFailed) {
      int error = NPlatform::lastError();
      if (error != 0)
        RIG_LOG1(mLogger, Error,
                 "Piped process starter: process initialization failed. Reason: " << systemErrorText(error));
    }
  }
  // The parent's standard handles are never redirected (the child gets the
  // pipe ends through its start-up record), so nothing is to be restored;
  // the step is still reported as the log readers know it.
  RIG_LOG1(mLogger, Debug, "Piped process starter: restoring Std handles.");
  return process;
}

bool CRunProgram<std::string>::closeProcess(TProcess* process, unsigned int timeoutMs, unsigned int exitCodeIfKilled) {
  RIG_LOG1(mLogger, Debug, "Piped process close: waiting until child process exits...");
  mExitCode = 0;
  if (process == nullptr) return false;
  bool result = true;
  NPlatform::CChildProcess& child = process->processInformation;
  unsigned long limit = timeoutMs == kInfinite ? NPlatform::kInfinite : timeoutMs;
  if (child.wait(limit) != NPlatform::kWaitObject0) {
    RIG_LOG1(mLogger, Error, "Piped process close: time-out interval elapsed: " << timeoutMs << " milliseconds.");
    RIG_LOG1(mLogger, Debug, "Piped process close: attempting to terminate such a process...");
    if (!child.terminate(exitCodeIfKilled)) {
      int error = NPlatform::lastError();
      RIG_LOG1(mLogger, Error, "Piped process close: process cannot be terminated. Reason: " << systemErrorText(error));
    }
    result = false;
  }
  unsigned long code = 0;
  if (child.exitCode(code)) {
    mExitCode = code;
  } else {
    int error = NPlatform::lastError();
    RIG_LOG1(
        mLogger, Error,
        "Piped process close: process exited, but return code cannot be obtained. Reason: " << systemErrorText(error));
    result = false;
  }
  RIG_LOG1(mLogger, Debug, "Piped process close: cleanup.");
  if (!child.close()) result = false;
  // Nobody reads the child's output; its pipe goes with the child.
  closeEnd(process->writingPipe[0]);
  RIG_LOG1(mLogger, Debug, "Piped process close: all done.");
  return result;
}

}  // namespace NMisc
