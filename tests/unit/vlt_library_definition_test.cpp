// The library definition file parser.

#include <gtest/gtest.h>

#include "components/hpp/vlt_library_cfg.hpp"
#include "support/fake_host.hpp"
#include "support/golden.hpp"

using namespace vlttest;
using NVlt2HrwHelpers::TVLTLibraryDefinitionFileLibraries;

namespace {

const char kPrefix[] = "VLT library definition file: ";

struct DefinitionTest : StartedHostTest {
  boost::filesystem::path file = tmp.path() / "vlt_library_definition.library_definition";

  TVLTLibraryDefinitionFileLibraries parse(const std::string& text, bool verbose = true) {
    writeFile(file, text);
    TVLTLibraryDefinitionFileLibraries libraries;
    EXPECT_TRUE(NVlt2HrwHelpers::readVLTLibraryDefinition(libraries, file, verbose));
    return libraries;
  }
  TLines warnings() const { return host.texts("translation", "WARN"); }
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

TLines describe(const TVLTLibraryDefinitionFileLibraries& libraries) {
  TLines out;
  for (const auto& library : libraries) out.push_back(describe(library));
  return out;
}

TEST_F(DefinitionTest, WellFormedFileWithDumpOnBothSinks) {
  auto libraries = parse(
      "// libraries of the site\nreleased \"CORP_LIB\" {\n    COMPS   $LIB_ROOT/components   -qrn_component\n"
      "    GEOMS   $LIB_ROOT/geoms        -qrn_geom -zeta -qrn_geom -alpha\n"
      "    CATS    \"$LIB_ROOT/cat logs\"     -qrn_catalog\n    \"MAPS X\"    $LIB_ROOT/maps\n}\n");
  EXPECT_EQ(describe(libraries), (TLines{"released CORP_LIB: COMPS $LIB_ROOT/components [qrn_component;] GEOMS "
                                         "$LIB_ROOT/geoms [alpha;qrn_geom;zeta;] CATS \"$LIB_ROOT/cat logs\" "
                                         "[qrn_catalog;] \"MAPS X\" $LIB_ROOT/maps []"}));
  // The dump: options sorted and unique, quotes kept, the same on both sinks.
  expectGolden("DefinitionTest.WellFormedFileWithDumpOnBothSinks", host.lines(), {{tmp.str(), "$TMP"}});
}

TEST_F(DefinitionTest, EmptyFileSilentParseAppendingAndUnreadableFiles) {
  EXPECT_TRUE(parse("").empty());
  EXPECT_EQ(host.lines("translation"),
            (TLines{"INFO Reading VLT library definition file: " + file.string(),
                    "DEBUG Dumping parsed content of library definition file: " + file.string()}));
  host.clearRecords();
  auto libraries = parse("junk\nreleased \"A\"\nX y\n{\n", false);
  EXPECT_EQ(describe(libraries), (TLines{"released A:"}));
  EXPECT_TRUE(host.records().empty());

  // The list is appended to; unreadable files and a missing working directory leave it as it was.
  libraries = {{"source", "OLD", {}}};
  writeFile(file, "released \"NEW\" {\n X x }\n");
  ASSERT_TRUE(NVlt2HrwHelpers::readVLTLibraryDefinition(libraries, file, true));
  EXPECT_EQ(describe(libraries), (TLines{"source OLD:", "released NEW: X x []"}));
  EXPECT_TRUE(host.logged("translation", "DEBUG", "**Library name: 'OLD' library type: source"));
  host.clearRecords();
  const auto missing = tmp.path() / "missing";
  EXPECT_FALSE(NVlt2HrwHelpers::readVLTLibraryDefinition(libraries, missing, false));
  EXPECT_FALSE(NVlt2HrwHelpers::readVLTLibraryDefinition(libraries, tmp.path(), false));
  host.clearService("get wdir");
  EXPECT_FALSE(NVlt2HrwHelpers::readVLTLibraryDefinition(libraries, file, true));
  EXPECT_EQ(libraries.size(), 2u);
  expectGolden("DefinitionTest.EmptyFileSilentParseAppendingAndUnreadableFiles", host.lines(), {{tmp.str(), "$TMP"}});
}

// The parse of odd files: libraries as described, and the warnings.
TEST_F(DefinitionTest, OddFiles) {
  const std::string unclosed =
      kPrefix + std::string("closing bracket not found for last library definition. Assume it should be there.");
  const auto noFirstEntry = [](const std::string& library, const std::string& line) {
    return kPrefix + std::string("invalid entry found in library: ") + library +
           "; still looking for first entry in the definition block, skipping line #" + line;
  };
  struct TCase {
    std::string text;
    TLines libraries, warnings;
  };
  const std::vector<TCase> cases = {
      {"released \"A\" {\n  X $P/x -o\n", {"released A: X $P/x [o;]"}, {unclosed}},
      // A header inside an open block drops that block silently.
      {"released \"A\" {\n  X x\ndevelopment \"B\" {\n  Y y\n}\n", {"development B: Y y []"}, {}},
      {"SANDBOX \"x\"\n{Z z -opt\n}\nSource  \"with // inside\" {   \n} x\n}\n",
       {"SANDBOX x: Z z [opt;]", "Source with // inside: } x []"},
       {}},
      // The name runs to the last quote; "}" before any entry is no entry
      // and does not close the block.
      {"released \"a\" \"b\" {\n}\n", {"released a\" \"b:"}, {noFirstEntry("a\" \"b", "2: }"), unclosed}},
      // A quoted label swallows a quoted path.
      {"released \"A\" {\n  \"L 1\" \"p 1\" -o\n  \"L 2\" p2 -o }\n",
       {"released A: \"L 1\" \"p 1\" -o [] \"L 2\" p2 [o;]"},
       {}},
      // Comments outside quotes only.
      {"released \"A\" { // the bracket stays\n  Q \"$P//q\" -o // cut here\n  U $P/u//cut -x\n  a//b\n  -late\n}\n",
       {"released A: Q \"$P//q\" [o;] U $P/u [late;]"},
       {}},
      // An empty block never closes and runs on.
      {"released \"E\"\n\n{\n}\nX y\n}\n",
       {"released E: X y []"},
       {noFirstEntry("E", "3: "), noFirstEntry("E", "4: }")}},
      // "} x" is an entry with the label "}", and "Y y }" closes. "-opt }"
      // has two words and so is an entry too: C never closes.
      {"released \"A\" {\n  X x -o }\nreleased \"B\" {\n  } x\n  Y y }\nreleased \"C\" {\n  W w\n  -opt }\n",
       {"released A: X x [o;]", "released B: } x [] Y y []", "released C: W w [] -opt } []"},
       {unclosed}},
      // Option lines; "-b -a" is an entry of its own, a single word behind
      // the first entry is dropped silently.
      {"released \"A\" {\n  X x -a\n  -c\n  -b -a\n  !!\n}\n", {"released A: X x [a;c;] -b -a []"}, {}},
      // "{ Y y" opens the block; the blank left in front keeps " Y y" from
      // being an entry. Once the block is open, "{Z" is a label.
      {"stray line\n// comment\nreleased \"A\"\nX x\n{ Y y\n{Z z\n}\n",
       {"released A: {Z z []"},
       {kPrefix + std::string("unknown entry - skipping line #1: stray line"),
        kPrefix +
            std::string("opening bracket not found for library: A; still looking for it and skipping line #4: X x"),
        noFirstEntry("A", "5:  Y y")}},
      // The unclosed block of A leaves its first-entry flag to B: the option
      // line finds no entry in B and goes nowhere, and nothing is warned.
      {"released \"A\" {\n  X x\nreleased \"B\" {\n  -lost\n  Y y -kept }\n", {"released B: Y y [kept;]"}, {}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    host.clearRecords();
    EXPECT_EQ(describe(parse(c.text)), c.libraries);
    EXPECT_EQ(warnings(), c.warnings);
  }
}

}  // namespace
