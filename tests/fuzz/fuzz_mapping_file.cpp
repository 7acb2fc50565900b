// Symbol/pin mapping files of the source library.
#include "mapping_file.hpp"
#include "support.hpp"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  vltfuzz::startComponent();
  NComponent::CScriptCall call;
  NComponent::MappingFile::MappingFile mapping;
  NComponent::MappingFile::readMappingFile(mapping, vltfuzz::asFile(data, size), call);
  return 0;
}
