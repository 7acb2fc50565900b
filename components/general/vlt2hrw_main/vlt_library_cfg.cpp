// The source library: the definition file parser, the evaluation of one
// library into its component, geometry and catalog directories, and
// get_vlt_library_list.

#include "vlt_library_cfg.hpp"

#include <boost/filesystem/operations.hpp>
#include <boost/regex.hpp>
#include <fstream>
#include <vector>

#include "common/path_helpers.hpp"
#include "common/text_file.hpp"
#include "common/text_helpers.hpp"
#include "list_registry.hpp"
#include "misc.hpp"
#include "script_functions.hpp"

namespace fs = boost::filesystem;
using NComponent::CScriptCall;

namespace NVlt2HrwHelpers {

const char* const kLibraryDefinitionFileName = "vlt_library_definition.library_definition";

namespace {

// Cuts the line at the first "//" that stands outside double quotes.
std::string cutComment(const std::string& line) {
  bool inQuotes = false;
  for (size_t i = 0; i < line.size(); ++i) {
    if (line[i] == '"')
      inQuotes = !inQuotes;
    else if (!inQuotes && line.compare(i, 2, "//") == 0)
      return line.substr(0, i);
  }
  return line;
}

void dumpDefinition(const CScriptCall& call, const TVLTLibraryDefinitionFileLibraries& libraries,
                    const fs::path& file) {
  RIG_LOG(call, Debug, "Dumping parsed content of library definition file: " << file.string());
  for (const auto& library : libraries) {
    RIG_LOG(call, Debug, "**Library name: '" << library.name << "' library type: " << library.type);
    for (const auto& entry : library.entries) {
      RIG_LOG(call, Debug, "    Index label: '" << entry.label << "' path to data: " << entry.path);
      for (const auto& option : entry.options) RIG_LOG(call, Debug, "      : " << option);
    }
    RIG_LOG(call, Debug, "");
  }
}

// The state of one parse: the library in hand and the three flags.
class CDefinitionParser {
 public:
  CDefinitionParser(const CScriptCall& call, bool verbose) : mCall(call), mVerbose(verbose) {}

  void parseLine(std::string line, int number) {
    boost::smatch match;
    if (boost::regex_match(line, match, mHeader)) {
      // A header also ends a block that never closed: that block is lost.
      mInLibrary = true;
      mBracketOpen = false;
      mCurrent = TVLTLibraryDefinitionFileLibrary();
      mCurrent.type = match[1].str();
      mCurrent.name = match[2].str();
      if (rig_common::trim(match[3].str()).compare(0, 1, "{") == 0) mBracketOpen = true;
      return;
    }
    if (!mInLibrary) {
      if (mVerbose)
        RIG_LOG(mCall, Warn, "VLT library definition file: unknown entry - skipping line #" << number << ": " << line);
      return;
    }
    if (!mBracketOpen) {
      if (line[0] != '{') {
        if (mVerbose)
          RIG_LOG(mCall, Warn,
                  "VLT library definition file: opening bracket not found for library: "
                      << mCurrent.name << "; still looking for it and skipping line #" << number << ": " << line);
        return;
      }
      line.erase(0, 1);
      mBracketOpen = true;
    }
    if (boost::regex_match(line, match, mEntry)) {
      mFirstEntrySeen = true;
      mCurrent.entries.push_back({match[1].str(), match[2].str(), {}});
      line = match[3].str();
    } else if (!mFirstEntrySeen) {
      if (mVerbose)
        RIG_LOG(mCall, Warn,
                "VLT library definition file: invalid entry found in library: "
                    << mCurrent.name << "; still looking for first entry in the definition block, skipping line #"
                    << number << ": " << line);
      return;
    }
    line = rig_common::trim(line);
    while (boost::regex_match(line, match, mOption)) {
      // A block reopened by a header after an unclosed one may have no
      // entry yet; its options have nowhere to go.
      if (!mCurrent.entries.empty()) mCurrent.entries.back().options.insert(match[1].str());
      line = rig_common::trim(match[2].str());
    }
    if (line.compare(0, 1, "}") == 0) {
      mInLibrary = mBracketOpen = mFirstEntrySeen = false;
      mFound.push_back(mCurrent);
    }
  }

  // End of file: an unclosed block still counts.
  void finish() {
    if (!mInLibrary) return;
    mFound.push_back(mCurrent);
    if (mVerbose)
      RIG_LOG(mCall, Warn,
              "VLT library definition file: closing bracket not found for last library definition. Assume it should be "
              "there.");
  }

