#pragma once
// The catalog configuration files: catalog_data_mapping.xml (source to
// target property names) and catalog_val_prop.xml (value catalogs and
// value properties). The symbol configuration files are in
// symbol_cfg_files_impl.hpp, included here as well.

#include <string>

#include "impl/config_parser_impl.hpp"
#include "impl/symbol_cfg_files_impl.hpp"

namespace NComponent {
namespace NConfig {
namespace NCatalog {

// One `property` element of catalog_data_mapping.xml.
struct TCatalogProperty {
  std::string sourceName;  // attribute "qrn"
  std::string targetName;  // attribute "pdb"
};

class CCatalogDataMapping : public CConfigParser {
 public:
  using iterator = CElementIterator<TCatalogProperty>;

  explicit CCatalogDataMapping(log4cxx::LoggerPtr logger) : CConfigParser(std::move(logger)) {}

  // A new document with rig/catalog_data/data_map/property_map and no property.
  void createDefaults();

  iterator begin();
  iterator end();

  // Replaces the record with the same source name (the new one stands last),
  // or adds it when `addIfMissing`. False when nothing was added.
  bool updatePropertyMapping(const TCatalogProperty& property, bool addIfMissing);
};

class CCatalogPropValData : public CConfigParser {
 public:
  using CatIterator = CElementIterator<std::string>;
  using PropIterator = CElementIterator<std::string>;

  explicit CCatalogPropValData(log4cxx::LoggerPtr logger) : CConfigParser(std::move(logger)) {}

  // Remove every catalog_list (ql_property_list) with its entries.
  void clearCatalogs();
  void clearProperties();
  // Append an entry, making the list element where it is missing.
  void addCatalog(const std::string& name);
  void addProperty(const std::string& name);

  CatIterator beginCatalogs();
  CatIterator endCatalogs();
  PropIterator beginProperties();
  PropIterator endProperties();
};

}  // namespace NCatalog
}  // namespace NConfig
}  // namespace NComponent
