#include "impl/symbol_cfg_files_impl.hpp"

#include <boost/filesystem/operations.hpp>
#include <charconv>

#include "misc.hpp"

namespace NComponent {
namespace NConfig {
namespace NSymbol {

namespace {

CXMLHierPath symbolDataPath() { return CXMLHierPath("rig") / "symbol_data"; }
CXMLHierPath partitionDataPath() { return symbolDataPath() / "partition_data"; }
CXMLHierPath partitionPath() { return partitionDataPath() / "partition"; }
CXMLHierPath dataMapPath() { return symbolDataPath() / "data_map"; }

// The whole text as a decimal number, or -1.
int toNumber(const std::string& text) {
  int value = 0;
  const char* first = text.data();
  const char* last = first + text.size();
  std::from_chars_result result = std::from_chars(first, last, value);
  if (text.empty() || result.ec != std::errc() || result.ptr != last) return -1;
  return value;
}

TPartitionData readPartition(CConfigParser& file, TDOMElement* element) {
  NMarkupCore::CXML_Parser& p = file.parser;
  return {p.getAttribute(element, "name"), p.getAttribute(element, "rename"), p.getAttribute(element, "file"),
          p.getAttribute(element, "id")};
}

// sk -> td of every element at `path` below `dataMap`; a later key wins.
void readNameMap(NMarkupCore::CXML_Parser& p, TDOMElement* dataMap, const CXMLHierPath& path,
                 std::map<std::string, std::string>& out) {
  TDOMNodeList* list = p.getDomNodeList(dataMap, path);
  for (int i = 0, n = p.getDomNodeListLength(list); i < n; ++i) {
    TDOMElement* element = p.getDOMElement(list, i);
    out[p.getAttribute(element, "sk")] = p.getAttribute(element, "td");
  }
}

TDataMapping readMapping(CConfigParser& file, TDOMElement* element) {
  NMarkupCore::CXML_Parser& p = file.parser;
  TDataMapping mapping;
  mapping.id = p.getAttribute(element, "id");
  TDOMNodeList* spacings = p.getDomNodeList(element, CXMLHierPath("scaling") / "pin_spacing");
  for (int i = 0, n = p.getDomNodeListLength(spacings); i < n; ++i) {
    TDOMElement* spacing = p.getDOMElement(spacings, i);
    mapping.scaling[{p.getAttribute(spacing, "val"), p.getAttribute(spacing, "unit")}] =
        p.getAttribute(spacing, "factor");
  }
  readNameMap(p, element, CXMLHierPath("body_properties") / "property", mapping.bodyProperties);
  readNameMap(p, element, CXMLHierPath("pin_properties") / "property", mapping.pinProperties);
  readNameMap(p, element, CXMLHierPath("pin_types") / "type", mapping.pinTypes);
  return mapping;
}

void writeNameMap(NMarkupCore::CXML_Parser& p, TDOMElement* dataMap, const std::string& group, const std::string& entry,
                  const std::map<std::string, std::string>& names) {
  TDOMElement* parent = p.addElement(dataMap, CXMLHierPath(group));
  for (const auto& name : names) {
    TDOMElement* element = p.addElement(parent, CXMLHierPath(entry));
    p.addAttribute(element, "td", name.second);
    p.addAttribute(element, "sk", name.first);
  }
}

}  // namespace

// ---------------------------------------------------------------------------
// CSymbolData

void CSymbolData::createDefaults() {
  parser.createEmptyDocument("rig");
  TDOMElement* symbolData = parser.addElement(symbolDataPath());
  parser.addElement(symbolData, CXMLHierPath("common"));
  parser.addElement(symbolData, CXMLHierPath("default"));
  parser.addElement(symbolData, CXMLHierPath("partition_data"));
}

std::string CSymbolData::getCommon(const std::string& attribute) {
  TDOMElement* common = parser.getDOMElement(symbolDataPath() / "common");
  if (common == nullptr) {
    RIG_LOG1(logger, Error, "Not found symbol data 'common' node.");
    return std::string();
  }
  return parser.getAttribute(common, attribute);
}

int CSymbolData::getStart() { return toNumber(getCommon("start")); }
int CSymbolData::getStop() { return toNumber(getCommon("stop")); }
int CSymbolData::getDepth() { return toNumber(getCommon("depth")); }

TDOMElement* CSymbolData::element(const std::string& name) {
  TDOMElement* found = parser.getDOMElement(symbolDataPath() / name);
  return found != nullptr ? found : parser.addElement(symbolDataPath() / name);
}

void CSymbolData::setCommon(const std::string& attribute, const std::string& value) {
  parser.addAttribute(element("common"), attribute, value);
}

void CSymbolData::setDefault(const std::string& attribute, const std::string& value) {
  parser.addAttribute(element("default"), attribute, value);
}

CSymbolData::iterator CSymbolData::begin() { return iterator(*this, partitionPath(), &readPartition, false); }
CSymbolData::iterator CSymbolData::end() { return iterator(*this, partitionPath(), &readPartition, true); }

TPartitionData CSymbolData::findPartition(const std::string& name) {
  for (iterator it = begin(), last = end(); it != last; ++it) {
    TPartitionData partition = *it;
    if (partition.name == name) return partition;
  }
  return TPartitionData();
}

bool CSymbolData::addPartition(const TPartitionData& partition, bool allowAdd) {
  TDOMElement* target = findElement(partitionPath(), "name", partition.name);
  if (target == nullptr) {
    if (!allowAdd) return false;
    TDOMElement* partitionData = parser.getDOMElement(partitionDataPath());
    if (partitionData == nullptr) partitionData = parser.addElement(partitionDataPath());
    target = parser.addElement(partitionData, CXMLHierPath("partition"));
    if (target == nullptr) return false;
  }
  parser.addAttribute(target, "name", partition.name);
  parser.addAttribute(target, "rename", partition.rename);
  parser.addAttribute(target, "file", partition.file);
  parser.addAttribute(target, "id", partition.id);
  return true;
}

void CSymbolData::removePartitionData() {
  while (parser.remove(partitionDataPath()) != nullptr) {
  }
}

// ---------------------------------------------------------------------------
// CSymbolDataMapping

void CSymbolDataMapping::createDefaults() {
  parser.createEmptyDocument("rig");
  TDOMElement* dataMap = parser.addElement(dataMapPath());
  parser.addAttribute(dataMap, "id", "default");
}

CSymbolDataMapping::iterator CSymbolDataMapping::begin() { return iterator(*this, dataMapPath(), &readMapping, false); }
CSymbolDataMapping::iterator CSymbolDataMapping::end() { return iterator(*this, dataMapPath(), &readMapping, true); }

TDataMapping CSymbolDataMapping::findMapping(const std::string& id) {
  TDOMElement* element = findElement(dataMapPath(), "id", id);
  return element == nullptr ? TDataMapping() : readMapping(*this, element);
}

bool CSymbolDataMapping::setDataMapping(const TDataMapping& mapping, bool allowAdd) {
  // Every data_map of that id goes: a duplicate left behind would be found
  // in place of the new record.
  bool found = false;
  TDOMNodeList* list = parser.getDomNodeList(dataMapPath());
  for (int i = 0, n = parser.getDomNodeListLength(list); i < n; ++i) {
    TDOMElement* element = parser.getDOMElement(list, i);
    if (element != nullptr && parser.getAttribute(element, "id") == mapping.id) {
      parser.remove(element);
      found = true;
    }
  }
  if (!found && !allowAdd) return false;

  TDOMElement* symbolData = parser.getDOMElement(symbolDataPath());
  if (symbolData == nullptr) return false;
  TDOMElement* dataMap = parser.addElement(symbolData, CXMLHierPath("data_map"));
  parser.addAttribute(dataMap, "id", mapping.id);
  TDOMElement* scaling = parser.addElement(dataMap, CXMLHierPath("scaling"));
  for (const auto& entry : mapping.scaling) {
    TDOMElement* spacing = parser.addElement(scaling, CXMLHierPath("pin_spacing"));
    parser.addAttribute(spacing, "val", entry.first.first);
    parser.addAttribute(spacing, "unit", entry.first.second);
    parser.addAttribute(spacing, "factor", entry.second);
  }
  writeNameMap(parser, dataMap, "body_properties", "property", mapping.bodyProperties);
  writeNameMap(parser, dataMap, "pin_properties", "property", mapping.pinProperties);
  writeNameMap(parser, dataMap, "pin_types", "type", mapping.pinTypes);
  return true;
}

}  // namespace NSymbol
}  // namespace NConfig
}  // namespace NComponent

