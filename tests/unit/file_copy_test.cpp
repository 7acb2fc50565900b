// The silent directory copy used for the templates and the target library.

#include "platform/file_copy.hpp"

#include <gtest/gtest.h>

#include <boost/filesystem.hpp>

#include "support/fake_host.hpp"

using namespace vlttest;
using NPlatform::copyDirectoryFiles;
namespace fs = boost::filesystem;

namespace {

struct FileCopyTest : ::testing::Test {
  CTempDir tmp;
  fs::path src() const { return tmp.path() / "source dir"; }
  void SetUp() override {
    writeFile(src() / "a.xml", "<a/>\n");
    writeFile(src() / "NOEXT", "no extension");
    writeFile(src() / "sub" / "deeper" / "c.txt", "c\r\n");
    fs::create_directories(src() / "empty");
  }
  // The source tree's files and directories, as copied below `to`.
  void expectCopy(const fs::path& to) {
    EXPECT_EQ(readFile(to / "a.xml"), "<a/>\n");
    EXPECT_EQ(readFile(to / "NOEXT"), "no extension");
    EXPECT_EQ(readFile(to / "sub" / "deeper" / "c.txt"), "c\r\n");
    EXPECT_TRUE(fs::is_directory(to / "empty"));
    EXPECT_FALSE(fs::exists(to / "source dir"));
  }
};

// The files of a wildcard or the directory itself: a silent copy, then an
// overwrite that keeps the target's other files.
TEST_F(FileCopyTest, CopiesSilentlyThenOverwritesAndKeepsOtherFiles) {
  for (const auto& fromTo : {std::make_pair(src() / "*.*", tmp.path() / "made" / "on the way" / "config"),
                             std::make_pair(src(), tmp.path() / "Library")}) {
    const fs::path &from = fromTo.first, &to = fromTo.second;
    SCOPED_TRACE(from.string());
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    EXPECT_EQ(copyDirectoryFiles(from, to), 0);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    expectCopy(to);
    writeFile(to / "a.xml", "edited by the user, much longer than the template");
    writeFile(to / "sub" / "deeper" / "c.txt", "old");
    writeFile(to / "SymbolLibs" / "p1" / "x", "kept");
    EXPECT_EQ(copyDirectoryFiles(from, to), 0);
    expectCopy(to);
    EXPECT_EQ(readFile(to / "SymbolLibs" / "p1" / "x"), "kept");
  }
}

TEST_F(FileCopyTest, PatternSelectsByNameIgnoringCaseAndSingleFilesCopy) {
  writeFile(src() / "b.XML", "b");
  const fs::path to = tmp.path() / "xml only";
  EXPECT_EQ(copyDirectoryFiles(src() / "*.xml", to), 0);
  EXPECT_TRUE(fs::exists(to / "a.xml"));
  EXPECT_TRUE(fs::exists(to / "b.XML"));
  EXPECT_FALSE(fs::exists(to / "NOEXT"));
  EXPECT_FALSE(fs::exists(to / "sub"));
  // Over an empty directory: the target alone.
  EXPECT_EQ(copyDirectoryFiles(src() / "empty" / "*.*", tmp.path() / "target"), 0);
  EXPECT_TRUE(fs::is_empty(tmp.path() / "target"));
  for (auto name : {"NOEXT", ".hidden", "x.tar.gz"}) EXPECT_TRUE(NPlatform::matchesWildcard(name, "*.*")) << name;
  EXPECT_TRUE(NPlatform::matchesWildcard("abc", "a?c"));
  EXPECT_FALSE(NPlatform::matchesWildcard("abbc", "a?c"));
  EXPECT_TRUE(NPlatform::matchesWildcard("x.tar.gz", "*.gz"));
  EXPECT_FALSE(NPlatform::matchesWildcard("x.gzip", "*.gz"));
  // A single file into a directory or to a new name.
  fs::create_directories(tmp.path() / "dir");
  EXPECT_EQ(copyDirectoryFiles(src() / "a.xml", tmp.path() / "dir"), 0);
  EXPECT_EQ(readFile(tmp.path() / "dir" / "a.xml"), "<a/>\n");
  EXPECT_EQ(copyDirectoryFiles(src() / "a.xml", tmp.path() / "new" / "b.xml"), 0);
  EXPECT_EQ(readFile(tmp.path() / "new" / "b.xml"), "<a/>\n");
  // Onto itself: the files stay.
  EXPECT_EQ(copyDirectoryFiles(src() / "*.xml", src()), 0);
  EXPECT_EQ(readFile(src() / "a.xml"), "<a/>\n");
}

TEST_F(FileCopyTest, FailuresLeaveEverythingAsItWas) {
  const fs::path to = tmp.path() / "target";
  EXPECT_EQ(copyDirectoryFiles(tmp.path() / "nope", to), NPlatform::kCopySourceMissing);
  EXPECT_EQ(copyDirectoryFiles(tmp.path() / "nope" / "*.*", to), NPlatform::kCopySourceMissing);
  EXPECT_FALSE(fs::exists(to));
  EXPECT_EQ(copyDirectoryFiles(src(), src() / "inner"), NPlatform::kCopyDestinationInSource);
  EXPECT_EQ(copyDirectoryFiles(src() / "*.*", src() / "sub" / "x"), NPlatform::kCopyDestinationInSource);
  EXPECT_FALSE(fs::exists(src() / "inner"));
  EXPECT_FALSE(fs::exists(src() / "sub" / "x"));
  // A target that is a file, and a file over a directory of the same name.
  writeFile(tmp.path() / "plain", "x");
  EXPECT_NE(copyDirectoryFiles(src() / "*.*", tmp.path() / "plain"), 0);
  EXPECT_EQ(readFile(tmp.path() / "plain"), "x");
  writeFile(to / "a.xml" / "inside", "x");
  EXPECT_NE(copyDirectoryFiles(src() / "*.*", to), 0);
  EXPECT_EQ(readFile(to / "a.xml" / "inside"), "x");
}

}  // namespace
