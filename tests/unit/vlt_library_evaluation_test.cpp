// Soft paths, common paths, library evaluation, the directory getters and the library list.

#include <gtest/gtest.h>

#include "components/hpp/list_registry.hpp"
#include "components/hpp/script_functions.hpp"
#include "components/hpp/vlt_library_cfg.hpp"
#include "support/fake_host.hpp"
#include "support/golden.hpp"

using namespace vlttest;
using namespace NVlt2HrwHelpers;
namespace fs = boost::filesystem;

namespace {

TEST(LibraryPaths, FirstHardPathOfTheFirstFilledPrefixWinsAndCommonPathCountsTokens) {
  QllnGeneral::TLocationMap map{{"$L", {}}, {"$L", {"/first", "/second"}}, {"$L", {"/third"}}, {"$M", {"/m"}}};
  EXPECT_EQ(resolveSoftPath(map, "$L/comps/x"), "/first/comps/x");
  EXPECT_EQ(resolveSoftPath(map, "$M"), "/m");
  EXPECT_EQ(resolveSoftPath(map, "$M\\win\\path"), "/m/win/path");
  EXPECT_EQ(resolveSoftPath(map, "$l/comps"), "");      // case counts
  EXPECT_EQ(resolveSoftPath(map, "$LX/comps"), "");     // whole head only
  EXPECT_EQ(resolveSoftPath(map, "/abs/$L/path"), "");  // no prefix in front
  EXPECT_EQ(resolveSoftPath({{"$E", {}}}, "$E/x"), "");
  // Quoting comes first, so a quoted head is no prefix.
  EXPECT_EQ(resolveSoftPath(map, "$M/a b"), "");

  // The common path: count rules, case and quotes.
  const std::vector<std::pair<std::set<std::string>, std::string>> cases = {
      {{}, ""},
      {{"C:\\lib\\comps"}, "C:/lib/comps"},
      {{"/a b/c"}, "\"/a b/c\""},
      {{"a/b/c", "a/b/d", "a/x"}, "a"},
      {{"/x/comps/analog", "/x/comps/digital", "/x/comps/power"}, "/x/comps"},
      {{"/x/lib", "/x/lib/comps"}, "/x/lib"},
      {{"a/b", "c/d"}, ""},
      {{"/a", "/b"}, ""},  // only the empty first token is shared
      {{"", "/x"}, ""},
      // In byte order "a/b/e" comes before "a/c": the count is 2, then 1.
      {{"a/b", "a/c", "a/b/e"}, "a"},
      // "A/b" comes first by byte order; "a/a" lowers the count to 1, and
      // "a/b/e", equal to "A/b" over two tokens, raises it to 2 again.
      {{"A/b", "a/a", "a/b/e"}, "A/b"},
      {{"/lib/comps/x", "/Lib/Comps"}, "/Lib/Comps"},
      {{"/LIB/A", "/lib/b"}, "/LIB"},
      // Quoted paths split with the quote on their first and last token.
      {{"/p q/a", "/p q/b"}, "\"/p q"},
  };
  for (const auto& c : cases) EXPECT_EQ(commonPath(c.first), c.second) << ::testing::PrintToString(c.first);
}

// A small library on disk: lib/{components/{analog,digital},geoms,catalogs}.
struct EvaluationTest : StartedHostTest {
  fs::path lib = tmp.path() / "lib", map = tmp.path() / "location_map",
           definition = lib / "vlt_library_definition.library_definition";

