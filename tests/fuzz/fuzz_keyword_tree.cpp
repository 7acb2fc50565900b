// Keyword tree files: parse, copy and write back; the copy writes the same
// bytes as the original.
#include <cstdlib>
#include <sstream>

#include "common/tlx_tree.hpp"
#include "support.hpp"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::istringstream in(std::string(reinterpret_cast<const char*>(data), size));
  rig_common::TLXHandler::TLXManager tree(nullptr);
  tree.readStream(in);
  std::ostringstream original, copied;
  rig_common::writeTLXChildren(original, *tree.root);
  rig_common::writeTLXChildren(copied, *tree.root->clone());
  if (original.str() != copied.str()) std::abort();
  std::istringstream again(original.str());
  rig_common::TLXHandler::TLXManager reread(nullptr);
  reread.readStream(again);
  return 0;
}
