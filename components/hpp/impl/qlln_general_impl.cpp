// The location map reader.

#include "impl/qlln_general_impl.hpp"

#include <boost/filesystem/operations.hpp>
#include <boost/regex.hpp>
#include <fstream>

#include "common/keywords.hpp"
#include "common/text_file.hpp"
#include "common/text_helpers.hpp"
#include "misc.hpp"

namespace fs = boost::filesystem;

namespace QllnGeneral {

bool readLocationMap(TLocationMap& map, const fs::path& file, bool verbose) {
  NComponent::CScriptCall call;
  if (!call.ok()) return false;
  return readLocationMap(call, map, file, verbose);
}

bool readLocationMap(const NComponent::CScriptCall& call, TLocationMap& map, const fs::path& file, bool verbose) {
  if (!NComponent::checkWdir(call.services(), call.translation())) return false;
  if (verbose) RIG_LOG(call, Info, "Reading location map file: " << file.string());

  std::vector<std::string> lines;
  if (!rig_common::readTextLines(file, lines)) {
    RIG_LOG(call, Error, "Location map file: cannot read the file: " << file.string());
    return false;
  }

  const boost::regex header(rig_common::keyword::kLocationMapHeader);
  const boost::regex prefix("(\\$\\S+).*");

  TLocationMap found;
  TLocationMap::value_type current;
  auto finishPrefix = [&]() {
    if (current.first.empty()) return;
    if (current.second.empty() && verbose)
      RIG_LOG(
          call, Info,
          "Location map file: no hard pathnames have been assigned to  the following soft prefix: " << current.first);
    found.push_back(current);
  };

  for (const std::string& raw : lines) {
    const std::string line = rig_common::trim(raw);
    if (line.empty() || line[0] == '#') continue;
    if (boost::regex_match(line, header)) continue;
    boost::smatch match;
    if (boost::regex_match(line, match, prefix)) {
      finishPrefix();
      current = TLocationMap::value_type(match[1].str(), {});
      continue;
    }
    if (current.first.empty()) {
      if (verbose) RIG_LOG(call, Warn, "Location map file: orphaned hard pathname: " << line);
      continue;
    }
    if (!fs::exists(fs::path(line)) && verbose)
      RIG_LOG(call, Warn,
              "Location map file: for the soft prefix: "
                  << current.first << " the following hard pathname does not exist in the filesystem: " << line);
    current.second.push_back(line);
    if (verbose && current.second.size() > 1)
      RIG_LOG(
          call, Info,
          "Location map file: more than one hard pathname assigned to  the following soft prefix: " << current.first);
  }
  finishPrefix();

  map.splice(map.end(), found);
  return true;
}

}  // namespace QllnGeneral
