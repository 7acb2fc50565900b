// Technologies, container files and create_default_container.

#include <gtest/gtest.h>

#include <set>

#include "components/general/vlt2hrw_main/technologies.hpp"
#include "components/hpp/misc.hpp"
#include "components/hpp/script_functions.hpp"
#include "support/fake_host.hpp"

using namespace vlttest;
using namespace NComponent::NConfig::NGeom::NTechnology;
namespace fs = boost::filesystem;

namespace {

const std::string kDecl = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
const std::string kList =
    "<rig><geom_data><technologies><list>"
    "<technology id=' x ' container_def_file='x.xml' translated_cells_file='t.txt' padstack_name='p'/>"
    "<technology id='default' container_def_file=' default_containers.xml ' translated_cells_file='' "
    "padstack_name='default'/>"
    "</list></technologies></geom_data></rig>";

struct TechnologyTest : ::testing::Test {
  CFakeHost host;
  CTempDir tmp;
  log4cxx::LoggerPtr logger;
  fs::path config, technologyDir, geoms;
  void SetUp() override {
    ASSERT_TRUE(host.start());
    host.setWdir(tmp.str());
    host.setLibrary(tmp.str());
    logger = NComponent::getTranslationLogger(*NComponent::gComponent);
    config = tmp.path() / "config";
    technologyDir = config / "geom_technology";
    geoms = tmp.path() / "geoms";
    host.clearRecords();
  }
  void TearDown() override { host.release(); }

