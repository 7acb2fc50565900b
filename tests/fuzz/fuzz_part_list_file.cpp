// Part list files (excluded_parts.caf, rejected_parts.caf).
#include "common/part_list_file.hpp"
#include "support.hpp"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  rig_common::CPartListFileReader reader;
  reader.read(vltfuzz::asFile(data, size));
  for (const auto& part : reader.parts()) reader.contains(part.first, part.second);
  return 0;
}
