#include "support.hpp"

#include <unistd.h>

#include <boost/filesystem.hpp>
#include <fstream>
#include <memory>

#include "components/hpp/component.hpp"
#include "host/host_core.hpp"

namespace fs = boost::filesystem;

namespace vltfuzz {

namespace {

const fs::path& scratch() {
  static const fs::path dir = [] {
    fs::path made = fs::temp_directory_path() / ("vlt2hrw-fuzz-" + std::to_string(::getpid()));
    fs::create_directories(made);
    return made;
  }();
  return dir;
}

}  // namespace

std::string scratchPath(const std::string& name) { return (scratch() / name).string(); }

std::string asFile(const uint8_t* data, size_t size, const std::string& name) {
  const std::string path = scratchPath(name);
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
  return path;
}

void startComponent() {
  static vlthost::CHostCore* host = [] {
    auto* made = new vlthost::CHostCore;  // lives as long as the process
    made->componentDirectory() = VLT_SHIPPED_DIR;
    made->setLevel("TRACE");
    made->setService("get wdir", scratch().string());
    made->setService("get library location", scratch().string());
    static NComponent::TRegisterParams params;
    NComponent::TPlatformServices services = made->services();
    if (!NComponent::InitComponent(&params, &services)) std::abort();
    return made;
  }();
  host->clearRecords();
}

}  // namespace vltfuzz
