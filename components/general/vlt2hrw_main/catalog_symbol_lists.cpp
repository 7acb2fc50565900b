// update_catalog_symbol_lists: the pin maps of the mapping files go into the
// catalogs' symbol lists, where a source pin maps to several target pins.

#include <boost/filesystem.hpp>

#include "catalog_helpers.hpp"
#include "common/part_list_file.hpp"
#include "common/symbol_list_file.hpp"
#include "common/text_helpers.hpp"
#include "mapping_file.hpp"
#include "neutral_catalogs.hpp"
#include "script_functions.hpp"

namespace fs = boost::filesystem;

namespace NComponent {

namespace {

const char kPrefix[] = "Update catalog symbol lists: ";

using NCatalog::TCatalogPart;
using rig_common::removeQuotes;

// Whether a symbol portion of the mapping file applies to the part, with
// the messages that go with the decision.
bool portionApplies(CScriptCall& call, const TCatalogPart& part, const MappingFile::TMappingSymbol& portion,
                    const std::string& catalog, const std::string& number) {
  if (part.components.size() == 1) {
    if (!portion.comp.empty())
      RIG_LOG(call, Info,
              "Update catalog symbol lists:"
                  << " there is a single qrn component in the neutral catalog file"
                  << " for catalog: " << catalog << ", part number: " << number
                  << ", but the COMP property has been specified in mapping file for"
                  << " symbol portion " << portion.name);
    return true;
  }
  if (portion.comp.empty()) {
    RIG_LOG(call, Warn,
            "Update catalog symbol lists:"
                << " there are multiple qrn component entries in the neutral catalog file"
                << " for catalog: " << catalog << ", part number: " << number
                << ", but the COMP property has not been specified in mapping file for"
                << " symbol portion " << portion.name << ". This symbol portion will be skipped.");
    return false;
  }
  for (const auto& component : part.components)
    if (component.name == portion.comp) return true;
  RIG_LOG(call, Warn,
          "Update catalog symbol lists:"
              << " there are multiple qrn component entries in the neutral catalog file"
              << " for catalog: " << catalog << ", part number: " << number
              << ", but the COMP property specified in mapping file for"
              << " symbol portion " << portion.name << " has no qrn component enty with the same name"
              << ". This symbol portion will be skipped.");
  return false;
}

void updatePart(CScriptCall& call, rig_common::log4rig::ILogger* logger, rig_common::CSymbolList& list,
                const std::string& catalog, const std::string& number, const TCatalogPart& part) {
  if (part.components.empty()) {
    RIG_LOG(call, Warn,
            kPrefix << "there are no components defined for catalog: " << catalog << ", part number: " << number);
    return;
  }
  if (part.mapFile.name.empty() && part.mapFile.path.empty()) {
    RIG_LOG(call, Warn,
            kPrefix << "mapping file does not exist or is not resolveable for catalog: " << catalog
                    << ", part number: " << number);
    return;
  }
  MappingFile::MappingFile mapping;
  if (!MappingFile::readMappingFile(mapping, part.mapFile.path, call)) {
    RIG_LOG(call, Warn, kPrefix << "cannot load mapping file for  catalog: " << catalog << ", part number: " << number);
    return;
  }
  for (const MappingFile::TMappingSymbol& portion : mapping.symbols) {
    if (!portionApplies(call, part, portion, catalog, number)) continue;
    for (const MappingFile::TMappingPin& pin : portion.pins) {
      if (pin.mappedNames.size() <= 1) continue;
      RIG_LOG(call, Info,
              kPrefix << "comma separated entry found"
                      << " for catalog: " << catalog << ", part number: " << number);
      // Only a part of one component gets pin maps: with several, which
      // component a symbol belongs to is not known here.
      if (part.components.size() != 1) continue;
      const auto& component = part.components.front();
      const std::string target = pin.name + "[" + "0:" + std::to_string(pin.mappedNames.size() - 1) + "]";
      for (const std::string& symbol : component.symbols) {
        rig_common::CSymbolListItem item(logger, part.container.path.string(), removeQuotes(symbol));
        if (item.empty()) continue;
        item.addPinMap(removeQuotes(catalog), removeQuotes(number), removeQuotes(component.name), removeQuotes(symbol),
                       pin.name, target);
        list.add(std::move(item));
      }
    }
  }
}

}  // namespace

bool updateCatalogSymbolLists(const std::string& libraryName, const std::string& locationMapFile,
                              const std::string& libraryDir) {
  (void)libraryName;
  (void)libraryDir;
  CScriptCall call(CScriptCall::kWdirAndSource);
  if (!call.ok()) return false;
  RIG_LOG(call, Debug, "Update catalog symbol lists.");
  fs::path configDir, neutralDir;
  if (!NCatalog::configDirectory(call, configDir,
                                 "Update catalog symbol lists: cannot obtain path to the configuration directory.") ||
      !NCatalog::neutralDirectory(call, neutralDir,
                                  "Update catalog symbol lists: cannot obtain path to the neutral directory: "))
    return false;
  const fs::path catalogsDir = neutralDir / "catalogs";
  if (!fs::is_directory(catalogsDir)) {
    RIG_LOG(call, Error, kPrefix << "neutral catalogs directory does not exist: " << catalogsDir.string());
    return false;
  }
  NCatalog::TSoftPrefixes prefixes;
  if (!NCatalog::readLocationMapTable(locationMapFile, prefixes)) {
    RIG_LOG(call, Error, kPrefix << "cannot load the location map file: " << locationMapFile);
    return false;
  }
  rig_common::CPartListFileReader excluded;
  const fs::path excludedFile = configDir / "excluded_parts.caf";
  if (fs::is_regular_file(excludedFile) && !excluded.read(excludedFile.string())) {
    RIG_LOG(call, Error, kPrefix << "cannot open the excluded part file for reading: " << excludedFile.string());
    return false;
  }
  const fs::path listFile = configDir / "catalog.list";
  std::vector<std::string> catalogs;
  if (!NCatalog::readCatalogList(listFile, catalogs)) {
    RIG_LOG(call, Error, kPrefix << "cannot read catalog list file: " << listFile.string());
    return false;
  }

  auto logger = call.logger();
  for (const std::string& catalog : catalogs) {
    const fs::path neutralFile = catalogsDir / (catalog + "_neut.tlx");
    const fs::path symbolListFile = catalogsDir / (catalog + ".sym_list.caf");
    rig_common::CSymbolListFileWriter writer(&logger);
    if (!writer.open(symbolListFile.string(), true)) {
      RIG_LOG(call, Warn, kPrefix << "cannot read symbol list file: " << symbolListFile.string());
      continue;
    }
    NCatalog::NeutralCatalogs reader(prefixes);
    if (!reader.readQrnNeutralCatalog(neutralFile, catalog, call)) {
      RIG_LOG(call, Warn, kPrefix << "cannot parse neutral catalog file: " << neutralFile.string());
      return false;
    }
    RIG_LOG(call, Debug, kPrefix << "processing data for catalog: " << catalog);
    for (const auto& entry : reader.parts) {
      if (excluded.contains(catalog, entry.first)) {
        RIG_LOG(call, Debug,
                kPrefix << "catalog: " << catalog << ", part number: " << entry.first << "."
                        << " This part was found in excluded file, so will be excluded from translation.");
        continue;
      }
      updatePart(call, &logger, writer.list(), catalog, entry.first, entry.second);
    }
    writer.close();  // a failed write is reported and the next catalog goes on
  }
  return true;
}

}  // namespace NComponent
