#pragma once
// The files of a fresh seed library.

#include <string>

namespace libforge {

// The property file CentLib.prp of a fresh library: text, numeric and
// enumerated property definitions, one a line.
const std::string& seedPropertyFile();

}  // namespace libforge
