// The XML facade: paths, document order, removal, writing and parse reports.

#include "platform/markup_core.hpp"

#include <gtest/gtest.h>

#include "components/hpp/misc.hpp"
#include "support/fake_host.hpp"

using namespace vlttest;
using NMarkupCore::CXML_Parser;
using NMarkupCore::CXMLHierPath;

namespace {

struct MarkupTest : ::testing::Test {
  CFakeHost host;
  CTempDir tmp;
  log4cxx::LoggerPtr logger;
  CXML_Parser xml;
  void SetUp() override {
    ASSERT_TRUE(host.start());
    logger = NComponent::getTranslationLogger(*NComponent::gComponent);
    host.clearRecords();
  }
  void TearDown() override { host.release(); }

  std::string written() {
    boost::filesystem::path file = tmp.path() / "out.xml";
    EXPECT_TRUE(xml.write(file.string(), logger));
    return readFile(file);
  }
  std::vector<std::string> names(CXML_Parser::CDOMNodeList* list) {
    std::vector<std::string> out;
    for (int i = 0; i < xml.getDomNodeListLength(list); ++i)
      out.push_back(xml.getAttribute(xml.getDOMElement(list, i), "n"));
    return out;
  }
};

TEST(HierPathTest, AppendsWithoutChangingTheReceiver) {
  CXMLHierPath root("rig");
  CXMLHierPath child = root / "catalog_data";
  CXMLHierPath grandChild = child / "data_map";
  EXPECT_EQ(root.get(), "rig");
  EXPECT_EQ(child.get(), "rig/catalog_data");
  EXPECT_EQ(grandChild.get(), "rig/catalog_data/data_map");
  EXPECT_EQ((CXMLHierPath("rig/a") / "b").get(), (CXMLHierPath("rig") / "a" / "b").get());
  EXPECT_EQ((CXMLHierPath("rig/a") / "b").names().size(), 3u);
}

TEST_F(MarkupTest, CreatedDocumentIsWrittenIndentedWithDeclaration) {
  xml.createEmptyDocument("rig");
  CXML_Parser::CDOMElement* a = xml.addElement(CXMLHierPath("rig") / "a");
  xml.addAttribute(a, "z", "1");
  xml.addAttribute(a, "b", "<&\"");
  xml.addElement(a, CXMLHierPath("c"));
  xml.addElement(CXMLHierPath("rig") / "d");
  EXPECT_EQ(written(),
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
            "<rig>\n"
            "  <a z=\"1\" b=\"&lt;&amp;&quot;\">\n"
            "    <c />\n"
            "  </a>\n"
            "  <d />\n"
            "</rig>\n");
  EXPECT_TRUE(host.records().empty());
}

TEST_F(MarkupTest, AddElementMakesMissingParentsAndAlwaysAddsTheLast) {
  xml.createEmptyDocument("rig");
  CXML_Parser::CDOMElement* first = xml.addElement(CXMLHierPath("rig") / "a" / "b" / "c");
  CXML_Parser::CDOMElement* second = xml.addElement(CXMLHierPath("rig") / "a" / "b" / "c");
  ASSERT_NE(first, nullptr);
  ASSERT_NE(second, nullptr);
  EXPECT_NE(first, second);
  EXPECT_EQ(xml.getDomNodeListLength(xml.getDomNodeList(CXMLHierPath("rig/a"))), 1);
  EXPECT_EQ(xml.getDomNodeListLength(xml.getDomNodeList(CXMLHierPath("rig/a/b/c"))), 2);
  // One root only, and a path must start at it.
  EXPECT_EQ(xml.addElement(CXMLHierPath("rig")), nullptr);
  EXPECT_EQ(xml.addElement(CXMLHierPath("other") / "a"), nullptr);
  EXPECT_EQ(xml.addElement(nullptr, CXMLHierPath("a")), nullptr);
  // Without a document the first element becomes the root.
  CXML_Parser fresh;
  fresh.initialize();
  EXPECT_NE(fresh.addElement(CXMLHierPath("rig") / "x"), nullptr);
  EXPECT_NE(fresh.getDOMElement(CXMLHierPath("rig/x")), nullptr);
}

TEST_F(MarkupTest, ListsAreInDocumentOrderAndNeverNull) {
  writeFile(tmp.path() / "in.xml",
            "<rig><a n='a1'><b n='b1'/><x/><b n='b2'/></a><a n='a2'/><a n='a3'><b n='b3'/></a></rig>");
  ASSERT_TRUE(xml.parse((tmp.path() / "in.xml").string(), logger));
  EXPECT_EQ(names(xml.getDomNodeList(CXMLHierPath("rig/a/b"))), (std::vector<std::string>{"b1", "b2", "b3"}));
  EXPECT_EQ(names(xml.getDomNodeList(CXMLHierPath("rig/a"))), (std::vector<std::string>{"a1", "a2", "a3"}));
  CXML_Parser::CDOMNodeList* missing = xml.getDomNodeList(CXMLHierPath("rig/none"));
  ASSERT_NE(missing, nullptr);
  EXPECT_EQ(xml.getDomNodeListLength(missing), 0);
  EXPECT_EQ(xml.getDOMElement(missing, 0), nullptr);
  EXPECT_EQ(xml.getDomNodeListLength(xml.getDomNodeList(CXMLHierPath("other/a"))), 0);
  // The first element at a path is the first in document order.
  EXPECT_EQ(xml.getAttribute(xml.getDOMElement(CXMLHierPath("rig/a/b")), "n"), "b1");
  CXML_Parser::CDOMElement* a3 = xml.getDOMElement(xml.getDomNodeList(CXMLHierPath("rig/a")), 2);
  EXPECT_EQ(names(xml.getDomNodeList(a3, std::string("b"))), (std::vector<std::string>{"b3"}));
  EXPECT_EQ(xml.getDomNodeListLength(xml.getDomNodeList(nullptr, std::string("b"))), 0);
  EXPECT_EQ(xml.getDOMElement(xml.getDomNodeList(CXMLHierPath("rig/a")), -1), nullptr);
  EXPECT_EQ(xml.getDOMElement(xml.getDomNodeList(CXMLHierPath("rig/a")), 3), nullptr);
  EXPECT_EQ(xml.getAttribute(a3, "missing"), "");
  EXPECT_EQ(xml.getAttribute(nullptr, "n"), "");
}

TEST_F(MarkupTest, RelativePathsStartBelowTheElement) {
  writeFile(tmp.path() / "in.xml",
            "<rig><m n='1'><s><p n='p1'/><p n='p2'/></s></m><m n='2'><s><p n='p3'/></s></m></rig>");
  ASSERT_TRUE(xml.parse((tmp.path() / "in.xml").string(), logger));
  CXML_Parser::CDOMElement* second = xml.getDOMElement(xml.getDomNodeList(CXMLHierPath("rig/m")), 1);
  EXPECT_EQ(names(xml.getDomNodeList(second, CXMLHierPath("s") / "p")), (std::vector<std::string>{"p3"}));
  CXML_Parser::CDOMElement* added = xml.addElement(second, CXMLHierPath("s") / "p");
  xml.addAttribute(added, "n", "p4");
  EXPECT_EQ(names(xml.getDomNodeList(CXMLHierPath("rig/m/s/p"))), (std::vector<std::string>{"p1", "p2", "p3", "p4"}));
}

TEST_F(MarkupTest, ListsAreSnapshotsAndRemovedElementsReadAsMissing) {
  xml.createEmptyDocument("rig");
  for (const char* n : {"1", "2", "3"}) xml.addAttribute(xml.addElement(CXMLHierPath("rig/a")), "n", n);
  CXML_Parser::CDOMNodeList* before = xml.getDomNodeList(CXMLHierPath("rig/a"));
  EXPECT_EQ(xml.getDomNodeList(CXMLHierPath("rig/a")), before) << "an unchanged document gives the same list";

  CXML_Parser::CDOMElement* second = xml.getDOMElement(before, 1);
  EXPECT_EQ(xml.remove(second), second);
  EXPECT_EQ(xml.remove(second), nullptr) << "already removed";
  xml.addAttribute(xml.addElement(CXMLHierPath("rig/a")), "n", "4");

  EXPECT_EQ(xml.getDomNodeListLength(before), 3);
  EXPECT_EQ(xml.getDOMElement(before, 1), nullptr);
  EXPECT_EQ(xml.getAttribute(second, "n"), "");
  EXPECT_EQ(names(xml.getDomNodeList(CXMLHierPath("rig/a"))), (std::vector<std::string>{"1", "3", "4"}));

  CXML_Parser::CDOMElement* removed = xml.remove(CXMLHierPath("rig/a"));
  ASSERT_NE(removed, nullptr);
  EXPECT_EQ(names(xml.getDomNodeList(CXMLHierPath("rig/a"))), (std::vector<std::string>{"3", "4"}));
  EXPECT_EQ(xml.remove(CXMLHierPath("rig/none")), nullptr);
  EXPECT_EQ(xml.remove(nullptr), nullptr);

  // A removed subtree takes its elements along.
  CXML_Parser::CDOMElement* deep = xml.addElement(CXMLHierPath("rig/t/u"));
  xml.remove(CXMLHierPath("rig/t"));
  EXPECT_EQ(xml.getDOMElement(CXMLHierPath("rig/t/u")), nullptr);
  xml.addAttribute(deep, "n", "ignored");
  EXPECT_EQ(xml.getAttribute(deep, "n"), "");

  // A new document leaves every old element missing.
  CXML_Parser::CDOMElement* kept = xml.getDOMElement(CXMLHierPath("rig/a"));
  xml.createEmptyDocument("rig");
  EXPECT_EQ(xml.getAttribute(kept, "n"), "");
  EXPECT_EQ(xml.getDomNodeListLength(xml.getDomNodeList(CXMLHierPath("rig/a"))), 0);
}

TEST_F(MarkupTest, AttributesKeepTheirPlaceWhenSetAgain) {
  xml.createEmptyDocument("rig");
  CXML_Parser::CDOMElement* a = xml.addElement(CXMLHierPath("rig/a"));
  xml.addAttribute(a, "x", "1");
  xml.addAttribute(a, "y", "2");
  xml.addAttribute(a, "x", "3");
  EXPECT_EQ(xml.getAttribute(a, "x"), "3");
  EXPECT_NE(written().find("<a x=\"3\" y=\"2\" />"), std::string::npos);
}

TEST_F(MarkupTest, ParseFailuresAreReportedOnTheGivenLogger) {
  std::string missing = (tmp.path() / "missing.xml").string();
  EXPECT_FALSE(xml.parse(missing, logger));
  EXPECT_EQ(host.texts("translation", "ERROR"),
            std::vector<std::string>{"XML parse error in '" + missing + "': File was not found at offset 0."});
  host.clearRecords();

  writeFile(tmp.path() / "bad.xml", "<rig><a></rig>");
  EXPECT_FALSE(xml.parse((tmp.path() / "bad.xml").string(), logger));
  auto errors = host.texts("translation", "ERROR");
  ASSERT_EQ(errors.size(), 1u);
  EXPECT_EQ(errors[0].rfind("XML parse error in '" + (tmp.path() / "bad.xml").string() + "': ", 0), 0u);
  EXPECT_EQ(xml.getDOMElement(CXMLHierPath("rig")), nullptr) << "nothing half-read stays";
}

TEST_F(MarkupTest, RoundTripKeepsDeclarationAndCommentsAndReindents) {
  writeFile(tmp.path() / "in.xml",
            "<?xml version=\"1.0\"?>\n<!-- edited by hand -->\n<rig>   <a  x='1'/>\n\n\n<b>text</b></rig>");
  ASSERT_TRUE(xml.parse((tmp.path() / "in.xml").string(), logger));
  EXPECT_EQ(written(),
            "<?xml version=\"1.0\"?>\n"
            "<!-- edited by hand -->\n"
            "<rig>\n"
            "  <a x=\"1\" />\n"
            "  <b>text</b>\n"
            "</rig>\n");
}

TEST_F(MarkupTest, WriteReplacesTheFileAndFailsWithoutTouchingAnything) {
  boost::filesystem::path file = tmp.path() / "out.xml";
  writeFile(file, "old contents that are much longer than the new document will be ..............");
  xml.createEmptyDocument("rig");
  ASSERT_TRUE(xml.write(file.string(), logger));
  EXPECT_EQ(readFile(file), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<rig />\n");

  boost::filesystem::path nowhere = tmp.path() / "no" / "such" / "dir.xml";
  EXPECT_FALSE(xml.write(nowhere.string(), logger));
  EXPECT_EQ(host.texts("translation", "ERROR"),
            std::vector<std::string>{"XML write error in '" + nowhere.string() + "': cannot write file."});

  // A directory in the way: the write fails and leaves no temporary file.
  boost::filesystem::create_directory(tmp.path() / "taken.xml");
  EXPECT_FALSE(xml.write((tmp.path() / "taken.xml").string(), logger));
  int files = 0;
  for (boost::filesystem::directory_iterator it(tmp.path()), end; it != end; ++it) ++files;
  EXPECT_EQ(files, 2) << "out.xml and taken.xml only";
}

}  // namespace
