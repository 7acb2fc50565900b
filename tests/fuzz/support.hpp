#pragma once
// What the fuzz targets share: the input as a file, and a started component
// on a host core for the readers that log through a script call.

#include <cstddef>
#include <cstdint>
#include <string>

#include "components/hpp/misc.hpp"

namespace vltfuzz {

// The input written to a file of that name in the process's scratch
// directory; the same name is overwritten by the next run.
std::string asFile(const uint8_t* data, size_t size, const std::string& name = "input");
// A path in the scratch directory.
std::string scratchPath(const std::string& name);

// Starts the component once (working directory and library location in the
// scratch directory, every level enabled) and forgets the messages of the
// previous run, so that memory does not grow from run to run.
void startComponent();

}  // namespace vltfuzz
