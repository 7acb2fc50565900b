#include "generate.hpp"

#include <algorithm>
#include <boost/algorithm/string/case_conv.hpp>
#include <boost/filesystem/operations.hpp>
#include <ostream>

#include "common/text_helpers.hpp"

namespace qrn2pdb {

namespace {

std::string quoted(const std::string& value) { return "\"" + value + "\""; }
std::string unquoted(const rig_common::TLXNode& node) { return rig_common::removeQuotes(node.valueAt(0)); }

bool contains(const std::vector<std::string>& list, const std::string& value) {
  return std::find(list.begin(), list.end(), value) != list.end();
}

std::string withCase(const std::string& pin, TPinCase pinCase) {
  if (pinCase == TPinCase::kLower) return boost::to_lower_copy(pin);
  if (pinCase == TPinCase::kUpper) return boost::to_upper_copy(pin);
  return pin;
}

// One part on its way into the database; `reason` set means rejected.
class CPart {
 public:
  CPart(const TGeneratorInput& in, rig_common::TLXNode& source, std::ostream& messages)
      : mIn(in), mSource(source), mMessages(messages), mNumber(unquoted(source)) {}

  // The part's node of the database, or the reason it cannot be written.
  std::unique_ptr<rig_common::TLXNode> translate(std::string& reason);

 private:
  std::string where() const { return "catalog " + mIn.catalog + ", part " + mNumber + ": "; }
  void warn(const std::string& text) { mMessages << "Warning: " << where() << text << "\n"; }
  bool addSymbols(rig_common::TLXNode& part, const std::string& container, const std::vector<TPortion>& portions,
                  std::string& reason);
  bool addPins(rig_common::TLXNode& symbol, const std::string& name, const std::string& key,
               const std::vector<std::string>& symbolPins, const std::vector<TPortion>& portions, std::string& reason);
  void addProperties(rig_common::TLXNode& part);

