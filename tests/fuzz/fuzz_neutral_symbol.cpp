// Neutral symbol files (<name>.neut): read, whatever they hold.
#include "common/symbol_neutral_handler.hpp"
#include "support.hpp"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  rig_common::CVlt2hrwSymbolNeutralHandler symbol;
  symbol.parse(vltfuzz::asFile(data, size, "input.neut"));
  return 0;
}
