// generate_qrn_caf: the property translation file of the parts database
// generator, from the location map and the catalog property mapping.

#include <boost/filesystem.hpp>
#include <fstream>

#include "catalog_helpers.hpp"
#include "impl/cfg_file_managers_impl.hpp"
#include "impl/qlln_general_impl.hpp"
#include "script_functions.hpp"

namespace fs = boost::filesystem;
using NComponent::NConfig::NCatalog::CCatalogDataMapping;
using NComponent::NConfig::NCatalog::TCatalogProperty;

namespace NComponent {

namespace {

const char kHead[] =
    ".FILETYPE PROPTRANS                  ! File type\n"
    ".VERSION \"1.0\"                    ! File Version\n"
    ".DATE \" Mar 19, 1997\"\n"
    ".CREATOR   \"Olvanta, Inc.\"\n"
    "\n";

// The hand-editing hints that follow every property block.
const char kHints[] =
    "!  ..TRUNCATE_VALUE   \"\"\n"
    "!   ..REPLACE_VALUE    \"\"   \"\"\n"
    "!   ..TRANSLATE_VALUE    \"\"   \"\"\n";

}  // namespace

bool generateQrnCaf(const std::string& locationMapFile) {
  CScriptCall call(CScriptCall::kWdirAndSource);
  if (!call.ok()) return false;
  RIG_LOG(call, Debug, "Generating qrn2pdb.caf.");
  fs::path configDir, logDir, neutralDir;
  if (!NCatalog::configDirectory(call, configDir,
                                 "Generating qrn.caf: cannot obtain path to the configuration directory.") ||
      !NCatalog::logDirectory(call, logDir, "Generating qrn.caf: cannot obtain path to the log directory.") ||
      !NCatalog::neutralDirectory(call, neutralDir,
                                  "Generating qrn.caf: cannot obtain path to the neutral directory: "))
    return false;
  const fs::path catalogsDir = neutralDir / "catalogs";
  if (!fs::is_directory(catalogsDir)) {
    RIG_LOG(call, Error, "Generating qrn.caf: neutral catalogs directory does not exist:" << catalogsDir.string());
    return false;
  }
  QllnGeneral::TLocationMap locationMap;
  if (!QllnGeneral::readLocationMap(call, locationMap, locationMapFile, false)) {
    RIG_LOG(call, Error, "Generating qrn.caf: errors found while reading location map file: " << locationMapFile);
    return false;
  }
  const fs::path mappingFile = configDir / "catalog_data_mapping.xml";
  CCatalogDataMapping mapping(call.translation());
  if (!mapping.parse(mappingFile)) {
    RIG_LOG(call, Error, "Generating qrn.caf: cannot parse catalog data mapping file: " << mappingFile.string());
    return false;
  }
  const fs::path cafFile = configDir / "qrn.caf";
  std::ofstream out(cafFile.string(), std::ios::binary | std::ios::trunc);
  if (!out) {
    RIG_LOG(call, Error, "Generating qrn.caf: cannot open file for writing: " << cafFile.string());
    return false;
  }
  out << kHead;
  for (const auto& prefix : locationMap) {
    if (prefix.second.empty()) {
      RIG_LOG(call, Warn,
              "Generating qrn.caf: following soft prefix does not contain corresponding value: " << prefix.first);
      continue;
    }
    out << ".soft_path  \"" << prefix.first << "\"  \"" << prefix.second.front() << "\"\n";
  }
  out << '\n';
  for (auto it = mapping.begin(); it != mapping.end(); ++it) {
    const TCatalogProperty property = *it;
    out << " .PROP   \"" << property.sourceName << "\"  \"" << property.targetName << "\"\n";
    out << "   ..PASS   forward\n";
    out << (property.targetName.empty() ? "   ..PDB    no\n" : "   ..PDB    yes\n");
    out << kHints;
  }
  out << '\n';
  return true;
}

}  // namespace NComponent