  const TGeneratorInput& mIn;
  rig_common::TLXNode& mSource;
  std::ostream& mMessages;
  std::string mNumber;
  std::vector<std::string> mCells;
};

std::unique_ptr<rig_common::TLXNode> CPart::translate(std::string& reason) {
  auto part = std::make_unique<rig_common::TLXNode>(1, "PDB_PART", quoted(mNumber));
  rig_common::TLXNode* containerNode = mSource.findFirstChild("QRN_PART_CONTAINER");
  std::string container;
  if (containerNode == nullptr) {
    reason = "no QRN_PART_CONTAINER";
    return nullptr;
  }
  if (!resolveSoftPath(*mIn.caf, unquoted(*containerNode), container)) {
    reason = "soft prefix of the container " + unquoted(*containerNode) + " is not in the property translation file";
    return nullptr;
  }
  std::vector<TPortion> portions;
  if (rig_common::TLXNode* mapNode = mSource.findFirstChild("QRN_MAP_FILE")) {
    std::string mapFile;
    if (!resolveSoftPath(*mIn.caf, unquoted(*mapNode), mapFile) || !readMappingFile(mapFile, portions))
      warn("cannot read the mapping file " + unquoted(*mapNode) + ", the part has no pin map");
  }
  for (auto* cell = mSource.findFirstChild("QRN_GEOM"); cell != nullptr; cell = mSource.findNextChild("QRN_GEOM")) {
    mCells.push_back(unquoted(*cell));
    part->addChild("PDB_CELL", quoted(mCells.back()));
    if (mIn.cellPins != nullptr && mIn.cellPins->count(mCells.back()) == 0)
      warn("cell " + mCells.back() + " is not in the geometry pin list, its pins are not checked");
  }
  if (!addSymbols(*part, container, portions, reason)) return nullptr;
  addProperties(*part);
  return part;
}

bool CPart::addSymbols(rig_common::TLXNode& part, const std::string& container, const std::vector<TPortion>& portions,
                       std::string& reason) {
  const std::string tail = pathTail(container, mIn.depth);
  std::vector<std::string> used;
  for (auto* comp = mSource.findFirstChild("QRN_COMP"); comp != nullptr; comp = mSource.findNextChild("QRN_COMP")) {
    rig_common::TLXNode* compNode = part.addChild("PDB_COMP", quoted(unquoted(*comp)));
    for (auto* symbol = comp->findFirstChild("QRN_SYMBOL"); symbol != nullptr;
         symbol = comp->findNextChild("QRN_SYMBOL")) {
      const std::string name = unquoted(*symbol);
      if (name == "VLTTRANSDELETEME") continue;  // the component draws nothing
      const std::string key = tail + "_" + name;
      const auto partition = mIn.partitions->find(key);
      if (partition == mIn.partitions->end()) {
        reason = "symbol " + key + " has no partition";
        return false;
      }
      const std::string neutral = (boost::filesystem::path(mIn.symbolsDir) / tail / (name + ".neut")).generic_string();
      std::vector<std::string> symbolPins;
      if (!readNeutralPins(neutral, symbolPins)) {
        reason = "neutral symbol file does not exist: " + neutral;
        return false;
      }
      rig_common::TLXNode* symbolNode = compNode->addChild("PDB_SYMBOL", quoted(key));
      symbolNode->addChild("PDB_PARTITION", quoted(partition->second));
      if (!addPins(*symbolNode, name, key, symbolPins, portions, reason)) return false;
      used.push_back(name);
    }
  }
  for (const TPortion& portion : portions)
    if (!contains(used, portion.symbol))
      warn("the mapping file names the symbol " + portion.symbol + " that the part does not use, its pins are skipped");
  return true;
}

bool CPart::addPins(rig_common::TLXNode& symbol, const std::string& name, const std::string& key,
                    const std::vector<std::string>& symbolPins, const std::vector<TPortion>& portions,
                    std::string& reason) {
  for (const TPortion& portion : portions) {
    if (portion.symbol != name) continue;
    rig_common::TLXNode* portionNode = symbol.addChild("PDB_PORTION", quoted(portion.portion));
    for (const TMappedPin& pin : portion.pins) {
      if (!contains(symbolPins, pin.name)) {
        reason = "pin " + pin.name + " does not exist on symbol " + key;
        return false;
      }
      rig_common::TLXNode* pinNode = portionNode->addChild("PDB_PIN", quoted(pin.name));
      for (const std::string& physical : pin.physical) {
        const std::string cellPin = withCase(physical, mIn.pinCase);
        for (const std::string& cell : mCells) {
          if (mIn.cellPins == nullptr || mIn.cellPins->count(cell) == 0) continue;
          std::vector<std::string> cellPins;
          for (const auto& p : mIn.cellPins->at(cell)) cellPins.push_back(withCase(p, mIn.pinCase));
          if (!contains(cellPins, cellPin)) {
            reason = "physical pin " + cellPin + " does not exist on cell " + cell;
            return false;
          }
        }
        pinNode->addChild("PDB_PHYS", quoted(cellPin));
      }
    }
  }
  return true;
}

void CPart::addProperties(rig_common::TLXNode& part) {
  for (rig_common::TLXNode* child : mSource.children) {
    if (child->keyword.view().rfind("QRN_", 0) == 0) continue;
    const auto rule = mIn.caf->properties.find(child->keyword);
    if (rule == mIn.caf->properties.end()) {
      warn("property " + child->keyword + " has no translation, it is not carried");
      continue;
    }
    if (!rule->second.toPdb) continue;
    part.addChild("PDB_PROPERTY", quoted(rule->second.target))->addChild("PDB_VALUE", quoted(unquoted(*child)));
  }
}

}  // namespace

void generateDatabase(const TGeneratorInput& in, rig_common::TLXNode& neutral, TGeneratorResult& result,
                      std::ostream& messages) {
  result.database.addChild("PDB_CATALOG", quoted(in.catalog));
  for (auto* source = neutral.findFirstChild("QRN_PART"); source != nullptr;
       source = neutral.findNextChild("QRN_PART")) {
    CPart part(in, *source, messages);
    std::string reason;
    std::unique_ptr<rig_common::TLXNode> node = part.translate(reason);
    if (!node) {
      const std::string number = unquoted(*source);
      messages << "Error: catalog " << in.catalog << ", part " << number << ": " << reason
               << ", the part is rejected\n";
      result.rejected.push_back({number, reason});
      continue;
    }
    result.database.adoptChild(std::move(node));
    ++result.written;
  }
}

}  // namespace qrn2pdb
