#include "library_index.hpp"

#include <fstream>

#include "common/whole_file.hpp"

namespace libforge {

namespace {
const char* const kVersionLine = "*ZPC_INDEX 1";
const char* const kHolderTag = "*HOLDER ";
const char* const kPartitionTag = "*PARTITION ";
}  // namespace

const std::vector<TPartitionKind>& partitionKinds() {
  static const std::vector<TPartitionKind> kinds = {
      {"symbol", "SymbolLibs"}, {"pdb", "PartsDBLibs"}, {"cell", "CellLibs"}};
  return kinds;
}

const TPartitionKind* findKind(const std::string& type) {
  for (const auto& kind : partitionKinds())
    if (type == kind.type) return &kind;
  return nullptr;
}

CLibraryIndex::CLibraryIndex() = default;

bool CLibraryIndex::read(const boost::filesystem::path& file) {
  std::ifstream in(file.string(), std::ios::binary);
  if (!in) return false;
  std::string line;
  if (!std::getline(in, line)) return false;
  if (!line.empty() && line.back() == '\r') line.pop_back();
  if (line != kVersionLine) return false;
  mPartitions.clear();
  mOther.clear();
  const std::string partitionTag = kPartitionTag;
  while (std::getline(in, line)) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (line.rfind(partitionTag, 0) == 0) {
      std::string rest = line.substr(partitionTag.size());
      auto blank = rest.find(' ');
      if (blank != std::string::npos && findKind(rest.substr(0, blank)) != nullptr) {
        mPartitions.emplace_back(rest.substr(0, blank), rest.substr(blank + 1));
        continue;
      }
    }
    if (line.rfind(kHolderTag, 0) == 0) continue;  // written anew
    mOther.push_back(line);
  }
  return true;
}

bool CLibraryIndex::write(const boost::filesystem::path& file) const {
  rig_common::CWholeFile out(file);
  if (!out) return false;
  out << kVersionLine << '\n';
  for (const auto& kind : partitionKinds()) out << kHolderTag << kind.type << ' ' << kind.holder << '\n';
  for (const auto& kind : partitionKinds())
    for (const auto& partition : mPartitions)
      if (partition.first == kind.type) out << kPartitionTag << partition.first << ' ' << partition.second << '\n';
  for (const auto& line : mOther) out << line << '\n';
  return out.commit();
}

bool CLibraryIndex::has(const std::string& type, const std::string& name) const {
  for (const auto& partition : mPartitions)
    if (partition.first == type && partition.second == name) return true;
  return false;
}

void CLibraryIndex::add(const std::string& type, const std::string& name) { mPartitions.emplace_back(type, name); }

}  // namespace libforge
