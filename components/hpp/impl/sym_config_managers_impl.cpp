#include "impl/sym_config_managers_impl.hpp"

#include <boost/filesystem/operations.hpp>
#include <boost/regex.hpp>
#include <fstream>

#include "common/log4rig.hpp"
#include "common/text_helpers.hpp"
#include "common/whole_file.hpp"

namespace NComponent {
namespace NConfig {

#define SYM_LOG(levelName, message) RIG_LOG(sinks, levelName, message)

const std::map<std::string, TKnownProperty>& knownBodyProperties() {
  static const std::map<std::string, TKnownProperty> table = {
      {"REF", {"Ref Designator", "REFDES", "REFDES"}},
      {"PART_NO", {"Part Number", "DEVICE", "PART_NO"}},
      {"SP_HPPN", {"Part Number", "DEVICE", "SP_HPPN"}},
      {"SP_SYM_SET", {"COMP", "COMP", "SP_SYM_SET"}},
      {"GLOBAL", {"Global Signal Name", "Global Signal Name", "GLOBAL"}},
      {"POWER_NETS", {"Supply Rename", "Supply Rename", "POWER_NETS"}},
      {"VALUE", {"Value", "VALUE", "VALUE"}},
      {"CLASS", {"CLASS", "CLASS", "CLASS"}},
      {"COMP", {"P/D_NUM", "P/D_NUM", "COMP"}},
      {"GEOM", {"PKG_TYPE", "PKG_TYPE", "GEOM"}},
  };
  return table;
}

const std::map<std::string, TKnownProperty>& knownPinProperties() {
  static const std::map<std::string, TKnownProperty> table = {
      {"PIN", {"PIN", "PIN", "PIN"}},
      {"PINID", {"PIN", "PIN", "PINID"}},
      {"PIN_NO", {"Pin Number", "#", "#"}},
      {"PINTYPE", {"Pin Type", "PINTYPE", "PINTYPE"}},
  };
  return table;
}

namespace {

// A target name given as the target tool's label becomes its internal name.
std::string attributeFor(const std::map<std::string, TKnownProperty>& known, const std::string& source,
                         const std::string& target) {
  auto found = known.find(source);
  if (found != known.end() && found->second.label == target) return found->second.internalName;
  return target;
}

}  // namespace

// ---------------------------------------------------------------------------
// SymXltConfigManager

bool SymXltConfigManager::read(const boost::filesystem::path& file, const rig_common::log4rig::TSinks& sinks) {
  SYM_LOG(Debug, "Reading SymXlt configuration file: " << file.string());
  std::ifstream in(file.string(), std::ios::binary);
  if (!in || boost::filesystem::is_directory(file)) {
    SYM_LOG(Error, "Reading SymXlt configuration file: cannot open file for reading: " << file.string());
    return false;
  }
  const boost::regex sectionHead("^(\\[.+\\])\\s*");
  const boost::regex entry("^(.+)=(.*)");
  // Sections of this file are appended behind what the manager holds.
  bool inSection = false;
  std::string raw;
  for (int number = 1; std::getline(in, raw); ++number) {
    // White space at the end stays: it belongs to the entry's value.
    std::string line = rig_common::trimLeft(raw);
    if (line.empty()) continue;
    boost::smatch match;
    if (boost::regex_match(line, match, sectionHead)) {
      mSections.push_back({rig_common::trim(match[1].str()), {}});
      inSection = true;
    } else if (!inSection) {
      SYM_LOG(Warn,
              "Reading SymXlt configuration file: line with following number exists before first section, so will "
              "be skipped: "
                  << number);
    } else if (boost::regex_match(line, match, entry)) {
      mSections.back().entries.emplace_back(match[1].str(), match[2].str());
    } else {
      SYM_LOG(Warn,
              "Reading SymXlt configuration file: the content of line with following number seems to be improper, "
              "so will be skipped: "
                  << number);
    }
  }
  return true;
}

bool SymXltConfigManager::write(const boost::filesystem::path& file, const rig_common::log4rig::TSinks& sinks) const {
  SYM_LOG(Debug, "Writing SymXlt configuration file: " << file.string());
  rig_common::CWholeFile out(file);
  if (!out) {
    SYM_LOG(Error, "Writing SymXlt configuration file:  cannot open file for writing: " << file.string());
    return false;
  }
  if (mSections.empty())
    SYM_LOG(Warn, "Writing SymXlt configuration file:  no data, so the file will be empty: " << file.string());
  for (const auto& section : mSections) {
    out << section.name << '\n';
    for (const auto& entry : section.entries) out << entry.first << '=' << entry.second << '\n';
    out << '\n';
  }
  if (out.commit()) return true;
  SYM_LOG(Error, "Writing SymXlt configuration file:  cannot write file: " << file.string());
  return false;
}

SymXltConfigManager::iterator SymXltConfigManager::findSection(const std::string& name) {
  for (auto it = mSections.begin(); it != mSections.end(); ++it)
    if (it->name == name) return it;
  return mSections.end();
}

SymXltConfigManager::const_iterator SymXltConfigManager::findSection(const std::string& name) const {
  for (auto it = mSections.begin(); it != mSections.end(); ++it)
    if (it->name == name) return it;
  return mSections.end();
}

void SymXltConfigManager::setEntry(iterator section, const std::string& key, const std::string& value) {
  if (section == mSections.end()) return;
  for (auto& entry : section->entries) {
    if (entry.first == key) {
      entry.second = value;
      return;
    }
  }
  section->entries.emplace_back(key, value);
}

void SymXltConfigManager::fillFromMapping(const NSymbol::TDataMapping& mapping, const std::string& pinSpacing,
                                          const std::string& unit) {
  iterator body = findSection("[PACKAGE ATTRIBUTES]");
  for (const auto& property : mapping.bodyProperties)
    setEntry(body, property.first, attributeFor(knownBodyProperties(), property.first, property.second));
  iterator pins = findSection("[PIN ATTRIBUTES]");
  for (const auto& property : mapping.pinProperties)
    setEntry(pins, property.first, attributeFor(knownPinProperties(), property.first, property.second));
  iterator types = findSection("[PIN TYPES]");
  for (const auto& type : mapping.pinTypes) setEntry(types, type.first, type.second);
  auto scale = mapping.scaling.find({pinSpacing, unit});
  if (scale != mapping.scaling.end()) setEntry(findSection("[DESIGN SCALING]"), "Scale", scale->second);
}

// ---------------------------------------------------------------------------
// SymNameMapManager

bool SymNameMapManager::read(const boost::filesystem::path& file, const rig_common::log4rig::TSinks& sinks,
                             const std::string& separator) {
  SYM_LOG(Debug, "Reading symbol name mapping file: " << file.string());
  std::ifstream in(file.string(), std::ios::binary);
  if (!in || boost::filesystem::is_directory(file)) {
    SYM_LOG(Error, "Reading symbol name mapping file:  cannot open file for reading: " << file.string());
    return false;
  }
  const boost::regex split(separator);
  std::string raw;
  while (std::getline(in, raw)) {
    std::string line = rig_common::trim(raw);
    if (line.empty()) continue;
    std::vector<std::string> fields(boost::sregex_token_iterator(line.begin(), line.end(), split, -1),
                                    boost::sregex_token_iterator());
    if (fields.size() < 3) {
      SYM_LOG(Warn, "Reading symbol name mapping file:  following line contains not enough data, so will be skipped: "
                        << line);
      continue;
    }
    if (fields.size() > 3)
      SYM_LOG(Warn,
              "Reading symbol name mapping file:  following line contains some extra data. This extra data will be "
              "skipped: "
                  << line);
    append({fields[0], fields[1], fields[2]});
  }
  return true;
}

bool SymNameMapManager::write(const boost::filesystem::path& file, const rig_common::log4rig::TSinks& sinks,
                              const std::string& separator) const {
  SYM_LOG(Debug, "Writing symbol name mapping file: " << file.string());
  rig_common::CWholeFile out(file);
  if (!out) {
    SYM_LOG(Error, "Writing symbol name mapping file:  cannot open file for writing: " << file.string());
    return false;
  }
  if (mRecords.empty())
    SYM_LOG(Warn, "Writing symbol name mapping file:  no data, so the file will be empty: " << file.string());
  for (const auto& record : mRecords)
    out << record.sourceSymbol << separator << record.partition << separator << record.targetSymbol << '\n';
  if (out.commit()) return true;
  SYM_LOG(Error, "Writing symbol name mapping file:  cannot write file: " << file.string());
  return false;
}

void SymNameMapManager::setRecord(const std::string& sourceSymbol, const std::string& partition,
                                  const std::string& targetSymbol) {
  auto found = mFirst.find(sourceSymbol);
  if (found == mFirst.end()) {
    append({sourceSymbol, partition, targetSymbol});
    return;
  }
  mRecords[found->second].partition = partition;
  mRecords[found->second].targetSymbol = targetSymbol;
}

void SymNameMapManager::append(TRecord record) {
  mFirst.emplace(record.sourceSymbol, mRecords.size());
  mRecords.push_back(std::move(record));
}

}  // namespace NConfig
}  // namespace NComponent
