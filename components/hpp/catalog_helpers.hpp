#pragma once
// Pieces shared by the catalog steps: the directories of the working
// directory, catalog.list, and the tool log line filter.

#include <boost/filesystem/path.hpp>
#include <string>
#include <vector>

#include "misc.hpp"

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

// The message of a tool log line: what follows an "err..." or, with
// `warnings`, a "warn..." word at the start of the line; empty otherwise.
std::string filterLogLine(const std::string& line, bool warnings);

}  // namespace NCatalog
}  // namespace NComponent
