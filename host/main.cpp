// vlt2hrw-host: loads the component, serves its host services and runs a
// Lua workflow script; with --summary it writes the migration summary of a
// working directory instead.

#include <dlfcn.h>
#include <unistd.h>

#include <boost/algorithm/string/case_conv.hpp>
#include <boost/filesystem.hpp>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <memory>
#include <sstream>

#include "host/log_text.hpp"
#include "host/log_writer.hpp"
#include "host/lua_host.hpp"
#include "host/progress.hpp"
#include "summary/summary.hpp"

#ifndef VLT2HRW_VERSION
#define VLT2HRW_VERSION "unknown"
#endif

namespace fs = boost::filesystem;

namespace {

const char kUsageLine[] = "usage: vlt2hrw-host [OPTIONS] SCRIPT.lua [ARGS...]\n       vlt2hrw-host --summary WDIR\n";

const char kHelp[] =
    "Runs a Lua workflow script that migrates a VLT library, step by step, with\n"
    "the translator component (build/bin/libvlt2hrw_main.so).\n"
    "\n"
    "Options:\n"
    "  --log FILE                append the log to FILE (default: the terminal, stderr)\n"
    "  --log-level LEVEL         how much the log holds: TRACE, DEBUG, INFO (default),\n"
    "                            WARN, ERROR, FATAL or OFF\n"
    "  --component-log-level L   the same for the messages of each step alone\n"
    "  --log-format FORM         people (default): one line per message with its time\n"
    "                            and where it went; exact: one line per message and\n"
    "                            sink, \"<sink> <LEVEL> <message>\" (used by the tests);\n"
    "                            the variable VLT2HRW_LOG_FORMAT sets the default\n"
    "  --progress MODE           auto (default): a progress line on a terminal, one line\n"
    "                            per step otherwise; bar; lines; off\n"
    "  --summary WDIR            write summary.html and summary.json into the working\n"
    "                            directory WDIR and stop (no script runs)\n"
    "  --version                 print the version and stop\n"
    "  --help, -h                print this help and stop\n"
    "\n"
    "What the script may also set itself (most workflows need none of these):\n"
    "  --wdir DIR                the working directory\n"
    "  --library DIR             the source library directory\n"
    "  --rig-bin DIR             where the converter tools are (default: the tool\n"
    "                            simulators beside the host)\n"
    "  --qlln-path DIR           the source suite's installation\n"
    "  --param KEY=VALUE         a setting the steps read (repeatable), e.g.\n"
    "                            --param \"catalog use PART_NO=1\"\n"
    "\n"
    "For testing and unusual installations:\n"
    "  --component FILE          the component library (default: beside the host)\n"
    "  --component-dir DIR       the component's shipped files (config, templates)\n"
    "  --qrn-home-name NAME      name of the QRN_HOME directory (default QRN_HOME)\n"
    "  --config-name NAME        name of the configuration directory (default config)\n"
    "  --log-name NAME           name of the log directory (default log)\n"
    "  --neutral-name NAME       name of the neutral data directory (default neutral)\n"
    "  --platform N              the platform number the component is told (default 1)\n"
    "  --fail SERVICE            that host service answers false (repeatable)\n"
    "\n"
    "Exit status:\n"
    "  0  the script ran to its end (or --summary, --help, --version succeeded)\n"
    "  1  the script stopped with a Lua error (written to stderr and to the log)\n"
    "  2  usage error, the script cannot be read, or the component cannot be\n"
    "     loaded or started; --summary: the working directory cannot be read\n"
    "  other  the status the script chose with os.exit(status)\n";

const char* const kLevels[] = {"TRACE", "DEBUG", "INFO", "WARN", "ERROR", "FATAL", "OFF"};

fs::path selfDirectory() {
  char buffer[4096];
  ssize_t length = readlink("/proc/self/exe", buffer, sizeof(buffer) - 1);
  if (length <= 0) return fs::current_path();
  buffer[length] = '\0';
  return fs::path(buffer).parent_path();
}

int usage(const std::string& message) {
  std::cerr << "vlt2hrw-host: " << vlthost::escapeControlBytes(vlthost::shortenMiddle(message)) << "\n"
            << kUsageLine << "Try 'vlt2hrw-host --help' for the options.\n";
  return 2;
}

bool knownLevel(std::string& level) {
  boost::algorithm::to_upper(level);
  for (const char* known : kLevels)
    if (level == known) return true;
  return false;
}

std::string levelList() {
  std::string list;
  for (const char* known : kLevels) list += (list.empty() ? "" : ", ") + std::string(known);
  return list;
}

}  // namespace

