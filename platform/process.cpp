// POSIX process layer: children started with posix_spawn (no copy of a large
// host's address space), the emulated cmd and the real ksh behind them.

#include "platform/process.hpp"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <boost/system/error_code.hpp>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <thread>
#include <vector>

#include "platform/command_line.hpp"

extern char** environ;

namespace NPlatform {

namespace {

using TClock = std::chrono::steady_clock;

// What cmd prints when it does not know the program, and its exit code.
constexpr unsigned long kCmdNotFoundCode = 9009;

std::string upper(std::string text) {
  for (char& c : text) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return text;
}

// The value of PATH in an environment, the name compared without case (as a
// Windows child reads it). `index` receives the entry's position.
const char* findPathEntry(char* const* env, size_t& index) {
  for (size_t i = 0; env != nullptr && env[i] != nullptr; ++i) {
    const char* equal = std::strchr(env[i], '=');
    if (equal != nullptr && upper(std::string(static_cast<const char*>(env[i]), equal)) == "PATH") {
      index = i;
      return equal + 1;
    }
  }
  return nullptr;
}

std::string pathOf(char* const* env) {
  size_t index = 0;
  const char* value = findPathEntry(env, index);
  return value != nullptr ? value : "";
}

std::string hostPath() {
  const char* value = std::getenv("PATH");
  return value != nullptr ? value : "";
}

std::string findShell() {
  std::string found = findProgram("ksh", hostPath());
  for (const char* fallback : {"/usr/bin/ksh", "/bin/ksh"})
    if (found.empty() && ::access(fallback, X_OK) == 0) found = fallback;
  return found;
}

// Descriptors opened for one start, closed when it is over.
class CDescriptors {
 public:
  ~CDescriptors() {
    for (int fd : mFds) ::close(fd);
  }
  void keep(int fd) { mFds.push_back(fd); }

