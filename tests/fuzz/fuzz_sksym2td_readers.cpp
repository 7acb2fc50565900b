// The symbol tool simulator's readers: a source symbol (SKSYMBOL 1), its
// location map and the SymXlt configuration, all on the same input.
#include <map>
#include <string>

#include "support.hpp"
#include "tools/sksym2td.exe/source_symbol.hpp"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string file = vltfuzz::asFile(data, size, "input.smbl_1");
  sksym2td::TSourceSymbol symbol;
  std::string error;
  sksym2td::readSourceSymbol(file, symbol, error);
  std::map<std::string, std::string> prefixes;
  sksym2td::readLocationMap(file, prefixes);
  sksym2td::TSymXlt config;
  sksym2td::readSymXlt(file, config);
  return 0;
}
