// verify_catalogs: the report on what the catalog tool left behind.

#include <boost/filesystem.hpp>
#include <fstream>

#include "catalog_helpers.hpp"
#include "common/text_file.hpp"
#include "common/whole_file.hpp"
#include "script_functions.hpp"
#include "vlt_library_cfg.hpp"

namespace fs = boost::filesystem;

namespace NComponent {

namespace {
// The text every message of the script function starts with.
const std::string kPrefix = "Verifying catalog data: ";
}  // namespace

namespace {

const char kRule[] = "-------------------------------------------------------------------------------";

void writeHead(std::ostream& out, const char* title) { out << kRule << '\n' << title << '\n' << kRule << '\n'; }

}  // namespace

bool verifyCatalogs(const std::string& libraryName, const std::string& locationMapFile, const std::string& libraryDir) {
  CScriptCall call(CScriptCall::kWdirAndSource);
  if (!call.ok()) return false;
  RIG_LOG(call, Debug, "Verifying catalog data.");
  fs::path configDir, logDir, neutralDir;
  if (!NCatalog::configDirectory(call, configDir, kPrefix + "cannot obtain path to the configuration directory.") ||
      !NCatalog::logDirectory(call, logDir, kPrefix + "cannot obtain path to the log directory.") ||
      !NCatalog::neutralDirectory(call, neutralDir, kPrefix + "cannot obtain path to the neutral directory."))
    return false;
  const fs::path catalogsDir = neutralDir / "catalogs";

  const fs::path reportFile = logDir / "reports" / "verify_catalogs.txt";
  rig_common::CWholeFile reportOut(reportFile);
  std::ostream& report = reportOut.stream();
  if (!reportOut) {
    RIG_LOG(call, Error, kPrefix + "cannot open report file for writing: " << reportFile.string());
    return false;
  }
  if (!fs::is_directory(NVlt2HrwHelpers::getCatalogDir(call, libraryName, locationMapFile, libraryDir))) return false;

  const fs::path listFile = configDir / "catalog.list";
  std::vector<std::string> catalogs;
  if (!NCatalog::readCatalogList(listFile, catalogs)) {
    RIG_LOG(call, Error, kPrefix + "cannot read catalog list file: " << listFile.string());
    return false;
  }
  writeHead(report, " Problems related due to absence of neutral catalog data files");
  for (const std::string& catalog : catalogs) {
    if (!fs::is_regular_file(catalogsDir / (catalog + "_neut.tlx")))
      report << "ERROR: "
             << "content of the following catalog has not been saved: " << catalog << '\n';
  }
  report << '\n';

  const fs::path toolLog = logDir / "tbl2flat.log";
  std::vector<std::string> lines;
  if (!rig_common::readTextLines(toolLog, lines)) {
    RIG_LOG(call, Error, kPrefix + "cannot read the log file produced by tbl2flat tool: " << toolLog.string());
    return false;
  }
  writeHead(report, " Problems found by the tbl2flat tool");
  for (const std::string& line : lines) {
    const std::string message = NCatalog::filterLogLine(line, true);
    if (!message.empty()) report << message << '\n';
  }
  if (reportOut.commit()) return true;
  RIG_LOG(call, Error, "Verifying catalog data: cannot write report file: " << reportFile.string());
  return false;
}

}  // namespace NComponent