  TVLTLibraryDefinitionFileLibraries& found() { return mFound; }

 private:
  const CScriptCall& mCall;
  const bool mVerbose;
  const boost::regex mHeader{"(source|development|released|sandbox)\\s+\"(.+)\"(.*)",
                             boost::regex::perl | boost::regex::icase};
  const boost::regex mEntry{"(\".*\"|\\S+)\\s+(\".*\"|\\S+)(.*)"};
  const boost::regex mOption{"-(\\S+)(.*)"};
  TVLTLibraryDefinitionFileLibrary mCurrent;
  bool mInLibrary = false, mBracketOpen = false, mFirstEntrySeen = false;
  TVLTLibraryDefinitionFileLibraries mFound;
};

}  // namespace

bool readVLTLibraryDefinition(TVLTLibraryDefinitionFileLibraries& libraries, const fs::path& file, bool verbose) {
  CScriptCall call;
  if (!call.ok()) return false;
  return readVLTLibraryDefinition(call, libraries, file, verbose);
}

bool readVLTLibraryDefinition(const CScriptCall& call, TVLTLibraryDefinitionFileLibraries& libraries,
                              const fs::path& file, bool verbose) {
  if (!NComponent::checkWdir(call.services(), call.translation())) return false;
  if (verbose) RIG_LOG(call, Info, "Reading VLT library definition file: " << file.string());
  std::vector<std::string> lines;
  if (!rig_common::readTextLines(file, lines)) {
    RIG_LOG(call, Error, "VLT library definition file: cannot read the file: " << file.string());
    return false;
  }
  CDefinitionParser parser(call, verbose);
  int number = 0;
  for (const std::string& raw : lines) {
    ++number;
    std::string line = cutComment(rig_common::trim(raw));
    if (!line.empty()) parser.parseLine(line, number);
  }
  parser.finish();
  libraries.splice(libraries.end(), parser.found());
  if (verbose) dumpDefinition(call, libraries, file);
  return true;
}

std::string resolveSoftPath(QllnGeneral::TLocationMap map, const std::string& softPath) {
  const std::string path = rig_common::toUnixPath(softPath, true);
  const size_t slash = path.find('/');
  const std::string head = path.substr(0, slash);
  const std::string tail = slash == std::string::npos ? std::string() : path.substr(slash);
  for (const auto& prefix : map)
    if (prefix.first == head && !prefix.second.empty()) return prefix.second.front() + tail;
  return {};
}

namespace {
std::string commonPathOf(const std::set<std::string>& paths, bool quote);
}  // namespace

std::string commonPath(std::set<std::string> paths) { return commonPathOf(paths, true); }

namespace {

// `quote` false: the common path of the paths as they are, for comparisons
// that quotes would disturb.
std::string commonPathOf(const std::set<std::string>& paths, bool quote) {
  if (paths.size() == 1) return rig_common::toUnixPath(*paths.begin(), quote);
  const boost::regex separator("/");
  const size_t sentinel = 0x7fffffff;
  std::vector<std::string> reference;
  size_t count = sentinel;
  bool first = true;
  for (const std::string& path : paths) {
    const std::string text = rig_common::toUnixPath(path, quote);
    std::vector<std::string> tokens(boost::sregex_token_iterator(text.begin(), text.end(), separator, -1),
                                    boost::sregex_token_iterator());
    if (first) {
      reference = tokens;
      first = false;
      continue;
    }
    const size_t shorter = std::min(reference.size(), tokens.size());
    size_t same = 0;
    while (same < shorter && rig_common::sameNameIgnoringCase(reference[same], tokens[same])) ++same;
    // A path that agrees all along its shorter length sets the count, even
    // above a smaller count of an earlier path.
    if (same == shorter)
      count = shorter;
    else if (same < count)
      count = same;
  }
  if (count == 0 || count == sentinel) return {};
  std::string result;
  for (size_t i = 0; i < count; ++i) result += reference[i] + "/";
  result.pop_back();
  return result;
}

// One kind of library data: its option, the word the messages use for it,
// and where the evaluation keeps it.
struct TDataKind {
  const char* option;
  const char* word;
  const char* dumpName;
  std::set<std::string>& paths;
  std::string& common;
};

void dumpEvaluation(const CScriptCall& call, const TVLTLibrary& library, const fs::path& file) {
  RIG_LOG(call, Debug, "Dumping evaluated content of library definition file: " << file.string());
  RIG_LOG(call, Debug, "  Component hard path list:");
  for (const auto& path : library.componentPaths) RIG_LOG(call, Debug, "    " << path);
  RIG_LOG(call, Debug, "  Geom hard path list:");
  for (const auto& path : library.geomPaths) RIG_LOG(call, Debug, "    " << path);
  RIG_LOG(call, Debug, "  Catalog hard path list:");
  for (const auto& path : library.catalogPaths) RIG_LOG(call, Debug, "    " << path);
  RIG_LOG(call, Debug, "  Component common path: " << library.commonComponentPath);
  RIG_LOG(call, Debug, "  Geom common path: " << library.commonGeomPath);
  RIG_LOG(call, Debug, "  Catalog common path: " << library.commonCatalogPath);
}

}  // namespace

bool evaluateVLTLibrary(TVLTLibrary& library, const fs::path& locationMapFile, const fs::path& definitionFile,
                        const std::string& libraryName, bool verbose) {
  CScriptCall call;
  if (!call.ok()) return false;
  return evaluateVLTLibrary(call, library, locationMapFile, definitionFile, libraryName, verbose);
}

bool evaluateVLTLibrary(const CScriptCall& call, TVLTLibrary& library, const fs::path& locationMapFile,
                        const fs::path& definitionFile, const std::string& libraryName, bool verbose) {
  if (!NComponent::checkWdir(call.services(), call.translation())) return false;
  if (!NComponent::checkLibLoc(call.services(), call.translation())) return false;
  const std::string root = NComponent::getLibraryLocation(call.services());
  if (verbose)
    RIG_LOG(call, Info, "Evaluating VLT library: " << libraryName << " defined in: " << definitionFile.string());

  QllnGeneral::TLocationMap map;
  if (!QllnGeneral::readLocationMap(call, map, locationMapFile, false)) {
    RIG_LOG(call, Error, "Errors found while reading location map file: " << locationMapFile.string());
    return false;
  }
  TVLTLibraryDefinitionFileLibraries libraries;
  if (!readVLTLibraryDefinition(call, libraries, definitionFile, false)) {
    RIG_LOG(
        call, Error,
        "Evaluating VLT Library: errors found while reading VLT library definition file: " << definitionFile.string());
    return false;
  }
  const TVLTLibraryDefinitionFileLibrary* found = nullptr;
  for (const auto& candidate : libraries)
    if (candidate.name == libraryName) {
      found = &candidate;
      break;
    }
  if (found == nullptr) {
    RIG_LOG(call, Error, "Evaluating VLT Library: library not found: " << libraryName);
    return false;
  }

  TDataKind kinds[] = {
      {"qrn_component", "components", "Component", library.componentPaths, library.commonComponentPath},
      {"qrn_geom", "geometries", "Geom", library.geomPaths, library.commonGeomPath},
      {"qrn_catalog", "catalogs", "Catalog", library.catalogPaths, library.commonCatalogPath}};

  for (const auto& entry : found->entries)
    for (auto& kind : kinds) {
      if (entry.options.count(kind.option) == 0) continue;
      const std::string hard = resolveSoftPath(map, entry.path);
      if (!hard.empty() && fs::is_directory(fs::path(hard)))
        kind.paths.insert(entry.path);
      else if (verbose)
        RIG_LOG(call, Warn,
                "Evaluating VLT Library: following paths to " << kind.word
                                                              << " directory does not exist hence will not be "
                                                                 "processed: "
                                                              << entry.path);
    }
  for (auto& kind : kinds) {
    std::set<std::string> hardPaths;
    for (const auto& path : kind.paths) hardPaths.insert(resolveSoftPath(map, path));
    kind.common = commonPath(hardPaths);
  }
  if (!verbose) return true;

  for (auto& kind : kinds)
    if (kind.common.empty())
      RIG_LOG(call, Warn, "Evaluating VLT Library: invalid (empty) common " << kind.word << " directory.");
  for (auto& kind : kinds)
    // Compared without the quotes that a root with a blank or a '$' gets.
    if (fs::path(commonPathOf({rig_common::unquoteUnixPath(kind.common), root}, false)) != fs::path(root))
      RIG_LOG(call, Warn,
              "Evaluating VLT Library: " << kind.word << " directory does not lie underneath the VLT Library Root.");
  dumpEvaluation(call, library, definitionFile);
  return true;
}

namespace {

// The part of one evaluation that a later step asks for.
enum TCommonDir { kCatalogDir, kCompsDir, kGeomsDir };

// A common path as a directory to open: the evaluation keeps the quoted
// form of a path with a blank, which the file system does not know.
std::string directoryOf(const std::string& commonPath) {
  if (commonPath.size() >= 2 && commonPath.front() == '"' && commonPath.back() == '"')
    return rig_common::unquoteUnixPath(commonPath);
  return commonPath;
}

std::string evaluateDirectory(const CScriptCall& call, TCommonDir which, const std::string& libraryName,
                              const std::string& locationMapFile, const std::string& libraryDir) {
  const fs::path file = fs::path(libraryDir) / kLibraryDefinitionFileName;
  switch (which) {
    case kCatalogDir:
      RIG_LOG(call, Debug, "Obtaining catalog directory: " << file.string());
      break;
    case kCompsDir:
      RIG_LOG(call, Debug, "Obtaining components data: " << file.string());
      break;
    case kGeomsDir:
      RIG_LOG(call, Info, "Obtaining geoms data: " << file.string());
      break;
  }
  TVLTLibrary library;
  if (!evaluateVLTLibrary(call, library, locationMapFile, file, libraryName, false)) {
    switch (which) {
      case kCatalogDir:
        RIG_LOG(call, Error,
                "Obtaining catalog directory: problem(s) found while reading VLT library definition file: "
                    << file.string());
        break;
      case kCompsDir:
        RIG_LOG(
            call, Error,
            "Obtaining components data: problem(s) found while reading VLT library definition file: " << file.string());
        break;
      case kGeomsDir:
        RIG_LOG(call, Error, "Errors found while reading VLT library definition file: " << file.string());
        break;
    }
    return {};
  }
  switch (which) {
    case kCatalogDir:
      return directoryOf(library.commonCatalogPath);
    case kCompsDir:
      return directoryOf(library.commonComponentPath);
    case kGeomsDir:
      break;
  }
  return directoryOf(library.commonGeomPath);
}

}  // namespace

std::string getCatalogDir(const CScriptCall& call, const std::string& libraryName, const std::string& locationMapFile,
                          const std::string& libraryDir) {
  return evaluateDirectory(call, kCatalogDir, libraryName, locationMapFile, libraryDir);
}

std::string getCompsDir(const CScriptCall& call, const std::string& libraryName, const std::string& locationMapFile,
                        const std::string& libraryDir) {
  return evaluateDirectory(call, kCompsDir, libraryName, locationMapFile, libraryDir);
}

std::string getGeomsDir(const CScriptCall& call, const std::string& libraryName, const std::string& locationMapFile,
                        const std::string& libraryDir) {
  return evaluateDirectory(call, kGeomsDir, libraryName, locationMapFile, libraryDir);
}

std::string getCatalogDir(const std::string& libraryName, const std::string& locationMapFile,
                          const std::string& libraryDir) {
  CScriptCall call;
  return call.ok() ? getCatalogDir(call, libraryName, locationMapFile, libraryDir) : std::string();
}

std::string getCompsDir(const std::string& libraryName, const std::string& locationMapFile,
                        const std::string& libraryDir) {
  CScriptCall call;
  return call.ok() ? getCompsDir(call, libraryName, locationMapFile, libraryDir) : std::string();
}

std::string getGeomsDir(const std::string& libraryName, const std::string& locationMapFile,
                        const std::string& libraryDir) {
  CScriptCall call;
  return call.ok() ? getGeomsDir(call, libraryName, locationMapFile, libraryDir) : std::string();
}

}  // namespace NVlt2HrwHelpers

namespace NComponent {

std::string getVLTLibraryList(const std::string& libraryDir) {
  CScriptCall call;
  if (!call.ok()) return {};
  const fs::path file = fs::path(libraryDir) / NVlt2HrwHelpers::kLibraryDefinitionFileName;
  RIG_LOG(call, Info, "Obtaining VLT library list from: " << file.string());
  NVlt2HrwHelpers::TVLTLibraryDefinitionFileLibraries libraries;
  if (!NVlt2HrwHelpers::readVLTLibraryDefinition(call, libraries, file, false)) {
    RIG_LOG(call, Error,
            "Evaluating VLT Library: errors found while reading VLT library definition file: " << file.string());
    return {};
  }
  const std::string rid = new1DList(gListRegistry);
  TList1D* names = find1D(rid);
  for (const auto& library : libraries) names->push_back(library.name);
  return rid;
}

}  // namespace NComponent