 private:
  std::vector<int> mFds;
};

void writeText(int fd, const std::string& text) {
  unsigned long written = 0;
  if (fd >= 0 && !text.empty()) writeFile(fd, text.data(), text.size(), written);
}

}  // namespace

int lastError() { return errno; }
void setLastError(int code) { errno = code; }

std::string systemErrorText(int code) {
  return "System error: " + std::to_string(code) + " (" + boost::system::system_category().message(code) + ").";
}

char* getEnvironmentStrings() {
  if (environ == nullptr) {
    setLastError(ENOENT);
    return nullptr;
  }
  size_t size = 1;
  for (char** entry = environ; *entry != nullptr; ++entry) size += std::strlen(*entry) + 1;
  char* block = static_cast<char*>(std::malloc(size));
  if (block == nullptr) {
    setLastError(ENOMEM);
    return nullptr;
  }
  char* out = block;
  for (char** entry = environ; *entry != nullptr; ++entry) {
    size_t length = std::strlen(*entry);
    if (length == 0) continue;  // an empty entry would end the block early
    std::memcpy(out, *entry, length + 1);
    out += length + 1;
  }
  *out = '\0';
  return block;
}

void freeEnvironmentStrings(char* block) { std::free(block); }

bool getEnvironmentVariable(const std::string& name, std::string& value) {
  const char* found = std::getenv(name.c_str());
  if (found == nullptr) return false;
  value = found;
  return true;
}

CChildProcess::~CChildProcess() {
  if (mState == kRunning) poll();
}

void CChildProcess::ended(int status) {
  mState = kEnded;
  if (WIFEXITED(status))
    mCode = static_cast<unsigned long>(WEXITSTATUS(status));
  else if (WIFSIGNALED(status))
    mCode = 128ul + static_cast<unsigned long>(WTERMSIG(status));
  else
    mCode = 1;
}

bool CChildProcess::poll() {
  if (mState != kRunning) return mState == kEnded;
  int status = 0;
  pid_t done = ::waitpid(mPid, &status, WNOHANG);
  if (done == mPid) ended(status);
  return mState == kEnded;
}

bool CChildProcess::create(const std::string& commandLine, const char* environmentBlock, const TStartupInfo& startup) {
  if (mState != kNone) {
    setLastError(EBUSY);
    return false;
  }
  TCommandPlan plan = parseCommandLine(commandLine);

  // The child's environment: the block's entries, or the host's own.
  std::vector<char*> envp;
  for (const char* entry = environmentBlock; entry != nullptr && *entry != '\0'; entry += std::strlen(entry) + 1)
    envp.push_back(const_cast<char*>(entry));
  envp.push_back(nullptr);
  char** env = environmentBlock != nullptr ? envp.data() : environ;

  // Where the child's standard handles come from, before redirections.
  int target[3] = {0, 1, 2};
  if (startup.useStdHandles) {
    target[0] = startup.stdInput;
    target[1] = startup.stdOutput;
    target[2] = startup.stdError;
  }
  CDescriptors opened;

  // A run of the emulated cmd that ends before any program starts.
  auto cmdEnds = [&](unsigned long code, const std::string& message) {
    writeText(target[2], message);
    mState = kEnded;
    mPid = -1;
    mCode = code;
    return true;
  };

  std::string program;
  std::string posixPath;  // ksh: PATH in the form the shell reads
  std::vector<char*> kshEnv;
  switch (plan.interpreter) {
    case TInterpreter::kKsh: {
      program = findShell();
      size_t index = 0;
      const char* path = findPathEntry(env, index);
      if (path != nullptr && std::strpbrk(path, ";\"\\") != nullptr) {
        posixPath = "PATH=" + toPosixSearchPath(path);
        for (char** entry = env; *entry != nullptr; ++entry) kshEnv.push_back(*entry);
        kshEnv.push_back(nullptr);
        kshEnv[index] = &posixPath[0];
        env = kshEnv.data();
      }
      break;
    }
    case TInterpreter::kCmd: {
      if (!plan.syntaxError.empty()) return cmdEnds(1, plan.syntaxError + "\n");
      for (const TRedirection& r : plan.redirections) {
        if (r.kind == TRedirection::kDuplicate) {
          target[r.fd] = target[r.sourceFd];
          continue;
        }
        int flags = O_CLOEXEC | (r.kind == TRedirection::kRead ? O_RDONLY : O_WRONLY | O_CREAT);
        flags |= r.kind == TRedirection::kAppend ? O_APPEND : (r.kind == TRedirection::kWrite ? O_TRUNC : 0);
        int fd = ::open(r.file.c_str(), flags, 0666);
        if (fd < 0) return cmdEnds(1, "The system cannot find the path specified.\n");
        opened.keep(fd);
        target[r.fd] = fd;
      }
      if (plan.arguments.empty()) return cmdEnds(0, "");
      program = findProgram(plan.arguments[0], pathOf(env));
      if (program.empty())
        return cmdEnds(kCmdNotFoundCode, "'" + plan.arguments[0] +
                                             "' is not recognized as an internal or external command,\n"
                                             "operable program or batch file.\n");
      break;
    }
    case TInterpreter::kDirect:
      if (plan.arguments.empty() || plan.arguments[0].empty()) {
        setLastError(EINVAL);
        return false;
      }
      program = findProgram(plan.arguments[0], hostPath());
      break;
  }
  if (program.empty()) {
    setLastError(ENOENT);
    return false;
  }

  std::vector<char*> argv;
  for (std::string& argument : plan.arguments) argv.push_back(&argument[0]);
  argv.push_back(nullptr);

  posix_spawn_file_actions_t actions;
  posix_spawnattr_t attributes;
  posix_spawn_file_actions_init(&actions);
  posix_spawnattr_init(&attributes);
  // Sources are first lifted above the standard three, so that the order of
  // the dup2 actions cannot matter ("2>&1" after "> file").
  for (int fd = 0; fd < 3; ++fd) {
    if (target[fd] == fd) continue;
    if (target[fd] < 0) {
      posix_spawn_file_actions_addclose(&actions, fd);
      continue;
    }
    int lifted = ::fcntl(target[fd], F_DUPFD_CLOEXEC, 3);
    if (lifted < 0) continue;
    opened.keep(lifted);
    posix_spawn_file_actions_adddup2(&actions, lifted, fd);
  }
  // Nothing of the parent beyond the standard handles.
  posix_spawn_file_actions_addclosefrom_np(&actions, 3);
  sigset_t signals;
  sigemptyset(&signals);
  posix_spawnattr_setsigmask(&attributes, &signals);
  sigfillset(&signals);
  posix_spawnattr_setsigdefault(&attributes, &signals);
  short flags = POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF;
  if (startup.newProcessGroup) {
    flags |= POSIX_SPAWN_SETPGROUP;
    posix_spawnattr_setpgroup(&attributes, 0);
  }
  posix_spawnattr_setflags(&attributes, flags);

  pid_t pid = -1;
  int error = ::posix_spawn(&pid, program.c_str(), &actions, &attributes, argv.data(), env);
  posix_spawn_file_actions_destroy(&actions);
  posix_spawnattr_destroy(&attributes);
  if (error != 0) {
    if (plan.interpreter == TInterpreter::kCmd) return cmdEnds(1, systemErrorText(error) + "\n");
    setLastError(error);
    return false;
  }
  mPid = pid;
  mGroup = startup.newProcessGroup;
  mState = kRunning;
  return true;
}

unsigned long CChildProcess::wait(unsigned long timeoutMs) {
  if (mState == kEnded) return kWaitObject0;
  if (mState == kNone) {
    setLastError(EBADF);
    return kWaitFailed;
  }
  if (timeoutMs == kInfinite) {
    int status = 0;
    pid_t done;
    do {
      done = ::waitpid(mPid, &status, 0);
    } while (done < 0 && errno == EINTR);
    if (done != mPid) return kWaitFailed;
    ended(status);
    return kWaitObject0;
  }
  auto deadline = TClock::now() + std::chrono::milliseconds(timeoutMs);
  int pidfd = static_cast<int>(::syscall(SYS_pidfd_open, mPid, 0));
  unsigned long result = kWaitTimeout;
  for (;;) {
    if (poll()) {
      result = kWaitObject0;
      break;
    }
    auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - TClock::now()).count();
    if (left <= 0) break;
    if (pidfd >= 0) {
      struct pollfd ready = {pidfd, POLLIN, 0};
      ::poll(&ready, 1, static_cast<int>(left));
    } else {
      std::this_thread::sleep_for(std::chrono::milliseconds(std::min<long long>(left, 5)));
    }
  }
  if (pidfd >= 0) ::close(pidfd);
  return result;
}