namespace vlthost {

// Connects the run to the log file and the progress display.
class CRunObserver : public IScriptObserver {
 public:
  CRunObserver(CLogWriter& log, CProgress& progress, bool sameStream)
      : mLog(log), mProgress(progress), mSameStream(sameStream) {}
  void callBegin(const std::string& function) override { mProgress.callBegin(function); }
  void callEnd(const std::string& function, const std::string& result) override {
    mLog.flush();
    mProgress.callEnd(function, result);
  }
  void callError(const std::string& function, const std::string& message) override {
    logLine("ERROR", function + ": Lua error: " + message);
    mProgress.callError(function);
  }
  void step(const std::string& title) override {
    mLog.flush();
    mProgress.step(title);
  }
  void exiting(int code) override {
    mProgress.finish();
    logLine(code == 0 ? "INFO" : "ERROR", "the script ends with the status " + std::to_string(code));
    mLog.flush();
  }
  // A line of the host's own, on the sink "host".
  void logLine(const std::string& level, const std::string& message) {
    if (mSameStream) mProgress.clearLine();
    mLog.write("host", level, message);
    mLog.flush();
    if (mSameStream) mProgress.redraw();
  }
  void logged(const TLogRecord& record) {
    if (mSameStream) mProgress.clearLine();
    mLog.write(record.sink, record.level, record.message);
    if (mSameStream) {
      mLog.flush();
      mProgress.redraw();
    }
  }

 private:
  CLogWriter& mLog;
  CProgress& mProgress;
  bool mSameStream;
};

}  // namespace vlthost

