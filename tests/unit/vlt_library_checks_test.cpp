// The three library checks.

#include <gtest/gtest.h>

#include "components/hpp/script_functions.hpp"
#include "support/fake_host.hpp"

using namespace vlttest;
namespace fs = boost::filesystem;

namespace {

struct ChecksTest : ::testing::Test {
  CFakeHost host;
  CTempDir tmp;
  fs::path lib, map, definition;

  void SetUp() override {
    ASSERT_TRUE(host.start());
    lib = tmp.path() / "lib";
    fs::create_directories(lib / "comps");
    fs::create_directories(lib / "cells");
    host.setWdir(tmp.str());
    host.setLibrary(lib.string());
    map = tmp.path() / "location_map";
    writeFile(map, "QRN_LOCATION_MAP_1 force\n$LIB\n" + lib.string() + "\n/gone\n$EMPTY\n");
    definition = lib / "vlt_library_definition.library_definition";
    writeFile(definition, "released \"L\" {\n  C $LIB/comps -qrn_component\n  G $LIB/cells -qrn_geom\n");
    host.clearRecords();
  }
  void TearDown() override { host.release(); }
};

TEST_F(ChecksTest, LocationMapIsListedAfterItsWarnings) {
  EXPECT_TRUE(NComponent::checkQrnLocationMap(map.string()));
  EXPECT_EQ(
      host.lines("translation"),
      (std::vector<std::string>{
          "INFO Reading location map file: " + map.string(),
          "WARN Location map file: for the soft prefix: $LIB the following hard pathname does not exist in "
          "the filesystem: /gone",
          "INFO Location map file: more than one hard pathname assigned to  the following soft prefix: $LIB",
          "INFO Location map file: no hard pathnames have been assigned to  the following soft prefix: $EMPTY",
          "INFO Location map file paths:", "INFO     Soft prefix: $LIB", "INFO         Hard pathname: " + lib.string(),
          "INFO         Hard pathname: /gone", "INFO     Soft prefix: $EMPTY"}));
}

TEST_F(ChecksTest, EmptyAndUnreadableLocationMaps) {
  writeFile(map, "");
  EXPECT_TRUE(NComponent::checkQrnLocationMap(map.string()));
  EXPECT_EQ(host.lines("translation"), (std::vector<std::string>{"INFO Reading location map file: " + map.string(),
                                                                 "INFO Location map file paths:"}));
  host.clearRecords();
  EXPECT_FALSE(NComponent::checkQrnLocationMap(tmp.str() + "/none"));
  EXPECT_EQ(host.texts("component", "ERROR"),
            (std::vector<std::string>{"Location map file: cannot read the file: " + tmp.str() + "/none",
                                      "Errors found while reading location map file: " + tmp.str() + "/none"}));
}

TEST_F(ChecksTest, DefinitionFileCheck) {
  EXPECT_TRUE(NComponent::checkVLTLibraryDefinitionFile(lib.string()));
  EXPECT_EQ(host.texts("translation", "WARN"),
            (std::vector<std::string>{"VLT library definition file: closing bracket not found for last library "
                                      "definition. Assume it should be there."}));
  EXPECT_TRUE(host.logged("component", "DEBUG", "**Library name: 'L' library type: released"));

  host.clearRecords();
  EXPECT_FALSE(NComponent::checkVLTLibraryDefinitionFile(tmp.str()));
  const std::string file = tmp.str() + "/vlt_library_definition.library_definition";
  EXPECT_EQ(host.lines("translation"),
            (std::vector<std::string>{"INFO Reading VLT library definition file: " + file,
                                      "ERROR VLT library definition file: cannot read the file: " + file,
                                      "ERROR Errors found while reading VLT library definition file: " + file}));
}

TEST_F(ChecksTest, LibraryCheck) {
  EXPECT_TRUE(NComponent::checkVLTLibrary("L", map.string(), lib.string()));
  EXPECT_EQ(host.texts("translation", "WARN"),
            (std::vector<std::string>{"Evaluating VLT Library: invalid (empty) common catalogs directory.",
                                      "Evaluating VLT Library: catalogs directory does not lie underneath the VLT "
                                      "Library Root."}));
  EXPECT_TRUE(host.logged("translation", "DEBUG", "  Geom common path: " + lib.string() + "/cells"));

  host.clearRecords();
  EXPECT_FALSE(NComponent::checkVLTLibrary("M", map.string(), lib.string()));
  EXPECT_EQ(host.lines("component"),
            (std::vector<std::string>{
                "INFO Evaluating VLT library: M defined in: " + definition.string(),
                "ERROR Evaluating VLT Library: library not found: M",
                "ERROR Errors found while reading VLT library definition file: " + definition.string()}));
}

TEST_F(ChecksTest, AllNeedTheWorkingDirectory) {
  host.clearService("get wdir");
  EXPECT_FALSE(NComponent::checkQrnLocationMap(map.string()));
  EXPECT_FALSE(NComponent::checkVLTLibraryDefinitionFile(lib.string()));
  EXPECT_FALSE(NComponent::checkVLTLibrary("L", map.string(), lib.string()));
  EXPECT_EQ(host.texts("translation", "ERROR"), std::vector<std::string>(3, "Working directory has not been set."));
  EXPECT_TRUE(host.lines("component").empty());
}

}  // namespace
