// The location map reader.

#include <gtest/gtest.h>

#include "components/hpp/impl/qlln_general_impl.hpp"
#include "support/fake_host.hpp"
#include "support/golden.hpp"

using namespace vlttest;
using QllnGeneral::TLocationMap;

namespace {

struct LocationMapTest : StartedHostTest {
  boost::filesystem::path file = tmp.path() / "location map";

  TLocationMap read(const std::string& text, bool verbose = true) {
    writeFile(file, text);
    TLocationMap map;
    EXPECT_TRUE(QllnGeneral::readLocationMap(map, file, verbose));
    return map;
  }
};

// "prefix: path | path" lines.
TLines describe(const TLocationMap& map) {
  TLines out;
  for (const auto& prefix : map) {
    std::string line = prefix.first + ":";
    for (const auto& path : prefix.second) line += " " + path + " |";
    out.push_back(line);
  }
  return out;
}

TEST_F(LocationMapTest, PrefixesPathsAndAllMessages) {
  const std::string a = tmp.str() + "/a dir";
  boost::filesystem::create_directories(a);
  auto map = read("QRN_LOCATION_MAP_1 force\n  # site library\n\n  $LIB_ROOT   trailing words\n   " + a +
                  "   \n/nowhere/x\n/nowhere/y\n$EMPTY\n$LIB_ROOT\n" + a + "\n");
  EXPECT_EQ(describe(map),
            (TLines{"$LIB_ROOT: " + a + " | /nowhere/x | /nowhere/y |", "$EMPTY:", "$LIB_ROOT: " + a + " |"}));
  expectGolden("LocationMapTest.PrefixesPathsAndAllMessages", host.lines(), {{tmp.str(), "$TMP"}});
}

TEST_F(LocationMapTest, HeadersCommentsOddLinesAppendingAndUnreadableFiles) {
  EXPECT_TRUE(read("QRN_LOCATION_MAP_12\n# only a comment\nQRN_LOCATION_MAP_2   force   more\n").empty());
  host.clearRecords();
  // "$" alone needs one more character to be a prefix: it is a path. A
  // malformed header is a path as well, here an orphaned one.
  auto map = read("QRN_LOCATION_MAP_x\n$A\n$\n#$B\n$C\n");
  EXPECT_EQ(describe(map), (TLines{"$A: $ |", "$C:"}));
  expectGolden("LocationMapTest.HeadersCommentsOddLinesAppendingAndUnreadableFiles.odd", host.lines(),
               {{tmp.str(), "$TMP"}});
  // Orphaned paths are lost; a quiet read logs nothing.
  host.clearRecords();
  map = read("/orphan one\n/orphan two\n$P\n" + tmp.str() + "\n", false);
  EXPECT_EQ(describe(map), (TLines{"$P: " + tmp.str() + " |"}));
  EXPECT_TRUE(host.records().empty());
  // Reading appends; an unreadable file is an error even in a quiet read.
  writeFile(file, "$B\n/b\n");
  map = {{"$KEEP", {"x"}}};
  ASSERT_TRUE(QllnGeneral::readLocationMap(map, file, false));
  EXPECT_FALSE(QllnGeneral::readLocationMap(map, tmp.path() / "missing", false));
  EXPECT_FALSE(QllnGeneral::readLocationMap(map, tmp.path(), true));
  EXPECT_EQ(describe(map), (TLines{"$KEEP: x |", "$B: /b |"}));
  expectGolden("LocationMapTest.HeadersCommentsOddLinesAppendingAndUnreadableFiles.unreadable", host.lines(),
               {{tmp.str(), "$TMP"}});
}

}  // namespace
