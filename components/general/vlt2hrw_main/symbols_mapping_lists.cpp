// The four tables of the default record of symbol_data_mapping.xml as list
// handles: body properties, pin properties, pin types and scaling. Target
// names of the two property tables that the converter knows are shown by
// their display names and saved back as target names.

#include <boost/filesystem.hpp>

#include "catalog_helpers.hpp"
#include "common/text_helpers.hpp"
#include "impl/sym_config_managers_impl.hpp"
#include "impl/symbol_cfg_files_impl.hpp"
#include "list_registry.hpp"
#include "script_functions.hpp"

namespace fs = boost::filesystem;
using NComponent::NConfig::TKnownProperty;
using NComponent::NConfig::NSymbol::CSymbolDataMapping;
using NComponent::NConfig::NSymbol::TDataMapping;

namespace NComponent {

namespace {

enum class TTable { kBodyProperties, kPinProperties, kPinTypes, kScaling };

using TNameTable = std::map<std::string, std::string>;
using TKnownTable = std::map<std::string, TKnownProperty>;

const TKnownTable* knownTable(TTable table) {
  if (table == TTable::kBodyProperties) return &NConfig::knownBodyProperties();
  if (table == TTable::kPinProperties) return &NConfig::knownPinProperties();
  return nullptr;
}

TNameTable& nameTable(TDataMapping& mapping, TTable table) {
  if (table == TTable::kBodyProperties) return mapping.bodyProperties;
  if (table == TTable::kPinProperties) return mapping.pinProperties;
  return mapping.pinTypes;
}

// Parses the mapping file and finds its default record; false after an
// Error that begins with `stem`.
bool readDefaultMapping(CScriptCall& call, const std::string& stem, CSymbolDataMapping& file, fs::path& path,
                        TDataMapping& mapping) {
  fs::path configDir;
  if (!NCatalog::configDirectory(call, configDir, stem + ": cannot obtain path to the configuration directory."))
    return false;
  path = configDir / "symbol_data_mapping.xml";
  if (!file.parse(path)) {
    RIG_LOG(call, Error, stem << ": cannot parse file: " << path.string());
    return false;
  }
  mapping = file.findMapping("default");
  if (mapping.id.empty()) {
    RIG_LOG(call, Error, stem << ": cannot obtain default entry from file: " << path.string());
    return false;
  }
  return true;
}

std::string getList(TTable table, const std::string& stem) {
  CScriptCall call;
  if (!call.ok()) return {};
  RIG_LOG(call, Debug, stem << ".");
  CSymbolDataMapping file(call.translation());
  fs::path path;
  TDataMapping mapping;
  if (!readDefaultMapping(call, stem, file, path, mapping)) return {};
  const std::string rid = new2DList(gListRegistry);
  TList2D* rows = find2D(rid);
  if (table == TTable::kScaling) {
    for (const auto& entry : mapping.scaling) rows->push_back({entry.first.first, entry.first.second, entry.second});
    return rid;
  }
  const TKnownTable* known = knownTable(table);
  for (const auto& entry : nameTable(mapping, table)) {
    std::string shown = entry.second;
    if (known != nullptr) {
      const auto found = known->find(entry.first);
      if (found != known->end() && found->second.internalName == entry.second) shown = found->second.label;
    }
    rows->push_back({entry.first, shown});
  }
  return rid;
}

std::string column(const std::vector<std::string>& row, std::size_t index) {
  return index < row.size() ? rig_common::trim(row[index]) : std::string();
}

bool saveList(TTable table, const std::string& stem, const std::string& rid) {
  CScriptCall call;
  if (!call.ok()) return false;
  RIG_LOG(call, Debug, stem << ".");
  CSymbolDataMapping file(call.translation());
  fs::path path;
  TDataMapping mapping;
  if (!readDefaultMapping(call, stem, file, path, mapping)) return false;
  // An unknown RID has no rows; the file is still written.
  if (const TList2D* rows = find2D(rid)) {
    const TKnownTable* known = knownTable(table);
    for (const auto& row : *rows) {
      const std::string first = column(row, 0);
      std::string second = column(row, 1);
      if (table == TTable::kScaling) {
        mapping.scaling[{first, second}] = column(row, 2);
        continue;
      }
      if (first.empty()) continue;
      if (known != nullptr) {
        const auto found = known->find(first);
        if (found != known->end() && found->second.label == second) second = found->second.internalName;
      }
      nameTable(mapping, table)[first] = second;
    }
  }
  file.setDataMapping(mapping, true);
  if (!file.write(path)) {
    RIG_LOG(call, Error, stem << ": cannot write file: " << path.string());
    return false;
  }
  return true;
}

const char kPropertyGet[] = "Obtaining symbol property mapping data";
const char kPropertySave[] = "Saving symbol property mapping data";

}  // namespace

std::string getSymbolPropertyList() { return getList(TTable::kBodyProperties, kPropertyGet); }
bool saveSymbolPropertyList(const std::string& rid) { return saveList(TTable::kBodyProperties, kPropertySave, rid); }
std::string getSymbolPinPropertyList() { return getList(TTable::kPinProperties, kPropertyGet); }
bool saveSymbolPinPropertyList(const std::string& rid) { return saveList(TTable::kPinProperties, kPropertySave, rid); }
std::string getSymbolPinTypeList() { return getList(TTable::kPinTypes, "Obtaining symbol type mapping data"); }
bool saveSymbolPinTypeList(const std::string& rid) {
  return saveList(TTable::kPinTypes, "Saving symbol type mapping data", rid);
}
std::string getSymbolScalingList() { return getList(TTable::kScaling, "Obtaining symbol scaling data"); }
bool saveSymbolScalingList(const std::string& rid) {
  return saveList(TTable::kScaling, "Saving symbol scaling data", rid);
}

}  // namespace NComponent
