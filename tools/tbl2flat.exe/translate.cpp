#include "translate.hpp"

#include <boost/filesystem/operations.hpp>
#include <map>

namespace tbl2flat {

const char* const kBlankSymbol = "VLTTRANSDELETEME";
const char* const kValueProperty = "QRN_VALUE_PROPERTY";
const char* const kValue = "QRN_VALUE";

namespace {

std::string quoted(const std::string& value) { return "\"" + value + "\""; }

// A property name can stand as a keyword of the neutral file: not empty,
// without blanks, not opening with a full stop, and clear of the tool's own
// QRN_ keywords.
bool isPropertyName(const std::string& name) {
  if (name.empty() || name[0] == '.' || name.compare(0, 4, "QRN_") == 0) return false;
  return name.find_first_of(" \t\r\n") == std::string::npos;
}

class CPartTranslator {
 public:
  CPartTranslator(const TTranslationInput& input, TTranslation& result, std::ostream& out)
      : mIn(input), mResult(result), mOut(out) {}

  void translate(const TEntryPart& part) {
    if (mIn.excluded->contains(mIn.catalog, part.number)) {
      ++mResult.excluded;
      return;
    }
    std::string number = part.number;
    if (mIn.partNoSwap) {
      if (!part.property("PART_NO", number) || number.empty()) {
        reject(part, "no PART_NO property to take the part number from");
        return;
      }
      if (mIn.excluded->contains(mIn.catalog, number)) {
        ++mResult.excluded;
        return;
      }
    }
    auto used = mNumbers.find(number);
    if (used != mNumbers.end()) {
      reject(part, "part number " + number + " is already used by part " + used->second);
      return;
    }
    if (part.container.empty()) {
      reject(part, "no CONTAINER");
      return;
    }
    std::string container, prefix;
    if (!resolveLocation(part.container, *mIn.prefixes, container, prefix)) {
      reject(part, "soft prefix " + prefix + " of the CONTAINER " + part.container + " is not in the location map");
      return;
    }
    mNumbers.emplace(number, part.number);
    checkMapFile(part);
    if (part.components.empty()) warn(part, "no COMPONENT");
    writeNeutral(part, number);
    addSymbols(part, number, container);
    ++mResult.translated;
  }

 private:
  void reject(const TEntryPart& part, const std::string& reason) {
    mOut << "Error: catalog " << mIn.catalog << ", part " << part.number << ": " << reason
         << ", the part is rejected\n";
    mResult.rejected.push_back(TRejectedPart{part.number, reason});
  }

  void warn(const TEntryPart& part, const std::string& text) {
    mOut << "Warning: catalog " << mIn.catalog << ", part " << part.number << ": " << text << "\n";
  }

  void checkMapFile(const TEntryPart& part) {
    if (part.mapFile.empty()) {
      warn(part, "no MAP_FILE");
      return;
    }
    std::string path, prefix;
    if (!resolveLocation(part.mapFile, *mIn.prefixes, path, prefix)) {
      warn(part, "soft prefix " + prefix + " of the MAP_FILE " + part.mapFile + " is not in the location map");
      return;
    }
    boost::system::error_code error;
    if (!boost::filesystem::is_regular_file(path, error)) warn(part, "mapping file does not exist: " + path);
  }

  void writeNeutral(const TEntryPart& part, const std::string& number) {
    rig_common::TLXNode* node = mResult.neutral.addChild("QRN_PART", quoted(number));
    node->addChild("QRN_PART_CONTAINER", quoted(part.container));
    if (!part.mapFile.empty()) node->addChild("QRN_MAP_FILE", quoted(part.mapFile));
    for (const auto& geom : part.geoms) node->addChild("QRN_GEOM", quoted(geom));
    for (const auto& component : part.components) {
      rig_common::TLXNode* comp = node->addChild("QRN_COMP", quoted(component.name));
      for (const auto& symbol : component.symbols)
        comp->addChild("QRN_SYMBOL", quoted(symbol == "-" ? kBlankSymbol : symbol));
    }
    for (const auto& property : part.properties) {
      if (!isPropertyName(property.first)) {
        warn(part, "property name \"" + property.first + "\" cannot be written, the property is skipped");
        continue;
      }
      node->addChild(property.first, quoted(property.second));
      if (mPropertySeen.insert(property.first).second) mResult.propertyNames.push_back(property.first);
    }
    if (mIn.values->catalogs.count(mIn.catalog) == 0) return;
    for (const auto& name : mIn.values->properties) {
      std::string value;
      if (!part.property(name, value)) continue;
      node->addChild(kValueProperty, quoted(name))->addChild(kValue, quoted(value));
    }
  }

  void addSymbols(const TEntryPart& part, const std::string& number, const std::string& container) {
    for (const auto& component : part.components)
      for (const auto& symbol : component.symbols) {
        if (symbol == "-") continue;
        // A symbol that several parts use is one item with one CATALOG node.
        rig_common::CSymbolListItem item(nullptr, container, symbol);
        if (rig_common::CSymbolListItem* known = mResult.symbols.find(item.getPath())) {
          known->addSymbolUse(mIn.catalog, number, component.name, symbol);
          continue;
        }
        item.addSymbolUse(mIn.catalog, number, component.name, symbol);
        mResult.symbols.add(std::move(item));
      }
  }

  const TTranslationInput& mIn;
  TTranslation& mResult;
  std::ostream& mOut;
  std::map<std::string, std::string> mNumbers;  // part number -> PART number of the part that has it
  std::set<std::string> mPropertySeen;
};

}  // namespace

void translateCatalog(const TTranslationInput& input, TTranslation& result, std::ostream& out) {
  CPartTranslator translator(input, result, out);
  for (const auto& part : input.entry->parts) translator.translate(part);
}

}  // namespace tbl2flat
