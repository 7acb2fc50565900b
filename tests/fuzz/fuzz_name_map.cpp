// The symbol name map (symname_map.txt): read with the separators the steps
// use, written whole and read again.
#include "components/hpp/impl/sym_config_managers_impl.hpp"
#include "support.hpp"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  vltfuzz::startComponent();
  NComponent::CScriptCall call;
  const std::string file = vltfuzz::asFile(data, size);
  for (const char* separator : {"\\s+", ";"}) {
    NComponent::NConfig::SymNameMapManager names;
    names.read(file, call, separator);
    for (const auto& record : names.records()) names.setRecord(record.sourceSymbol, "p", "t");
    const std::string written = vltfuzz::scratchPath("written.txt");
    names.write(written, call, " ");
  }
  return 0;
}
