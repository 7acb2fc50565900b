#include "support/fake_host.hpp"

#include <sys/wait.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

#include "components/hpp/component.hpp"
#include "components/hpp/script_functions.hpp"

namespace fs = boost::filesystem;

namespace vlttest {

int shell(const std::string& command) {
  const int status = std::system(command.c_str());
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TLines list1D(const std::string& rid) {
  TLines items;
  for (int i = 0; i < ::get1DListSize(rid); ++i) items.push_back(::get1DListItem(rid, i));
  return items;
}

CTempDir::CTempDir() {
  mPath = fs::temp_directory_path() / fs::unique_path("vlt2hrw-test-%%%%-%%%%-%%%%");
  fs::create_directories(mPath);
}

CTempDir::~CTempDir() {
  boost::system::error_code ignored;
  fs::remove_all(mPath, ignored);
}

CFakeHost::CFakeHost() {
  componentDirectory() = VLT_SHIPPED_DIR;
  setService("get rig install bin", VLT_TOOLS_DIR);
  setLevel("TRACE");
}

bool CFakeHost::start() {
  NComponent::TPlatformServices s = services();
  return NComponent::InitComponent(&params, &s);
}

void CFakeHost::release() {
  if (params.releaseComponent != nullptr) params.releaseComponent();
}

log4cxx::LoggerPtr CFakeHost::logger(const std::string& service) {
  log4cxx::LoggerPtr served;
  services().requestService(service, nullptr, &served);
  return served;
}

std::vector<std::string> CFakeHost::lines() const {
  std::vector<std::string> out;
  for (const auto& r : records()) out.push_back(r.sink + " " + r.level + " " + r.message);
  return out;
}

std::vector<std::string> CFakeHost::lines(const std::string& sink) const {
  std::vector<std::string> out;
  for (const auto& r : records())
    if (r.sink == sink) out.push_back(r.level + " " + r.message);
  return out;
}

std::vector<std::string> CFakeHost::texts(const std::string& sink, const std::string& level) const {
  std::vector<std::string> out;
  for (const auto& r : records())
    if (r.sink == sink && r.level == level) out.push_back(r.message);
  return out;
}

bool CFakeHost::logged(const std::string& sink, const std::string& level, const std::string& text) const {
  for (const auto& r : records())
    if (r.sink == sink && r.level == level && r.message == text) return true;
  return false;
}

std::string readFile(const fs::path& file) {
  std::ifstream in(file.string(), std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

void writeFile(const fs::path& file, const std::string& text) {
  if (file.has_parent_path()) fs::create_directories(file.parent_path());
  std::ofstream out(file.string(), std::ios::binary);
  out << text;
}

}  // namespace vlttest
