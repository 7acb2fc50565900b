#include "new_symbols.hpp"

#include <dirent.h>
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/inotify.h>
#include <sys/signalfd.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <boost/filesystem.hpp>
#include <chrono>
#include <fstream>
#include <sstream>
#include <thread>

namespace fs = boost::filesystem;

namespace tdlib2zpc {

namespace {

const int kIdleMs = 10000;    // a watcher of a partition left alone this long stops
const int kCatchUpMs = 2000;  // longest wait for a watcher to catch up
const char* const kSuffix = ".sym";

bool isSymbolFile(const std::string& name) {
  const std::size_t n = std::char_traits<char>::length(kSuffix);
  return name.size() > n && name.compare(name.size() - n, n, kSuffix) == 0 && name[0] != '.';
}

std::string stem(const std::string& file) { return file.substr(0, file.size() - 4); }

// True when `pid` runs this tool (a pid of a stopped watcher may be reused).
bool isWatcher(int pid) {
  if (pid <= 0 || kill(pid, 0) != 0) return false;
  std::ifstream in("/proc/" + std::to_string(pid) + "/cmdline", std::ios::binary);
  std::string command;
  std::getline(in, command, '\0');
  return command.find("tdlib2zpc") != std::string::npos;
}

void appendAll(int fd, const std::string& text) {
  std::size_t done = 0;
  while (done < text.size()) {
    ssize_t n = write(fd, text.data() + done, text.size() - done);
    if (n <= 0) return;
    done += static_cast<std::size_t>(n);
  }
}

// Reads the inotify events at hand; false when the directory went away.
bool drain(int notify, int journal, std::set<std::string>& known) {
  alignas(inotify_event) char buffer[64 * 1024];
  for (;;) {
    ssize_t length = read(notify, buffer, sizeof buffer);
    if (length <= 0) return true;
    std::string lines;
    for (char* at = buffer; at < buffer + length;) {
      const auto* event = reinterpret_cast<const inotify_event*>(at);
      at += sizeof(inotify_event) + event->len;
      if (event->mask & (IN_DELETE_SELF | IN_MOVE_SELF | IN_IGNORED | IN_UNMOUNT)) return false;
      if (event->len == 0 || (event->mask & IN_ISDIR)) continue;
      const std::string name = event->name;
      if (isSymbolFile(name) && known.insert(name).second) lines += name + "\n";
    }
    appendAll(journal, lines);
  }
}

}  // namespace

void runWatcher(const fs::path& dir, const fs::path& journalFile, std::set<std::string> known, int ready, int idleMs) {
  sigset_t mask;
  sigemptyset(&mask);
  sigaddset(&mask, SIGUSR1);
  sigprocmask(SIG_BLOCK, &mask, nullptr);
  const int signals = signalfd(-1, &mask, SFD_CLOEXEC | SFD_NONBLOCK);
  const int notify = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
  const int journal = open(journalFile.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
  if (signals < 0 || notify < 0 || journal < 0 ||
      inotify_add_watch(notify, dir.c_str(), IN_CREATE | IN_MOVED_TO | IN_DELETE_SELF | IN_MOVE_SELF) < 0) {
    close(ready);
    return;
  }
  const std::string pid = std::to_string(getpid());
  appendAll(ready, pid);
  close(ready);
  pollfd fds[2] = {{notify, POLLIN, 0}, {signals, POLLIN, 0}};
  for (;;) {
    if (poll(fds, 2, idleMs) <= 0) return;
    if (!drain(notify, journal, known)) return;
    if (fds[1].revents & POLLIN) {
      // A run asks to catch up: the events of everything written before its
      // request are queued already, so after the drain the journal is whole.
      signalfd_siginfo info;
      while (read(signals, &info, sizeof info) == sizeof info)
        appendAll(journal, "#sync " + std::to_string(info.ssi_pid) + "\n");
    }
  }
}

CPartitionState::CPartitionState(const fs::path& partitionDir)
    : mDir(partitionDir), mStateDir(partitionDir / ".tdlib2zpc") {}

bool CPartitionState::findNew(std::vector<std::string>& names) {
  std::ifstream watcher((mStateDir / "watcher").string());
  if (watcher >> mWatcher >> mOffset && isWatcher(mWatcher) && fromJournal(names)) return true;
  names.clear();
  return fromListing(names);
}

bool CPartitionState::fromJournal(std::vector<std::string>& names) {
  if (kill(mWatcher, SIGUSR1) != 0) return false;
  const std::string sync = "#sync " + std::to_string(getpid());
  const auto until = std::chrono::steady_clock::now() + std::chrono::milliseconds(kCatchUpMs);
  while (std::chrono::steady_clock::now() < until) {
    std::ifstream journal((mStateDir / "journal").string(), std::ios::binary);
    journal.seekg(static_cast<std::streamoff>(mOffset));
    std::vector<std::string> found;
    unsigned long long offset = mOffset;
    for (std::string line; std::getline(journal, line);) {
      if (journal.eof()) break;  // a line still being written
      offset += line.size() + 1;
      if (line == sync) {
        names = found;
        mOffset = offset;
        return true;
      }
      if (line.rfind("#sync ", 0) != 0 && fs::exists(mDir / line)) found.push_back(stem(line));
    }
    std::this_thread::sleep_for(std::chrono::microseconds(200));
  }
  return false;  // the watcher did not answer: list instead
}

bool CPartitionState::fromListing(std::vector<std::string>& names) {
  mListed = true;
  if (isWatcher(mWatcher)) kill(mWatcher, SIGTERM);
  mWatcher = 0;
  boost::system::error_code ec;
  fs::create_directories(mStateDir, ec);
  if (!fs::is_directory(mStateDir)) {
    mError = "cannot create the partition state directory: " + mStateDir.string();
    return false;
  }
  std::ifstream entered((mStateDir / "entered").string(), std::ios::binary);
  for (std::string line; std::getline(entered, line);) mEntered.insert(line);
  DIR* dir = opendir(mDir.c_str());
  if (dir == nullptr) {
    mError = "cannot list the partition directory: " + mDir.string();
    return false;
  }
  for (dirent* entry = readdir(dir); entry != nullptr; entry = readdir(dir)) {
    const std::string file = entry->d_name;
    if (!isSymbolFile(file) || entry->d_type == DT_DIR) continue;
    if (mEntered.count(stem(file)) == 0) names.push_back(stem(file));
  }
  closedir(dir);
  std::sort(names.begin(), names.end());
  return true;
}

bool CPartitionState::commit(const std::vector<std::string>& names) {
  {
    std::ofstream entered((mStateDir / "entered").string(), std::ios::binary | std::ios::app);
    for (const auto& name : names) entered << name << '\n';
    if (!entered.flush()) {
      mError = "cannot write the partition state: " + (mStateDir / "entered").string();
      return false;
    }
  }
  if (mListed) {
    // A new watcher, started from a child that leaves at once, so that it
    // belongs to no one; it knows every name entered by now.
    for (const auto& name : names) mEntered.insert(name);
    std::set<std::string> known;
    for (const auto& name : mEntered) known.insert(name + kSuffix);
    int pipeFds[2];
    if (pipe2(pipeFds, O_CLOEXEC) != 0) return true;
    const pid_t child = fork();
    if (child == 0) {
      setsid();
      if (fork() == 0) {
        // Nothing of the run stays open in the watcher: not the log, not
        // the caller's output, only the pipe that tells it is ready.
        const int null = open("/dev/null", O_RDWR);
        for (int fd = 0; fd < 3; ++fd) dup2(null, fd);
        const int ready = fcntl(pipeFds[1], F_DUPFD_CLOEXEC, 3);
        close_range(3, ready - 1, 0);
        close_range(ready + 1, ~0U, 0);
        runWatcher(mDir, mStateDir / "journal", std::move(known), ready, kIdleMs);
        _exit(0);
      }
      _exit(0);
    }
    close(pipeFds[1]);
    std::string pid;
    char buffer[32];
    for (ssize_t n; (n = read(pipeFds[0], buffer, sizeof buffer)) > 0;) pid.append(buffer, static_cast<std::size_t>(n));
    close(pipeFds[0]);
    if (child > 0) waitpid(child, nullptr, 0);
    mWatcher = pid.empty() ? 0 : std::atoi(pid.c_str());
    mOffset = 0;
  }
  std::ofstream watcher((mStateDir / "watcher").string(), std::ios::binary | std::ios::trunc);
  watcher << mWatcher << ' ' << mOffset << '\n';
  return true;
}

}  // namespace tdlib2zpc
