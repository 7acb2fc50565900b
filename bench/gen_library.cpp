// vlt2hrw-gen-library: writes a generated VLT library (see gen_library.hpp).
//
//   vlt2hrw-gen-library N OUT [--catalogs C] [--parts P] [--seed S]
//
// OUT must not exist yet or be empty. Prints one line of counts.
#include "bench/gen_library.hpp"

#include <cstdlib>
#include <iostream>

int main(int argc, char** argv) {
  const char* usage = "usage: vlt2hrw-gen-library N OUT [--catalogs C] [--parts P] [--seed S]";
  if (argc < 3) {
    std::cerr << usage << "\n";
    return 2;
  }
  genlib::TOptions options;
  options.symbols = std::strtoul(argv[1], nullptr, 10);
  const boost::filesystem::path out = argv[2];
  for (int i = 3; i < argc; ++i) {
    const std::string option = argv[i];
    if (i + 1 >= argc) {
      std::cerr << usage << "\n";
      return 2;
    }
    const unsigned long value = std::strtoul(argv[++i], nullptr, 10);
    if (option == "--catalogs")
      options.catalogs = value;
    else if (option == "--parts")
      options.parts = value;
    else if (option == "--seed")
      options.seed = static_cast<std::uint32_t>(value);
    else {
      std::cerr << usage << "\n";
      return 2;
    }
  }
  if (options.symbols == 0 || (boost::filesystem::exists(out) && !boost::filesystem::is_empty(out))) {
    std::cerr << usage << " (N > 0, OUT new or empty)\n";
    return 2;
  }
  const genlib::TSummary s = genlib::generate(out, options);
  std::cout << "symbols " << s.symbols << " files " << s.symbolFiles << " directories " << s.directories << " parts "
            << s.parts << " mapping files " << s.mappingFiles << " cells " << s.cells << "\n";
  return 0;
}
