// report_symbol_pin_spacing_map and create_default_symbol_data_mapping: what
// the neutral symbol files tell about pin spacings and property names.

#include <boost/filesystem.hpp>
#include <fstream>
#include <functional>
#include <map>

#include "catalog_helpers.hpp"
#include "common/symbol_list_file.hpp"
#include "common/symbol_neutral_handler.hpp"
#include "components/hpp/impl/sym_config_managers_impl.hpp"
#include "neutral_symbols.hpp"
#include "script_functions.hpp"

namespace fs = boost::filesystem;

namespace NComponent {

namespace {

using TVisit = std::function<void(const std::string& directory, const std::string& name, const fs::path& file,
                                  const rig_common::CVlt2hrwSymbolNeutralHandler& symbol)>;

// The neutral file of every symbol of the partition lists, parsed. The
// directories come first: `logDir` is looked up only when asked for.
// False when the walk cannot start.
bool walkNeutralSymbols(CScriptCall& call, const std::string& prefix, fs::path* logDir, fs::path& configDir,
                        const TVisit& visit) {
  fs::path neutralDir;
  std::string logName, neutralName;
  if (!NCatalog::configDirectory(call, configDir, prefix + "cannot obtain path to the configuration directory."))
    return false;
  if (logDir != nullptr && !NCatalog::logDirectory(call, *logDir, prefix + "cannot obtain path to the log directory."))
    return false;
  const bool neutralServed = getNeutralName(call.services(), neutralName);
  if (!NSymbol::servedDirectory(call, neutralServed, neutralName, neutralDir,
                                prefix + "cannot obtain path to the neutral directory: "))
    return false;
  const fs::path listsDir = neutralDir / "symbol_lists";
  if (!fs::is_directory(listsDir)) {
    RIG_LOG(call, Error, prefix << "cannot find symbol lists directory: " << listsDir.string());
    return false;
  }
  int depth = 0;
  NSymbol::TPartitionTable partitions;
  if (!NSymbol::readPartitionTable(configDir, depth, partitions)) return false;
  const fs::path root = NSymbol::neutralSymbolRoot(neutralDir, depth);

  auto logger = call.logger();
  rig_common::CVlt2hrwSymbolNeutralHandler symbol;
  for (const auto& listFile : NSymbol::partitionListFiles(listsDir)) {
    if (!NSymbol::knownPartition(call, prefix, listFile.second, partitions)) continue;
    rig_common::CSymbolListFileReader reader(&logger);
    if (!NSymbol::readPartitionList(call, prefix, listFile.first, reader)) continue;
    for (const rig_common::CSymbolListItem& item : reader.list()) {
      const std::string directory = item.getDirectory(), name = item.getName();
      const fs::path file = NSymbol::neutralSymbolFile(root, directory, name, depth);
      if (!fs::is_regular_file(file)) {
        RIG_LOG(call, Warn,
                prefix << "following file referenced by symbol list file does not exist: " << file.string());
        continue;
      }
      if (!symbol.parse(file.string())) {
        RIG_LOG(call, Warn, prefix << "problem during parsing neutral symbol file: " << file.string());
        continue;
      }
      visit(directory, name, file, symbol);
    }
  }
  return true;
}

}  // namespace

bool reportSymbolPinSpacingMap() {
  CScriptCall call(CScriptCall::kWdirAndSource);
  if (!call.ok()) return false;
  const std::string prefix = "Reporting symbol pin spacing map: ";
  fs::path configDir, logDir;
  std::map<std::string, std::vector<std::string>> groups;
  const bool walked = walkNeutralSymbols(
      call, prefix, &logDir, configDir,
      [&groups](const std::string& directory, const std::string& name, const fs::path&,
                const rig_common::CVlt2hrwSymbolNeutralHandler& symbol) {
        groups[symbol.getPinSpacing() + " " + symbol.getUnitName()].push_back(directory + "\t" + name);
      });
  if (!walked) return false;
  const fs::path reportFile = logDir / "reports" / "symbol_pin_spacing_report.txt";
  std::ofstream report(reportFile.string(), std::ios::binary | std::ios::trunc);
  if (!report) {
    RIG_LOG(call, Error, prefix << "cannot open report file for writing:" << reportFile.string());
    return false;
  }
  for (const auto& group : groups) {
    report << "Pin spacing: \"" << group.first << "\" - " << group.second.size() << " instances\n";
    for (const std::string& symbol : group.second) report << symbol << '\n';
  }
  return true;
}

bool createDefaultSymbolDataMapping() {
  CScriptCall call(CScriptCall::kWdirAndSource);
  if (!call.ok()) return false;
  const std::string prefix = "Creating default symbol data mapping file: ";
  fs::path configDir;
  NConfig::NSymbol::TDataMapping mapping;
  mapping.id = "default";
  const bool walked = walkNeutralSymbols(
      call, prefix, nullptr, configDir,
      [&](const std::string&, const std::string&, const fs::path& file,
          const rig_common::CVlt2hrwSymbolNeutralHandler& symbol) {
        for (const std::string& property : symbol.getBodyProperties()) mapping.bodyProperties.emplace(property, "");
        for (const std::string& property : symbol.getPinProperties()) mapping.pinProperties.emplace(property, "");
        if (symbol.getPinSpacing().empty() || symbol.getUnitName().empty()) {
          RIG_LOG(call, Warn, prefix << "either pin spacing or unit name is not valid for symbol: " << file.string());
          return;
        }
        mapping.scaling.emplace(std::make_pair(symbol.getPinSpacing(), symbol.getUnitName()), "");
      });
  if (!walked) return false;
  // Names the target tool knows get its internal names; the others stay for
  // the user to fill in.
  for (auto& property : mapping.bodyProperties) {
    const auto known = NConfig::knownBodyProperties().find(property.first);
    if (known != NConfig::knownBodyProperties().end()) property.second = known->second.internalName;
  }
  for (auto& property : mapping.pinProperties) {
    const auto known = NConfig::knownPinProperties().find(property.first);
    if (known != NConfig::knownPinProperties().end()) property.second = known->second.internalName;
  }
  mapping.pinTypes = {{"IN", "IN"},  {"OUT", "OUT"},    {"IO", "BI"}, {"IXO", "BI"},
                      {"ENA", "IN"}, {"ANA", "ANALOG"}, {"PWR", "BI"}};
  NConfig::NSymbol::CSymbolDataMapping document(call.translation());
  document.createDefaults();
  document.setDataMapping(mapping, true);
  const fs::path file = configDir / "symbol_data_mapping.xml";
  if (!document.write(file)) {
    RIG_LOG(call, Error, prefix << "cannot write file: " << file.string());
    return false;
  }
  return true;
}

}  // namespace NComponent
