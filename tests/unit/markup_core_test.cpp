// The XML facade: paths, document order, removal, writing, bytes that are no
// text and parse reports.

#include "platform/markup_core.hpp"

#include <gtest/gtest.h>

#include <algorithm>

#include "components/hpp/misc.hpp"
#include "support/fake_host.hpp"
#include "support/golden.hpp"

using namespace vlttest;
using NMarkupCore::CXML_Parser;
using NMarkupCore::CXMLHierPath;
using Strings = std::vector<std::string>;

namespace {

struct MarkupTest : StartedHostTest {
  log4cxx::LoggerPtr logger;
  CXML_Parser xml;
  void SetUp() override {
    StartedHostTest::SetUp();
    logger = NComponent::getTranslationLogger(*NComponent::gComponent);
  }
  std::string path(const std::string& name) { return (tmp.path() / name).string(); }
  std::string written() {
    EXPECT_TRUE(xml.write(path("out.xml"), logger));
    return readFile(path("out.xml"));
  }
  void parse(const std::string& text) {
    writeFile(path("in.xml"), text);
    ASSERT_TRUE(xml.parse(path("in.xml"), logger));
  }
  CXML_Parser::CDOMNodeList* list(const std::string& at) { return xml.getDomNodeList(CXMLHierPath(at)); }
  Strings names(CXML_Parser::CDOMNodeList* nodes) {
    Strings out;
    for (int i = 0; i < xml.getDomNodeListLength(nodes); ++i)
      out.push_back(xml.getAttribute(xml.getDOMElement(nodes, i), "n"));
    return out;
  }
};

TEST_F(MarkupTest, CreatedAndParsedDocumentsPathsAndLists) {
  xml.createEmptyDocument("rig");
  CXMLHierPath root("rig");  // appending leaves the receiver as it is
  CXML_Parser::CDOMElement* a = xml.addElement(root / "a");
  xml.addAttribute(a, "z", "1");
  xml.addAttribute(a, "b", "<&\"");
  xml.addAttribute(a, "z", "2");
  xml.addElement(a, CXMLHierPath("c"));
  for (int i = 0; i < 2; ++i) ASSERT_NE(xml.addElement(root / "d" / "e"), nullptr);
  EXPECT_EQ(xml.getAttribute(a, "z"), "2");
  expectGolden("MarkupTest.Created.written", {written()});
  EXPECT_TRUE(host.records().empty());
  // One root only, and a path must start at it.
  EXPECT_EQ(xml.addElement(root), nullptr);
  EXPECT_EQ(xml.addElement(CXMLHierPath("other/a")), nullptr);
  EXPECT_EQ(xml.addElement(nullptr, CXMLHierPath("a")), nullptr);
  // Without a document the first element becomes the root.
  CXML_Parser fresh;
  fresh.initialize();
  EXPECT_NE(fresh.addElement(CXMLHierPath("rig/x")), nullptr);
  EXPECT_NE(fresh.getDOMElement(CXMLHierPath("rig/x")), nullptr);
  // A round trip keeps the declaration and comments and reindents.
  parse("<?xml version=\"1.0\"?>\n<!-- edited by hand -->\n<rig>   <a  x='1'/>\n\n\n<b>text</b></rig>");
  expectGolden("MarkupTest.Created.roundTrip", {written()});
  parse("<rig><a n='a1'><b n='b1'/><x/><b n='b2'/></a><a n='a2'/><a n='a3'><b n='b3'/><s><b n='s1'/></s></a></rig>");
  EXPECT_EQ(names(list("rig/a/b")), (Strings{"b1", "b2", "b3"}));
  EXPECT_EQ(names(list("rig/a")), (Strings{"a1", "a2", "a3"}));
  for (const char* missing : {"rig/none", "other/a"}) {
    ASSERT_NE(list(missing), nullptr);
    EXPECT_EQ(xml.getDomNodeListLength(list(missing)), 0);
    EXPECT_EQ(xml.getDOMElement(list(missing), 0), nullptr);
  }
  EXPECT_EQ(xml.getAttribute(xml.getDOMElement(CXMLHierPath("rig/a/b")), "n"), "b1") << "the first in document order";
  for (int index : {-1, 3}) EXPECT_EQ(xml.getDOMElement(list("rig/a"), index), nullptr);
  CXML_Parser::CDOMElement* a3 = xml.getDOMElement(list("rig/a"), 2);
  EXPECT_EQ(names(xml.getDomNodeList(a3, std::string("b"))), Strings{"b3"});
  EXPECT_EQ(names(xml.getDomNodeList(a3, CXMLHierPath("s") / "b")), Strings{"s1"});
  EXPECT_EQ(xml.getDomNodeListLength(xml.getDomNodeList(nullptr, std::string("b"))), 0);
  xml.addAttribute(xml.addElement(a3, CXMLHierPath("s") / "b"), "n", "s2");
  EXPECT_EQ(names(list("rig/a/s/b")), (Strings{"s1", "s2"}));
  EXPECT_EQ(xml.getAttribute(a3, "missing"), "");
  EXPECT_EQ(xml.getAttribute(nullptr, "n"), "");
  // Lists are snapshots; removed elements read as missing.
  xml.createEmptyDocument("rig");
  for (const char* n : {"1", "2", "3"}) xml.addAttribute(xml.addElement(CXMLHierPath("rig/a")), "n", n);
  CXML_Parser::CDOMNodeList* before = list("rig/a");
  EXPECT_EQ(list("rig/a"), before) << "an unchanged document gives the same list";
  CXML_Parser::CDOMElement* second = xml.getDOMElement(before, 1);
  EXPECT_EQ(xml.remove(second), second);
  EXPECT_EQ(xml.remove(second), nullptr) << "already removed";
  xml.addAttribute(xml.addElement(CXMLHierPath("rig/a")), "n", "4");
  EXPECT_EQ(xml.getDomNodeListLength(before), 3);
  EXPECT_EQ(xml.getDOMElement(before, 1), nullptr);
  EXPECT_EQ(xml.getAttribute(second, "n"), "");
  EXPECT_EQ(names(list("rig/a")), (Strings{"1", "3", "4"}));
  EXPECT_NE(xml.remove(CXMLHierPath("rig/a")), nullptr);
  EXPECT_EQ(names(list("rig/a")), (Strings{"3", "4"}));
  EXPECT_EQ(xml.remove(CXMLHierPath("rig/none")), nullptr);
  EXPECT_EQ(xml.remove(nullptr), nullptr);
  // A removed subtree takes its elements along, and so does a new document.
  CXML_Parser::CDOMElement* deep = xml.addElement(CXMLHierPath("rig/t/u"));
  xml.remove(CXMLHierPath("rig/t"));
  EXPECT_EQ(xml.getDOMElement(CXMLHierPath("rig/t/u")), nullptr);
  xml.addAttribute(deep, "n", "ignored");
  EXPECT_EQ(xml.getAttribute(deep, "n"), "");
  CXML_Parser::CDOMElement* kept = xml.getDOMElement(CXMLHierPath("rig/a"));
  xml.createEmptyDocument("rig");
  EXPECT_EQ(xml.getAttribute(kept, "n"), "");
  EXPECT_EQ(xml.getDomNodeListLength(list("rig/a")), 0);
}

TEST_F(MarkupTest, ParseAndWriteFailuresAndBytesThatAreNotText) {
  EXPECT_FALSE(xml.parse(path("missing.xml"), logger));
  EXPECT_EQ(host.texts("translation", "ERROR"),
            Strings{"XML parse error in '" + path("missing.xml") + "': File was not found at offset 0."});
  host.clearRecords();
  writeFile(path("bad.xml"), "<rig><a></rig>");
  EXPECT_FALSE(xml.parse(path("bad.xml"), logger));
  const Strings errors = host.texts("translation", "ERROR");
  ASSERT_EQ(errors.size(), 1u);
  EXPECT_EQ(errors[0].rfind("XML parse error in '" + path("bad.xml") + "': ", 0), 0u);
  EXPECT_EQ(xml.getDOMElement(CXMLHierPath("rig")), nullptr) << "nothing half-read stays";
  host.clearRecords();
  // A write replaces a longer file whole; a failed one leaves no temporary file.
  writeFile(path("out.xml"), "old contents that are much longer than the new document will be ..............");
  xml.createEmptyDocument("rig");
  EXPECT_EQ(written(), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<rig />\n");
  EXPECT_FALSE(xml.write(path("no/such/dir.xml"), logger));
  boost::filesystem::create_directory(path("taken.xml"));
  EXPECT_FALSE(xml.write(path("taken.xml"), logger));
  Strings left;
  for (boost::filesystem::directory_iterator it(tmp.path()), end; it != end; ++it)
    left.push_back(it->path().filename().string());
  std::sort(left.begin(), left.end());
  EXPECT_EQ(left, (Strings{"bad.xml", "out.xml", "taken.xml"}));
  // A document without its root element is not written.
  xml.remove(CXMLHierPath("rig"));
  EXPECT_FALSE(xml.write(path("out.xml"), logger));
  EXPECT_EQ(readFile(path("out.xml")), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<rig />\n");
  // Bytes that are not text become replacement characters.
  xml.createEmptyDocument("rig");
  CXML_Parser::CDOMElement* entry = xml.addElement(CXMLHierPath("rig") / "catalog_data" / "entry");
  xml.addAttribute(entry, "name", "a\303b\377c\001\037d\303\251\355\240\200\tok");
  xml.addAttribute(entry, "plain", "r\xC3\xA9sistor <&>");
  expectGolden("MarkupTest.ParseAndWrite.replaced", {written()});
  expectGolden("MarkupTest.ParseAndWrite.writes", host.lines(), {{tmp.str(), "$TMP"}});
}

}  // namespace
