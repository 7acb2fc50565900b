// A whole-file write that fails or is killed part-way leaves the old file;
// deep trees are removed, copied and written without recursion.

#include <gtest/gtest.h>
#include <log4cxx/logger.h>
#include <pthread.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>
#include <sstream>

#include "common/tlx_tree.hpp"
#include "common/whole_file.hpp"
#include "platform/markup_core.hpp"
#include "support/fake_host.hpp"

namespace fs = boost::filesystem;
using namespace vlttest;
using NMarkupCore::CXML_Parser;
using NMarkupCore::CXMLHierPath;

namespace {

// Runs `work` on a thread with a stack of 256 KiB, far too small for a walk
// that recurses once per level of the deep trees below.
void onSmallStack(std::function<void()> work) {
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  pthread_attr_setstacksize(&attributes, 256 * 1024);
  pthread_t thread;
  auto run = [](void* argument) -> void* {
    (*static_cast<std::function<void()>*>(argument))();
    return nullptr;
  };
  ASSERT_EQ(pthread_create(&thread, &attributes, run, &work), 0);
  pthread_join(thread, nullptr);
  pthread_attr_destroy(&attributes);
}

size_t temporaries(const fs::path& dir) {
  size_t count = 0;
  for (fs::directory_iterator it(dir), end; it != end; ++it) count += it->path().extension() == ".tmp";
  return count;
}

TEST(WholeFile, WriteFailingOrKilledPartWayKeepsTheOldFile) {
  CTempDir tmp;
  const fs::path target = tmp.path() / "catalog.list";
  writeFile(target, "old\n");
  // A child whose files may not grow past 64 KiB writes 1 MiB.
  pid_t child = ::fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    ::signal(SIGXFSZ, SIG_IGN);
    struct rlimit limit = {65536, 65536};
    ::setrlimit(RLIMIT_FSIZE, &limit);
    rig_common::CWholeFile out(target);
    for (int i = 0; i < 16384; ++i) out << std::string(63, 'x') << '\n';
    ::_exit(out.commit() ? 1 : 0);
  }
  int status = 0;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 0);  // commit reported the failure
  EXPECT_EQ(readFile(target), "old\n");
  EXPECT_EQ(temporaries(tmp.path()), 0u);
  // A child killed during a large write.
  int ready[2];
  ASSERT_EQ(::pipe(ready), 0);
  child = ::fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    rig_common::CWholeFile out(target);
    const std::string block(1 << 20, 'r');
    out << block;
    out.stream().flush();
    if (::write(ready[1], "!", 1) != 1) ::_exit(2);
    while (true) out << block;  // until killed
  }
  char byte = 0;
  ASSERT_EQ(::read(ready[0], &byte, 1), 1);
  ::kill(child, SIGKILL);
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  ::close(ready[0]);
  ::close(ready[1]);
  EXPECT_TRUE(WIFSIGNALED(status));
  EXPECT_EQ(readFile(target), "old\n");
  EXPECT_TRUE(rig_common::writeWholeFile(target, "new\n"));
  EXPECT_EQ(readFile(target), "new\n");
  EXPECT_FALSE(rig_common::writeWholeFile(tmp.path() / "none" / "x", "y"));
  {
    rig_common::CWholeFile unfinished(target);  // committed when it goes
    unfinished << "last\n";
  }
  EXPECT_EQ(readFile(target), "last\n");
}

TEST(DeepTrees, XmlSubtreeIsRemovedAndTlxTreeCopiedAndWrittenWithoutRecursion) {
  CTempDir tmp;
  log4cxx::LoggerPtr logger = log4cxx::Logger::getLogger("hardening_files_test");
  std::string text = "<rig><keep/>";
  for (int i = 0; i < 100000; ++i) text += "<a>";
  for (int i = 0; i < 100000; ++i) text += "</a>";
  writeFile(tmp.path() / "deep.xml", text + "</rig>");
  CXML_Parser xml;
  ASSERT_TRUE(xml.parse((tmp.path() / "deep.xml").string(), logger));
  CXML_Parser::CDOMElement* inner = xml.getDOMElement(CXMLHierPath("rig/a/a/a"));
  ASSERT_NE(inner, nullptr);
  onSmallStack([&] { EXPECT_NE(xml.remove(CXMLHierPath("rig/a")), nullptr); });
  EXPECT_EQ(xml.getAttribute(inner, "x"), "");
  EXPECT_EQ(xml.getDOMElement(CXMLHierPath("rig/a")), nullptr);
  ASSERT_TRUE(xml.write((tmp.path() / "out.xml").string(), logger));
  EXPECT_EQ(readFile(tmp.path() / "out.xml"),
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<rig>\n  <keep />\n</rig>\n");
  rig_common::TLXHandler::TLXNode root;
  rig_common::TLXHandler::TLXNode* node = &root;
  const int depth = 3000;
  for (int i = 0; i < depth; ++i) node = node->addChild("K", "v");
  root.addChild("LAST", "x");
  std::ostringstream original, copied;
  onSmallStack([&] {
    rig_common::TLXHandler::writeTLXChildren(original, root);
    rig_common::TLXHandler::writeTLXChildren(copied, *root.clone());
  });
  EXPECT_TRUE(copied.str() == original.str());
  text = original.str();
  EXPECT_EQ(text.substr(0, 14), ".K v\n..K v\n...");
  EXPECT_EQ(text.substr(text.size() - 8), ".LAST x\n");
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), depth + 1);
}

}  // namespace
