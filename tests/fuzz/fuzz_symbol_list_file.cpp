// Symbol list files (.sym_list.caf and the partition lists).
#include "common/symbol_list_file.hpp"
#include "support.hpp"

namespace {
class CNullLogger : public rig_common::log4rig::ILogger {
 public:
  void operator()(int, const std::string& message) override { mLast = message; }
  std::string mLast;
};
}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  CNullLogger logger;
  rig_common::CSymbolListFileReader reader(&logger);
  reader.read(vltfuzz::asFile(data, size));
  return 0;
}
