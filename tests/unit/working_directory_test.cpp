// create_wdir, directory creation, the VALUE_VLT property numbering and
// prepare_target_cl.

#include "components/hpp/working_directory.hpp"

#include <gtest/gtest.h>

#include <boost/filesystem.hpp>
#include <cstdlib>

#include "common/path_helpers.hpp"
#include "components/hpp/component.hpp"
#include "components/hpp/misc.hpp"
#include "components/hpp/script_functions.hpp"
#include "support/fake_host.hpp"

using namespace vlttest;
using NVlt2HrwHelpers::insertValueVltProperty;
using NVlt2HrwHelpers::valueVltPropertyLine;
namespace fs = boost::filesystem;

namespace {

using TLines = std::vector<std::string>;

std::string textProp(int n, const std::string& name) {
  return "*TEXTPROP " + std::to_string(n) + " CELL 132 \".*\" 1 \"" + name +
         "\" 0.080in INVISIBLE SINGLE TEMPLATE \"engineering\" 6 3 3 1 1 1";
}

// ---- property numbering -------------------------------------------------

TEST(ValueVltProperty, LineIsExact) {
  EXPECT_EQ(valueVltPropertyLine(457),
            "*TEXTPROP 457 CELL 132 \".*\" 1 \"VALUE_VLT\" 0.080in INVISIBLE SINGLE TEMPLATE \"engineering\" 6 3 3 1 "
            "1 1");
}

TEST(ValueVltProperty, FullFirstRangeGives457BeforeTheNextGreaterNumber) {
  TLines lines = {"*UNITS INCH"};
  for (int n = 221; n <= 255; ++n) lines.push_back(textProp(n, "p"));
  lines.push_back(textProp(600, "later"));
  lines.push_back("*END");
  auto placed = insertValueVltProperty(lines);
  EXPECT_EQ(placed.number, 457);
  ASSERT_EQ(placed.lines.size(), lines.size() + 1);
  EXPECT_EQ(placed.lines[36], valueVltPropertyLine(457));
  EXPECT_EQ(placed.lines[37], textProp(600, "later"));
  EXPECT_EQ(placed.lines.back(), "*END");
  EXPECT_TRUE(placed.invalid.empty());
}

TEST(ValueVltProperty, HighestNumberBelowNewOneAppendsAtTheEnd) {
  TLines lines = {textProp(1, "a"), textProp(20, "b"), "*END"};
  auto placed = insertValueVltProperty(lines);
  EXPECT_EQ(placed.number, 221);
  EXPECT_EQ(placed.lines, (TLines{textProp(1, "a"), textProp(20, "b"), "*END", valueVltPropertyLine(221)}));
}

TEST(ValueVltProperty, AllFreeNumbersTakenGives2048AtTheEnd) {
  TLines lines;
  for (int n = 221; n <= 255; ++n) lines.push_back(textProp(n, "p"));
  for (int n = 457; n <= 511; ++n) lines.push_back(textProp(n, "p"));
  for (int n = 1025; n <= 2047; ++n) lines.push_back(textProp(n, "p"));
  auto placed = insertValueVltProperty(lines);
  EXPECT_EQ(placed.number, 2048);
  EXPECT_EQ(placed.lines.back(), valueVltPropertyLine(2048));
  EXPECT_EQ(placed.lines.size(), lines.size() + 1);
}

TEST(ValueVltProperty, FirstGreaterLineWinsEvenOutOfOrder) {
  // 300 then 220: 221 is free and lands before 300.
  auto placed = insertValueVltProperty({textProp(300, "x"), textProp(220, "y")});
  EXPECT_EQ(placed.number, 221);
  EXPECT_EQ(placed.lines, (TLines{valueVltPropertyLine(221), textProp(300, "x"), textProp(220, "y")}));
}

TEST(ValueVltProperty, OnlyWholeTextPropLinesCount) {
  TLines lines = {
      "*NUMPROP 221 CELL \"Height\"",  // another kind of property
      " *TEXTPROP 221 CELL x",         // not at the start
      "*TEXTPROP 221",                 // nothing behind the number
      "*TEXTPROP\t222\tCELL",          // tabs are white space
      "*textprop 223 CELL",            // case counts
      "*TEXTPROP 22x CELL",
  };
  auto placed = insertValueVltProperty(lines);
  EXPECT_EQ(placed.number, 221);
  // 222 is the first property line greater than 221.
  EXPECT_EQ(placed.lines[3], valueVltPropertyLine(221));
  EXPECT_EQ(placed.lines[4], "*TEXTPROP\t222\tCELL");
}

TEST(ValueVltProperty, NumberThatDoesNotConvertIsReportedAndCopied) {
  TLines lines = {textProp(221, "a"), "*TEXTPROP 99999999999999999999 CELL x", textProp(230, "b")};
  auto placed = insertValueVltProperty(lines);
  EXPECT_EQ(placed.invalid, (TLines{"*TEXTPROP 99999999999999999999 CELL x"}));
  EXPECT_EQ(placed.number, 222);
  EXPECT_EQ(placed.lines, (TLines{textProp(221, "a"), "*TEXTPROP 99999999999999999999 CELL x",
                                  valueVltPropertyLine(222), textProp(230, "b")}));
}

TEST(ValueVltProperty, CarriageReturnsStayAndEmptyFileGetsTheLine) {
  auto placed = insertValueVltProperty({"*UNITS INCH\r", textProp(300, "x") + "\r"});
  EXPECT_EQ(placed.lines, (TLines{"*UNITS INCH\r", valueVltPropertyLine(221), textProp(300, "x") + "\r"}));
  EXPECT_EQ(insertValueVltProperty({}).lines, (TLines{valueVltPropertyLine(221)}));
}

// ---- seed command line ----------------------------------------------------

TEST(SeedCommandLine, QuotesPathsWithBlanksByEachForm) {
  EXPECT_EQ(NVlt2HrwHelpers::seedCommandLine("/opt/rig/bin/libforge.exe", "/w d/seed_library/Library.zpc",
                                             "/w d/log/libforge_int.log", "/w d/log/libforge.log"),
            "cmd /c \\opt\\rig\\bin\\libforge.exe -CreateSeed -zpcpath=\"/w d/seed_library/Library.zpc\" "
            "-log=\"/w d/log/libforge_int.log\" > \"\\w d\\log\\libforge.log\" 2>>&1");
  EXPECT_EQ(NVlt2HrwHelpers::seedCommandLine("/b/libforge.exe", "/w/s/Library.zpc", "/w/l/i.log", "/w/l/o.log"),
            "cmd /c \\b\\libforge.exe -CreateSeed -zpcpath=/w/s/Library.zpc -log=/w/l/i.log > \\w\\l\\o.log 2>>&1");
}

// ---- createDirectory --------------------------------------------------------

struct CreateDirectoryTest : ::testing::Test {
  CFakeHost host;
  CTempDir tmp;
  void SetUp() override {
    ASSERT_TRUE(host.start());
    host.clearRecords();
  }
  void TearDown() override { host.release(); }
  log4cxx::LoggerPtr logger() { return NComponent::getInitializationLogger(*NComponent::gComponent); }
};

TEST_F(CreateDirectoryTest, NewThenExisting) {
  const fs::path dir = tmp.path() / "new one";
  EXPECT_TRUE(NVlt2HrwHelpers::createDirectory(dir, logger()));
  EXPECT_TRUE(fs::is_directory(dir));
  EXPECT_TRUE(NVlt2HrwHelpers::createDirectory(dir, logger()));
  EXPECT_EQ(host.lines(),
            (TLines{"init DEBUG Directory does not exist at: '" + dir.string() + "', so will be created.",
                    "init DEBUG Directory already exists at: '" + dir.string() + "', so will not be created."}));
}

TEST_F(CreateDirectoryTest, OneLevelOnly) {
  EXPECT_THROW(NVlt2HrwHelpers::createDirectory(tmp.path() / "a" / "b", logger()), fs::filesystem_error);
  EXPECT_FALSE(fs::exists(tmp.path() / "a"));
}

TEST_F(CreateDirectoryTest, FileInTheWayRaises) {
  writeFile(tmp.path() / "plain", "x");
  EXPECT_THROW(NVlt2HrwHelpers::createDirectory(tmp.path() / "plain", logger()), fs::filesystem_error);
  EXPECT_EQ(readFile(tmp.path() / "plain"), "x");
}

// ---- create_wdir ------------------------------------------------------------

struct CreateWDirTest : ::testing::Test {
  CFakeHost host;
  CTempDir tmp;
  fs::path wdir() const { return tmp.path() / "work dir"; }
  void SetUp() override {
    ASSERT_TRUE(host.start());
    host.clearRecords();
  }
  void TearDown() override { host.release(); }
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

