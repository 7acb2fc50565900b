// Working directory: create_wdir, directory creation, the template copy,
// the seed library and the two files of the seed the target flow needs.

#include "working_directory.hpp"

#include <boost/filesystem.hpp>
#include <boost/lexical_cast.hpp>
#include <boost/regex.hpp>
#include <fstream>
#include <set>

#include "common/path_helpers.hpp"
#include "common/whole_file.hpp"
#include "core/hpp/impl/run_program.hpp"
#include "misc.hpp"
#include "platform/file_copy.hpp"
#include "script_functions.hpp"

namespace fs = boost::filesystem;

namespace NVlt2HrwHelpers {

bool createDirectory(const fs::path& dir, log4cxx::LoggerPtr logger) {
  if (fs::is_directory(dir)) {
    RIG_LOG1(logger, Debug, "Directory already exists at: '" << dir.string() << "', so will not be created.");
    return true;
  }
  RIG_LOG1(logger, Debug, "Directory does not exist at: '" << dir.string() << "', so will be created.");
  return fs::create_directory(dir);
}

std::string seedCommandLine(const fs::path& tool, const fs::path& index, const fs::path& internalLog,
                            const fs::path& output) {
  using rig_common::toUnixPath;
  using rig_common::toWindowsPath;
  return "cmd /c " + toWindowsPath(tool, true) + " -CreateSeed" + " -zpcpath=" + toUnixPath(index, true) +
         " -log=" + toUnixPath(internalLog, true) + " > " + toWindowsPath(output, true) + " 2>>&1";
}

std::string valueVltPropertyLine(int number) {
  return "*TEXTPROP " + std::to_string(number) +
         " CELL 132 \".*\" 1 \"VALUE_VLT\" 0.080in INVISIBLE SINGLE TEMPLATE \"engineering\" 6 3 3 1 1 1";
}

namespace {

// The number of a *TEXTPROP line: 1 when it converts, 0 when the line is
// no property line, -1 when its number does not convert.
int propertyNumber(const std::string& line, const boost::regex& pattern, int& number) {
  boost::smatch match;
  if (!boost::regex_match(line, match, pattern)) return 0;
  try {
    number = boost::lexical_cast<int>(match.str(1));
    return 1;
  } catch (const boost::bad_lexical_cast&) {
    return -1;
  }
}

}  // namespace

TTextPropertyInsertion insertValueVltProperty(const std::vector<std::string>& lines) {
  const boost::regex pattern("^\\*TEXTPROP\\s+(\\d+)\\s+.*");
  std::set<int> free;
  for (int n = 221; n <= 255; ++n) free.insert(n);
  for (int n = 457; n <= 511; ++n) free.insert(n);
  for (int n = 1025; n <= 2047; ++n) free.insert(n);

  TTextPropertyInsertion result;
  for (const auto& line : lines) {
    int number = 0;
    int kind = propertyNumber(line, pattern, number);
    if (kind > 0) free.erase(number);
    if (kind < 0) result.invalid.push_back(line);
  }
  result.number = free.empty() ? 2048 : *free.begin();

  bool inserted = false;
  for (const auto& line : lines) {
    int number = 0;
    if (!inserted && propertyNumber(line, pattern, number) > 0 && number > result.number) {
      result.lines.push_back(valueVltPropertyLine(result.number));
      inserted = true;
    }
    result.lines.push_back(line);
  }
  if (!inserted) result.lines.push_back(valueVltPropertyLine(result.number));
  return result;
}

}  // namespace NVlt2HrwHelpers

