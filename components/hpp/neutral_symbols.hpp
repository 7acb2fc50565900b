#pragma once
// Pieces shared by the steps around the neutral symbol files: the partition
// table, the partition list files, the place of a symbol's neutral file and
// the tool script's symbol blocks.

#include <boost/filesystem/path.hpp>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "common/symbol_list_file.hpp"
#include "common/symbol_list_item.hpp"
#include "impl/symbol_cfg_files_impl.hpp"
#include "misc.hpp"

namespace NComponent {
namespace NSymbol {

// Partition records of symbol_data.xml by `rename`, which names the
// partition's list file.
using TPartitionTable = std::map<std::string, NConfig::NSymbol::TPartitionData>;

// Reads symbol_data.xml of `configDir`: depth and partition table. False,
// reported by the reader, when the file cannot be used.
bool readPartitionTable(const boost::filesystem::path& configDir, int& depth, TPartitionTable& table);

// The files of `dir` named "<partition>.sym_list.caf", by name, with their
// partitions.
std::vector<std::pair<boost::filesystem::path, std::string>> partitionListFiles(const boost::filesystem::path& dir);

// Whether the partition of a list file is in the table; a Warn with `prefix`
// when it is not, so that its symbols are passed over.
bool knownPartition(const TSinks& sinks, const std::string& prefix, const std::string& partition,
                    const TPartitionTable& table);
// Reads a partition's list file; an Error with `prefix` when it cannot.
bool readPartitionList(const TSinks& sinks, const std::string& prefix, const boost::filesystem::path& file,
                       rig_common::CSymbolListFileReader& reader);

// <neutral dir>/symbols_<depth>
boost::filesystem::path neutralSymbolRoot(const boost::filesystem::path& neutralDir, int depth);
// <root>/<path tail of directory at depth>/<name>.neut
boost::filesystem::path neutralSymbolFile(const boost::filesystem::path& root, const std::string& directory,
                                          const std::string& name, int depth);

// A name postfix of a symbol use with its pin map (source pin -> target pin,
// a later LOGIC_PIN_MAP of the same source pin winning).
struct TPostfixBlock {
  std::string postfix;
  std::map<std::string, std::string> pinMap;
};
// The uses of the item with a non-empty NAME_POSTFIX, in tree order.
std::vector<TPostfixBlock> postfixBlocks(const rig_common::CSymbolListItem& item);

// What the steps over the neutral symbol files begin with.
struct TSymbolStep {
  boost::filesystem::path configDir, logDir, neutralDir;
  boost::filesystem::path listsDir;  // <neutral dir>/symbol_lists
  boost::filesystem::path root;      // <neutral dir>/symbols_<depth>
  int depth = 0;
  TPartitionTable partitions;
};
// The configuration, log and neutral directories, the depth and partition
// table of symbol_data.xml and the symbol list directory; false, reported
// with `prefix`, when one of them cannot be had.
bool beginSymbolStep(CScriptCall& call, const std::string& prefix, TSymbolStep& step);

// A directory of the working directory the host names by `served`/`name`;
// logs `errorMessage` followed by the host's answer when it has none.
bool servedDirectory(CScriptCall& call, bool served, const std::string& name, boost::filesystem::path& dir,
                     const std::string& errorMessage);

}  // namespace NSymbol
}  // namespace NComponent
