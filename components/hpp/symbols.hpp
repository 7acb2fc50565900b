#pragma once
// Helpers shared by the symbol steps: the list of symbols to translate, the
// path tail that names neutral symbol containers and opens the symbol key,
// the path depth search and the partition names.

#include <boost/filesystem/path.hpp>
#include <list>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "common/symbol_list.hpp"

namespace NComponent {
class CScriptCall;
}

namespace NVlt2HrwHelpers {

// The tokens of a directory split at each '/': a leading '/' gives an empty
// first token, a trailing one gives no empty last token.
std::vector<std::string> splitDirectory(const std::string& directory);

// The last `depth` tokens of `directory` joined with "_"; "" for depth 0.
// A depth beyond the number of tokens takes all of them.
std::string buildPathTail(const std::string& directory, int depth);

// The number of '/' of a directory in its quoted Unix form with each "//"
// made one: the position of its last component in a split symbol path.
int countPathLevels(const std::string& directory);

// The partition name of a directory: tokens `start` to `stop` joined with
// "_". False when `stop` is not below the number of tokens.
bool partitionName(const std::vector<std::string>& tokens, int start, int stop, std::string& name);

// Every symbol below `symbolRoot` (versions folded, sorted); replaces what
// `list` held.
bool buildSymbolList(rig_common::CSymbolList& list, const boost::filesystem::path& symbolRoot);
bool buildSymbolList(const NComponent::CScriptCall& call, rig_common::CSymbolList& list,
                     const boost::filesystem::path& symbolRoot);
// Merges the symbol lists of the catalogs of `catalogListFile` into `list`.
bool buildSymbolList(rig_common::CSymbolList& list, const boost::filesystem::path& catalogListFile,
                     const boost::filesystem::path& neutralCatalogsDir);
bool buildSymbolList(const NComponent::CScriptCall& call, rig_common::CSymbolList& list,
                     const boost::filesystem::path& catalogListFile, const boost::filesystem::path& neutralCatalogsDir);
// The list of symbols to translate: the catalogs' symbols with
// "catalog symbols only" set, otherwise the walk of the component tree.
bool buildSymbolListAux(rig_common::CSymbolList& list, const std::string& libraryName,
                        const std::string& locationMapFile, const std::string& libraryDir);
bool buildSymbolListAux(NComponent::CScriptCall& call, rig_common::CSymbolList& list, const std::string& libraryName,
                        const std::string& locationMapFile, const std::string& libraryDir);

// One round of the path depth search.
struct TPathDepthRecord {
  int depth = 0;
  int count = 0;                                             // items whose key an earlier item had
  std::set<std::pair<std::string, std::string>> duplicates;  // (directory, name) of every colliding item
};

// The smallest depth at which no two symbols share "<path tail><name>",
// appending one record per depth tried. The search ends at the largest
// token count of a directory, which is then the result.
int findPathDepth(std::list<TPathDepthRecord>& records, const rig_common::CSymbolList& symbols);

// The sorted distinct partition names of the symbols' directories, appended
// to `names`; false, with `names` as it was, when a directory is too short.
bool createPartitionNames(std::list<std::string>& names, const rig_common::CSymbolList& symbols, int start, int stop);

}  // namespace NVlt2HrwHelpers
