#pragma once
// Paths for tool command lines: the POSIX-style form used on "ksh -c" lines
// and in tool scripts, the Windows-style form used on "cmd /c" lines.

#include <boost/filesystem/path.hpp>
#include <string>

namespace rig_common {

// Every '\' turned into '/'. With `quote`, a path holding a blank or one of
// ; # & ( ) ' = is put in double quotes (unless it already stands in them).
std::string toUnixPath(const std::string& path, bool quote = true);
std::string toUnixPath(const boost::filesystem::path& path, bool quote = true);
std::string toUnixPath(const char* path, bool quote = true);

// Every '/' turned into '\'. With `quote`, a path holding a blank or one of
// ; & , = is put in double quotes (unless it already stands in them).
std::string toWindowsPath(const std::string& path, bool quote = true);
std::string toWindowsPath(const boost::filesystem::path& path, bool quote = true);
std::string toWindowsPath(const char* path, bool quote = true);

}  // namespace rig_common
