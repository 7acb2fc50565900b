#pragma once
// Reading a text file whole, or as lines.

#include <boost/filesystem/path.hpp>
#include <string>
#include <vector>

namespace rig_common {

// All lines of a text file, without their line ends (a CR before the LF
// goes too). False when the path is a directory or the file cannot be
// opened or read.
bool readTextLines(const boost::filesystem::path& file, std::vector<std::string>& lines);

// The bytes of a regular file, read with plain system calls: cheaper than a
// stream for the many small files a step reads one by one. False only when
// the file cannot be opened; a read that fails (a directory, say) ends the
// text there, as a stream's would.
bool readTextFile(const std::string& file, std::string& text);

}  // namespace rig_common
