// Hostile names: catalog paths reach the tool as they stand; a library root
// that needs quotes gives plain container names and no false warnings.

#include <gtest/gtest.h>

#include <boost/algorithm/string/replace.hpp>

#include "components/hpp/geometry_helpers.hpp"
#include "components/hpp/neutral_catalogs.hpp"
#include "components/hpp/script_functions.hpp"
#include "components/hpp/vlt_library_cfg.hpp"
#include "support/fake_host.hpp"

namespace fs = boost::filesystem;
using namespace vlttest;

namespace {

const std::string kExamples = std::string(VLT_SOURCE_DIR) + "/examples";

struct KshPaths : WorkDirHostTest {};

// The catalog step with catalogs named with each character: every run goes
// on, the tool (a stand-in that prints the value of -i in brackets) gets
// each name as it stands.
TEST_F(KshPaths, SaveCatalogsPassesHostileCatalogNamesLiterally) {
  std::string text = readFile(kExamples + "/location_map.template");
  boost::replace_all(text, "@EXAMPLES@", kExamples);
  const std::string map = (tmp.path() / "location_map").string();
  writeFile(map, text);
  writeFile(tmp.path() / "bin" / "tbl2flat.exe",
            "#!/bin/sh\nwhile [ $# -gt 0 ]; do [ \"$1\" = -i ] && printf '[%s]\\n' \"$2\"; shift; done\n");
  fs::permissions(tmp.path() / "bin" / "tbl2flat.exe", fs::owner_all);
  host.setLibrary(kExamples);
  host.setService("get qlln installation path", tmp.str());
  host.setService("get rig install bin", tmp.str() + "/bin");
  const std::string pwned = (tmp.path() / "PWNED").string();
  std::string list, expected;
  for (const char* form :
       {"q\";touch @;\"", "a\\b", "$(touch @)", "`touch @`", "a;touch @", "a&touch @&", "a|touch @"}) {
    const std::string catalog = boost::replace_all_copy(std::string(form), "@", pwned);
    list += catalog + "\n";
    expected += "[" + kExamples + "/catalogs/" + boost::replace_all_copy(catalog, "\\", "/") + "]\n";
  }
  writeFile(config / "catalog.list", list);
  EXPECT_TRUE(NComponent::saveCatalogs("CORP_LIB", map, kExamples));
  EXPECT_EQ(boost::replace_all_copy(readFile(log / "tbl2flat.log"), "\n\n", "\n"), expected);
  EXPECT_FALSE(fs::exists(pwned));
  EXPECT_TRUE(host.texts("translation", "ERROR").empty());
}

// A library root with a blank and a '$': no false warnings, plain names.
struct QuotedRoot : StartedHostTest {};

TEST_F(QuotedRoot, EvaluationAndContainersUseThePlainPaths) {
  const fs::path lib = tmp.path() / "my $lib";
  for (const char* dir : {"components/a", "components/b", "geoms/tht", "geoms/smd", "catalogs"})
    fs::create_directories(lib / dir);
  host.setLibrary(lib.string());
  writeFile(tmp.path() / "map", "QRN_LOCATION_MAP_1\n$LIB\n" + lib.string() + "\n");
  writeFile(lib / "vlt_library_definition.library_definition",
            "released \"MAIN\" {\n  A $LIB/components/a -qrn_component\n  B $LIB/components/b -qrn_component\n"
            "  G $LIB/geoms -qrn_geom\n  C $LIB/catalogs -qrn_catalog\n}\n");
  host.clearRecords();
  NVlt2HrwHelpers::TVLTLibrary library;
  ASSERT_TRUE(NVlt2HrwHelpers::evaluateVLTLibrary(library, tmp.path() / "map",
                                                  lib / "vlt_library_definition.library_definition", "MAIN", true));
  EXPECT_EQ(library.commonGeomPath, "\"" + lib.string() + "/geoms\"");
  EXPECT_TRUE(host.texts("translation", "WARN").empty());
  std::list<std::string> containers;
  ASSERT_TRUE(NVlt2HrwHelpers::buildGeometryContainerList(containers, lib / "geoms"));
  containers.sort();
  EXPECT_EQ(containers, (std::list<std::string>{"smd", "tht"}));
  // A soft prefix that is no expression is replaced as text.
  const NComponent::NCatalog::NeutralCatalogs catalogs({{"$A)B", "/hard"}, {"$LIB", "/lib"}});
  EXPECT_EQ(catalogs.replaceSoftPrefixes("$A)B\\x"), "/hard/x");
  EXPECT_EQ(catalogs.replaceSoftPrefixes("$LIB/y"), "/lib/y");
}

}  // namespace
