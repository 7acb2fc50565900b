// Path depth of the symbol list: the smallest depth that tells all symbols
// apart, the deepest symbol directory, and the report of what collides at
// each depth below the good one.

#include <algorithm>
#include <boost/filesystem.hpp>
#include <fstream>
#include <functional>

#include "catalog_helpers.hpp"
#include "script_functions.hpp"
#include "symbols.hpp"
#include "vlt_library_cfg.hpp"

namespace fs = boost::filesystem;
using rig_common::CSymbolList;

namespace NComponent {

namespace {

// The frame of the two depth functions: their messages begin with `stem`.
int depthOfList(const std::string& stem, const std::string& libraryName, const std::string& locationMapFile,
                const std::string& libraryDir, const std::function<int(const CSymbolList&)>& measure) {
  CScriptCall call(CScriptCall::kWdirAndSource);
  if (!call.ok()) return -1;
  RIG_LOG(call, Debug, stem << ".");
  fs::path configDir, neutralDir;
  if (!NCatalog::configDirectory(call, configDir, stem + ": cannot obtain path to the configuration directory.") ||
      !NCatalog::neutralDirectory(call, neutralDir, stem + ": cannot obtain path to the neutral directory: "))
    return -1;
  if (!fs::is_directory(NVlt2HrwHelpers::getCompsDir(call, libraryName, locationMapFile, libraryDir))) return -1;
  auto logger = call.logger();
  CSymbolList list(&logger);
  if (!NVlt2HrwHelpers::buildSymbolListAux(call, list, libraryName, locationMapFile, libraryDir)) {
    RIG_LOG(call, Error, stem << ": cannot merge symbol lists");
    return -1;
  }
  return measure(list);
}

}  // namespace

int findSymbolPathDepth(const std::string& libraryName, const std::string& locationMapFile,
                        const std::string& libraryDir) {
  return depthOfList("Looking for symbol path depth", libraryName, locationMapFile, libraryDir,
                     [](const CSymbolList& list) {
                       std::list<NVlt2HrwHelpers::TPathDepthRecord> records;
                       return NVlt2HrwHelpers::findPathDepth(records, list);
                     });
}

int findSymbolMaxPathDepth(const std::string& libraryName, const std::string& locationMapFile,
                           const std::string& libraryDir) {
  return depthOfList("Looking for symbol max path depth", libraryName, locationMapFile, libraryDir,
                     [](const CSymbolList& list) {
                       int deepest = 0;
                       for (const auto& item : list)
                         deepest = std::max(deepest, NVlt2HrwHelpers::countPathLevels(item.getDirectory()));
                       return deepest;
                     });
}

bool reportSymbolDuplicatesFromPathDepth(const std::string& libraryName, const std::string& locationMapFile,
                                         const std::string& libraryDir) {
  CScriptCall call(CScriptCall::kWdirAndSource);
  if (!call.ok()) return false;
  fs::path logDir;
  if (!NCatalog::logDirectory(call, logDir,
                              "Reporting symbol duplicates from path depth: cannot obtain path to the log directory."))
    return false;
  auto logger = call.logger();
  CSymbolList list(&logger);
  if (!NVlt2HrwHelpers::buildSymbolListAux(call, list, libraryName, locationMapFile, libraryDir)) {
    RIG_LOG(call, Error, "Reporting symbol duplicates from path depth: cannot merge symbol lists");
    return false;
  }
  std::list<NVlt2HrwHelpers::TPathDepthRecord> records;
  NVlt2HrwHelpers::findPathDepth(records, list);

  const fs::path file = logDir / "reports" / "symbol_path_depth_report.txt";
  std::ofstream out(file.string(), std::ios::binary | std::ios::trunc);
  if (!out) {
    RIG_LOG(call, Error,
            "Reporting symbol duplicates from path depth: cannot open report file for writing:" << file.string());
    return false;
  }
  out << "Default path depth: " << findSymbolPathDepth(libraryName, locationMapFile, libraryDir) << '\n';
  out << "Maximal path depth: " << findSymbolMaxPathDepth(libraryName, locationMapFile, libraryDir) << "\n\n";
  for (auto record = records.rbegin(); record != records.rend(); ++record) {
    out << "Path depth: " << record->depth << " - " << record->count << " duplicates found.\n";
    for (const auto& duplicate : record->duplicates) out << duplicate.first << '\t' << duplicate.second << '\n';
    out << '\n';
  }
  return true;
}

}  // namespace NComponent

int findSymbolMaxDirectoryLevel(const std::string& libraryName, const std::string& locationMapFile,
                                const std::string& libraryDir) {
  return NComponent::findSymbolMaxPathDepth(libraryName, locationMapFile, libraryDir);
}
