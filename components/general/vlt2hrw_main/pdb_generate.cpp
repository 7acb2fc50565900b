// run_qrn_to_pdb: runs the parts database generator once per catalog of
// catalog.list, in the log directory, and keeps its log per catalog.

#include <boost/filesystem.hpp>
#include <string>
#include <vector>

#include "catalog_helpers.hpp"
#include "common/path_helpers.hpp"
#include "common/text_helpers.hpp"
#include "core/hpp/impl/run_program.hpp"
#include "impl/symbol_cfg_files_impl.hpp"
#include "script_functions.hpp"

namespace fs = boost::filesystem;

namespace NComponent {
namespace NPdb {

// The generator's option string: the fixed switches, the user's extra
// options and the switch of the cell pin name case.
std::string qrn2pdbOptions(const std::string& options, const std::string& pinNameCase) {
  std::string result = "-z -x -o";
  const std::string extra = rig_common::trim(options);
  if (!extra.empty()) result += " " + extra;
  const std::string pinCase = rig_common::trim(pinNameCase);
  if (pinCase == "lower") result += " -a";
  if (pinCase == "upper") result += " -b";
  return result;
}

// The files the generator is handed besides the catalog's own.
struct TQrn2pdbFiles {
  fs::path tool, symbolLists, qrnCaf, symbolsDir, pinSource, rejectedParts, symbolPartitions;
  std::string centralLibrary;  // the index, or "dummy" when pins come from the pin list
};

// cmd /c "<tool> <options> -m <symbol lists> <qrn.caf> <input> <output> <depth> 0 dummy dummy
//         <symbols> <pin source> dummy <rejected parts> <symbol partitions> <central library>"
std::string qrn2pdbCommandLine(const TQrn2pdbFiles& files, const std::string& options, const fs::path& input,
                               const fs::path& output, int depth) {
  std::string line = "cmd /c \"" + rig_common::toWindowsPath(files.tool, true);
  line += " " + options;
  line += " -m " + files.symbolLists.string();
  line += " " + files.qrnCaf.string();
  line += " " + input.string();
  line += " " + output.string();
  line += " " + std::to_string(depth);
  line += " 0 dummy dummy";
  line += " " + files.symbolsDir.string();
  line += " " + files.pinSource.string();
  line += " dummy";
  line += " " + files.rejectedParts.string();
  line += " " + files.symbolPartitions.string();
  line += " " + files.centralLibrary;
  line += "\"";
  return line;
}

}  // namespace NPdb

namespace {

// Runs one command line with the log directory as the current directory,
// and puts the host's directory back whatever the run did.
bool runInDirectory(CScriptCall& call, const fs::path& dir, const std::string& command, unsigned long& code) {
  boost::system::error_code error;
  const fs::path saved = fs::current_path(error);
  fs::current_path(dir, error);
  NMisc::CRunProgram<std::string> run(call.translation());
  const bool started = run.runProgram(command, true, NMisc::kCreateNoWindow);
  code = run.exitCode();
  if (!saved.empty()) fs::current_path(saved, error);
  return started;
}

}  // namespace

bool runQrn2pdb(const std::string& options) {
  CScriptCall call(CScriptCall::kWdirAndSource);
  if (!call.ok()) return false;
  RIG_LOG(call, Debug, "Running qrn2pdb tool.");
  fs::path configDir, logDir, neutralDir;
  if (!NCatalog::configDirectory(call, configDir,
                                 "Running qrn2pdb tool: cannot obtain path to the configuration directory.") ||
      !NCatalog::logDirectory(call, logDir, "Running qrn2pdb tool: cannot obtain path to the log directory.") ||
      !NCatalog::neutralDirectory(call, neutralDir,
                                  "Running qrn2pdb tool: cannot obtain path to the neutral directory: "))
    return false;
  const fs::path catalogsDir = neutralDir / "catalogs";
  if (!fs::is_directory(catalogsDir)) {
    RIG_LOG(call, Error, "Running qrn2pdb tool: neutral catalogs directory does not exist:" << catalogsDir.string());
    return false;
  }

  // An unreadable file leaves the depth at 0; an incomplete one gives what it held.
  int start = 0, stop = 0, depth = 0;
  const fs::path symbolData = configDir / "symbol_data.xml";
  if (!NVlt2HrwHelpers::readSymbolConfigurationData(symbolData, start, stop, depth, nullptr))
    RIG_LOG(call, Warn,
            "Running qrn2pdb tool: symbol configuration data cannot be obtained from:" << symbolData.string());

  const std::string optionString = NPdb::qrn2pdbOptions(options, call.services().getParameter("cell pin name case"));
  const fs::path library = fs::path(getWorkingDirectory(call.services())) / "Library" / "Library.zpc";
  NPdb::TQrn2pdbFiles files;
  files.tool = getRigInstallBin(call.services()) / "qrn2pdb.exe";
  files.symbolLists = neutralDir / "symbol_lists";
  files.qrnCaf = configDir / "qrn.caf";
  files.symbolsDir = neutralDir / ("symbols_" + std::to_string(depth));
  files.pinSource = library;
  files.rejectedParts = logDir / "rejected_parts.caf";
  files.symbolPartitions = configDir / "symbol_partitions.caf";
  files.centralLibrary = library.string();
  const fs::path pinList = configDir / "geomPinList.caf";

  const fs::path logsDir = logDir / "qrn2pdb_logs";
  if (!fs::is_directory(logsDir)) {
    boost::system::error_code error;
    fs::create_directories(logsDir, error);
    if (error || !fs::is_directory(logsDir)) {
      RIG_LOG(call, Error, "Running qrn2pdb tool: cannot create log directory for qrn2pdb logs:" << logsDir.string());
      return false;
    }
  }
  const fs::path listFile = configDir / "catalog.list";
  std::vector<std::string> catalogs;
  if (!NCatalog::readCatalogList(listFile, catalogs)) {
    RIG_LOG(call, Error, "Running qrn2pdb tool: cannot read catalog list file: " << listFile.string());
    return false;
  }

  const bool pinsFromList = optionString.find("-p") != std::string::npos;
  const bool geometryOption = optionString.find("-g") != std::string::npos;
  const fs::path toolLog = logDir / "qrn2pdb.txt";
  for (const std::string& catalog : catalogs) {
    const fs::path input = catalogsDir / (catalog + "_neut.tlx");
    if (!fs::is_regular_file(input)) {
      RIG_LOG(call, Warn,
              "Running qrn2pdb tool: neutral data have not been saved for the following catalog: " << catalog);
      continue;
    }
    if (pinsFromList && geometryOption) {
      RIG_LOG(call, Error,
              "Running qrn2pdb tool: -p and -g options specified, which is not allowed, so following catalog will "
              "not be processed: "
                  << catalog);
      continue;
    }
    if (pinsFromList) {
      if (!fs::is_regular_file(pinList)) {
        RIG_LOG(call, Error, "Running qrn2pdb tool: unable to locate the geometry pin list file: " << pinList.string());
        continue;
      }
      files.pinSource = pinList;
      files.centralLibrary = "dummy";
    }
    RIG_LOG(call, Info, "Processing neutral data for catalog: " << catalog);
    const std::string command =
        NPdb::qrn2pdbCommandLine(files, optionString, input, catalogsDir / (catalog + ".tlx"), depth);
    unsigned long code = 0;
    if (!runInDirectory(call, logDir, command, code)) {
      RIG_LOG(call, Error, files.tool.string() << " cannot be loaded.");
    } else if (code != 0) {
      RIG_LOG(call, Warn,
              "Running qrn2pdb tool: the tool found problem(s) during creating PDB TLX from: "
                  << input.string() << ". Returned code: " << code);
    }
    const fs::path catalogLog = logsDir / ("qrn2pdb_" + catalog + ".log");
    boost::system::error_code error;
    fs::copy_file(toolLog, catalogLog, fs::copy_options::overwrite_existing, error);
    if (error)
      RIG_LOG(call, Error,
              "Running qrn2pdb tool: cannot copy " << toolLog.string() << " to final log file:" << catalogLog.string());
  }
  return true;
}

}  // namespace NComponent
