// Technologies, container files and create_default_container.

#include <gtest/gtest.h>

#include "components/general/vlt2hrw_main/technologies.hpp"
#include "components/hpp/misc.hpp"
#include "components/hpp/script_functions.hpp"
#include "support/fake_host.hpp"
#include "support/golden.hpp"

using namespace vlttest;
using namespace NComponent::NConfig::NGeom::NTechnology;
namespace fs = boost::filesystem;

namespace {

const std::string kList =
    "<rig><geom_data><technologies><list>"
    "<technology id=' x ' container_def_file='x.xml' translated_cells_file='t.txt' padstack_name='p'/>"
    "<technology id='default' container_def_file=' default_containers.xml ' translated_cells_file='' "
    "padstack_name='default'/>"
    "</list></technologies></geom_data></rig>";
const std::string kOpening = "Creating default geometry container file for VLT geometry root.";

struct TechnologyTest : StartedHostTest {
  log4cxx::LoggerPtr logger;
  fs::path technologyDir = tmp.path() / "config" / "geom_technology", geoms = tmp.path() / "geoms";
  void SetUp() override {
    StartedHostTest::SetUp();
    host.setLibrary(tmp.str());
    logger = NComponent::getTranslationLogger(*NComponent::gComponent);
  }
  bool createDefault() { return NComponent::createDefaultContainerFile("LIB", "map", "dir"); }
  // A geometry root with these subdirectories, and the technology list.
  void prepare(const TLines& directories, const std::string& list = kList) {
    fs::create_directories(geoms);
    for (const auto& directory : directories) fs::create_directories(geoms / directory);
    host.parameters()["geom path"] = geoms.string();
    writeFile(technologyDir / "technology_list.xml", list);
  }
  std::string containers() { return readFile(technologyDir / "default_containers.xml"); }
};

TEST_F(TechnologyTest, TechnologyListIsReadTrimmedInFileOrderAndContainersEdited) {
  writeFile(technologyDir / "technology_list.xml", kList);
  CTechnologyParser technologies(logger);
  TTechnology found = technologies.find(technologyDir / "technology_list.xml", "default");
  EXPECT_EQ(found.id + "|" + found.containerDefFile + "|" + found.translatedCellsFile + "|" + found.padstackName,
            "default|default_containers.xml||default");
  EXPECT_EQ(technologies.find(technologyDir / "technology_list.xml", " x ").id, "") << "ids compare trimmed";
  TLines ids;
  for (const TTechnology& t : technologies) ids.push_back(t.id);
  EXPECT_EQ(ids, (TLines{"x", "default"}));
  EXPECT_TRUE(host.records().empty());

  // Container entries are found, removed and added.
  writeFile(technologyDir / "c.xml",
            "<rig><geom_data><technologies>"
            "<containers id='default'><container directory='old' cell_partition=''/></containers>"
            "<containers id=' x '><container directory=' a/b ' cell_partition=' P '/><container/></containers>"
            "<containers id='default'/>"
            "</technologies></geom_data></rig>");
  CTechnologyContainerParser parser(logger);
  ASSERT_TRUE(parser.parse(technologyDir / "c.xml"));
  TTechnologyContainer x = parser.find("x");
  EXPECT_EQ(x.id, "x");
  ASSERT_EQ(x.containers.size(), 2u);
  EXPECT_EQ(x.containers.front().directory + "|" + x.containers.front().cellPartition, "a/b|P");
  EXPECT_EQ(x.containers.back().directory, "");
  EXPECT_EQ(parser.find("y").id, "");
  EXPECT_EQ(parser.find("default").containers.size(), 1u) << "the first of that id";
  parser.removeContainers("default");
  EXPECT_EQ(parser.find("default").id, "");
  EXPECT_FALSE(parser.addContainer("default", "d", ""));
  parser.addContainers("default");
  EXPECT_TRUE(parser.addContainer("default", "d/e", ""));
  EXPECT_TRUE(parser.addContainer("x", "c", "C"));
  ids.clear();
  for (const TTechnologyContainer& c : parser) ids.push_back(c.id + ":" + std::to_string(c.containers.size()));
  EXPECT_EQ(ids, (TLines{"x:3", "default:1"}));
  // Bare names lie in the technology directory.
  EXPECT_EQ(containerFilePath("/w/config", "c.xml"), fs::path("/w/config/geom_technology/c.xml"));
  EXPECT_EQ(containerFilePath("/w/config", "sub/c.xml"), fs::path("sub/c.xml"));
  EXPECT_EQ(containerFilePath("/w/config", "/abs/c.xml"), fs::path("/abs/c.xml"));
  EXPECT_EQ(containerFilePath("/w/config", ""), fs::path(""));
}

// create_default_container (a run on the sample library and a rerun are covered end to end).

TEST_F(TechnologyTest, StaleGeometryPathMakesNothingEmptyRootWarnsAndTheDefaultEntryIsReplaced) {
  prepare({});
  for (const std::string& root :
       {std::string(), (tmp.path() / "gone").string(), (technologyDir / "technology_list.xml").string()}) {
    host.parameters()["geom path"] = root;
    EXPECT_FALSE(createDefault()) << root;
    EXPECT_FALSE(fs::exists(technologyDir / "default_containers.xml")) << root;
  }
  host.parameters()["geom path"] = geoms.string();
  ASSERT_TRUE(createDefault());
  const std::string name = "TechnologyTest.StaleGeometryPathMakesNothingEmptyRootWarnsAndTheDefaultEntryIsReplaced";
  TLines xml{containers()};
  // The default entry is replaced; other technologies stay.
  writeFile(geoms / "smd" / "ic" / "so8.cell", "CELL\n");
  writeFile(technologyDir / "default_containers.xml",
            "<rig><geom_data><technologies>"
            "<containers id='default'><container directory='gone' cell_partition='edited'/></containers>"
            "<containers id='x'><container directory='keep' cell_partition='K'/></containers>"
            "</technologies></geom_data></rig>");
  ASSERT_TRUE(createDefault());
  xml.push_back(containers());
  expectGolden(name + ".xml", xml);
  expectGolden(name, host.lines(), {{tmp.str(), "$TMP"}});
}

TEST_F(TechnologyTest, TechnologyListAndContainerFileFailures) {
  prepare({"a"});
  fs::remove(technologyDir / "technology_list.xml");
  EXPECT_FALSE(createDefault());
  writeFile(technologyDir / "technology_list.xml",
            "<rig><geom_data><technologies><list><technology id='x'/></list></technologies></geom_data></rig>");
  EXPECT_FALSE(createDefault());
  // A broken container file stays as it is.
  writeFile(technologyDir / "technology_list.xml", kList);
  writeFile(technologyDir / "default_containers.xml", "<rig>");
  EXPECT_FALSE(createDefault());
  EXPECT_EQ(containers(), "<rig>");
  // A container file named with its directory is used as it stands.
  const fs::path unwritable = tmp.path() / "no" / "c.xml";
  writeFile(technologyDir / "technology_list.xml",
            "<rig><geom_data><technologies><list><technology id='default' container_def_file='" + unwritable.string() +
                "'/></list></technologies></geom_data></rig>");
  EXPECT_FALSE(createDefault());
  fs::create_directories(unwritable.parent_path());
  ASSERT_TRUE(createDefault());
  EXPECT_NE(readFile(unwritable).find("<container directory=\"a\" cell_partition=\"\" />"), std::string::npos);
  host.failService("get config");
  EXPECT_FALSE(createDefault());
  host.failService("get config", false);
  host.clearService("get library location");
  EXPECT_FALSE(createDefault());
  expectGolden("TechnologyTest.TechnologyListAndContainerFileFailures", host.lines(), {{tmp.str(), "$TMP"}});
}

}  // namespace
