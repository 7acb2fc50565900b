// The bundled sample library holds together: what the catalogs name exists,
// and the symbol and cell files follow their documented formats.

#include <gtest/gtest.h>

#include <boost/algorithm/string.hpp>
#include <boost/filesystem.hpp>
#include <boost/regex.hpp>
#include <fstream>
#include <map>
#include <set>

namespace fs = boost::filesystem;

namespace {

const fs::path kExamples = fs::path(VLT_SOURCE_DIR) / "examples";

// Statements of a file in the sample's line rules: trimmed, without empty
// and '#' lines, split at blanks.
std::vector<std::vector<std::string>> statements(const fs::path& file) {
  std::vector<std::vector<std::string>> out;
  std::ifstream in(file.string());
  std::string line;
  while (std::getline(in, line)) {
    boost::algorithm::trim(line);
    if (line.empty() || line[0] == '#') continue;
    std::vector<std::string> words;
    boost::algorithm::split(words, line, boost::is_any_of(" \t"), boost::token_compress_on);
    out.push_back(words);
  }
  return out;
}

std::string resolve(const std::string& soft) {
  EXPECT_EQ(soft.compare(0, 10, "$CORP_LIB/"), 0) << soft;
  return (kExamples / soft.substr(10)).string();
}

TEST(SampleLibrary, SymbolTreeAndSymbolFiles) {
  const boost::regex symbolName("(\\S+)\\.smbl_\\d+");
  std::set<std::string> symbols;
  std::map<std::string, std::set<std::string>> directoriesOfName;
  int files = 0;
  for (fs::recursive_directory_iterator it(kExamples / "components"), end; it != end; ++it) {
    boost::smatch match;
    const std::string leaf = it->path().filename().string();
    if (!fs::is_regular_file(it->path()) || !boost::regex_match(leaf, match, symbolName)) continue;
    ++files;
    symbols.insert(it->path().parent_path().string() + "/" + match[1].str());
    directoriesOfName[match[1].str()].insert(it->path().parent_path().filename().string() + " in " +
                                             it->path().parent_path().parent_path().filename().string());
    auto lines = statements(it->path());
    ASSERT_GE(lines.size(), 6u) << leaf;
    EXPECT_EQ(lines.front(), (std::vector<std::string>{"SKSYMBOL", "1"})) << leaf;
    // mux4 is the sample's one symbol that the symbol tool cannot read: it lacks its END.
    EXPECT_EQ(lines.back() == std::vector<std::string>{"END"}, leaf != "mux4.smbl_1") << leaf;
    std::map<std::string, std::string> single;
    for (const auto& words : lines) single[words[0]] = words.size() > 1 ? words[1] : "";
    EXPECT_EQ(single["NAME"], match[1].str());
    EXPECT_TRUE(single["UNIT"] == "INCH" || single["UNIT"] == "MM") << leaf;
    EXPECT_FALSE(single["PIN_SPACING"].empty() || single["REFDES"].empty()) << leaf;
  }
  EXPECT_EQ(files, 45);
  EXPECT_EQ(symbols.size(), 38u);
  // The one name that collides at path depth 1: same name, same last
  // directory, different directory above it.
  EXPECT_EQ(directoriesOfName["pwr_flag"], (std::set<std::string>{"power in analog", "power in digital"}));
}

TEST(SampleLibrary, CatalogsNameWhatExists) {
  std::set<std::string> cells;
  for (fs::recursive_directory_iterator it(kExamples / "geoms"), end; it != end; ++it)
    if (it->path().extension() == ".cell" && cells.insert(it->path().stem().string()).second) {
      EXPECT_EQ(statements(it->path()).front(), (std::vector<std::string>{"CELL", it->path().stem().string()}));
    }
  int blankSymbols = 0, partsWithTwoComponents = 0, parts = 0;
  for (const char* catalog : {"digital", "analog", "connectors"}) {
    ASSERT_TRUE(fs::is_regular_file(kExamples / "catalogs" / (std::string(catalog) + ".qrn_catalog.attr")));
    auto lines = statements(kExamples / "catalogs" / catalog);
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines.front(), (std::vector<std::string>{"CATALOG", catalog}));
    std::string container;
    int components = 0;
    for (const auto& words : lines) {
      if (words[0] == "PART") ++parts, components = 0;
      if (words[0] == "CONTAINER") container = resolve(words.at(1));
      if (words[0] == "MAP_FILE") {
        EXPECT_TRUE(fs::is_regular_file(resolve(words.at(1)))) << words[1];
      }
      if (words[0] == "GEOM") {
        EXPECT_EQ(cells.count(words.at(1)), 1u) << words[1];
      }
      if (words[0] == "COMPONENT" && ++components == 2) ++partsWithTwoComponents;
      if (words[0] != "SYMBOL") continue;
      if (words.at(1) == "-")
        ++blankSymbols;
      else
        EXPECT_TRUE(fs::is_regular_file(container + "/" + words[1] + ".smbl_1")) << container << " " << words[1];
    }
  }
  EXPECT_EQ(parts, 19);
  EXPECT_EQ(blankSymbols, 1);
  EXPECT_EQ(partsWithTwoComponents, 1);
}

TEST(SampleLibrary, MappingFilesHaveVectorPinsAndComponentPortions) {
  int vectorPins = 0, portionsWithComp = 0;
  for (fs::directory_iterator it(kExamples / "mapping"), end; it != end; ++it)
    for (const auto& words : statements(it->path())) {
      if (words[0] == "PIN" && words.at(2).find(',') != std::string::npos) ++vectorPins;
      if (words[0] == "SYMBOL" && words.size() > 3) ++portionsWithComp;
    }
  EXPECT_EQ(vectorPins, 5);
  EXPECT_EQ(portionsWithComp, 5);
}

}  // namespace
