// The SymXlt converter configuration: read, then written whole and read again.
#include "components/hpp/impl/sym_config_managers_impl.hpp"
#include "support.hpp"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  vltfuzz::startComponent();
  NComponent::CScriptCall call;
  NComponent::NConfig::SymXltConfigManager config;
  config.read(vltfuzz::asFile(data, size), call);
  const std::string written = vltfuzz::scratchPath("written.cfg");
  config.write(written, call);
  NComponent::NConfig::SymXltConfigManager again;
  again.read(written, call);
  return 0;
}
