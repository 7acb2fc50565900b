// A stand-in for a tool that the component starts: it appends its name and
// arguments to <RECORD_TOOL_DIR>/calls.txt, one line a run ("<name> <arg>|<arg>"),
// and with -nostart among them copies its standard input to stdin.txt. It
// exits with 2 when RECORD_TOOL_FAIL_ON is set and found in that input.
// Without RECORD_TOOL_DIR it does nothing.
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>

int main(int argc, char** argv) {
  const char* dir = std::getenv("RECORD_TOOL_DIR");
  if (dir == nullptr) return 0;
  const std::string self = argv[0];
  std::string line = self.substr(self.find_last_of('/') + 1), input;
  bool script = false;
  for (int i = 1; i < argc; ++i) {
    line += (i == 1 ? " " : "|") + std::string(argv[i]);
    script = script || std::string(argv[i]) == "-nostart";
  }
  std::ofstream(std::string(dir) + "/calls.txt", std::ios::app) << line << '\n';
  if (script) {
    input.assign(std::istreambuf_iterator<char>(std::cin), std::istreambuf_iterator<char>());
    std::ofstream(std::string(dir) + "/stdin.txt", std::ios::app | std::ios::binary) << input;
  }
  const char* failOn = std::getenv("RECORD_TOOL_FAIL_ON");
  if (failOn != nullptr && *failOn != '\0' && input.find(failOn) != std::string::npos) {
    std::cout << "Error: failing on request" << std::endl;
    return 2;
  }
  return 0;
}
