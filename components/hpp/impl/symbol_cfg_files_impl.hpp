#pragma once
// The symbol configuration files: symbol_data.xml (path levels and
// partitions) and symbol_data_mapping.xml (pin spacing scaling, property
// names and pin types per mapping id).

#include <boost/filesystem/path.hpp>
#include <list>
#include <map>
#include <string>
#include <utility>

#include "impl/config_parser_impl.hpp"

namespace NComponent {
namespace NConfig {
namespace NSymbol {

// One partition of symbol_data.xml; an empty name marks "not found".
struct TPartitionData {
  std::string name;
  std::string rename;
  std::string file;
  std::string id;
};

// One data_map of symbol_data_mapping.xml; an empty id marks "not found".
struct TDataMapping {
  std::string id;
  std::map<std::pair<std::string, std::string>, std::string> scaling;  // (val, unit) -> factor
  std::map<std::string, std::string> bodyProperties;                   // sk -> td
  std::map<std::string, std::string> pinProperties;                    // sk -> td
  std::map<std::string, std::string> pinTypes;                         // sk -> td
};

class CSymbolData : public CConfigParser {
 public:
  using iterator = CElementIterator<TPartitionData>;

  explicit CSymbolData(log4cxx::LoggerPtr logger) : CConfigParser(std::move(logger)) {}

  // A new document: rig/symbol_data with empty common, default, partition_data.
  void createDefaults();

  // An attribute of `common`; without that element an Error and "".
  std::string getCommon(const std::string& attribute);
  // The levels as numbers; -1 for anything that is not wholly a number.
  int getStart();
  int getStop();
  int getDepth();
  void setCommon(const std::string& attribute, const std::string& value);
  void setDefault(const std::string& attribute, const std::string& value);

  iterator begin();
  iterator end();

  // A copy of the first partition with that name, or an empty record.
  TPartitionData findPartition(const std::string& name);
  // Overwrites the partition of that name in place, or appends it when
  // `allowAdd`. False when nothing was written.
  bool addPartition(const TPartitionData& partition, bool allowAdd);
  // Removes partition_data with all its records.
  void removePartitionData();

 private:
  TDOMElement* element(const std::string& name);
};

class CSymbolDataMapping : public CConfigParser {
 public:
  using iterator = CElementIterator<TDataMapping>;

  explicit CSymbolDataMapping(log4cxx::LoggerPtr logger) : CConfigParser(std::move(logger)) {}

  // A new document: rig/symbol_data/data_map with id "default".
  void createDefaults();

  iterator begin();
  iterator end();

  // A copy of the first mapping with that id, or an empty record.
  TDataMapping findMapping(const std::string& id);
  // Replaces the mapping of the record's id by the record, which then stands
  // last; adds it when there is none and `allowAdd`. False when nothing was
  // written.
  bool setDataMapping(const TDataMapping& mapping, bool allowAdd);
};

}  // namespace NSymbol
}  // namespace NConfig
}  // namespace NComponent

namespace NVlt2HrwHelpers {

// Reads the path levels, and when `partitions` is given appends the
// partition records in file order. Runs the prologue of a script function;
// false, with an Error, for a missing, unparsable or incomplete file.
bool readSymbolConfigurationData(const boost::filesystem::path& file, int& start, int& stop, int& depth,
                                 std::list<NComponent::NConfig::NSymbol::TPartitionData>* partitions);

}  // namespace NVlt2HrwHelpers