  bool createDefault() { return NComponent::createDefaultContainerFile("LIB", "map", "dir"); }
};

// ---------------------------------------------------------------------------
// Parsers

TEST_F(TechnologyTest, TechnologyListIsReadTrimmedInFileOrder) {
  writeFile(technologyDir / "technology_list.xml", kList);
  CTechnologyParser parser(logger);
  TTechnology found = parser.find(technologyDir / "technology_list.xml", "default");
  EXPECT_EQ(found.id, "default");
  EXPECT_EQ(found.containerDefFile, "default_containers.xml");
  EXPECT_EQ(found.translatedCellsFile, "");
  EXPECT_EQ(found.padstackName, "default");
  EXPECT_EQ(parser.find(technologyDir / "technology_list.xml", "x").containerDefFile, "x.xml");
  EXPECT_EQ(parser.find(technologyDir / "technology_list.xml", " x ").id, "") << "ids compare trimmed";
  std::vector<std::string> ids;
  for (const TTechnology& t : parser) ids.push_back(t.id);
  EXPECT_EQ(ids, (std::vector<std::string>{"x", "default"}));
  EXPECT_TRUE(host.records().empty());

  TTechnology none = parser.find(technologyDir / "none.xml", "default");
  EXPECT_EQ(none.id + none.containerDefFile + none.translatedCellsFile + none.padstackName, "");
  EXPECT_EQ(host.lines(), std::vector<std::string>{"translation FATAL Configuration file does not exist:'" +
                                                   (technologyDir / "none.xml").string() + "'"});
}

TEST_F(TechnologyTest, ContainerEntriesAreFoundRemovedAndAdded) {
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
  EXPECT_EQ(x.containers.front().directory, "a/b");
  EXPECT_EQ(x.containers.front().cellPartition, "P");
  EXPECT_EQ(x.containers.back().directory, "");
  EXPECT_EQ(parser.find("y").id, "");
  EXPECT_EQ(parser.find("default").containers.size(), 1u) << "the first of that id";

  parser.removeContainers("default");
  EXPECT_EQ(parser.find("default").id, "");
  EXPECT_FALSE(parser.addContainer("default", "d", ""));
  parser.addContainers("default");
  EXPECT_TRUE(parser.addContainer("default", "d/e", ""));
  EXPECT_TRUE(parser.addContainer("x", "c", "C"));
  std::vector<std::string> ids;
  for (const TTechnologyContainer& c : parser) ids.push_back(c.id + ":" + std::to_string(c.containers.size()));
  EXPECT_EQ(ids, (std::vector<std::string>{"x:3", "default:1"}));
}

TEST_F(TechnologyTest, AddContainersMakesItsPathInAnEmptyDocument) {
  CTechnologyContainerParser parser(logger);
  parser.parser.createEmptyDocument("rig");
  parser.addContainers("t");
  EXPECT_TRUE(parser.addContainer("t", "a b", ""));
  ASSERT_TRUE(parser.write(tmp.path() / "out.xml"));
  EXPECT_EQ(readFile(tmp.path() / "out.xml"), kDecl +
                                                  "<rig>\n"
                                                  "  <geom_data>\n"
                                                  "    <technologies>\n"
                                                  "      <containers id=\"t\">\n"
                                                  "        <container directory=\"a b\" cell_partition=\"\" />\n"
                                                  "      </containers>\n"
                                                  "    </technologies>\n"
                                                  "  </geom_data>\n"
                                                  "</rig>\n");
}

TEST(ContainerFilePathTest, BareNamesLieInTheTechnologyDirectory) {
  EXPECT_EQ(containerFilePath("/w/config", "c.xml"), fs::path("/w/config/geom_technology/c.xml"));
  EXPECT_EQ(containerFilePath("/w/config", "sub/c.xml"), fs::path("sub/c.xml"));
  EXPECT_EQ(containerFilePath("/w/config", "/abs/c.xml"), fs::path("/abs/c.xml"));
  EXPECT_EQ(containerFilePath("/w/config", ""), fs::path(""));
}

// ---------------------------------------------------------------------------
// create_default_container

TEST_F(TechnologyTest, DefaultEntryIsReplacedAndOtherTechnologiesStay) {
  writeFile(technologyDir / "technology_list.xml", kList);
  writeFile(technologyDir / "default_containers.xml",
            "<rig><geom_data><technologies>"
            "<containers id='default'><container directory='gone' cell_partition='edited'/></containers>"
            "<containers id='x'><container directory='keep' cell_partition='K'/></containers>"
            "</technologies></geom_data></rig>");
  fs::create_directories(geoms / "smd" / "ic");
  writeFile(geoms / "smd" / "ic" / "so8.cell", "CELL\n");
  host.parameters()["geom path"] = geoms.string();

  ASSERT_TRUE(createDefault());
  EXPECT_EQ(readFile(technologyDir / "default_containers.xml"),
            kDecl +
                "<rig>\n"
                "  <geom_data>\n"
                "    <technologies>\n"
                "      <containers id=\"x\">\n"
                "        <container directory=\"keep\" cell_partition=\"K\" />\n"
                "      </containers>\n"
                "      <containers id=\"default\">\n"
                "        <container directory=\"smd\" cell_partition=\"\" />\n"
                "        <container directory=\"smd/ic\" cell_partition=\"\" />\n"
                "      </containers>\n"
                "    </technologies>\n"
                "  </geom_data>\n"
                "</rig>\n");
  EXPECT_EQ(host.lines(), (std::vector<std::string>{
                              "translation DEBUG Creating default geometry container file for VLT geometry root.",
                              "component DEBUG Creating default geometry container file for VLT geometry root.",
                              "translation DEBUG Building list of geometry containers",
                              "component DEBUG Building list of geometry containers"}));

  // Idempotent: a second run gives the same file; new directories come in.
  std::string first = readFile(technologyDir / "default_containers.xml");
  ASSERT_TRUE(createDefault());
  EXPECT_EQ(readFile(technologyDir / "default_containers.xml"), first);
  fs::create_directories(geoms / "tht");
  fs::create_directories(geoms / "mech");
  ASSERT_TRUE(createDefault());
  CTechnologyContainerParser parser(logger);
  ASSERT_TRUE(parser.parse(technologyDir / "default_containers.xml"));
  std::set<std::string> directories;
  for (const auto& c : parser.find("default").containers) directories.insert(c.directory);
  EXPECT_EQ(directories, (std::set<std::string>{"mech", "smd", "smd/ic", "tht"}));
  EXPECT_EQ(parser.find("x").containers.front().cellPartition, "K");
}

TEST_F(TechnologyTest, MissingContainerFileIsCreatedAndEmptyRootWarns) {
  writeFile(technologyDir / "technology_list.xml", kList);
  fs::create_directories(geoms);
  host.parameters()["geom path"] = geoms.string();
  ASSERT_TRUE(createDefault());
  EXPECT_EQ(readFile(technologyDir / "default_containers.xml"), kDecl +
                                                                    "<rig>\n"
                                                                    "  <geom_data>\n"
                                                                    "    <technologies>\n"
                                                                    "      <containers id=\"default\" />\n"
                                                                    "    </technologies>\n"
                                                                    "  </geom_data>\n"
                                                                    "</rig>\n");
  std::string warning = "There are no geometry containers (subdirectories) in geometry root: '" + geoms.string() + "'.";
  EXPECT_EQ(host.texts("translation", "WARN"), std::vector<std::string>{warning});
  EXPECT_EQ(host.texts("component", "WARN"), std::vector<std::string>{warning});
}

TEST_F(TechnologyTest, EmptyOrStaleGeometryPathTouchesNothing) {
  writeFile(technologyDir / "technology_list.xml", kList);
  const std::string original =
      "<rig><geom_data><technologies><containers id='default'/></technologies></geom_data></rig>";
  writeFile(technologyDir / "default_containers.xml", original);
  for (const std::string& root :
       {std::string(), (tmp.path() / "gone").string(), (technologyDir / "technology_list.xml").string()}) {
    host.parameters()["geom path"] = root;
    host.clearRecords();
    EXPECT_FALSE(createDefault()) << root;
    EXPECT_EQ(host.lines(), (std::vector<std::string>{
                                "translation DEBUG Creating default geometry container file for VLT geometry root.",
                                "component DEBUG Creating default geometry container file for VLT geometry root."}))
        << root;
    EXPECT_EQ(readFile(technologyDir / "default_containers.xml"), original);
  }
  // Nor is a missing container file made.
  fs::remove(technologyDir / "default_containers.xml");
  EXPECT_FALSE(createDefault());
  EXPECT_FALSE(fs::exists(technologyDir / "default_containers.xml"));
}

TEST_F(TechnologyTest, TechnologyListAndContainerFileFailures) {
  fs::create_directories(geoms / "a");
  host.parameters()["geom path"] = geoms.string();

  // No technology list.
  EXPECT_FALSE(createDefault());
  EXPECT_TRUE(
      host.logged("translation", "FATAL",
                  "Configuration file does not exist:'" + (technologyDir / "technology_list.xml").string() + "'"));
  EXPECT_TRUE(host.logged("component", "ERROR", "Cannot obtain data for technology id: \"default\""));
  host.clearRecords();

  // A list without "default".
  writeFile(technologyDir / "technology_list.xml",
            "<rig><geom_data><technologies><list><technology id='x'/></list></technologies></geom_data></rig>");
  EXPECT_FALSE(createDefault());
  EXPECT_TRUE(host.logged("translation", "ERROR", "Cannot obtain data for technology id: \"default\""));
  host.clearRecords();

  // A broken container file stays as it is.
  writeFile(technologyDir / "technology_list.xml", kList);
  writeFile(technologyDir / "default_containers.xml", "<rig>");
  EXPECT_FALSE(createDefault());
  std::string file = (technologyDir / "default_containers.xml").string();
  EXPECT_TRUE(host.logged("component", "FATAL", "Cannot load technology containers file: '" + file + "'."));
  EXPECT_EQ(readFile(file), "<rig>");
  host.clearRecords();

  // A container file that cannot be written.
  fs::remove(file);
  writeFile(technologyDir / "technology_list.xml",
            "<rig><geom_data><technologies><list><technology id='default' container_def_file='" +
                (tmp.path() / "no" / "c.xml").string() + "'/></list></technologies></geom_data></rig>");
  EXPECT_FALSE(createDefault());
  EXPECT_TRUE(host.logged("translation", "FATAL",
                          "Cannot save technology containers file: '" + (tmp.path() / "no" / "c.xml").string() + "'."));
  host.clearRecords();

  // Without a configuration directory name, or without a source library.
  host.failService("get config");
  EXPECT_FALSE(createDefault());
  EXPECT_TRUE(host.logged("component", "FATAL", "Cannot obtain path to the configuration directory."));
  host.failService("get config", false);
  host.clearService("get library location");
  host.clearRecords();
  EXPECT_FALSE(createDefault());
  EXPECT_EQ(host.lines(), std::vector<std::string>{"translation ERROR Source library location has not been set."});
}

TEST_F(TechnologyTest, ContainerFileWithADirectoryPartIsUsedAsItStands) {
  fs::create_directories(geoms / "a");
  host.parameters()["geom path"] = geoms.string();
  writeFile(technologyDir / "technology_list.xml",
            "<rig><geom_data><technologies><list><technology id='default' container_def_file='" +
                (tmp.path() / "elsewhere" / "c.xml").string() + "'/></list></technologies></geom_data></rig>");
  fs::create_directories(tmp.path() / "elsewhere");
  ASSERT_TRUE(createDefault());
  CTechnologyContainerParser parser(logger);
  ASSERT_TRUE(parser.parse(tmp.path() / "elsewhere" / "c.xml"));
  EXPECT_EQ(parser.find("default").containers.front().directory, "a");
}

}  // namespace
