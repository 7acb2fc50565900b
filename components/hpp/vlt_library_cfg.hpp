#pragma once
// The source library model: the library definition file, its evaluation
// against the location map, and the three directories (components,
// geometries, catalogs) that every later step works from.
//
// Every function that logs comes in two forms. The plain form runs its own
// prologue (working directory check and a per-component logger). Inside a
// script function, call the form that takes the function's CScriptCall: the
// host closes the per-component logger whenever any guard on it closes, so a
// second guard would silence the rest of the calling function on that sink.

#include <boost/filesystem/path.hpp>
#include <list>
#include <set>
#include <string>

#include "impl/qlln_general_impl.hpp"

namespace NComponent {
class CScriptCall;
}

namespace NVlt2HrwHelpers {

// The name of the definition file inside a library directory.
extern const char* const kLibraryDefinitionFileName;  // "vlt_library_definition.library_definition"

// One index entry of a library block.
struct TVLTLibraryDefinitionFileEntry {
  std::string label;              // quoted labels keep their quotes
  std::string path;               // as written, soft prefix and quotes included
  std::set<std::string> options;  // option words without the dash
};

// One library block.
struct TVLTLibraryDefinitionFileLibrary {
  std::string type;  // source, development, released or sandbox, as written
  std::string name;  // the text between the quotes of the header
  std::list<TVLTLibraryDefinitionFileEntry> entries;
};

using TVLTLibraryDefinitionFileLibraries = std::list<TVLTLibraryDefinitionFileLibrary>;

// Parses `file` and appends its libraries to `libraries` in the order in
// which their blocks end. Skips what it cannot use, with a warning when
// `verbose`. False when the working directory is not set or the file cannot
// be read (then `libraries` is unchanged).
bool readVLTLibraryDefinition(TVLTLibraryDefinitionFileLibraries& libraries, const boost::filesystem::path& file,
                              bool verbose);
bool readVLTLibraryDefinition(const NComponent::CScriptCall& call, TVLTLibraryDefinitionFileLibraries& libraries,
                              const boost::filesystem::path& file, bool verbose);

// One library evaluated: the entries of each kind whose resolved path is a
// directory (as written, soft prefix included), and the common hard
// directory of each kind.
struct TVLTLibrary {
  std::set<std::string> componentPaths;
  std::set<std::string> geomPaths;
  std::set<std::string> catalogPaths;
  std::string commonComponentPath;
  std::string commonGeomPath;
  std::string commonCatalogPath;
};

// The first hard pathname of the soft prefix that heads `softPath`, followed
// by the rest of `softPath`; empty when no prefix with a hard pathname
// matches.
std::string resolveSoftPath(QllnGeneral::TLocationMap map, const std::string& softPath);

// The directory that the paths share, compared without regard to case and
// spelled as in the first path; empty when they share nothing.
std::string commonPath(std::set<std::string> paths);

// Evaluates library `libraryName` of `definitionFile` through the location
// map. False when the host's directories are not set, a file cannot be read
// or the library is not defined.
bool evaluateVLTLibrary(TVLTLibrary& library, const boost::filesystem::path& locationMapFile,
                        const boost::filesystem::path& definitionFile, const std::string& libraryName, bool verbose);
bool evaluateVLTLibrary(const NComponent::CScriptCall& call, TVLTLibrary& library,
                        const boost::filesystem::path& locationMapFile, const boost::filesystem::path& definitionFile,
                        const std::string& libraryName, bool verbose);

// The common catalog, component and geometry directories of a library whose
// definition file lies in `libraryDir`; empty on failure.
std::string getCatalogDir(const std::string& libraryName, const std::string& locationMapFile,
                          const std::string& libraryDir);
std::string getCatalogDir(const NComponent::CScriptCall& call, const std::string& libraryName,
                          const std::string& locationMapFile, const std::string& libraryDir);
std::string getCompsDir(const std::string& libraryName, const std::string& locationMapFile,
                        const std::string& libraryDir);
std::string getCompsDir(const NComponent::CScriptCall& call, const std::string& libraryName,
                        const std::string& locationMapFile, const std::string& libraryDir);
std::string getGeomsDir(const std::string& libraryName, const std::string& locationMapFile,
                        const std::string& libraryDir);
std::string getGeomsDir(const NComponent::CScriptCall& call, const std::string& libraryName,
                        const std::string& locationMapFile, const std::string& libraryDir);

}  // namespace NVlt2HrwHelpers
