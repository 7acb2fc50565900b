#include "support/fake_host.hpp"

#include <sys/wait.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>

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

CTempDir::CTempDir() : mPath(fs::temp_directory_path() / fs::unique_path("vlt2hrw-test-%%%%-%%%%-%%%%")) {
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

log4cxx::LoggerPtr CFakeHost::logger(const std::string& service) {
  log4cxx::LoggerPtr served;
  services().requestService(service, nullptr, &served);
  return served;
}

void CFakeHost::release() {
  if (params.releaseComponent != nullptr) params.releaseComponent();
}

// An empty `sink` or `level` stands for every one, and the lines then begin with it.
TLines CFakeHost::texts(const std::string& sink, const std::string& level) const {
  TLines out;
  for (const auto& r : records())
    if ((sink.empty() || r.sink == sink) && (level.empty() || r.level == level))
      out.push_back((sink.empty() ? r.sink + " " : "") + (level.empty() ? r.level + " " : "") + r.message);
  return out;
}

TLines CFakeHost::lines() const { return texts("", ""); }
TLines CFakeHost::lines(const std::string& sink) const { return texts(sink, ""); }

bool CFakeHost::logged(const std::string& sink, const std::string& level, const std::string& text) const {
  const TLines all = texts(sink, level);
  return std::find(all.begin(), all.end(), text) != all.end();
}

std::string readFile(const fs::path& file) {
  std::ifstream in(file.string(), std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

void writeFile(const fs::path& file, const std::string& text) {
  if (file.has_parent_path()) fs::create_directories(file.parent_path());
  std::ofstream(file.string(), std::ios::binary) << text;
}

}  // namespace vlttest
