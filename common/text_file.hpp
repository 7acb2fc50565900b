#pragma once
// Reading a text file as lines.

#include <boost/filesystem/path.hpp>
#include <string>
#include <vector>

namespace rig_common {

// All lines of a text file, without their line ends (a CR before the LF
// goes too). False when the path is a directory or the file cannot be
// opened or read.
bool readTextLines(const boost::filesystem::path& file, std::vector<std::string>& lines);

}  // namespace rig_common
