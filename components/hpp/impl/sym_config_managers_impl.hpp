#pragma once
// The two text files of symbol conversion: the converter configuration
// (sk2td_symbols_only.cfg, sections of key=value entries) and the symbol
// name map (symname_map.txt, source symbol / partition / target symbol).
// Every message goes to both loggers given.

#include <log4cxx/logger.h>

#include <boost/filesystem/path.hpp>
#include <list>
#include <map>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "impl/symbol_cfg_files_impl.hpp"

namespace NComponent {
namespace NConfig {

// A row of the built-in property tables: the label the target tool shows,
// the tool's internal attribute name, and a third name the conversion
// reports use.
struct TKnownProperty {
  std::string label;
  std::string internalName;
  std::string attributeName;
};

// Source body property -> known target attribute.
const std::map<std::string, TKnownProperty>& knownBodyProperties();
// Source pin property -> known target attribute.
const std::map<std::string, TKnownProperty>& knownPinProperties();

class SymXltConfigManager {
 public:
  using TEntry = std::pair<std::string, std::string>;
  struct TSection {
    std::string name;  // with its brackets
    std::vector<TEntry> entries;
  };
  using TSections = std::list<TSection>;
  using iterator = TSections::iterator;
  using const_iterator = TSections::const_iterator;

  // Appends the file's sections; false when it cannot be opened.
  bool read(const boost::filesystem::path& file, const rig_common::log4rig::TSinks& sinks);
  // Writes the file anew; false when it cannot be opened.
  bool write(const boost::filesystem::path& file, const rig_common::log4rig::TSinks& sinks) const;

  // The first section of exactly that name, or end().
  iterator findSection(const std::string& name);
  const_iterator findSection(const std::string& name) const;
  // Replaces the first entry of that key or appends one; nothing at end().
  void setEntry(iterator section, const std::string& key, const std::string& value);

  // Sets, in this order, the body properties, pin properties and pin types
  // of `mapping`, then the scale of its (pinSpacing, unit) record if it has one.
  void fillFromMapping(const NSymbol::TDataMapping& mapping, const std::string& pinSpacing, const std::string& unit);

  iterator begin() { return mSections.begin(); }
  iterator end() { return mSections.end(); }
  const_iterator begin() const { return mSections.begin(); }
  const_iterator end() const { return mSections.end(); }
  const TSections& sections() const { return mSections; }

 private:
  TSections mSections;
};

class SymNameMapManager {
 public:
  struct TRecord {
    std::string sourceSymbol;
    std::string partition;
    std::string targetSymbol;
  };

  // Appends the file's lines as records, split by `separator` (a regular
  // expression); false when it cannot be opened.
  bool read(const boost::filesystem::path& file, const rig_common::log4rig::TSinks& sinks,
            const std::string& separator);
  // Writes the file anew with `separator` as plain text; false when it
  // cannot be opened.
  bool write(const boost::filesystem::path& file, const rig_common::log4rig::TSinks& sinks,
             const std::string& separator) const;

  // Replaces partition and target of the first record of that source
  // symbol, or appends a record.
  void setRecord(const std::string& sourceSymbol, const std::string& partition, const std::string& targetSymbol);

  const std::vector<TRecord>& records() const { return mRecords; }

 private:
  void append(TRecord record);

  std::vector<TRecord> mRecords;
  std::unordered_map<std::string, std::size_t> mFirst;  // source symbol -> first record
};

}  // namespace NConfig
}  // namespace NComponent
