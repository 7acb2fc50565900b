#pragma once
// Pieces shared by the catalog steps: the directories of the working
// directory and catalog.list.

#include <boost/filesystem/path.hpp>
#include <string>
#include <vector>

#include "misc.hpp"
#include "tool_log_filter.hpp"

namespace NComponent {
namespace NCatalog {

// The working directory's subdirectories as the host names them. Each
// getter logs `errorMessage` at Error on both sinks and gives false when the
// host has no name for it.
bool configDirectory(CScriptCall& call, boost::filesystem::path& dir, const std::string& errorMessage);
bool logDirectory(CScriptCall& call, boost::filesystem::path& dir, const std::string& errorMessage);
bool neutralDirectory(CScriptCall& call, boost::filesystem::path& dir, const std::string& errorMessage);

// The catalog names of catalog.list: each line trimmed at both ends.
bool readCatalogList(const boost::filesystem::path& file, std::vector<std::string>& catalogs);

// The tool log line filter, shared with the symbol steps.
using ::NComponent::filterLogLine;

}  // namespace NCatalog
}  // namespace NComponent
