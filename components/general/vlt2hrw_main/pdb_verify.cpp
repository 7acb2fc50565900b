// verify_qrn2pdb: the report on what the parts database generator left
// behind, <log dir>/reports/verify_pdb.txt.

#include <boost/filesystem.hpp>
#include <fstream>
#include <sstream>

#include "catalog_helpers.hpp"
#include "common/text_file.hpp"
#include "script_functions.hpp"

namespace fs = boost::filesystem;

namespace NComponent {

namespace {

const char kRule[] = "-------------------------------------------------------------------------------";

}  // namespace

bool verifyQrn2pdb() {
  CScriptCall call(CScriptCall::kWdirAndSource);
  if (!call.ok()) return false;
  RIG_LOG(call, Debug, "Verifying qrn2pdb data.");
  fs::path configDir, logDir, neutralDir;
  if (!NCatalog::configDirectory(call, configDir,
                                 "Verifying qrn2pdb data: cannot obtain path to the configuration directory.") ||
      !NCatalog::logDirectory(call, logDir, "Verifying qrn2pdb data:  cannot obtain path to the log directory.") ||
      !NCatalog::neutralDirectory(call, neutralDir,
                                  "Verifying qrn2pdb data:  cannot obtain path to the neutral directory: "))
    return false;
  const fs::path catalogsDir = neutralDir / "catalogs";
  if (!fs::is_directory(catalogsDir)) {
    RIG_LOG(call, Error, "Verifying qrn2pdb data:  neutral catalogs directory does not exist:" << catalogsDir.string());
    return false;
  }
  const fs::path logsDir = logDir / "qrn2pdb_logs";
  if (!fs::is_directory(logsDir)) {
    RIG_LOG(call, Error,
            "Verifying qrn2pdb data: cannot locate the log directory for qrn2pdb logs:" << logsDir.string());
    return false;
  }
  const fs::path reportFile = logDir / "reports" / "verify_pdb.txt";
  std::ofstream report(reportFile.string(), std::ios::binary | std::ios::trunc);
  if (!report) {
    RIG_LOG(call, Error, "Verifying qrn2pdb data: cannot open report file for writing: " << reportFile.string());
    return false;
  }
  const fs::path listFile = configDir / "catalog.list";
  std::vector<std::string> catalogs;
  if (!NCatalog::readCatalogList(listFile, catalogs)) {
    RIG_LOG(call, Error, "Running qrn2pdb tool: cannot read catalog list file: " << listFile.string());
    return false;
  }

  std::ostringstream absent, problems;
  for (const std::string& catalog : catalogs) {
    if (!fs::is_regular_file(catalogsDir / (catalog + ".tlx")))
      absent << "ERROR: neutral PDB TLX file does not exist for the following catalog: " << catalog << '\n';
    const fs::path toolLog = logsDir / ("qrn2pdb_" + catalog + ".log");
    std::vector<std::string> lines;
    if (!rig_common::readTextLines(toolLog, lines)) {
      absent << "ERROR:  cannot read the log file produced by qrn2pdb tool: " << toolLog.string();
      continue;
    }
    problems << "--- Catalog: " << catalog << '\n';
    for (const std::string& line : lines)
      if (!NCatalog::filterLogLine(line, true).empty()) problems << line << '\n';
  }
  report << kRule << '\n' << " Problems related due to absence of files produced by qrn2pdb" << '\n' << kRule << '\n';
  report << absent.str() << '\n';
  report << kRule << '\n' << " Problems found by qrn2pdb" << '\n' << kRule << '\n';
  report << problems.str();
  return true;
}

}  // namespace NComponent