namespace NComponent {

namespace {

using NVlt2HrwHelpers::createDirectory;

// Starts the seed tool and waits for it. False when it cannot be started;
// otherwise its exit code is in `exitCode`.
// The child inherits the host's environment: no environment work here.
bool runLibForge(log4cxx::LoggerPtr logger, const std::string& commandLine, unsigned long& exitCode) {
  NMisc::CRunProgram<std::string> program(logger);
  const bool started = program.runProgram(commandLine, true, NMisc::kCreateNoWindow);
  exitCode = program.exitCode();
  return started;
}

bool writeLibraryCfg(const fs::path& seedDir, const log4cxx::LoggerPtr& logger) {
  const fs::path file = seedDir / "Library.cfg";
  rig_common::CWholeFile out(file);
  if (!out) {
    RIG_LOG1(logger, Error, "Cannot open Library.cfg file for writing: '" << file.string() << "'.");
    return false;
  }
  out << "SECTION LibraryManager\n"
      << "KEY FlowType \"TD\"\n"
      << "KEY FlowVersion \"HX2007\"\n"
      << "ENDSECTION\n";
  if (out.commit()) return true;
  RIG_LOG1(logger, Error, "Cannot write Library.cfg file: '" << file.string() << "'.");
  return false;
}

bool addValueVltProperty(const fs::path& seedDir, const log4cxx::LoggerPtr& logger) {
  const fs::path file = seedDir / "CentLib.prp";
  std::vector<std::string> lines;
  {
    std::ifstream in(file.string(), std::ios::binary);
    if (!in) {
      RIG_LOG1(logger, Error, "Cannot read Central Library property file: " << file.string());
      return false;
    }
    for (std::string line; std::getline(in, line);) lines.push_back(line);
  }
  NVlt2HrwHelpers::TTextPropertyInsertion placed = NVlt2HrwHelpers::insertValueVltProperty(lines);
  for (const auto& line : placed.invalid)
    RIG_LOG1(logger, Warn, "Probably invalid property definition. Line: " << line);

  rig_common::CWholeFile out(file);
  if (!out) {
    RIG_LOG1(logger, Error, "Cannot open Central Library property file for writing: " << file.string());
    return false;
  }
  RIG_LOG1(logger, Debug, "VALUE_VLT property will have number: " << placed.number);
  for (const auto& line : placed.lines) out << line << '\n';
  if (out.commit()) return true;
  RIG_LOG1(logger, Error, "Cannot write Central Library property file: " << file.string());
  return false;
}

// The seed library under <wdir>/seed_library: the tool's run, then
// Library.cfg and the VALUE_VLT property.
bool createSeedLibrary(const fs::path& wdir, const log4cxx::LoggerPtr& logger) {
  std::string log;
  if (!getLogName(*gComponent, log)) {
    RIG_LOG1(logger, Error, "Cannot obtain path to the log directory: ");
    return false;
  }
  const fs::path logDir = wdir / log;
  const fs::path seedDir = wdir / "seed_library";
  if (!createDirectory(seedDir, logger)) {
    RIG_LOG1(logger, Fatal, "Seed library directory cannot be created at: '" << seedDir.string() << "'");
    return false;
  }
  const std::string commandLine =
      NVlt2HrwHelpers::seedCommandLine(getRigInstallBin(*gComponent) / "libforge.exe", seedDir / "Library.zpc",
                                       logDir / "libforge_int.log", logDir / "libforge.log");
  unsigned long code = 0;
  if (!runLibForge(logger, commandLine, code)) {
    RIG_LOG1(logger, Error, "Cannot create seed library at: " << seedDir.string());
    return false;
  }
  if (code != 0) {
    RIG_LOG1(logger, Warn,
             "LibForge found problem(s) during creating seed CL: " << seedDir.string() << ". Returned code: " << code);
  }
  return writeLibraryCfg(seedDir, logger) && addValueVltProperty(seedDir, logger);
}

// One directory below the working directory, by a host name. False, after
// the Fatal, when it cannot be made.
bool createSubDirectory(const fs::path& dir, const char* what, const log4cxx::LoggerPtr& logger) {
  if (createDirectory(dir, logger)) return true;
  RIG_LOG1(logger, Fatal, what << " directory cannot be created in the working directory: '" << dir.string() << "'");
  return false;
}

}  // namespace

bool CreateWDir(const std::string& wdir) {
  if (!gComponent) return false;
  log4cxx::LoggerPtr logger = getInitializationLogger(*gComponent);
  if (logger == nullptr) return false;
  RIG_LOG1(logger, Info, "Creating working directory at: " << wdir);

  const fs::path root(wdir);
  if (!createDirectory(root, logger)) {
    RIG_LOG1(logger, Fatal, "Working directory cannot be created at: '" << wdir << "'");
    return false;
  }
  const std::string config = getConfigName(*gComponent);
  if (config.empty()) {
    RIG_LOG1(logger, Fatal, "Cannot obtain path to the configuration directory: ");
    return false;
  }
  if (!createSubDirectory(root / config, "Config", logger)) return false;
  std::string log;
  if (!getLogName(*gComponent, log)) {
    RIG_LOG1(logger, Fatal, "Cannot obtain path to the log directory: ");
    return false;
  }
  if (!createSubDirectory(root / log, "Log", logger)) return false;
  // The verifying steps write their reports under the log directory.
  const fs::path logReports = root / log / "reports";
  if (!createDirectory(logReports, logger)) {
    RIG_LOG1(logger, Fatal, "Report directory cannot be created in the log directory: '" << logReports.string() << "'");
    return false;
  }
  if (!createSubDirectory(root / "reports", "Report", logger)) return false;
  std::string neutral;
  if (!getNeutralName(*gComponent, neutral)) {
    RIG_LOG1(logger, Fatal, "Cannot obtain path to the neutral directory: ");
    return false;
  }
  if (!createSubDirectory(root / neutral, "Neutral", logger)) return false;

  const fs::path templates = fs::path(gComponent->componentDirectory) / "templates";
  if (!fs::is_directory(templates)) {
    RIG_LOG1(logger, Fatal, "Template configuration directory does not exist: '" << templates.string() << "'");
    return false;
  }
  const fs::path from = templates / "*.*";
  const fs::path to = root / config;
  if (NPlatform::copyDirectoryFiles(from, to) != 0) {
    RIG_LOG1(logger, Fatal,
             "Cannot copy configuration files from: '" << from.string() << "' to: '" << to.string() << "'");
    return false;
  }
  if (!createSeedLibrary(root, logger)) return false;
  RIG_LOG1(logger, Info, "Working directory successfully created at: " << wdir);
  return true;
}

}  // namespace NComponent
