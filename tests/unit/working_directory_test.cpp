// create_wdir, the VALUE_VLT property numbering and prepare_target_cl.

#include "components/hpp/working_directory.hpp"

#include <gtest/gtest.h>

#include <boost/filesystem.hpp>
#include <cstdlib>

#include "common/path_helpers.hpp"
#include "components/hpp/component.hpp"
#include "components/hpp/misc.hpp"
#include "components/hpp/script_functions.hpp"
#include "support/fake_host.hpp"
#include "support/golden.hpp"

using namespace vlttest;
using NVlt2HrwHelpers::insertValueVltProperty;
using NVlt2HrwHelpers::valueVltPropertyLine;
namespace fs = boost::filesystem;

namespace {

std::string textProp(int n, const std::string& name) {
  return "*TEXTPROP " + std::to_string(n) + " CELL 132 \".*\" 1 \"" + name +
         "\" 0.080in INVISIBLE SINGLE TEMPLATE \"engineering\" 6 3 3 1 1 1";
}

TLines props(int from, int to) {
  TLines out;
  for (int n = from; n <= to; ++n) out.push_back(textProp(n, "p"));
  return out;
}
TLines operator+(TLines first, const TLines& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

TEST(ValueVltProperty, TakesTheFirstFreeNumberBeforeTheFirstGreaterPropertyLine) {
  const std::string v221 = valueVltPropertyLine(221), bad = "*TEXTPROP 99999999999999999999 CELL x";
  struct TCase {
    TLines in;
    int number;
    TLines out;
  };
  const std::vector<TCase> cases = {
      // The first range full: 457, before the next greater number.
      {props(221, 255) + TLines{textProp(600, "later"), "*END"}, 457,
       props(221, 255) + TLines{valueVltPropertyLine(457), textProp(600, "later"), "*END"}},
      // Nothing greater: appended at the end.
      {{textProp(1, "a"), textProp(20, "b"), "*END"}, 221, {textProp(1, "a"), textProp(20, "b"), "*END", v221}},
      // All free numbers taken: 2048.
      {props(221, 255) + props(457, 511) + props(1025, 2047), 2048,
       props(221, 255) + props(457, 511) + props(1025, 2047) + TLines{valueVltPropertyLine(2048)}},
      // The first greater line wins, even out of order.
      {{textProp(300, "x"), textProp(220, "y")}, 221, {v221, textProp(300, "x"), textProp(220, "y")}},
      // Only whole *TEXTPROP lines count; tabs are white space.
      {{"*NUMPROP 221 CELL \"Height\"", " *TEXTPROP 221 CELL x", "*TEXTPROP 221", "*TEXTPROP\t222\tCELL",
        "*textprop 223 CELL", "*TEXTPROP 22x CELL"},
       221,
       {"*NUMPROP 221 CELL \"Height\"", " *TEXTPROP 221 CELL x", "*TEXTPROP 221", v221, "*TEXTPROP\t222\tCELL",
        "*textprop 223 CELL", "*TEXTPROP 22x CELL"}},
      // A number that does not convert is copied (and reported below).
      {{textProp(221, "a"), bad, textProp(230, "b")},
       222,
       {textProp(221, "a"), bad, valueVltPropertyLine(222), textProp(230, "b")}},
      // Carriage returns stay; an empty file gets the line.
      {{"*UNITS INCH\r", textProp(300, "x") + "\r"}, 221, {"*UNITS INCH\r", v221, textProp(300, "x") + "\r"}},
      {{}, 221, {v221}}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.out.back());
    auto placed = insertValueVltProperty(c.in);
    EXPECT_EQ(placed.number, c.number);
    EXPECT_EQ(placed.lines, c.out);
    EXPECT_EQ(placed.invalid, c.number == 222 ? TLines{bad} : TLines{});
  }
}

// The form with blanks is in the create_wdir logs below.
TEST(SeedCommandLine, LeavesPathsWithoutBlanksUnquoted) {
  EXPECT_EQ(NVlt2HrwHelpers::seedCommandLine("/b/libforge.exe", "/w/s/Library.zpc", "/w/l/i.log", "/w/l/o.log"),
            "cmd /c \\b\\libforge.exe -CreateSeed -zpcpath=/w/s/Library.zpc -log=/w/l/i.log > \\w\\l\\o.log 2>>&1");
}

struct CreateWDirTest : StartedHostTest {
  fs::path wdir() const { return tmp.path() / "work dir"; }
  bool create() { return NComponent::CreateWDir(wdir().string()); }
  std::vector<std::pair<std::string, std::string>> placeholders() const {
    return {{VLT_TOOLS_DIR, "$TOOLS"}, {tmp.str(), "$TMP"}};
  }
  // Every message of create_wdir goes to the initialization logger alone.
  void expectInitOnly() {
    EXPECT_TRUE(host.lines("translation").empty());
    EXPECT_TRUE(host.lines("component").empty());
    EXPECT_EQ(host.opened(), 0);
  }
};

TEST_F(CreateWDirTest, MissingTemplatesStopsAfterTheDirectories) {
  CTempDir component;
  writeFile(component.path() / "config_vlt2hrw_main.xml", "<rig/>");
  host.release();
  host.componentDirectory() = component.str();
  ASSERT_TRUE(host.start());
  host.clearRecords();
  EXPECT_FALSE(create());
  for (const char* dir : {"config", "log", "log/reports", "reports", "neutral"})
    EXPECT_TRUE(fs::is_directory(wdir() / dir)) << dir;
  EXPECT_FALSE(fs::exists(wdir() / "seed_library"));
  expectGolden("CreateWDirTest.MissingTemplatesStopsAfterTheDirectories", host.lines(),
               {{component.str(), "$COMPONENT"}, {tmp.str(), "$TMP"}});
  expectInitOnly();
}

TEST_F(CreateWDirTest, MissingHostServicesEndWithFatalColonMessagesAndFileSystemErrorsRaise) {
  host.failService("get component initialization logger");
  EXPECT_FALSE(create());
  EXPECT_TRUE(host.records().empty());
  EXPECT_FALSE(fs::exists(wdir()));
  host.failService("get component initialization logger", false);
  host.clearService("get config");
  EXPECT_FALSE(create());
  EXPECT_EQ(host.texts("init", "FATAL"), (TLines{"Cannot obtain path to the configuration directory: "}));
  host.setService("get config", "cfg");
  for (const std::string name : {"log", "neutral"}) {
    host.clearRecords();
    host.failService("get " + name);
    EXPECT_FALSE(create());
    EXPECT_EQ(host.texts("init", "FATAL"), (TLines{"Cannot obtain path to the " + name + " directory: "}));
    host.failService("get " + name, false);
  }
  EXPECT_TRUE(fs::is_directory(wdir() / "cfg"));
  EXPECT_TRUE(fs::is_directory(wdir() / "reports"));  // made before the neutral name is asked for
  EXPECT_FALSE(fs::exists(wdir() / "neutral"));
  expectInitOnly();
  // File-system errors raise: a missing parent, a file where a directory belongs.
  fs::remove_all(wdir());
  host.clearRecords();
  EXPECT_THROW(NComponent::CreateWDir((tmp.path() / "no parent" / "wdir").string()), fs::filesystem_error);
  EXPECT_EQ(host.lines("init"),
            (TLines{"INFO Creating working directory at: " + tmp.str() + "/no parent/wdir",
                    "DEBUG Directory does not exist at: '" + tmp.str() + "/no parent/wdir', so will be created."}));
  EXPECT_FALSE(fs::exists(tmp.path() / "no parent"));
  writeFile(wdir() / "log", "not a directory");
  EXPECT_THROW(create(), fs::filesystem_error);
  EXPECT_EQ(readFile(wdir() / "log"), "not a directory");
}

// The whole road: directories, templates, the seed tool and its two files.

std::string shippedSeedProperties() {
  CTempDir seed;
  EXPECT_EQ(shell("'" + std::string(VLT_TOOLS_DIR) + "/libforge.exe' -CreateSeed -zpcpath='" +
                  (seed.path() / "Library.zpc").string() + "' >/dev/null"),
            0);
  return readFile(seed.path() / "CentLib.prp");
}

// The fresh seed's property file with VALUE_VLT lines inserted before the given lines.
std::string withValueVlt(const std::vector<std::pair<int, std::string>>& inserts) {
  std::string result = shippedSeedProperties();
  for (const auto& insert : inserts) {
    auto at = result.find("\n" + insert.second);
    EXPECT_NE(at, std::string::npos) << insert.second;
    result.insert(at + 1, valueVltPropertyLine(insert.first) + "\n");
  }
  return result;
}

TEST_F(CreateWDirTest, NewTreeWithTemplatesSeedAndItsFiles) {
  ASSERT_TRUE(create());
  for (const char* dir : {"config", "log", "log/reports", "reports", "neutral", "seed_library/SymbolLibs",
                          "seed_library/PartsDBLibs", "seed_library/CellLibs"})
    EXPECT_TRUE(fs::is_directory(wdir() / dir)) << dir;
  EXPECT_FALSE(fs::exists(wdir() / "Library"));
  const fs::path shipped = fs::path(VLT_SHIPPED_DIR) / "templates";
  for (const char* file :
       {"sk2td_symbols_only.cfg", "catalog_val_prop.xml", "excluded_parts.caf", "excluded_symbols.caf",
        "symbol_data_mapping.xml", "geom_technology/technology_list.xml", "geom_technology/default_containers.xml"})
    EXPECT_EQ(readFile(wdir() / "config" / file), readFile(shipped / file)) << file;
  EXPECT_EQ(readFile(wdir() / "seed_library" / "Library.cfg"),
            "SECTION LibraryManager\nKEY FlowType \"TD\"\nKEY FlowVersion \"HX2007\"\nENDSECTION\n");
  EXPECT_EQ(readFile(wdir() / "seed_library" / "CentLib.prp"), withValueVlt({{223, "*TEXTPROP 224 "}}));
  EXPECT_TRUE(fs::is_regular_file(wdir() / "seed_library" / "Library.zpc"));
  expectGolden("CreateWDirTest.NewTreeWithTemplatesSeedAndItsFiles.libforge",
               {readFile(wdir() / "log" / "libforge.log")}, placeholders());
  EXPECT_TRUE(fs::is_regular_file(wdir() / "log" / "libforge_int.log"));
  expectGolden("CreateWDirTest.NewTreeWithTemplatesSeedAndItsFiles", host.lines(), placeholders());
  expectInitOnly();
}

TEST_F(CreateWDirTest, ExistingTreeKeepsUserFilesRestoresTemplatesAndWarnsOfToolCodes) {
  ASSERT_TRUE(create());
  writeFile(wdir() / "config" / "sk2td_symbols_only.cfg", "[DESIGN SCALING]\nScale=2.5\n");
  writeFile(wdir() / "config" / "catalog.list", "resistors\n");
  writeFile(wdir() / "Library" / "Library.zpc", "target\n");
  writeFile(wdir() / "neutral" / "c_neut.tlx", "kept\n");
  host.clearRecords();
  ASSERT_TRUE(create());
  EXPECT_EQ(readFile(wdir() / "config" / "sk2td_symbols_only.cfg"),
            readFile(fs::path(VLT_SHIPPED_DIR) / "templates" / "sk2td_symbols_only.cfg"));
  EXPECT_EQ(readFile(wdir() / "config" / "catalog.list"), "resistors\n");
  EXPECT_EQ(readFile(wdir() / "Library" / "Library.zpc"), "target\n");
  EXPECT_EQ(readFile(wdir() / "neutral" / "c_neut.tlx"), "kept\n");
  // The tool writes a fresh property file, so the property is there once.
  EXPECT_EQ(readFile(wdir() / "seed_library" / "CentLib.prp"), withValueVlt({{223, "*TEXTPROP 224 "}}));
  expectGolden("CreateWDirTest.ExistingTreeKeepsUserFilesRestoresTemplatesAndWarnsOfToolCodes", host.lines(),
               placeholders());
  // A non-zero tool code is warned and the run goes on; the old property file gains a second VALUE_VLT.
  host.clearRecords();
  ::setenv("LIBFORGE_FAIL", "exit:3", 1);
  EXPECT_TRUE(create());
  ::unsetenv("LIBFORGE_FAIL");
  EXPECT_EQ(readFile(wdir() / "seed_library" / "CentLib.prp"),
            withValueVlt({{223, "*TEXTPROP 224 "}, {225, "*TEXTPROP 300 "}}));
  EXPECT_EQ(readFile(wdir() / "log" / "libforge.log"),
            "Error: libforge.exe failed on request (LIBFORGE_FAIL=exit:3)\n");
  expectGolden("CreateWDirTest.ExistingTreeKeepsUserFilesRestoresTemplatesAndWarnsOfToolCodes.toolCode", host.lines(),
               placeholders());
}

TEST_F(CreateWDirTest, ToolThatCannotRunOrLibraryCfgThatCannotBeWrittenFails) {
  CTempDir emptyBin;
  host.setService("get rig install bin", emptyBin.str());
  EXPECT_FALSE(create());
  expectGolden("CreateWDirTest.ToolThatCannotRunOrLibraryCfgThatCannotBeWrittenFails", host.lines(),
               {{emptyBin.str(), "$BIN"}, {tmp.str(), "$TMP"}});
  EXPECT_NE(readFile(wdir() / "log" / "libforge.log").find("is not recognized"), std::string::npos);
  // Library.cfg is written before the property file is read.
  EXPECT_TRUE(fs::is_regular_file(wdir() / "seed_library" / "Library.cfg"));
  // A Library.cfg that cannot be written stops before the property.
  host.setService("get rig install bin", VLT_TOOLS_DIR);
  fs::remove(wdir() / "seed_library" / "Library.cfg");
  fs::create_directories(wdir() / "seed_library" / "Library.cfg");
  host.clearRecords();
  EXPECT_FALSE(create());
  EXPECT_EQ(host.texts("init", "ERROR"),
            (TLines{"Cannot open Library.cfg file for writing: '" + wdir().string() + "/seed_library/Library.cfg'."}));
  EXPECT_EQ(readFile(wdir() / "seed_library" / "CentLib.prp"), shippedSeedProperties());
}

TEST_F(CreateWDirTest, PropertyLinesThatDoNotConvertAreWarned) {
  // A tool that leaves a property file of its own.
  CTempDir bin;
  writeFile(bin.path() / "CentLib.prp", "*TEXTPROP 221 CELL a\n*TEXTPROP 123456789012 CELL b\n*TEXTPROP 300 CELL c\n");
  writeFile(bin.path() / "libforge.exe",
            "#!/bin/sh\nfor a in \"$@\"; do case $a in -zpcpath=*) z=${a#-zpcpath=};; esac; done\n"
            "cp '" +
                (bin.path() / "CentLib.prp").string() + "' \"$(dirname \"$z\")/CentLib.prp\"\n");
  fs::permissions(bin.path() / "libforge.exe", fs::owner_all);
  host.setService("get rig install bin", bin.str());
  EXPECT_TRUE(create());
  EXPECT_EQ(host.texts("init", "WARN"),
            (TLines{"Probably invalid property definition. Line: *TEXTPROP 123456789012 CELL b"}));
  EXPECT_EQ(
      readFile(wdir() / "seed_library" / "CentLib.prp"),
      "*TEXTPROP 221 CELL a\n*TEXTPROP 123456789012 CELL b\n" + valueVltPropertyLine(222) + "\n*TEXTPROP 300 CELL c\n");
}

struct PrepareTargetTest : StartedHostTest {
  fs::path seed() const { return tmp.path() / "seed_library"; }
  fs::path target() const { return tmp.path() / "Library"; }
  const std::string kPreparing = "DEBUG Preparing target Central Library.";
  void SetUp() override {
    StartedHostTest::SetUp();
    host.setLibrary(tmp.str());
    writeFile(seed() / "Library.zpc", "*ZPC_INDEX 1\n");
    writeFile(seed() / "CentLib.prp", "*END\n");
    fs::create_directories(seed() / "SymbolLibs");
  }
};

TEST_F(PrepareTargetTest, CopiesTheSeedAndAgainWhenTheIndexIsGone) {
  EXPECT_TRUE(NComponent::prepareTargetCL());
  EXPECT_EQ(readFile(target() / "Library.zpc"), "*ZPC_INDEX 1\n");
  EXPECT_EQ(readFile(target() / "CentLib.prp"), "*END\n");
  EXPECT_TRUE(fs::is_directory(target() / "SymbolLibs"));
  EXPECT_FALSE(fs::exists(target() / "seed_library"));
  EXPECT_EQ(host.lines(), (TLines{"translation " + kPreparing, "component " + kPreparing}));
  // Without the index a second call copies again, into the same directory.
  fs::remove(target() / "Library.zpc");
  writeFile(target() / "SymbolLibs" / "p" / "kept", "x");
  EXPECT_TRUE(NComponent::prepareTargetCL());
  EXPECT_EQ(readFile(target() / "Library.zpc"), "*ZPC_INDEX 1\n");
  EXPECT_EQ(readFile(target() / "SymbolLibs" / "p" / "kept"), "x");
  EXPECT_FALSE(fs::exists(target() / "seed_library"));
}

TEST_F(PrepareTargetTest, FailsWithoutSourceLibraryOrSeed) {
  host.clearService("get library location");
  EXPECT_FALSE(NComponent::prepareTargetCL());
  EXPECT_EQ(host.lines(), (TLines{"translation ERROR Source library location has not been set."}));
  host.setLibrary(tmp.str());
  host.clearRecords();
  fs::remove_all(seed());
  EXPECT_FALSE(NComponent::prepareTargetCL());
  EXPECT_FALSE(fs::exists(target()));
  expectGolden("PrepareTargetTest.FailsWithoutSourceLibraryOrSeed", host.lines(), {{tmp.str(), "$TMP"}});
}

}  // namespace
