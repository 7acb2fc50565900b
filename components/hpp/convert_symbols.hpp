#pragma once
// The pieces of convert_symbols that name and drive the two tools of a
// symbol's conversion.

#include <boost/filesystem/path.hpp>
#include <string>

#include "common/symbol_list_item.hpp"

namespace NComponent {
namespace NSymbol {

// "<container>_<name>" with the container of `directory` at `depth`, every
// '.' turned into '_'.
std::string targetSymbolName(const std::string& directory, const std::string& name, int depth);

// The symbol tool's script with writing on: the symbol's own block, then a
// block per use with a name postfix, with its pin map.
std::string convertScript(const rig_common::symbol::CSymbolListItem& item, const boost::filesystem::path& configFile,
                          const boost::filesystem::path& outputDir, const std::string& targetName);

// The library update tool's "cmd /c" line for one partition of the library
// in `libraryDir`.
std::string tdlib2zpcCommandLine(const boost::filesystem::path& tool, const boost::filesystem::path& libraryDir,
                                 const std::string& partition, const boost::filesystem::path& logDir);

}  // namespace NSymbol
}  // namespace NComponent
