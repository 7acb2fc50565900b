// The catalog property mapping: catalog_data_mapping.xml, from the property
// names the catalogs use to the names of the parts database.

#include <boost/filesystem.hpp>
#include <boost/regex.hpp>
#include <map>
#include <utility>
#include <vector>

#include "catalog_helpers.hpp"
#include "common/text_file.hpp"
#include "common/text_helpers.hpp"
#include "impl/cfg_file_managers_impl.hpp"
#include "list_registry.hpp"
#include "script_functions.hpp"

namespace fs = boost::filesystem;
using NComponent::NConfig::NCatalog::CCatalogDataMapping;
using NComponent::NConfig::NCatalog::TCatalogProperty;

namespace NComponent {

namespace {
// The texts the messages of each script function start with.
const std::string kUpdatePrefix = "Updating catalog property mapping: ";
const std::string kSavePrefix = "Saving catalog property list: ";
}  // namespace

namespace {

const char kDataMapping[] = "catalog_data_mapping.xml";

using TPropertyTable = std::map<std::string, std::string>;

// Source names whose target name the system knows by itself, in the order
// of their making.
const std::vector<std::pair<std::string, std::string>>& seedTable() {
  static const std::vector<std::pair<std::string, std::string>> seeds = {
      {"PART_NO", "Part Number"}, {"@PART_NO", "Part Number"},  {"COMP", "Part Name"},  {"@COMP", "Part Name"},
      {"qrn_comps", "Part Name"}, {"REF", "Ref Designator"},    {"PINTYPE", "PINTYPE"}, {"toler", "Tolerance"},
      {"Comp_Height", "Height"},  {"TRANS_REAL_VALUE", "Value"}};
  return seeds;
}

// A fresh document holding the table's entries in map order.
void fillDocument(CCatalogDataMapping& mapping, const TPropertyTable& table) {
  mapping.createDefaults();
  for (const auto& entry : table) mapping.updatePropertyMapping(TCatalogProperty{entry.first, entry.second}, true);
}

}  // namespace

bool updateCatalogPropMapping(const std::string& ignored) {
  (void)ignored;
  CScriptCall call(CScriptCall::kWdirAndSource);
  if (!call.ok()) return false;
  RIG_LOG(call, Debug, "Updating catalog property mapping.");
  fs::path configDir, logDir, neutralDir;
  if (!NCatalog::configDirectory(call, configDir,
                                 kUpdatePrefix + "cannot obtain path to the configuration directory.") ||
      !NCatalog::logDirectory(call, logDir, kUpdatePrefix + "cannot obtain path to the log directory.") ||
      !NCatalog::neutralDirectory(call, neutralDir, kUpdatePrefix + "cannot obtain path to the neutral directory: "))
    return false;
  const fs::path catalogsDir = neutralDir / "catalogs";
  if (!fs::is_directory(catalogsDir)) {
    RIG_LOG(call, Error, kUpdatePrefix + "neutral catalogs directory does not exist:" << catalogsDir.string());
    return false;
  }

  TPropertyTable table;
  const boost::regex propertyList(".+\\.prop\\.list");
  for (fs::directory_iterator it(catalogsDir), end; it != end; ++it) {
    if (!boost::regex_match(it->path().filename().string(), propertyList)) continue;
    const std::string file = it->path().string();
    RIG_LOG(call, Debug, kUpdatePrefix + "reading property list file:" << file);
    std::vector<std::string> lines;
    if (!rig_common::readTextLines(it->path(), lines)) {
      RIG_LOG(call, Error, kUpdatePrefix + "cannot read property list file: " << file);
      continue;
    }
    for (const std::string& line : lines) table.emplace(rig_common::trim(line), std::string());
  }

  const fs::path mappingFile = configDir / kDataMapping;
  CCatalogDataMapping mapping(call.translation());
  if (fs::is_regular_file(mappingFile)) {
    if (!mapping.parse(mappingFile)) {
      RIG_LOG(call, Error,
              kUpdatePrefix + "problems found during parsing catalog data mapping file: " << mappingFile.string());
      return false;
    }
  } else {
    mapping.createDefaults();
  }
  // A record of the user's survives, even for a property no catalog uses.
  for (auto it = mapping.begin(); it != mapping.end(); ++it) {
    const TCatalogProperty property = *it;
    table[property.sourceName] = property.targetName;
  }
  for (const auto& seed : seedTable()) {
    std::string& target = table[seed.first];
    if (target.empty()) target = seed.second;
  }

  CCatalogDataMapping result(call.translation());
  fillDocument(result, table);
  if (!result.write(mappingFile)) {
    RIG_LOG(call, Error, kUpdatePrefix + "cannot write catalog data mapping file: " << mappingFile.string());
    return false;
  }
  return true;
}

std::string getCatalogPropertyList() {
  CScriptCall call;
  if (!call.ok()) return {};
  RIG_LOG(call, Debug, "Obtaining catalog property list.");
  fs::path configDir;
  if (!NCatalog::configDirectory(call, configDir,
                                 "Obtaining catalog property list: cannot obtain path to the configuration directory."))
    return {};
  const fs::path mappingFile = configDir / kDataMapping;
  CCatalogDataMapping mapping(call.translation());
  if (!fs::is_regular_file(mappingFile) || !mapping.parse(mappingFile)) {
    RIG_LOG(call, Error,
            "Obtaining catalog property list: problems found during parsing catalog data mapping file: "
                << mappingFile.string());
    return {};
  }
  const std::string rid = new2DList(gListRegistry);
  TList2D* list = find2D(rid);
  for (auto it = mapping.begin(); it != mapping.end(); ++it) {
    const TCatalogProperty property = *it;
    list->push_back({property.sourceName, property.targetName});
  }
  return rid;
}

bool saveCatalogPropertyList(const std::string& rid) {
  CScriptCall call;
  if (!call.ok()) return false;
  RIG_LOG(call, Debug, "Saving catalog property list.");
  fs::path configDir;
  if (!NCatalog::configDirectory(call, configDir, kSavePrefix + "cannot obtain path to the configuration directory."))
    return false;
  TPropertyTable table;
  if (const TList2D* list = find2D(rid)) {
    for (const auto& row : *list) {
      const std::string source = row.empty() ? std::string() : rig_common::trim(row[0]);
      const std::string target = row.size() < 2 ? std::string() : rig_common::trim(row[1]);
      if (source.empty()) continue;
      table[source] = target;  // a later row of the same source overrides
    }
  }
  const fs::path mappingFile = configDir / kDataMapping;
  CCatalogDataMapping mapping(call.translation());
  fillDocument(mapping, table);
  if (!mapping.write(mappingFile)) {
    RIG_LOG(call, Error, kSavePrefix + "cannot write catalog data mapping file: " << mappingFile.string());
    return false;
  }
  return true;
}

}  // namespace NComponent
