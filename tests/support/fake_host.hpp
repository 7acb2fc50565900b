#pragma once
// The in-process fake host of the unit tests: a host core whose services
// the component is started with, and helpers to look at what it logged.

#include <gtest/gtest.h>

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

// A host with the shipped component directory and the tool simulators.
class CFakeHost : public vlthost::CHostCore {
 public:
  CFakeHost();
  bool start();  // InitComponent with these services; true when it started
  void release();

  TLines lines() const;                         // "<sink> <LEVEL> <text>", in order
  TLines lines(const std::string& sink) const;  // "<LEVEL> <text>" of "init", "translation" or "component"
  TLines texts(const std::string& sink, const std::string& level) const;
  bool logged(const std::string& sink, const std::string& level, const std::string& text) const;
  // The logger served by that name ("get component translation logger", ...).
  log4cxx::LoggerPtr logger(const std::string& service);

  void setWdir(const std::string& dir) { setService("get wdir", dir); }
  void setLibrary(const std::string& dir) { setService("get library location", dir); }

  NComponent::TRegisterParams params;
};

std::string readFile(const boost::filesystem::path& file);
void writeFile(const boost::filesystem::path& file, const std::string& text);
int shell(const std::string& command);  // the exit code, -1 when it did not exit
TLines list1D(const std::string& rid);  // the items of a one-dimensional list

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

// The same with the working directory "<tmp>/wdir" holding config,
// log/reports and neutral/catalogs, and the temporary directory as the
// source library. Fixtures call this SetUp first and write their files after.
struct WorkDirHostTest : StartedHostTest {
  boost::filesystem::path wdir = tmp.path() / "wdir", config = wdir / "config", log = wdir / "log",
                          neutral = wdir / "neutral", catalogs = neutral / "catalogs";
  void SetUp() override {
    for (const auto& dir : {config, log / "reports", catalogs}) boost::filesystem::create_directories(dir);
    StartedHostTest::SetUp();
    host.setWdir(wdir.string());
    host.setLibrary(tmp.str());
  }
};

}  // namespace vlttest