unsigned long CChildProcess::waitForInputIdle(unsigned long timeoutMs) {
  if (mState == kEnded) return kWaitObject0;
  if (mState == kNone) {
    setLastError(EBADF);
    return kWaitFailed;
  }
  auto start = TClock::now();
  std::string statFile = "/proc/" + std::to_string(mPid) + "/stat";
  // The pause grows from 1 ms to 16 ms: a child that starts fast is seen at
  // once, and one that starts slowly (a loaded machine) is not read hundreds
  // of times, which would cost the caller more than the child's own work.
  int pauseMs = 1;
  for (;;) {
    if (poll()) return kWaitObject0;
    std::ifstream in(statFile);
    std::string stat;
    if (!in || !std::getline(in, stat)) {
      setLastError(errno != 0 ? errno : ENOENT);
      return kWaitFailed;
    }
    size_t close = stat.rfind(')');
    char state = close != std::string::npos && close + 2 < stat.size() ? stat[close + 2] : '?';
    // Running or in an uninterruptible wait counts as busy; any other state
    // (sleeping on input, stopped, ended) as idle.
    if (state != 'R' && state != 'D') return kWaitObject0;
    auto spent = std::chrono::duration_cast<std::chrono::milliseconds>(TClock::now() - start).count();
    if (timeoutMs != kInfinite && spent >= static_cast<long long>(timeoutMs)) return kWaitTimeout;
    std::this_thread::sleep_for(std::chrono::milliseconds(pauseMs));
    pauseMs = std::min(pauseMs * 2, 16);
  }
}

bool CChildProcess::exitCode(unsigned long& code) {
  if (mState == kNone) {
    setLastError(EBADF);
    return false;
  }
  code = poll() ? mCode : kStillActive;
  return true;
}

bool CChildProcess::terminate(unsigned long code) {
  if (mState == kNone) {
    setLastError(EBADF);
    return false;
  }
  if (poll()) return true;
  if (::kill(mGroup ? -mPid : mPid, SIGKILL) != 0 && (!mGroup || ::kill(mPid, SIGKILL) != 0)) return false;
  int status = 0;
  pid_t done;
  do {
    done = ::waitpid(mPid, &status, 0);
  } while (done < 0 && errno == EINTR);
  if (done != mPid) return false;
  mState = kEnded;
  mCode = code;
  return true;
}

bool CChildProcess::close() {
  if (mState == kNone) {
    setLastError(EBADF);
    return false;
  }
  poll();
  mState = kNone;
  mPid = -1;
  return true;
}

bool createPipe(THandle& readEnd, THandle& writeEnd) {
  int fds[2];
  if (::pipe2(fds, O_CLOEXEC) != 0) return false;
  readEnd = fds[0];
  writeEnd = fds[1];
  return true;
}

bool writeFile(THandle handle, const void* data, unsigned long size, unsigned long& written) {
  written = 0;
  // A reader that has gone must give EPIPE, not end the host: SIGPIPE is held
  // back on this thread for the write, and a pending one is taken away.
  sigset_t pipeSignal, previous, pending;
  sigemptyset(&pipeSignal);
  sigaddset(&pipeSignal, SIGPIPE);
  sigpending(&pending);
  bool alreadyPending = sigismember(&pending, SIGPIPE) == 1;
  pthread_sigmask(SIG_BLOCK, &pipeSignal, &previous);
  const char* bytes = static_cast<const char*>(data);
  bool ok = true;
  int error = 0;
  while (written < size) {
    ssize_t count = ::write(handle, bytes + written, size - written);
    if (count < 0) {
      if (errno == EINTR) continue;
      error = errno;
      ok = false;
      break;
    }
    written += static_cast<unsigned long>(count);
  }
  if (error == EPIPE && !alreadyPending) {
    struct timespec none = {0, 0};
    sigtimedwait(&pipeSignal, nullptr, &none);
  }
  pthread_sigmask(SIG_SETMASK, &previous, nullptr);
  if (!ok) setLastError(error);
  return ok;
}

bool writeFile(THandle handle, const std::string& text, unsigned long& written) {
  return writeFile(handle, text.data(), text.size(), written);
}

bool closeHandle(THandle& handle) {
  if (handle < 0) {
    setLastError(EBADF);
    return false;
  }
  int fd = handle;
  handle = kNullHandle;
  return ::close(fd) == 0;
}

THandle getStdHandle(int which) { return which >= 0 && which <= 2 ? which : kNullHandle; }

}  // namespace NPlatform
