// Hostile names: every path on a ksh line reaches the tool as it stands, and
// a library root that needs quotes gives plain container names and no false
// warnings.

#include <gtest/gtest.h>

#include <algorithm>
#include <boost/algorithm/string/replace.hpp>
#include <sstream>

#include "common/path_helpers.hpp"
#include "components/hpp/geometry_helpers.hpp"
#include "components/hpp/neutral_catalogs.hpp"
#include "components/hpp/script_functions.hpp"
#include "components/hpp/vlt_library_cfg.hpp"
#include "core/hpp/impl/run_program.hpp"
#include "support/fake_host.hpp"

namespace fs = boost::filesystem;
using namespace vlttest;
using rig_common::toUnixPath;

namespace {

const std::string kExamples = std::string(VLT_SOURCE_DIR) + "/examples";
using TLines = std::vector<std::string>;

TLines fileLines(const fs::path& file) {
  TLines lines;
  std::istringstream in(readFile(file));
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

// A stand-in tool that prints each argument in brackets, one a line.
fs::path argumentPrinter(const fs::path& dir) {
  fs::create_directories(dir);
  const fs::path tool = dir / "tbl2flat.exe";
  writeFile(tool, "#!/bin/sh\nfor a in \"$@\"; do printf '[%s]\\n' \"$a\"; done\n");
  fs::permissions(tool, fs::owner_all);
  return tool;
}

TEST(KshPaths, QuotingOfEveryCharacterThatKshReads) {
  EXPECT_EQ(toUnixPath("/lib/q\";touch PWNED;\""), "\"/lib/q\\\";touch PWNED;\\\"\"");
  EXPECT_EQ(toUnixPath("/lib/a|b"), "\"/lib/a|b\"");
  EXPECT_EQ(toUnixPath("/lib/a\nb"), "\"/lib/a\nb\"");
  EXPECT_EQ(toUnixPath("~x/*"), "\"~x/*\"");
  // Unchanged: plain paths, '$' and backquote (the process layer escapes
  // them), the traditional quoting, already quoted text.
  EXPECT_EQ(toUnixPath("C:\\lib\\a$b`c~"), "C:/lib/a$b`c~");
  EXPECT_EQ(toUnixPath("/my lib/x=1"), "\"/my lib/x=1\"");
  EXPECT_EQ(toUnixPath("\"/my lib\""), "\"/my lib\"");
  EXPECT_EQ(toUnixPath("/lib/a\"b", false), "/lib/a\"b");
  EXPECT_EQ(rig_common::unquoteUnixPath("\"/lib/q\\\";x\""), "/lib/q\";x");
  EXPECT_EQ(rig_common::unquoteUnixPath("\"/p q"), "/p q");
}

// A symbol directory named with each character, on a ksh line as the symbol
// steps write it: the tool gets the literal name, nothing else runs.
TEST(KshPaths, DirectoriesWithEveryCharacterReachTheTool) {
  CFakeHost host;
  CTempDir tmp;
  const fs::path tool = argumentPrinter(tmp.path() / "bin");
  const std::string pwned = (tmp.path() / "PWNED").string();
  const TLines names = {"q\";touch " + pwned + ";\"",
                        "a\\b",
                        "$(touch " + pwned + ")",
                        "`touch " + pwned + "`",
                        "a;touch " + pwned,
                        "a&touch " + pwned + "&",
                        "a|touch " + pwned,
                        "a\ntouch " + pwned,
                        "tab\there",
                        "*",
                        "{a,b}",
                        "~root"};
  const fs::path log = tmp.path() / "tool.log";
  TLines expected;
  for (const std::string& name : names) {
    const fs::path dir = tmp.path() / "symbols" / name;
    fs::create_directories(dir);
    NMisc::CRunProgram<std::string> run(host.logger("get component translation logger"));
    const std::string line =
        "ksh -c \"" + toUnixPath(tool) + " -p " + toUnixPath(dir) + " >> " + toUnixPath(log) + " 2>&1\"";
    ASSERT_TRUE(run.runProgram(line, true, NMisc::kCreateNoWindow)) << name;
    EXPECT_EQ(run.exitCode(), 0u) << name;
    std::string literal = dir.string();
    std::replace(literal.begin(), literal.end(), '\\', '/');  // the path form of ksh lines
    expected.push_back("[-p]");
    expected.push_back("[" + literal + "]");
  }
  std::string text = readFile(log);
  EXPECT_EQ(text, [&] {
    std::string all;
    for (const auto& line : expected) all += line + "\n";
    return all;
  }());
  EXPECT_FALSE(fs::exists(pwned));
}

// The catalog step with catalogs named with each character: every run goes
// on, the tool gets each name as it stands.
TEST(KshPaths, SaveCatalogsPassesHostileCatalogNamesLiterally) {
  CFakeHost host;
  CTempDir tmp;
  const fs::path wdir = tmp.path() / "wdir";
  for (const char* dir : {"config", "log/reports", "neutral/catalogs"}) fs::create_directories(wdir / dir);
  std::string text = readFile(kExamples + "/location_map.template");
  boost::replace_all(text, "@EXAMPLES@", kExamples);
  const std::string map = (tmp.path() / "location_map").string();
  writeFile(map, text);
  ASSERT_TRUE(host.start());
  host.setWdir(wdir.string());
  host.setLibrary(kExamples);
  host.setService("get qlln installation path", tmp.str());
  host.setService("get rig install bin", argumentPrinter(tmp.path() / "bin").parent_path().string());
  const std::string pwned = (tmp.path() / "PWNED").string();
  const TLines catalogs = {"q\";touch " + pwned + ";\"",
                           "a\\b",
                           "$(touch " + pwned + ")",
                           "`touch " + pwned + "`",
                           "a;touch " + pwned,
                           "a&touch " + pwned + "&",
                           "a|touch " + pwned};
  std::string list;
  for (const auto& catalog : catalogs) list += catalog + "\n";
  writeFile(wdir / "config" / "catalog.list", list);
  EXPECT_TRUE(NComponent::saveCatalogs("CORP_LIB", map, kExamples));
  const TLines lines = fileLines(wdir / "log" / "tbl2flat.log");
  TLines inputs;
  for (size_t i = 0; i + 1 < lines.size(); ++i)
    if (lines[i] == "[-i]") inputs.push_back(lines[i + 1]);
  TLines expected;
  for (std::string catalog : catalogs) {
    std::replace(catalog.begin(), catalog.end(), '\\', '/');
    expected.push_back("[" + kExamples + "/catalogs/" + catalog + "]");
  }
  EXPECT_EQ(inputs, expected);
  EXPECT_FALSE(fs::exists(pwned));
  EXPECT_TRUE(host.texts("translation", "ERROR").empty());
  host.release();
}

TEST(SoftPrefixes, PrefixThatIsNoExpressionIsReplacedAsText) {
  const NComponent::NCatalog::NeutralCatalogs catalogs({{"$A)B", "/hard"}, {"$LIB", "/lib"}});
  EXPECT_EQ(catalogs.replaceSoftPrefixes("$A)B\\x"), "/hard/x");
  EXPECT_EQ(catalogs.replaceSoftPrefixes("$LIB/y"), "/lib/y");
}

// A library root with a blank and a '$': no false warnings, plain names.
TEST(QuotedRoot, EvaluationAndContainersUseThePlainPaths) {
  CFakeHost host;
  CTempDir tmp;
  ASSERT_TRUE(host.start());
  host.setWdir(tmp.str());
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
  host.release();
}

}  // namespace
