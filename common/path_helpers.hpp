#pragma once
// Paths for tool command lines: the POSIX-style form used on "ksh -c" lines
// and in tool scripts, the Windows-style form used on "cmd /c" lines.

#include <boost/filesystem/path.hpp>
#include <string>

namespace rig_common {

// Every '\' turned into '/'. With `quote`, a path holding a blank, one of
// ; # & ( ) ' = or anything else ksh reads as syntax (" | < > line end, tab,
// * ? [ ] { }, a leading ~) is put in double quotes (unless it already stands in them),
// with every '"' of its own escaped, so that on a "ksh -c" line it reaches
// the tool as it stands; the process layer makes '$' and '`' literal.
std::string toUnixPath(const std::string& path, bool quote = true);
std::string toUnixPath(const boost::filesystem::path& path, bool quote = true);
std::string toUnixPath(const char* path, bool quote = true);
// The path that a quoted toUnixPath form stands for: the double quote at its
// start and the one at its end removed (either alone too, as a cut of a
// quoted path has it) and every escaped '"' unescaped. Text without quotes
// comes back as it is.
std::string unquoteUnixPath(const std::string& text);

// Every '/' turned into '\'. With `quote`, a path holding a blank or one of
// ; & , = is put in double quotes (unless it already stands in them).
std::string toWindowsPath(const std::string& path, bool quote = true);
std::string toWindowsPath(const boost::filesystem::path& path, bool quote = true);
std::string toWindowsPath(const char* path, bool quote = true);

}  // namespace rig_common
