#include "impl/cfg_file_managers_impl.hpp"

namespace NComponent {
namespace NConfig {
namespace NCatalog {

namespace {

CXMLHierPath propertyMapPath() { return CXMLHierPath("rig") / "catalog_data" / "data_map" / "property_map"; }

CXMLHierPath propertyPath() { return propertyMapPath() / "property"; }

CXMLHierPath valuePropertyMappingPath() { return CXMLHierPath("rig") / "catalog_data" / "value_property_mapping"; }

TCatalogProperty readProperty(CConfigParser& file, TDOMElement* element) {
  return {file.parser.getAttribute(element, "qrn"), file.parser.getAttribute(element, "pdb")};
}

std::string readName(CConfigParser& file, TDOMElement* element) { return file.parser.getAttribute(element, "name"); }

// Removes every element at `path`.
void removeAll(NMarkupCore::CXML_Parser& parser, const CXMLHierPath& path) {
  while (parser.remove(path) != nullptr) {
  }
}

// Appends `entryName` with a "name" to the first `listName` element below
// value_property_mapping, making what is missing on the way.
void addNamed(NMarkupCore::CXML_Parser& parser, const std::string& listName, const std::string& entryName,
              const std::string& name) {
  const CXMLHierPath listPath = valuePropertyMappingPath() / listName;
  TDOMElement* list = parser.getDOMElement(listPath);
  if (list == nullptr) {
    TDOMElement* mapping = parser.getDOMElement(valuePropertyMappingPath());
    list = mapping == nullptr ? parser.addElement(listPath) : parser.addElement(mapping, CXMLHierPath(listName));
  }
  TDOMElement* entry = parser.addElement(list, CXMLHierPath(entryName));
  parser.addAttribute(entry, "name", name);
}

}  // namespace

// ---------------------------------------------------------------------------
// CCatalogDataMapping

void CCatalogDataMapping::createDefaults() {
  parser.createEmptyDocument("rig");
  TDOMElement* catalogData = parser.addElement(CXMLHierPath("rig") / "catalog_data");
  TDOMElement* dataMap = parser.addElement(catalogData, CXMLHierPath("data_map"));
  parser.addElement(dataMap, CXMLHierPath("property_map"));
}

CCatalogDataMapping::iterator CCatalogDataMapping::begin() {
  return iterator(*this, propertyPath(), &readProperty, false);
}

CCatalogDataMapping::iterator CCatalogDataMapping::end() {
  return iterator(*this, propertyPath(), &readProperty, true);
}

bool CCatalogDataMapping::updatePropertyMapping(const TCatalogProperty& property, bool addIfMissing) {
  TDOMElement* match = findElement(propertyPath(), "qrn", property.sourceName);
  // A record is not edited but replaced, so that it moves to the end.
  if (match != nullptr)
    parser.remove(match);
  else if (!addIfMissing)
    return false;

  TDOMElement* propertyMap = parser.getDOMElement(propertyMapPath());
  if (propertyMap == nullptr) {
    RIG_LOG1(logger, Error, "Not found element: " << propertyMapPath().get() << ".");
    return false;
  }
  TDOMElement* element = parser.addElement(propertyMap, CXMLHierPath("property"));
  parser.addAttribute(element, "qrn", property.sourceName);
  parser.addAttribute(element, "pdb", property.targetName);
  return true;
}

// ---------------------------------------------------------------------------
// CCatalogPropValData

void CCatalogPropValData::clearCatalogs() { removeAll(parser, valuePropertyMappingPath() / "catalog_list"); }

void CCatalogPropValData::clearProperties() { removeAll(parser, valuePropertyMappingPath() / "ql_property_list"); }

void CCatalogPropValData::addCatalog(const std::string& name) { addNamed(parser, "catalog_list", "catalog", name); }

void CCatalogPropValData::addProperty(const std::string& name) {
  addNamed(parser, "ql_property_list", "ql_property", name);
}

CCatalogPropValData::CatIterator CCatalogPropValData::beginCatalogs() {
  return CatIterator(*this, valuePropertyMappingPath() / "catalog_list" / "catalog", &readName, false);
}

CCatalogPropValData::CatIterator CCatalogPropValData::endCatalogs() {
  return CatIterator(*this, valuePropertyMappingPath() / "catalog_list" / "catalog", &readName, true);
}

CCatalogPropValData::PropIterator CCatalogPropValData::beginProperties() {
  return PropIterator(*this, valuePropertyMappingPath() / "ql_property_list" / "ql_property", &readName, false);
}

CCatalogPropValData::PropIterator CCatalogPropValData::endProperties() {
  return PropIterator(*this, valuePropertyMappingPath() / "ql_property_list" / "ql_property", &readName, true);
}

}  // namespace NCatalog
}  // namespace NConfig
}  // namespace NComponent
