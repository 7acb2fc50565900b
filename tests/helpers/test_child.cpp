// A child for the process starter tests. Its arguments are commands, done in
// order: report=FILE (later prints go to FILE, truncated, not to stdout),
// args ("arg:<argument>" for every argument), env ("env:<entry>" for every
// environment entry, in order), fds ("fd:<n>" for every open descriptor),
// cwd ("cwd:<directory>"), out=TEXT and err=TEXT (TEXT and a line feed to
// stdout, to stderr), stdin=FILE (copies standard input to FILE up to its
// end), sleep=MS, spin=MS (keeps the processor busy), exit=N (ends with code
// N), signal=N (ends by signal N).
#include <dirent.h>
#include <signal.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iostream>
#include <string>
#include <thread>

extern char** environ;

int main(int argc, char** argv) {
  std::ofstream report;
  auto out = [&]() -> std::ostream& { return report.is_open() ? static_cast<std::ostream&>(report) : std::cout; };
  for (int i = 1; i < argc; ++i) {
    const std::string command = argv[i], value = command.substr(command.find('=') + 1);
    auto is = [&](const char* prefix) { return command.rfind(prefix, 0) == 0; };
    if (is("report=")) {
      report.open(value, std::ios::binary | std::ios::trunc);
    } else if (command == "args") {
      for (int j = 1; j < argc; ++j) out() << "arg:" << argv[j] << '\n';
    } else if (command == "env") {
      for (char** entry = environ; *entry != nullptr; ++entry) out() << "env:" << *entry << '\n';
    } else if (command == "fds") {
      out().flush();
      DIR* dir = opendir("/proc/self/fd");
      int own = dir != nullptr ? dirfd(dir) : -1;
      for (dirent* e = dir != nullptr ? readdir(dir) : nullptr; e != nullptr; e = readdir(dir))
        if (e->d_name[0] != '.' && std::atoi(e->d_name) != own) out() << "fd:" << e->d_name << '\n';
      if (dir != nullptr) closedir(dir);
    } else if (command == "cwd") {
      char buffer[4096];
      out() << "cwd:" << (getcwd(buffer, sizeof buffer) != nullptr ? buffer : "?") << '\n';
    } else if (is("out=")) {
      std::cout << value << std::endl;
    } else if (is("err=")) {
      std::cerr << value << std::endl;
    } else if (is("stdin=")) {
      std::ofstream copy(value, std::ios::binary | std::ios::trunc);
      char buffer[65536];
      ssize_t count;
      while ((count = read(0, buffer, sizeof buffer)) > 0) copy.write(buffer, count);
    } else if (is("sleep=")) {
      std::this_thread::sleep_for(std::chrono::milliseconds(std::atol(value.c_str())));
    } else if (is("spin=")) {
      auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(std::atol(value.c_str()));
      volatile unsigned long work = 0;
      while (std::chrono::steady_clock::now() < end) ++work;
    } else if (is("exit=")) {
      out().flush();
      return std::atoi(value.c_str());
    } else if (is("signal=")) {
      out().flush();
      signal(std::atoi(value.c_str()), SIG_DFL);
      raise(std::atoi(value.c_str()));
    }
  }
  return 0;
}
