// The three library checks: the cases the end-to-end tests of the sample library do not reach.

#include <gtest/gtest.h>

#include "components/hpp/script_functions.hpp"
#include "support/fake_host.hpp"

using namespace vlttest;

namespace {

TEST_F(StartedHostTest, LibraryChecksOfAnEmptyMapAndWithoutWorkingDirectory) {
  const std::string map = tmp.str() + "/location_map", lib = tmp.str() + "/lib";
  writeFile(map, "");
  writeFile(lib + "/vlt_library_definition.library_definition", "released \"L\" {\n  C $LIB -qrn_component\n");
  host.setLibrary(lib);
  EXPECT_TRUE(NComponent::checkQrnLocationMap(map));
  EXPECT_EQ(host.lines("translation"),
            (TLines{"INFO Reading location map file: " + map, "INFO Location map file paths:"}));
  writeFile(map, "QRN_LOCATION_MAP_1 force\n$LIB\n" + lib + "\n");
  host.clearService("get wdir");
  host.clearRecords();
  EXPECT_FALSE(NComponent::checkQrnLocationMap(map));
  EXPECT_FALSE(NComponent::checkVLTLibraryDefinitionFile(lib));
  EXPECT_FALSE(NComponent::checkVLTLibrary("L", map, lib));
  EXPECT_EQ(host.texts("translation", "ERROR"), TLines(3, "Working directory has not been set."));
  EXPECT_TRUE(host.lines("component").empty());
}

}  // namespace
