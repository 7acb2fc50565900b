// The three library checks: the cases the end-to-end test of the sample
// library does not reach.

#include <gtest/gtest.h>

#include "components/hpp/script_functions.hpp"
#include "support/fake_host.hpp"

using namespace vlttest;
namespace fs = boost::filesystem;

namespace {

struct ChecksTest : StartedHostTest {
  fs::path lib, map;

  void SetUp() override {
    StartedHostTest::SetUp();
    lib = tmp.path() / "lib";
    fs::create_directories(lib);
    host.setLibrary(lib.string());
    map = tmp.path() / "location_map";
    writeFile(map, "QRN_LOCATION_MAP_1 force\n$LIB\n" + lib.string() + "\n");
    writeFile(lib / "vlt_library_definition.library_definition", "released \"L\" {\n  C $LIB -qrn_component\n");
    host.clearRecords();
  }
};

TEST_F(ChecksTest, EmptyAndUnreadableLocationMaps) {
  writeFile(map, "");
  EXPECT_TRUE(NComponent::checkQrnLocationMap(map.string()));
  EXPECT_EQ(host.lines("translation"),
            (TLines{"INFO Reading location map file: " + map.string(), "INFO Location map file paths:"}));
  host.clearRecords();
  EXPECT_FALSE(NComponent::checkQrnLocationMap(tmp.str() + "/none"));
  EXPECT_EQ(host.texts("component", "ERROR"),
            (TLines{"Location map file: cannot read the file: " + tmp.str() + "/none",
                    "Errors found while reading location map file: " + tmp.str() + "/none"}));
}

TEST_F(ChecksTest, AllNeedTheWorkingDirectory) {
  host.clearService("get wdir");
  EXPECT_FALSE(NComponent::checkQrnLocationMap(map.string()));
  EXPECT_FALSE(NComponent::checkVLTLibraryDefinitionFile(lib.string()));
  EXPECT_FALSE(NComponent::checkVLTLibrary("L", map.string(), lib.string()));
  EXPECT_EQ(host.texts("translation", "ERROR"), TLines(3, "Working directory has not been set."));
  EXPECT_TRUE(host.lines("component").empty());
}

}  // namespace