namespace NVlt2HrwHelpers {

bool readSymbolConfigurationData(const boost::filesystem::path& file, int& start, int& stop, int& depth,
                                 std::list<NComponent::NConfig::NSymbol::TPartitionData>* partitions) {
  NComponent::CScriptCall call(NComponent::CScriptCall::kWdir);
  if (!call.ok()) return false;

  if (!boost::filesystem::is_regular_file(file)) {
    RIG_LOG(call, Error, "Loading symbols configuration file: symbol data file does not exist: " << file.string());
    return false;
  }
  NComponent::NConfig::NSymbol::CSymbolData symbolData(call.translation());
  if (!symbolData.parse(file)) {
    RIG_LOG(call, Error, "Loading symbols configuration file: cannot parse file: " << file.string());
    return false;
  }
  start = symbolData.getStart();
  stop = symbolData.getStop();
  depth = symbolData.getDepth();
  if (partitions != nullptr)
    for (auto it = symbolData.begin(), last = symbolData.end(); it != last; ++it) partitions->push_back(*it);
  if (start < 0 || stop < 0 || depth < 0) {
    RIG_LOG(call, Error,
            "Reading symbol configuration data: invalid content of file, or file is incomplete: " << file.string());
    return false;
  }
  return true;
}

}  // namespace NVlt2HrwHelpers
