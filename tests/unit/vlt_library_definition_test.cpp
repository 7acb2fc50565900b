// The library definition file parser.

#include <gtest/gtest.h>

#include "components/hpp/vlt_library_cfg.hpp"
#include "support/fake_host.hpp"
#include "support/golden.hpp"

using namespace vlttest;
using NVlt2HrwHelpers::TVLTLibraryDefinitionFileLibraries;

namespace {

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

// Each library as "type name: label path [options] ...", for compact checks.
TLines describe(const TVLTLibraryDefinitionFileLibraries& libraries) {
  TLines out;
  for (const auto& library : libraries) {
    out.push_back(library.type + " " + library.name + ":");
    for (const auto& entry : library.entries) {
      out.back() += " " + entry.label + " " + entry.path + " [";
      for (const auto& option : entry.options) out.back() += option + ";";
      out.back() += "]";
    }
  }
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
  auto libraries = parse("junk\nreleased \"A\"\nX y\n{\n", false);  // silent
  EXPECT_EQ(describe(libraries), (TLines{"released A:"}));

  // The list is appended to; unreadable files and a missing working directory leave it as it was.
  libraries = {{"source", "OLD", {}}};
  writeFile(file, "released \"NEW\" {\n X x }\n");
  ASSERT_TRUE(NVlt2HrwHelpers::readVLTLibraryDefinition(libraries, file, true));
  EXPECT_EQ(describe(libraries), (TLines{"source OLD:", "released NEW: X x []"}));
  const auto missing = tmp.path() / "missing";
  EXPECT_FALSE(NVlt2HrwHelpers::readVLTLibraryDefinition(libraries, missing, false));
  EXPECT_FALSE(NVlt2HrwHelpers::readVLTLibraryDefinition(libraries, tmp.path(), false));
  host.clearService("get wdir");
  EXPECT_FALSE(NVlt2HrwHelpers::readVLTLibraryDefinition(libraries, file, true));
  EXPECT_EQ(libraries.size(), 2u);
  expectGolden("DefinitionTest.EmptyFileSilentParseAppendingAndUnreadableFiles", host.lines(), {{tmp.str(), "$TMP"}});
}

// The parse of odd files: each input, the libraries as described, and the warnings.
TEST_F(DefinitionTest, OddFiles) {
  const TLines texts = {
      "released \"A\" {\n  X $P/x -o\n",
      // A header inside an open block drops that block silently.
      "released \"A\" {\n  X x\ndevelopment \"B\" {\n  Y y\n}\n",
      "SANDBOX \"x\"\n{Z z -opt\n}\nSource  \"with // inside\" {   \n} x\n}\n",
      // The name runs to the last quote; "}" before any entry is no entry
      // and does not close the block.
      "released \"a\" \"b\" {\n}\n",
      // A quoted label swallows a quoted path.
      "released \"A\" {\n  \"L 1\" \"p 1\" -o\n  \"L 2\" p2 -o }\n",
      // Comments outside quotes only.
      "released \"A\" { // the bracket stays\n  Q \"$P//q\" -o // cut here\n  U $P/u//cut -x\n  a//b\n  -late\n}\n",
      // An empty block never closes and runs on.
      "released \"E\"\n\n{\n}\nX y\n}\n",
      // "} x" is an entry with the label "}", and "Y y }" closes. "-opt }"
      // has two words and so is an entry too: C never closes.
      "released \"A\" {\n  X x -o }\nreleased \"B\" {\n  } x\n  Y y }\nreleased \"C\" {\n  W w\n  -opt }\n",
      // Option lines; "-b -a" is an entry of its own, a single word behind
      // the first entry is dropped silently.
      "released \"A\" {\n  X x -a\n  -c\n  -b -a\n  !!\n}\n",
      // "{ Y y" opens the block; the blank left in front keeps " Y y" from
      // being an entry. Once the block is open, "{Z" is a label.
      "stray line\n// comment\nreleased \"A\"\nX x\n{ Y y\n{Z z\n}\n",
      // The unclosed block of A leaves its first-entry flag to B: the option
      // line finds no entry in B and goes nowhere, and nothing is warned.
      "released \"A\" {\n  X x\nreleased \"B\" {\n  -lost\n  Y y -kept }\n"};
  TLines out;
  for (const auto& text : texts) {
    host.clearRecords();
    const TLines libraries = describe(parse(text));
    out.push_back("--- input:\n" + text + "--- libraries:");
    out.insert(out.end(), libraries.begin(), libraries.end());
    out.push_back("--- warnings:");
    for (const auto& warning : warnings()) out.push_back(warning);
  }
  expectGolden("DefinitionTest.OddFiles", out);
}

}  // namespace
