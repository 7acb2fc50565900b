// The Central Library index (read by the library and symbol tool simulators)
// read and written back, and the symbol tool's journal of a partition read
// into the names that are new.
#include <boost/filesystem.hpp>
#include <string>
#include <vector>

#include "support.hpp"
#include "tools/libforge.exe/library_index.hpp"
#include "tools/tdlib2zpc.exe/new_symbols.hpp"

namespace fs = boost::filesystem;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string file = vltfuzz::asFile(data, size, "Library.zpc");
  libforge::CLibraryIndex index;
  if (index.read(file)) {
    index.add("symbol", "fuzz");
    index.write(vltfuzz::scratchPath("Library.out.zpc"));
  }
  // A partition whose state says it was entered before: its journal is read.
  const fs::path partition = vltfuzz::scratchPath("partition");
  fs::create_directories(partition / ".tdlib2zpc" / "entered");
  fs::copy_file(file, partition / ".tdlib2zpc" / "journal", fs::copy_options::overwrite_existing);
  tdlib2zpc::CPartitionState state(partition);
  std::vector<std::string> names;
  state.findNew(names);
  return 0;
}
