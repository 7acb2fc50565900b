// save_catalogs: runs the catalog tool once per catalog of catalog.list.

#include <boost/filesystem.hpp>
#include <fstream>

#include "catalog_helpers.hpp"
#include "common/path_helpers.hpp"
#include "components/hpp/impl/qlln_environment_impl.hpp"
#include "core/hpp/impl/run_program.hpp"
#include "script_functions.hpp"
#include "vlt_library_cfg.hpp"

namespace fs = boost::filesystem;

namespace NComponent {

namespace {
// The text every message of the script function starts with.
const std::string kPrefix = "Saving catalogs to neutral format: ";
}  // namespace

namespace {

struct TCatalogRun {
  fs::path tool, catalogDir, catalogsDir, configDir, logDir;
  std::string locationMapFile;
  bool swap = false;
};

std::string unixPath(const fs::path& path) { return rig_common::toUnixPath(path.string(), true); }

}  // namespace

namespace NCatalog {

// The tool's command line for one catalog, piece by piece.
std::string tbl2flatCommandLine(const fs::path& tool, const fs::path& input, const fs::path& catalogsDir,
                                const fs::path& configDir, const fs::path& logDir, const std::string& locationMapFile,
                                const std::string& catalog, bool swap) {
  std::string line = "ksh -c \"";
  line += unixPath(tool);
  line += " -i " + unixPath(input);
  line += " -o " + unixPath(catalogsDir / (catalog + "_neut.tlx"));
  line += " -s QRN";
  line += " -d QRN2PDB";
  line += " -m " + unixPath(locationMapFile);
  line += " -z " + unixPath(catalogsDir / (catalog + ".prop.list"));
  line += " -y " + unixPath(catalogsDir / (catalog + ".sym_list.caf"));
  line += " -v " + unixPath(configDir / "catalog_val_prop.xml");
  line += " -e " + unixPath(configDir / "excluded_parts.caf");
  line += " -r " + unixPath(logDir / "rejected_parts.caf");
  if (swap) line += " -w";
  line += " >> " + unixPath(logDir / "tbl2flat.log");
  line += " 2>&1\"";
  return line;
}

}  // namespace NCatalog

bool saveCatalogs(const std::string& libraryName, const std::string& locationMapFile, const std::string& libraryDir) {
  CScriptCall call(CScriptCall::kWdirAndSource);
  if (!call.ok()) return false;
  RIG_LOG(call, Debug, "Saving catalogs to neutral format.");
  const bool swap = call.services().getParameter("catalog use PART_NO") == "1";

  fs::path configDir, logDir, neutralDir;
  if (!NCatalog::configDirectory(call, configDir, kPrefix + "cannot obtain path to the configuration directory.") ||
      !NCatalog::logDirectory(call, logDir, kPrefix + "cannot obtain path to the log directory.") ||
      !NCatalog::neutralDirectory(call, neutralDir, kPrefix + "cannot obtain path to the neutral directory: "))
    return false;
  const fs::path catalogsDir = neutralDir / "catalogs";
  if (!fs::is_directory(catalogsDir)) {
    boost::system::error_code error;
    fs::create_directories(catalogsDir, error);
    if (error || !fs::is_directory(catalogsDir)) {
      RIG_LOG(call, Error, "Cannot create directory: " << catalogsDir.string());
      return false;
    }
  }
  const fs::path catalogDir = NVlt2HrwHelpers::getCatalogDir(call, libraryName, locationMapFile, libraryDir);
  if (!fs::is_directory(catalogDir)) return false;

  const fs::path listFile = configDir / "catalog.list";
  std::vector<std::string> catalogs;
  if (!NCatalog::readCatalogList(listFile, catalogs)) {
    RIG_LOG(call, Error, kPrefix + "cannot read catalog list file: " << listFile.string());
    return false;
  }
  const fs::path toolLog = logDir / "tbl2flat.log";
  if (fs::is_regular_file(toolLog)) fs::remove(toolLog);

  const fs::path tool = getRigInstallBin(call.services()) / "tbl2flat.exe";
  for (const std::string& catalog : catalogs) {
    const fs::path input = catalogDir / catalog;
    RIG_LOG(call, Info, "Saving catalog: " << input.string());
    NMisc::CRunProgram<std::string> run(call.translation());
    if (!run.obtainCurrentEnvironment()) RIG_LOG(call, Error, "Cannot obtain the environment for current process.");
    if (!setQllnEnvironment(run, call.services(), call)) return false;
    const std::string command =
        NCatalog::tbl2flatCommandLine(tool, input, catalogsDir, configDir, logDir, locationMapFile, catalog, swap);
    if (!run.runProgram(command, true, NMisc::kCreateNoWindow)) {
      RIG_LOG(call, Error, tool.string() << " cannot be loaded.");
    } else if (run.exitCode() != 0) {
      RIG_LOG(call, Error, "Tbl2flat program failed for catalog: " << catalog << ". Returned code: " << run.exitCode());
    }
    std::ofstream appended(toolLog.string(), std::ios::binary | std::ios::app);
    appended << '\n';
  }
  return true;
}

}  // namespace NComponent
