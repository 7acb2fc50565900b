#pragma once
// Silent copy of a directory's files: the replacement of the shell's copy
// operation on this platform.

#include <boost/filesystem/path.hpp>

namespace NPlatform {

// Codes of copyDirectoryFiles besides 0 (success) and a system error value.
enum : int {
  kCopySourceMissing = 2,          // the source, or the directory of a wildcard, does not exist
  kCopyDestinationInSource = 0x76  // the target lies inside what is to be copied
};

// Copies `from` into `to`, silently and overwriting files that exist.
// - `from` is a directory: `to` becomes a copy of it (made if missing;
//   when it exists, the contents of `from` are merged into it).
// - `from` ends in a wildcard pattern ("*.*", "*", "a?c.txt"): every entry
//   of its directory whose name matches, files and subdirectories alike,
//   goes into the directory `to`, which is made if missing. "*.*" means
//   every entry. A pattern that matches nothing copies nothing.
// - `from` is a file: it goes into the directory `to` if that exists,
//   otherwise it is copied to the file name `to`.
// Subdirectories are copied with all they hold. Gives 0 on success and a
// non-zero code on failure; never throws, never writes to any stream.
int copyDirectoryFiles(const boost::filesystem::path& from, const boost::filesystem::path& to);

// Whether `name` matches the wildcard `pattern` ("*" any run, "?" one
// character), case-insensitively. A pattern ending in ".*" also matches
// names without an extension, so "*.*" matches every name.
bool matchesWildcard(const std::string& name, const std::string& pattern);

}  // namespace NPlatform
