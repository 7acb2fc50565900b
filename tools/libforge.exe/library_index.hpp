#pragma once
// The Central Library index file Library.zpc as this tool writes it: a text
// file of a format version, the partition holders and the partitions by
// kind, one line each:
//
//   *ZPC_INDEX 1
//   *HOLDER symbol SymbolLibs
//   *PARTITION symbol <name>
//
// Lines the tool does not know are kept as they stand.

#include <boost/filesystem/path.hpp>
#include <string>
#include <utility>
#include <vector>

namespace libforge {

// The three kinds of partition and the directory that holds each kind.
struct TPartitionKind {
  const char* type;    // "symbol", "pdb", "cell"
  const char* holder;  // "SymbolLibs", "PartsDBLibs", "CellLibs"
};
const std::vector<TPartitionKind>& partitionKinds();
// The kind of `type`, or null for an unknown type (compared exactly).
const TPartitionKind* findKind(const std::string& type);

class CLibraryIndex {
 public:
  // A fresh index of an empty library.
  CLibraryIndex();

  // Reads an index file; false when it cannot be read or is not an index.
  bool read(const boost::filesystem::path& file);
  bool write(const boost::filesystem::path& file) const;

  bool has(const std::string& type, const std::string& name) const;
  void add(const std::string& type, const std::string& name);
  // The partitions in the order they were recorded.
  const std::vector<std::pair<std::string, std::string>>& partitions() const { return mPartitions; }

 private:
  std::vector<std::pair<std::string, std::string>> mPartitions;  // type, name
  std::vector<std::string> mOther;                               // lines kept as they stand
};

}  // namespace libforge
