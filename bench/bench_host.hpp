#pragma once
// Pieces the component benchmarks share: CPU time of this process or of its
// waited-for children, and the component started on the in-process host.

#include <sys/resource.h>

#include <boost/filesystem/path.hpp>
#include <cstdio>
#include <cstdlib>

#include "components/hpp/component.hpp"
#include "host/host_core.hpp"

namespace benchlib {

// User and system seconds of RUSAGE_SELF or RUSAGE_CHILDREN.
inline double cpuSeconds(int who) {
  rusage usage{};
  getrusage(who, &usage);
  return static_cast<double>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
         static_cast<double>(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

// Serves the build's component, tools and `qlln` installation, `wdir` and
// the library root on `host`, and starts the component; exits when it does
// not start. The entry points it gives back release it.
inline NComponent::TRegisterParams startComponent(vlthost::CHostCore& host, const boost::filesystem::path& buildDir,
                                                  const boost::filesystem::path& qlln,
                                                  const boost::filesystem::path& wdir,
                                                  const boost::filesystem::path& library) {
  host.componentDirectory() = (buildDir / "bin" / "vlt2hrw_main").string();
  host.setService("get rig install bin", (buildDir / "bin" / "tools").string());
  host.setService("get qlln installation path", qlln.string());
  host.setService("get wdir", wdir.string());
  host.setService("get library location", library.string());
  host.setLevel("INFO");
  NComponent::TRegisterParams params;
  NComponent::TPlatformServices services = host.services();
  if (!NComponent::InitComponent(&params, &services)) {
    std::printf("component did not start\n");
    std::exit(1);
  }
  return params;
}

}  // namespace benchlib
