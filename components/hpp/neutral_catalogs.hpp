#pragma once
// What one neutral catalog file (<catalog>_neut.tlx) says about its parts.

#include <log4cxx/logger.h>

#include <boost/filesystem/path.hpp>
#include <list>
#include <map>
#include <memory>
#include <string>

#include "common/log4rig.hpp"

namespace NComponent {
namespace NCatalog {

// A location given in a neutral file.
struct TCatalogFile {
  std::string name;              // as the file gives it, quotes removed
  boost::filesystem::path path;  // with soft prefixes replaced, '/' separated
};

struct TCatalogComponent {
  std::string name;
  std::list<std::string> symbols;
};

struct TCatalogPart {
  TCatalogFile container;
  std::list<TCatalogComponent> components;
  std::list<std::string> geoms;
  TCatalogFile mapFile;
};

// Soft prefix to one hard pathname.
using TSoftPrefixes = std::map<std::string, std::string>;

// The silent second reader of a location map: the last hard pathname of a
// prefix counts; a prefix without paths maps to an empty string. False only
// when the file cannot be opened.
bool readLocationMapTable(const boost::filesystem::path& file, TSoftPrefixes& table);

class NeutralCatalogs {
 public:
  explicit NeutralCatalogs(const TSoftPrefixes& softPrefixes) : softPrefixes(softPrefixes) {}

  // False only when the file cannot be parsed as a keyword tree.
  bool readQrnNeutralCatalog(const boost::filesystem::path& file, const std::string catalog,
                             const rig_common::log4rig::TSinks& sinks);

  // The value with every soft prefix replaced, '\' turned into '/'.
  std::string replaceSoftPrefixes(const std::string& value) const;

  std::map<std::string, TCatalogPart> parts;
  TSoftPrefixes softPrefixes;

 private:
  // The prefixes as expressions, made once for the table they were made
  // from: a catalog replaces prefixes in every part's paths.
  struct TRules;
  mutable std::shared_ptr<const TRules> mRules;
};

}  // namespace NCatalog
}  // namespace NComponent
