// The library definition file parser.

#include <gtest/gtest.h>

#include "components/hpp/vlt_library_cfg.hpp"
#include "support/fake_host.hpp"

using namespace vlttest;
using NVlt2HrwHelpers::TVLTLibraryDefinitionFileLibraries;

namespace {

const char kPrefix[] = "VLT library definition file: ";

struct DefinitionTest : StartedHostTest {
  boost::filesystem::path file;

  void SetUp() override {
    StartedHostTest::SetUp();
    file = tmp.path() / "vlt_library_definition.library_definition";
  }

  TVLTLibraryDefinitionFileLibraries parse(const std::string& text, bool verbose = true) {
    writeFile(file, text);
    TVLTLibraryDefinitionFileLibraries libraries;
    EXPECT_TRUE(NVlt2HrwHelpers::readVLTLibraryDefinition(libraries, file, verbose));
    return libraries;
  }
  std::vector<std::string> warnings() const { return host.texts("translation", "WARN"); }
};

// One library as "type name: label path [options] | ...", for compact checks.
std::string describe(const NVlt2HrwHelpers::TVLTLibraryDefinitionFileLibrary& library) {
  std::string text = library.type + " " + library.name + ":";
  for (const auto& entry : library.entries) {
    text += " " + entry.label + " " + entry.path + " [";
    for (const auto& option : entry.options) text += option + ";";
    text += "]";
  }
  return text;
}

std::vector<std::string> describe(const TVLTLibraryDefinitionFileLibraries& libraries) {
  std::vector<std::string> out;
  for (const auto& library : libraries) out.push_back(describe(library));
  return out;
}

TEST_F(DefinitionTest, WellFormedFileWithDumpOnBothSinks) {
  auto libraries = parse(
      "// libraries of the site\n"
      "released \"CORP_LIB\" {\n"
      "    COMPS   $LIB_ROOT/components   -qrn_component\n"
      "    GEOMS   $LIB_ROOT/geoms        -qrn_geom -zeta -qrn_geom -alpha\n"
      "    CATS    \"$LIB_ROOT/cat logs\"     -qrn_catalog\n"
      "    \"MAPS X\"    $LIB_ROOT/maps\n"
      "}\n");
  EXPECT_EQ(describe(libraries),
            (std::vector<std::string>{"released CORP_LIB: COMPS $LIB_ROOT/components [qrn_component;] GEOMS "
                                      "$LIB_ROOT/geoms [alpha;qrn_geom;zeta;] CATS \"$LIB_ROOT/cat logs\" "
                                      "[qrn_catalog;] \"MAPS X\" $LIB_ROOT/maps []"}));
  const std::vector<std::string> expected{"INFO Reading VLT library definition file: " + file.string(),
                                          "DEBUG Dumping parsed content of library definition file: " + file.string(),
                                          "DEBUG **Library name: 'CORP_LIB' library type: released",
                                          "DEBUG     Index label: 'COMPS' path to data: $LIB_ROOT/components",
                                          "DEBUG       : qrn_component",
                                          "DEBUG     Index label: 'GEOMS' path to data: $LIB_ROOT/geoms",
                                          "DEBUG       : alpha",
                                          "DEBUG       : qrn_geom",
                                          "DEBUG       : zeta",
                                          "DEBUG     Index label: 'CATS' path to data: \"$LIB_ROOT/cat logs\"",
                                          "DEBUG       : qrn_catalog",
                                          "DEBUG     Index label: '\"MAPS X\"' path to data: $LIB_ROOT/maps",
                                          "DEBUG "};
  EXPECT_EQ(host.lines("translation"), expected);
  EXPECT_EQ(host.lines("component"), expected);
}

TEST_F(DefinitionTest, EmptyFileAndSilentParse) {
  EXPECT_TRUE(parse("").empty());
  EXPECT_EQ(host.lines("translation"),
            (std::vector<std::string>{"INFO Reading VLT library definition file: " + file.string(),
                                      "DEBUG Dumping parsed content of library definition file: " + file.string()}));
  host.clearRecords();
  auto libraries = parse("junk\nreleased \"A\"\nX y\n{\n", false);
  EXPECT_EQ(describe(libraries), (std::vector<std::string>{"released A:"}));
  EXPECT_TRUE(host.records().empty());
}

TEST_F(DefinitionTest, UnclosedLibraryAtEndOfFile) {
  auto libraries = parse("released \"A\" {\n  X $P/x -o\n");
  EXPECT_EQ(describe(libraries), (std::vector<std::string>{"released A: X $P/x [o;]"}));
  EXPECT_EQ(warnings(), (std::vector<std::string>{std::string(kPrefix) +
                                                  "closing bracket not found for last library definition. Assume it "
                                                  "should be there."}));
}

TEST_F(DefinitionTest, HeaderInsideOpenBlockDropsItSilently) {
  auto libraries = parse(
      "released \"A\" {\n"
      "  X x\n"
      "development \"B\" {\n"
      "  Y y\n"
      "}\n");
  EXPECT_EQ(describe(libraries), (std::vector<std::string>{"development B: Y y []"}));
  EXPECT_TRUE(warnings().empty());
}

TEST_F(DefinitionTest, HeaderWordsAndNames) {
  auto libraries = parse(
      "SANDBOX \"x\"\n"
      "{Z z -opt\n"
      "}\n"
      "Source  \"with // inside\" {   \n"
      "} x\n"
      "}\n");
  EXPECT_EQ(describe(libraries), (std::vector<std::string>{"SANDBOX x: Z z [opt;]", "Source with // inside: } x []"}));
  EXPECT_TRUE(warnings().empty());
}

TEST_F(DefinitionTest, NameRunsToTheLastQuote) {
  auto libraries = parse("released \"a\" \"b\" {\n}\n");
  EXPECT_EQ(describe(libraries), (std::vector<std::string>{"released a\" \"b:"}));
  // "}" before any entry is no entry and does not close the block.
  EXPECT_EQ(
      warnings(),
      (std::vector<std::string>{
          std::string(kPrefix) + "invalid entry found in library: a\" \"b; still looking for first entry in the "
                                 "definition block, skipping line #2: }",
          std::string(kPrefix) + "closing bracket not found for last library definition. Assume it should be there."}));
}

TEST_F(DefinitionTest, QuotedLabelSwallowsAQuotedPath) {
  auto libraries = parse("released \"A\" {\n  \"L 1\" \"p 1\" -o\n  \"L 2\" p2 -o }\n");
  EXPECT_EQ(describe(libraries), (std::vector<std::string>{"released A: \"L 1\" \"p 1\" -o [] \"L 2\" p2 [o;]"}));
}

TEST_F(DefinitionTest, CommentsOutsideQuotesOnly) {
  auto libraries = parse(
      "released \"A\" { // the bracket stays\n"
      "  Q \"$P//q\" -o // cut here\n"
      "  U $P/u//cut -x\n"
      "  a//b\n"
      "  -late\n"
      "}\n");
  EXPECT_EQ(describe(libraries), (std::vector<std::string>{"released A: Q \"$P//q\" [o;] U $P/u [late;]"}));
  EXPECT_TRUE(warnings().empty());
}

TEST_F(DefinitionTest, EmptyBlockNeverClosesAndRunsOn) {
  auto libraries = parse(
      "released \"E\"\n"
      "\n"
      "{\n"
      "}\n"
      "X y\n"
      "}\n");
  EXPECT_EQ(describe(libraries), (std::vector<std::string>{"released E: X y []"}));
  EXPECT_EQ(
      warnings(),
      (std::vector<std::string>{
          std::string(kPrefix) + "invalid entry found in library: E; still looking for first entry in the definition "
                                 "block, skipping line #3: ",
          std::string(kPrefix) + "invalid entry found in library: E; still looking for first entry in the definition "
                                 "block, skipping line #4: }"}));
}

TEST_F(DefinitionTest, ClosingRules) {
  auto libraries = parse(
      "released \"A\" {\n"
      "  X x -o }\n"
      "released \"B\" {\n"
      "  } x\n"
      "  Y y }\n"
      "released \"C\" {\n"
      "  W w\n"
      "  -opt }\n");
  // "} x" is an entry with the label "}", and "Y y }" closes. "-opt }" has
  // two words and so is an entry too: C never closes.
  EXPECT_EQ(describe(libraries), (std::vector<std::string>{"released A: X x [o;]", "released B: } x [] Y y []",
                                                           "released C: W w [] -opt } []"}));
  EXPECT_EQ(warnings(), (std::vector<std::string>{std::string(kPrefix) +
                                                  "closing bracket not found for last library definition. Assume it "
                                                  "should be there."}));
}

TEST_F(DefinitionTest, OptionLinesAndIgnoredLines) {
  auto libraries = parse(
      "released \"A\" {\n"
      "  X x -a\n"
      "  -c\n"
      "  -b -a\n"  // two words: an entry of its own
      "  !!\n"     // one word behind the first entry: dropped silently
      "}\n");
  EXPECT_EQ(describe(libraries), (std::vector<std::string>{"released A: X x [a;c;] -b -a []"}));
  EXPECT_TRUE(warnings().empty());
}

TEST_F(DefinitionTest, WarningsOutsideAndBeforeBlocks) {
  auto libraries = parse(
      "stray line\n"
      "// comment\n"
      "released \"A\"\n"
      "X x\n"
      "{ Y y\n"
      "{Z z\n"
      "}\n");
  // "{ Y y" opens the block; the blank left in front keeps " Y y" from
  // being an entry. Once the block is open, "{Z" is a label.
  EXPECT_EQ(describe(libraries), (std::vector<std::string>{"released A: {Z z []"}));
  EXPECT_EQ(warnings(),
            (std::vector<std::string>{
                std::string(kPrefix) + "unknown entry - skipping line #1: stray line",
                std::string(kPrefix) +
                    "opening bracket not found for library: A; still looking for it and skipping line #4: X x",
                std::string(kPrefix) +
                    "invalid entry found in library: A; still looking for first entry in the definition block, "
                    "skipping line #5:  Y y"}));
}

TEST_F(DefinitionTest, InheritedFirstEntryFlagDropsOrphanOptions) {
  // The unclosed block of A leaves its first-entry flag to B: the option
  // line finds no entry in B and goes nowhere, and nothing is warned.
  auto libraries = parse(
      "released \"A\" {\n"
      "  X x\n"
      "released \"B\" {\n"
      "  -lost\n"
      "  Y y -kept }\n");
  EXPECT_EQ(describe(libraries), (std::vector<std::string>{"released B: Y y [kept;]"}));
  EXPECT_TRUE(warnings().empty());
}

TEST_F(DefinitionTest, AppendsAndDumpsEarlierLibrariesToo) {
  TVLTLibraryDefinitionFileLibraries libraries;
  libraries.push_back({"source", "OLD", {}});
  writeFile(file, "released \"NEW\" {\n X x }\n");
  ASSERT_TRUE(NVlt2HrwHelpers::readVLTLibraryDefinition(libraries, file, true));
  EXPECT_EQ(describe(libraries), (std::vector<std::string>{"source OLD:", "released NEW: X x []"}));
  EXPECT_TRUE(host.logged("translation", "DEBUG", "**Library name: 'OLD' library type: source"));
}

TEST_F(DefinitionTest, UnreadableFileKeepsTheList) {
  TVLTLibraryDefinitionFileLibraries libraries;
  libraries.push_back({"source", "OLD", {}});
  const auto missing = tmp.path() / "missing";
  EXPECT_FALSE(NVlt2HrwHelpers::readVLTLibraryDefinition(libraries, missing, false));
  EXPECT_FALSE(NVlt2HrwHelpers::readVLTLibraryDefinition(libraries, tmp.path(), false));
  EXPECT_EQ(libraries.size(), 1u);
  EXPECT_EQ(host.lines("translation"),
            (std::vector<std::string>{"ERROR VLT library definition file: cannot read the file: " + missing.string(),
                                      "ERROR VLT library definition file: cannot read the file: " + tmp.str()}));
}

TEST_F(DefinitionTest, NeedsTheWorkingDirectory) {
  writeFile(file, "released \"A\" {\n X x }\n");
  host.clearService("get wdir");
  TVLTLibraryDefinitionFileLibraries libraries;
  EXPECT_FALSE(NVlt2HrwHelpers::readVLTLibraryDefinition(libraries, file, true));
  EXPECT_TRUE(libraries.empty());
  EXPECT_EQ(host.lines(), (std::vector<std::string>{"translation ERROR Working directory has not been set."}));
}

}  // namespace
