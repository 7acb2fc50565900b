// The library definition file, read loudly (as the check function does) and
// silently.
#include "support.hpp"
#include "vlt_library_cfg.hpp"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  vltfuzz::startComponent();
  NComponent::CScriptCall call;
  const std::string file = vltfuzz::asFile(data, size);
  for (bool verbose : {true, false}) {
    NVlt2HrwHelpers::TVLTLibraryDefinitionFileLibraries libraries;
    NVlt2HrwHelpers::readVLTLibraryDefinition(call, libraries, file, verbose);
  }
  return 0;
}