int main(int argc, char** argv) {
  vlthost::CHostCore core;
  const fs::path self = selfDirectory();
  std::string component = (self / "libvlt2hrw_main.so").string();
  core.componentDirectory() = (self / "vlt2hrw_main").string();
  core.setService("get rig install bin", (self / "tools").string());
  std::string logFile, level = "INFO", componentLevel, logFormat = "people", progressMode = "auto", summaryDir;
  // The test runs set the form for every host they start, also for a host
  // that a test script starts itself.
  if (const char* format = std::getenv("VLT2HRW_LOG_FORMAT")) {
    if (std::string(format) == "exact" || std::string(format) == "people") logFormat = format;
  }

  const std::map<std::string, std::string> serviceOptions = {{"--wdir", "get wdir"},
                                                             {"--library", "get library location"},
                                                             {"--rig-bin", "get rig install bin"},
                                                             {"--qlln-path", "get qlln installation path"},
                                                             {"--qrn-home-name", "get qlln QRN_HOME dir name"},
                                                             {"--config-name", "get config"},
                                                             {"--log-name", "get log"},
                                                             {"--neutral-name", "get neutral"}};

  int i = 1;
  for (; i < argc; ++i) {
    std::string option = argv[i];
    if (option == "--help" || option == "-h") {
      std::cout << kUsageLine << "\n" << kHelp;
      return 0;
    }
    if (option == "--version") {
      std::cout << "vlt2hrw-host " << VLT2HRW_VERSION << "\n";
      return 0;
    }
    if (option == "--") {
      ++i;
      break;
    }
    if (option.rfind("--", 0) != 0) break;
    if (i + 1 >= argc) return usage("option " + option + " needs a value");
    std::string value = argv[++i];
    if (option == "--component") {
      component = value;
    } else if (option == "--component-dir") {
      core.componentDirectory() = value;
    } else if (serviceOptions.count(option) != 0) {
      core.setService(serviceOptions.at(option), value);
    } else if (option == "--platform") {
      try {
        core.setPlatform(std::stoi(value));
      } catch (const std::exception&) {
        return usage("--platform takes a number");
      }
    } else if (option == "--param") {
      auto eq = value.find('=');
      if (eq == std::string::npos) return usage("--param takes KEY=VALUE");
      core.parameters()[value.substr(0, eq)] = value.substr(eq + 1);
    } else if (option == "--fail") {
      core.failService(value);
    } else if (option == "--log") {
      logFile = value;
    } else if (option == "--log-level" || option == "--component-log-level") {
      if (!knownLevel(value)) return usage("unknown log level " + value + "; the levels are " + levelList());
      (option == "--log-level" ? level : componentLevel) = value;
    } else if (option == "--log-format") {
      if (value != "people" && value != "exact") return usage("--log-format is people or exact, not " + value);
      logFormat = value;
    } else if (option == "--progress") {
      if (value != "auto" && value != "bar" && value != "lines" && value != "off")
        return usage("--progress is auto, bar, lines or off, not " + value);
      progressMode = value;
    } else if (option == "--summary") {
      summaryDir = value;
    } else {
      return usage("unknown option " + option);
    }
  }
  if (!summaryDir.empty()) {
    if (i < argc) return usage("--summary takes no script");
    return vltsummary::runSummaryCommand(summaryDir, std::cout, std::cerr);
  }
  if (i >= argc) return usage("no script given");
  const std::string script = argv[i++];
  if (!fs::is_regular_file(script)) return usage("cannot read script " + script);
  std::vector<std::string> args(argv + i, argv + argc);

  std::unique_ptr<std::ofstream> logStream;
  if (!logFile.empty()) {
    logStream.reset(new std::ofstream(logFile, std::ios::app));
    if (!*logStream) return usage("cannot open log file " + logFile);
  }
  std::ostream& logOut = logStream ? static_cast<std::ostream&>(*logStream) : std::cerr;
  vlthost::CLogWriter log(logOut, logFormat == "exact" ? vlthost::ELogFormat::Exact : vlthost::ELogFormat::People);
  vlthost::EProgress mode = vlthost::EProgress::Off;
  if (progressMode == "bar" || (progressMode == "auto" && isatty(STDERR_FILENO)))
    mode = vlthost::EProgress::Bar;
  else if (progressMode == "lines" || progressMode == "auto")
    mode = vlthost::EProgress::Lines;
  vlthost::CProgress progress(std::cerr, mode);
  vlthost::CRunObserver observer(log, progress, !logStream);

  std::string commandLine;
  for (int k = 0; k < argc; ++k) commandLine += (k == 0 ? "" : " ") + std::string(argv[k]);
  log.header("vlt2hrw-host " VLT2HRW_VERSION ": " + commandLine);
  core.setObserver([&observer](const vlthost::TLogRecord& record) { observer.logged(record); });
  if (mode != vlthost::EProgress::Off)
    core.setTap("DEBUG", [&progress](const vlthost::TLogRecord& record) {
      progress.message(record.sink, record.level, record.message);
    });
  core.setLevel(level);
  if (!componentLevel.empty()) core.setComponentLevel(componentLevel);

  void* handle = dlopen(component.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (handle == nullptr) {
    std::cerr << "vlt2hrw-host: cannot load component " << component << ": " << dlerror() << "\n";
    return 2;
  }
  vlthost::TComponentEntry entry;
  entry.init = reinterpret_cast<decltype(entry.init)>(dlsym(handle, "InitComponent"));
  if (entry.init == nullptr) {
    std::cerr << "vlt2hrw-host: " << component << " exports no InitComponent\n";
    return 2;
  }
  NComponent::TPlatformServices services = core.services();
  if (!entry.init(&entry.params, &services)) {
    std::cerr << "vlt2hrw-host: the component did not start (InitComponent returned false)\n";
    observer.logLine("ERROR", "the component did not start (InitComponent returned false)");
    return 2;
  }

  std::string error;
  int result = vlthost::runScript(core, entry, script, args, error, &observer);
  progress.finish();
  if (result != 0) {
    std::string shortened;
    std::istringstream lines(error);
    for (std::string line; std::getline(lines, line);) shortened += vlthost::shortenMiddle(line) + "\n";
    std::cerr << "vlt2hrw-host: " << shortened;
    observer.logLine("ERROR", "the script stopped: " + shortened);
  }
  if (entry.params.releaseComponent != nullptr) entry.params.releaseComponent();
  log.flush();
  core.setObserver(nullptr);
  core.setTap("", nullptr);
  // The component stays loaded: its list registry is freed at process exit.
  return result;
}
