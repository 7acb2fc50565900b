// vlt2hrw-summary WDIR: writes summary.html and summary.json into a working
// directory, from what the directory holds.

#include <cstring>
#include <iostream>

#include "summary/summary.hpp"

int main(int argc, char** argv) {
  if (argc == 2 && (std::strcmp(argv[1], "--help") == 0 || std::strcmp(argv[1], "-h") == 0)) {
    std::cout << "usage: vlt2hrw-summary WDIR\n"
                 "Writes summary.html (for people) and summary.json (for programs) into the\n"
                 "working directory WDIR of a migration, from its lists, reports, logs and\n"
                 "target library. Exit status: 0 written, 2 usage error or WDIR unusable.\n";
    return 0;
  }
  if (argc != 2) {
    std::cerr << "usage: vlt2hrw-summary WDIR\n";
    return 2;
  }
  return vltsummary::runSummaryCommand(argv[1], std::cout, std::cerr);
}
