#pragma once
// Symbol/pin mapping files of the source library: the symbol portions of a
// part and the pins of each. Only SYMBOL and PIN lines are kept; the other
// keywords of the format are recognised and passed over.
//
//   NComponent::MappingFile::MappingFile mapping;
//   if (NComponent::MappingFile::readMappingFile(mapping, file, call)) ...

#include <log4cxx/logger.h>

#include <boost/filesystem/path.hpp>
#include <string>
#include <vector>

#include "common/log4rig.hpp"

namespace NComponent {

namespace MappingFile {

struct TMappingPin {
  std::string name;                      // first word, quotes removed
  std::vector<std::string> mappedNames;  // second word, quotes removed, split at every ','
  std::string swapCode;                  // quotes removed; empty when not given
};

struct TMappingSymbol {
  std::string name;        // first word of the SYMBOL line, as written
  std::string secondName;  // second word, as written
  std::string comp;        // COMP property of the portion, quotes removed, or empty
  std::string extra1;
  std::string extra2;
  std::vector<TMappingPin> pins;
};

struct MappingFile {
  std::vector<TMappingSymbol> symbols;
};

// Appends the portions of `file` to `mapping`. False only when the file
// cannot be opened; every other problem is a warning and the line is
// skipped. Messages go to the two sinks of the calling script function.
bool readMappingFile(MappingFile& mapping, const boost::filesystem::path& file,
                     const rig_common::log4rig::TSinks& sinks);

}  // namespace MappingFile
}  // namespace NComponent