  EXPECT_FALSE(NComponent::CreateWDir(wdir().string()));
  for (const char* dir : {"config", "log", "log/reports", "reports", "neutral"})
    EXPECT_TRUE(fs::is_directory(wdir() / dir)) << dir;
  EXPECT_FALSE(fs::exists(wdir() / "seed_library"));
  EXPECT_EQ(host.texts("init", "FATAL"),
            (TLines{"Template configuration directory does not exist: '" + component.str() + "/templates'"}));
  const TLines expected = {
      "INFO Creating working directory at: " + wdir().string(),
      "DEBUG Directory does not exist at: '" + wdir().string() + "', so will be created.",
      "DEBUG Directory does not exist at: '" + wdir().string() + "/config', so will be created.",
      "DEBUG Directory does not exist at: '" + wdir().string() + "/log', so will be created.",
      "DEBUG Directory does not exist at: '" + wdir().string() + "/log/reports', so will be created.",
      "DEBUG Directory does not exist at: '" + wdir().string() + "/reports', so will be created.",
      "DEBUG Directory does not exist at: '" + wdir().string() + "/neutral', so will be created.",
      "FATAL Template configuration directory does not exist: '" + component.str() + "/templates'"};
  EXPECT_EQ(host.lines("init"), expected);
  expectInitOnly();
}

TEST_F(CreateWDirTest, MissingParentRaisesTheFilesystemError) {
  EXPECT_THROW(NComponent::CreateWDir((tmp.path() / "no parent" / "wdir").string()), fs::filesystem_error);
  EXPECT_EQ(host.lines("init"),
            (TLines{"INFO Creating working directory at: " + tmp.str() + "/no parent/wdir",
                    "DEBUG Directory does not exist at: '" + tmp.str() + "/no parent/wdir', so will be created."}));
}

TEST_F(CreateWDirTest, NoInitializationLoggerFailsSilently) {
  host.failService("get component initialization logger");
  EXPECT_FALSE(NComponent::CreateWDir(wdir().string()));
  EXPECT_TRUE(host.records().empty());
  EXPECT_FALSE(fs::exists(wdir()));
}

TEST_F(CreateWDirTest, HostNamesMissingEndWithFatalColonMessages) {
  host.clearService("get config");
  EXPECT_FALSE(NComponent::CreateWDir(wdir().string()));
  EXPECT_EQ(host.texts("init", "FATAL"), (TLines{"Cannot obtain path to the configuration directory: "}));
  host.setService("get config", "cfg");

  host.clearRecords();
  host.failService("get log");
  EXPECT_FALSE(NComponent::CreateWDir(wdir().string()));
  EXPECT_EQ(host.texts("init", "FATAL"), (TLines{"Cannot obtain path to the log directory: "}));
  EXPECT_TRUE(fs::is_directory(wdir() / "cfg"));
  host.failService("get log", false);

  host.clearRecords();
  host.failService("get neutral");
  EXPECT_FALSE(NComponent::CreateWDir(wdir().string()));
  EXPECT_EQ(host.texts("init", "FATAL"), (TLines{"Cannot obtain path to the neutral directory: "}));
  EXPECT_TRUE(fs::is_directory(wdir() / "reports"));
  EXPECT_FALSE(fs::exists(wdir() / "neutral"));
  expectInitOnly();
}

TEST_F(CreateWDirTest, FileWhereADirectoryBelongsRaises) {
  writeFile(wdir() / "log", "not a directory");
  EXPECT_THROW(NComponent::CreateWDir(wdir().string()), fs::filesystem_error);
  EXPECT_EQ(readFile(wdir() / "log"), "not a directory");
}

// The whole road: directories, templates, the seed tool and its two files.

std::string shippedSeedProperties() {
  CTempDir seed;
  std::string command = "'" + std::string(VLT_TOOLS_DIR) + "/libforge.exe' -CreateSeed -zpcpath='" +
                        (seed.path() / "Library.zpc").string() + "' >/dev/null";
  EXPECT_EQ(std::system(command.c_str()), 0);
  return readFile(seed.path() / "CentLib.prp");
}

// The fresh seed's property file with VALUE_VLT lines inserted before the
// lines that begin with `before`.
std::string withValueVlt(const std::string& prp, const std::vector<std::pair<int, std::string>>& inserts) {
  std::string result = prp;
  for (const auto& insert : inserts) {
    auto at = result.find("\n" + insert.second);
    EXPECT_NE(at, std::string::npos) << insert.second;
    result.insert(at + 1, valueVltPropertyLine(insert.first) + "\n");
  }
  return result;
}

// Sets an environment variable for the children of one test.
struct CEnvironmentGuard {
  CEnvironmentGuard(const char* name, const char* value) : mName(name) { ::setenv(name, value, 1); }
  ~CEnvironmentGuard() { ::unsetenv(mName); }
  const char* mName;
};

std::string seedCommand(const fs::path& wdir) {
  return "cmd /c " + rig_common::toWindowsPath(std::string(VLT_TOOLS_DIR) + "/libforge.exe") +
         " -CreateSeed -zpcpath=\"" + wdir.string() + "/seed_library/Library.zpc\" -log=\"" + wdir.string() +
         "/log/libforge_int.log\" > " + rig_common::toWindowsPath(wdir / "log" / "libforge.log") + " 2>>&1";
}

TEST_F(CreateWDirTest, NewTreeWithTemplatesSeedAndItsFiles) {
  ASSERT_TRUE(NComponent::CreateWDir(wdir().string()));
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
  EXPECT_EQ(readFile(wdir() / "seed_library" / "CentLib.prp"),
            withValueVlt(shippedSeedProperties(), {{223, "*TEXTPROP 224 "}}));
  EXPECT_TRUE(fs::is_regular_file(wdir() / "seed_library" / "Library.zpc"));
  EXPECT_EQ(readFile(wdir() / "log" / "libforge.log"),
            "LibForge: creating seed library: " + wdir().string() +
                "/seed_library\nLibForge: seed library created: " + wdir().string() + "/seed_library/Library.zpc\n");
  EXPECT_TRUE(fs::is_regular_file(wdir() / "log" / "libforge_int.log"));

  // The exact command line, with the working directory's blank quoted in each form.
  EXPECT_TRUE(host.logged("init", "DEBUG", "Create process: " + seedCommand(wdir()))) << seedCommand(wdir());
  TLines init = host.lines("init");
  ASSERT_GE(init.size(), 10u);
  EXPECT_EQ(init[7], "DEBUG Directory does not exist at: '" + wdir().string() + "/seed_library', so will be created.");
  EXPECT_EQ(init[8], "DEBUG Process starter: creating process: '" + seedCommand(wdir()) + "'");
  EXPECT_EQ(init[init.size() - 2], "DEBUG VALUE_VLT property will have number: 223");
  EXPECT_EQ(init.back(), "INFO Working directory successfully created at: " + wdir().string());
  EXPECT_TRUE(host.texts("init", "WARN").empty());
  expectInitOnly();
}

TEST_F(CreateWDirTest, ExistingTreeKeepsUserFilesAndRestoresTemplates) {
  ASSERT_TRUE(NComponent::CreateWDir(wdir().string()));
  writeFile(wdir() / "config" / "sk2td_symbols_only.cfg", "[DESIGN SCALING]\nScale=2.5\n");
  writeFile(wdir() / "config" / "catalog.list", "resistors\n");
  writeFile(wdir() / "Library" / "Library.zpc", "target\n");
  writeFile(wdir() / "neutral" / "c_neut.tlx", "kept\n");
  host.clearRecords();

  ASSERT_TRUE(NComponent::CreateWDir(wdir().string()));
  EXPECT_EQ(readFile(wdir() / "config" / "sk2td_symbols_only.cfg"),
            readFile(fs::path(VLT_SHIPPED_DIR) / "templates" / "sk2td_symbols_only.cfg"));
  EXPECT_EQ(readFile(wdir() / "config" / "catalog.list"), "resistors\n");
  EXPECT_EQ(readFile(wdir() / "Library" / "Library.zpc"), "target\n");
  EXPECT_EQ(readFile(wdir() / "neutral" / "c_neut.tlx"), "kept\n");
  // The tool writes a fresh property file, so the property is there once.
  EXPECT_EQ(readFile(wdir() / "seed_library" / "CentLib.prp"),
            withValueVlt(shippedSeedProperties(), {{223, "*TEXTPROP 224 "}}));
  TLines existing;
  for (const auto& text : host.texts("init", "DEBUG"))
    if (text.rfind("Directory ", 0) == 0) existing.push_back(text);
  TLines expected;
  for (const char* dir : {"", "/config", "/log", "/log/reports", "/reports", "/neutral", "/seed_library"})
    expected.push_back("Directory already exists at: '" + wdir().string() + dir + "', so will not be created.");
  EXPECT_EQ(existing, expected);
}

TEST_F(CreateWDirTest, NonZeroToolCodeIsWarnedAndTheRunGoesOn) {
  ASSERT_TRUE(NComponent::CreateWDir(wdir().string()));
  host.clearRecords();
  {
    CEnvironmentGuard fail("LIBFORGE_FAIL", "exit:3");
    // The tool leaves the old property file: a second VALUE_VLT is added.
    EXPECT_TRUE(NComponent::CreateWDir(wdir().string()));
  }
  EXPECT_EQ(host.texts("init", "WARN"), (TLines{"LibForge found problem(s) during creating seed CL: " +
                                                wdir().string() + "/seed_library. Returned code: 3"}));
  EXPECT_EQ(readFile(wdir() / "seed_library" / "CentLib.prp"),
            withValueVlt(shippedSeedProperties(), {{223, "*TEXTPROP 224 "}, {225, "*TEXTPROP 300 "}}));
  EXPECT_EQ(readFile(wdir() / "log" / "libforge.log"),
            "Error: libforge.exe failed on request (LIBFORGE_FAIL=exit:3)\n");
  EXPECT_TRUE(host.logged("init", "INFO", "Working directory successfully created at: " + wdir().string()));
}

TEST_F(CreateWDirTest, ToolThatCannotRunLeavesNoPropertyFile) {
  CTempDir emptyBin;
  host.setService("get rig install bin", emptyBin.str());
  EXPECT_FALSE(NComponent::CreateWDir(wdir().string()));
  EXPECT_EQ(host.texts("init", "WARN"), (TLines{"LibForge found problem(s) during creating seed CL: " +
                                                wdir().string() + "/seed_library. Returned code: 9009"}));
  EXPECT_EQ(host.texts("init", "ERROR"),
            (TLines{"Cannot read Central Library property file: " + wdir().string() + "/seed_library/CentLib.prp"}));
  EXPECT_NE(readFile(wdir() / "log" / "libforge.log").find("is not recognized"), std::string::npos);
  // Library.cfg is written before the property file is read.
  EXPECT_TRUE(fs::is_regular_file(wdir() / "seed_library" / "Library.cfg"));
  EXPECT_FALSE(host.logged("init", "INFO", "Working directory successfully created at: " + wdir().string()));
}

TEST_F(CreateWDirTest, LibraryCfgThatCannotBeWrittenStopsBeforeTheProperty) {
  fs::create_directories(wdir() / "seed_library" / "Library.cfg");
  EXPECT_FALSE(NComponent::CreateWDir(wdir().string()));
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
  EXPECT_TRUE(NComponent::CreateWDir(wdir().string()));
  EXPECT_EQ(host.texts("init", "WARN"),
            (TLines{"Probably invalid property definition. Line: *TEXTPROP 123456789012 CELL b"}));
  EXPECT_EQ(
      readFile(wdir() / "seed_library" / "CentLib.prp"),
      "*TEXTPROP 221 CELL a\n*TEXTPROP 123456789012 CELL b\n" + valueVltPropertyLine(222) + "\n*TEXTPROP 300 CELL c\n");
}

// ---- prepare_target_cl --------------------------------------------------------

struct PrepareTargetTest : ::testing::Test {
  CFakeHost host;
  CTempDir tmp;
  fs::path seed() const { return tmp.path() / "seed_library"; }
  fs::path target() const { return tmp.path() / "Library"; }
  void SetUp() override {
    ASSERT_TRUE(host.start());
    host.setWdir(tmp.str());
    host.setLibrary(tmp.str());
    writeFile(seed() / "Library.zpc", "*ZPC_INDEX 1\n");
    writeFile(seed() / "CentLib.prp", "*END\n");
    writeFile(seed() / "Library.cfg", "SECTION LibraryManager\n");
    fs::create_directories(seed() / "SymbolLibs");
    host.clearRecords();
  }
  void TearDown() override { host.release(); }
};

TEST_F(PrepareTargetTest, CopiesTheSeedOnce) {
  EXPECT_TRUE(NComponent::prepareTargetCL());
  EXPECT_EQ(readFile(target() / "Library.zpc"), "*ZPC_INDEX 1\n");
  EXPECT_EQ(readFile(target() / "CentLib.prp"), "*END\n");
  EXPECT_TRUE(fs::is_directory(target() / "SymbolLibs"));
  EXPECT_FALSE(fs::exists(target() / "seed_library"));
  EXPECT_EQ(host.lines(), (TLines{"translation DEBUG Preparing target Central Library.",
                                  "component DEBUG Preparing target Central Library."}));

  // Later steps fill the library in place; a second call leaves it alone.
  writeFile(target() / "Library.zpc", "*ZPC_INDEX 1\n*PARTITION symbol p\n");
  writeFile(seed() / "CentLib.prp", "changed seed\n");
  host.clearRecords();
  EXPECT_TRUE(NComponent::prepareTargetCL());
  EXPECT_EQ(readFile(target() / "Library.zpc"), "*ZPC_INDEX 1\n*PARTITION symbol p\n");
  EXPECT_EQ(readFile(target() / "CentLib.prp"), "*END\n");
  const std::string skip = "Preparing target Central Library: ZPC index file exists, so we will skipping this step: " +
                           (target() / "Library.zpc").string();
  EXPECT_EQ(host.lines(), (TLines{"translation DEBUG Preparing target Central Library.",
                                  "component DEBUG Preparing target Central Library.", "translation INFO " + skip,
                                  "component INFO " + skip}));
}

TEST_F(PrepareTargetTest, RemovedIndexMakesItCopyAgainIntoTheSameDirectory) {
  EXPECT_TRUE(NComponent::prepareTargetCL());
  fs::remove(target() / "Library.zpc");
  writeFile(target() / "SymbolLibs" / "p" / "kept", "x");
  EXPECT_TRUE(NComponent::prepareTargetCL());
  EXPECT_EQ(readFile(target() / "Library.zpc"), "*ZPC_INDEX 1\n");
  EXPECT_EQ(readFile(target() / "SymbolLibs" / "p" / "kept"), "x");
  EXPECT_FALSE(fs::exists(target() / "seed_library"));
}

TEST_F(PrepareTargetTest, MissingSeedShowsAsFailedCopy) {
  fs::remove_all(seed());
  EXPECT_FALSE(NComponent::prepareTargetCL());
  EXPECT_FALSE(fs::exists(target()));
  const std::string error = "Preparing target Central Library: Cannot copy seed library from: " + seed().string() +
                            " to: " + target().string();
  EXPECT_EQ(host.texts("translation", "ERROR"), (TLines{error}));
  EXPECT_EQ(host.texts("component", "ERROR"), (TLines{error}));
}

TEST_F(PrepareTargetTest, NeedsWdirAndSourceLibrary) {
  host.clearService("get library location");
  EXPECT_FALSE(NComponent::prepareTargetCL());
  EXPECT_EQ(host.lines(), (TLines{"translation ERROR Source library location has not been set."}));
  EXPECT_FALSE(fs::exists(target()));
}

}  // namespace
