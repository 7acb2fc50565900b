// Library unit, geometry path and the geometry container list.

#include <gtest/gtest.h>

#include "components/hpp/geometry_helpers.hpp"
#include "components/hpp/script_functions.hpp"
#include "support/fake_host.hpp"
#include "support/golden.hpp"

using namespace vlttest;
using namespace NComponent;
using namespace NVlt2HrwHelpers;
namespace fs = boost::filesystem;

namespace {

struct GeometryTest : StartedHostTest {};

TEST_F(GeometryTest, LibraryUnitLivesInTheHost) {
  EXPECT_EQ(GetLibraryUnit(), "");
  expectGolden("GeometryTest.LibraryUnitLivesInTheHost", host.lines());
  host.clearRecords();
  SetLibraryUnit(" mm ");
  EXPECT_EQ(host.parameters()["qll design unit"], " mm ");
  expectGolden("GeometryTest.LibraryUnitLivesInTheHost.set", host.lines());
  EXPECT_EQ(GetLibraryUnit(), " mm ");
  host.clearService("get wdir");
  EXPECT_EQ(GetLibraryUnit(), "");
  SetLibraryUnit("inch");
  EXPECT_EQ(host.parameters()["qll design unit"], " mm ");
}

TEST_F(GeometryTest, GeometryPathIsSetOrCleared) {
  const fs::path lib = tmp.path() / "lib";
  fs::create_directories(lib / "cells" / "smd");
  writeFile(tmp.path() / "map", "$L\n" + lib.string() + "\n");
  writeFile(lib / "vlt_library_definition.library_definition",
            "released \"WITH\" {\n  G $L/cells -qrn_geom }\nreleased \"WITHOUT\" {\n  C $L/cells -qrn_component }\n");
  host.setLibrary(lib.string());
  EXPECT_TRUE(obtainVltGeomPath("WITH", (tmp.path() / "map").string(), lib.string()));
  EXPECT_EQ(host.parameters()["geom path"], lib.string() + "/cells");
  expectGolden("GeometryTest.GeometryPathIsSetOrCleared", host.lines(), {{tmp.str(), "$TMP"}});
  host.clearRecords();
  EXPECT_FALSE(obtainVltGeomPath("WITHOUT", (tmp.path() / "map").string(), lib.string()));
  EXPECT_EQ(host.parameters()["geom path"], "");
  EXPECT_TRUE(host.logged("component", "ERROR", "Obtaining VLT library geometry path: path does not exist at: "));
  host.parameters()["geom path"] = "stale";
  host.clearService("get library location");
  EXPECT_FALSE(obtainVltGeomPath("WITH", (tmp.path() / "map").string(), lib.string()));
  EXPECT_EQ(host.parameters()["geom path"], "stale");
}

TEST_F(GeometryTest, ContainersAreRelativeDirectoriesParentsFirstAndNeedAnExistingRoot) {
  const fs::path root = tmp.path() / "geoms";
  for (const char* dir : {"smd/ic/fine", "tht/dip", "mechanical"}) fs::create_directories(root / dir);
  writeFile(root / "smd/ic/so8.cell", "CELL so8\n");
  writeFile(root / "top.cell", "CELL top\n");
  std::list<std::string> containers{"kept"};
  ASSERT_TRUE(buildGeometryContainerList(containers, root));
  ASSERT_EQ(containers.size(), 7u);
  EXPECT_EQ(containers.front(), "kept");
  containers.pop_front();
  // Siblings come in directory order; every directory stands before its contents.
  auto position = [&](const std::string& name) {
    auto found = std::find(containers.begin(), containers.end(), name);
    EXPECT_NE(found, containers.end()) << name;
    return std::distance(containers.begin(), found);
  };
  EXPECT_LT(position("smd"), position("smd/ic"));
  EXPECT_LT(position("smd/ic"), position("smd/ic/fine"));
  EXPECT_LT(position("tht"), position("tht/dip"));
  position("mechanical");
  // An empty root gives no containers, a missing one fails.
  containers.clear();
  fs::create_directories(tmp.path() / "empty");
  EXPECT_TRUE(buildGeometryContainerList(containers, tmp.path() / "empty"));
  EXPECT_TRUE(containers.empty());
  EXPECT_FALSE(buildGeometryContainerList(containers, tmp.path() / "none"));
  // A root or directory that needs quotes gives plain names.
  const fs::path quoted = tmp.path() / "geo $ms";
  fs::create_directories(quoted / "sub");
  ASSERT_TRUE(buildGeometryContainerList(containers, quoted));
  EXPECT_EQ(containers, (std::list<std::string>{"sub"}));
  const fs::path plain = tmp.path() / "plain";
  fs::create_directories(plain / "fine pitch");
  containers.clear();
  ASSERT_TRUE(buildGeometryContainerList(containers, plain));
  EXPECT_EQ(containers, (std::list<std::string>{"fine pitch"}));
  expectGolden("GeometryTest.ContainersAreRelativeDirectoriesParentsFirstAndNeedAnExistingRoot", host.lines(),
               {{tmp.str(), "$TMP"}});
}

}  // namespace
