#pragma once
// The in-process fake host of the unit tests: a host core whose services
// the component is started with, and helpers to look at what it logged.

#include <boost/filesystem.hpp>
#include <string>
#include <vector>

#include "host/host_core.hpp"

namespace vlttest {

using TLines = std::vector<std::string>;

// A fresh temporary directory, removed with the object.
class CTempDir {
 public:
  CTempDir();
  ~CTempDir();
  const boost::filesystem::path& path() const { return mPath; }
  std::string str() const { return mPath.string(); }

 private:
  boost::filesystem::path mPath;
};

class CFakeHost : public vlthost::CHostCore {
 public:
  // A host with the shipped component directory and the tool simulators.
  CFakeHost();
  // InitComponent with these services; true when it started.
  bool start();
  void release();

  // Messages as "<sink> <LEVEL> <text>" lines, in order.
  std::vector<std::string> lines() const;
  // Lines of one sink ("init", "translation", "component").
  std::vector<std::string> lines(const std::string& sink) const;
  // The texts logged at `level` on `sink`.
  std::vector<std::string> texts(const std::string& sink, const std::string& level) const;
  bool logged(const std::string& sink, const std::string& level, const std::string& text) const;

  // A logger the host serves by that service name ("get component
  // translation logger", "get component initialization logger").
  log4cxx::LoggerPtr logger(const std::string& service);

  void setWdir(const std::string& dir) { setService("get wdir", dir); }
  void setLibrary(const std::string& dir) { setService("get library location", dir); }

  NComponent::TRegisterParams params;
};

std::string readFile(const boost::filesystem::path& file);
void writeFile(const boost::filesystem::path& file, const std::string& text);
// The exit code of a shell command line, -1 when it did not exit.
int shell(const std::string& command);
// The items of a one-dimensional script list.
TLines list1D(const std::string& rid);

}  // namespace vlttest

#include <gtest/gtest.h>

namespace vlttest {

// A started component on a fake host whose working directory is a fresh
// temporary directory; messages of the start are cleared.
struct StartedHostTest : ::testing::Test {
  CFakeHost host;
  CTempDir tmp;

  void SetUp() override {
    ASSERT_TRUE(host.start());
    host.setWdir(tmp.str());
    host.clearRecords();
  }
  void TearDown() override { host.release(); }
};

// A started component whose working directory "<tmp>/wdir" holds config,
// log/reports and neutral/catalogs; the source library is the temporary
// directory. Fixtures call this SetUp first and write their files after.
struct WorkDirHostTest : ::testing::Test {
  CFakeHost host;
  CTempDir tmp;
  boost::filesystem::path wdir = tmp.path() / "wdir", config = wdir / "config", log = wdir / "log",
                          neutral = wdir / "neutral", catalogs = neutral / "catalogs";

  void SetUp() override {
    for (const auto& dir : {config, log / "reports", catalogs}) boost::filesystem::create_directories(dir);
    ASSERT_TRUE(host.start());
    host.setWdir(wdir.string());
    host.setLibrary(tmp.str());
    host.clearRecords();
  }
  void TearDown() override { host.release(); }
};

}  // namespace vlttest
