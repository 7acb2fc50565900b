#pragma once
// Helpers around the source suite's own files: the location map that ties
// soft prefixes ($NAME) to hard pathnames.

#include <boost/filesystem/path.hpp>
#include <list>
#include <string>
#include <utility>

namespace NComponent {
class CScriptCall;
}

namespace QllnGeneral {

// One element per soft prefix, in file order: the prefix with its dollar
// sign, and its hard pathnames as written (possibly none, possibly missing
// on disk). A prefix written twice gives two elements.
using TLocationMap = std::list<std::pair<std::string, std::list<std::string>>>;

// Appends the prefixes of `file` to `map`. `verbose` gates the Info and Warn
// messages; an unreadable file is always reported and leaves `map` as it was.
// False when the working directory is not set or the file cannot be read.
//
// The first form runs its own prologue; inside a script function pass the
// call, so that the function's per-component logger stays open.
bool readLocationMap(TLocationMap& map, const boost::filesystem::path& file, bool verbose);
bool readLocationMap(const NComponent::CScriptCall& call, TLocationMap& map, const boost::filesystem::path& file,
                     bool verbose);

}  // namespace QllnGeneral