  void SetUp() override {
    StartedHostTest::SetUp();
    for (const char* dir : {"components/analog", "components/digital", "geoms/smd", "catalogs"})
      fs::create_directories(lib / dir);
    host.setLibrary(lib.string());
    writeFile(map, "QRN_LOCATION_MAP_1\n$LIB\n" + lib.string() + "\n$OUT\n" + tmp.str() + "\n$NONE\n");
    writeFile(definition,
              "released \"MAIN\" {\n  D $LIB/components/digital -qrn_component\n"
              "  A $LIB/components/analog -qrn_component -qrn_catalog\n  A2 $LIB/components/analog -qrn_component\n"
              "  G $LIB/geoms -qrn_geom\n  C $LIB/catalogs -qrn_catalog\n}\n"
              "development \"BROKEN\" {\n  D $LIB/components/digital -qrn_component\n"
              "  X $MISSING/comps -qrn_component\n  N $NONE/cells -qrn_geom\n  F $LIB/catalogs/file -qrn_catalog\n"
              "  O $OUT -qrn_catalog\n}\nreleased \"MAIN\" {\n  IGNORED $LIB -qrn_geom }\n");
    writeFile(lib / "catalogs/file", "not a directory");
    host.clearRecords();
  }
  bool evaluate(TVLTLibrary& library, const std::string& name, bool verbose) {
    return evaluateVLTLibrary(library, map, definition, name, verbose);
  }
};

TEST_F(EvaluationTest, VerboseEvaluationOfAGoodAndABrokenLibraryAndQuietRun) {
  TVLTLibrary library;
  ASSERT_TRUE(evaluate(library, "MAIN", true));
  EXPECT_EQ(library.componentPaths, (std::set<std::string>{"$LIB/components/analog", "$LIB/components/digital"}));
  EXPECT_EQ(library.geomPaths, (std::set<std::string>{"$LIB/geoms"}));
  EXPECT_EQ(library.catalogPaths, (std::set<std::string>{"$LIB/catalogs", "$LIB/components/analog"}));
  EXPECT_EQ(library.commonComponentPath, lib.string() + "/components");
  EXPECT_EQ(library.commonGeomPath, lib.string() + "/geoms");
  EXPECT_EQ(library.commonCatalogPath, lib.string());
  // Missing paths, empty kinds, paths outside the root, and a quiet run that logs nothing.
  TVLTLibrary broken;
  ASSERT_TRUE(evaluate(broken, "BROKEN", true));
  EXPECT_EQ(broken.commonComponentPath, lib.string() + "/components/digital");
  EXPECT_EQ(broken.commonGeomPath, "");
  EXPECT_EQ(broken.commonCatalogPath, tmp.str());
  TVLTLibrary quiet;
  ASSERT_TRUE(evaluate(quiet, "BROKEN", false));
  EXPECT_EQ(quiet.catalogPaths, (std::set<std::string>{"$OUT"}));
  expectGolden("EvaluationTest.VerboseEvaluationOfAGoodAndABrokenLibraryAndQuietRun", host.lines(),
               {{tmp.str(), "$TMP"}});
}

TEST_F(EvaluationTest, Failures) {
  TVLTLibrary library;
  EXPECT_FALSE(evaluate(library, "main", false));
  EXPECT_FALSE(evaluateVLTLibrary(library, tmp.path() / "nomap", definition, "MAIN", true));
  EXPECT_FALSE(evaluateVLTLibrary(library, map, tmp.path() / "nodef", "MAIN", false));
  host.clearService("get library location");
  EXPECT_FALSE(evaluate(library, "MAIN", true));
  expectGolden("EvaluationTest.Failures", host.lines(), {{tmp.str(), "$TMP"}});
}

TEST_F(EvaluationTest, DirectoryGettersAndLibraryList) {
  const std::string dir = lib.string(), m = map.string();
  TLines dirs;
  for (const char* name : {"MAIN", "NOPE"})
    dirs.insert(dirs.end(), {getCatalogDir(name, m, dir), getCompsDir(name, m, dir), getGeomsDir(name, m, dir)});
  EXPECT_EQ(dirs, (TLines{dir, dir + "/components", dir + "/geoms", "", "", ""}));
  expectGolden("EvaluationTest.DirectoryGettersAndLibraryList", host.lines(), {{tmp.str(), "$TMP"}});
  host.clearRecords();
  // The library list holds every name in order.
  const std::string rid = NComponent::getVLTLibraryList(lib.string());
  ASSERT_NE(rid, "");
  EXPECT_EQ(*NComponent::find1D(rid), (NComponent::TList1D{"MAIN", "BROKEN", "MAIN"}));
  EXPECT_EQ(host.lines("translation"), (TLines{"INFO Obtaining VLT library list from: " + definition.string()}));
  removeList(rid);
  // A missing definition file is covered by the end-to-end test.
  host.clearService("get wdir");
  EXPECT_EQ(NComponent::getVLTLibraryList(lib.string()), "");
}

}  // namespace
