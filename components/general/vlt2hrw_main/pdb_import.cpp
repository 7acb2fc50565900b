// import_pdb_to_zpc: imports the parts database text of each catalog into
// the target Central Library with tlx2partsdb.

#include <boost/algorithm/string/case_conv.hpp>
#include <boost/filesystem.hpp>
#include <string>
#include <vector>

#include "catalog_helpers.hpp"
#include "core/hpp/impl/run_program.hpp"
#include "script_functions.hpp"

namespace fs = boost::filesystem;

namespace NComponent {
namespace NPdb {

// The parts database of a catalog: its name with '.' and '/' turned to '_'.
std::string pdbName(const std::string& catalog) {
  std::string name = catalog;
  for (char& c : name)
    if (c == '.' || c == '/') c = '_';
  return name;
}

std::string tlx2partsdbCommandLine(const fs::path& input, const std::string& pdb, const fs::path& log,
                                   const fs::path& library) {
  return "cmd /c tlx2partsdb -w -i " + input.string() + " -o " + pdb + ".pdb -l " + log.string() + " -c " +
         library.string();
}

}  // namespace NPdb

namespace {

// The tool is searched in the component's own PATH. The framework's
// executables directory closes that search path, so that an installation
// whose PATH does not name it still finds the tool that ships there.
void closeSearchPathWithInstallBin(NMisc::CRunProgram<std::string>& run, const fs::path& installBin) {
  if (installBin.empty() || !run.obtainCurrentEnvironment()) return;
  std::string path;
  for (const auto& variable : run.environment())
    if (boost::to_upper_copy(variable.first) == "PATH") path = variable.second;
  run.replaceVariable("PATH", path.empty() ? installBin.string() : path + ":" + installBin.string());
}

}  // namespace

bool importPdbToZpc() {
  CScriptCall call(CScriptCall::kWdirAndSource);
  if (!call.ok()) return false;
  RIG_LOG(call, Debug, "Importing PDB to ZPC.");
  fs::path configDir, logDir, neutralDir;
  if (!NCatalog::configDirectory(call, configDir,
                                 "Importing PDB to ZPC: cannot obtain path to the configuration directory.") ||
      !NCatalog::logDirectory(call, logDir, "Importing PDB to ZPC: cannot obtain path to the log directory.") ||
      !NCatalog::neutralDirectory(call, neutralDir,
                                  "Importing PDB to ZPC: cannot obtain path to the neutral directory: "))
    return false;
  const fs::path catalogsDir = neutralDir / "catalogs";
  if (!fs::is_directory(catalogsDir)) {
    RIG_LOG(call, Error, "Importing PDB to ZPC: neutral catalogs directory does not exist:" << catalogsDir.string());
    return false;
  }
  const fs::path listFile = configDir / "catalog.list";
  std::vector<std::string> catalogs;
  if (!NCatalog::readCatalogList(listFile, catalogs)) {
    RIG_LOG(call, Error, "Importing PDB to ZPC: cannot read catalog list file: " << listFile.string());
    return false;
  }
  const fs::path toolLog = logDir / "tlx2partsdb.log";
  if (fs::is_regular_file(toolLog)) fs::remove(toolLog);

  const fs::path library = fs::path(getWorkingDirectory(call.services())) / "Library" / "Library.zpc";
  const fs::path installBin = getRigInstallBin(call.services());
  for (const std::string& catalog : catalogs) {
    const fs::path input = catalogsDir / (catalog + ".tlx");
    if (!fs::is_regular_file(input)) {
      RIG_LOG(call, Error, "Importing PDB to ZPC: following PDB TLX does not exist:" << input.string());
      continue;
    }
    const std::string pdb = NPdb::pdbName(catalog);
    NMisc::CRunProgram<std::string> run(call.translation());
    closeSearchPathWithInstallBin(run, installBin);
    if (!run.runProgram(NPdb::tlx2partsdbCommandLine(input, pdb, toolLog, library), true, NMisc::kCreateNoWindow)) {
      RIG_LOG(call, Error, "tlx2partsdb cannot be loaded.");
    } else if (run.exitCode() != 0) {
      RIG_LOG(call, Warn,
              "tlx2partsdb found problem(s) during importing PDB: " << input.string()
                                                                    << ". Returned code: " << run.exitCode());
    }
  }
  return true;
}

}  // namespace NComponent
