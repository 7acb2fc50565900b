// The process starter: environment list, blocking run, piped run.

#include "core/hpp/impl/run_program.hpp"

#include <log4cxx/level.h>

#include <algorithm>
#include <cctype>
#include <cstring>
#include <vector>

#include "common/log4rig.hpp"
#include "common/text_helpers.hpp"

namespace NMisc {

using rig_common::sameNameIgnoringCase;

std::string systemErrorText(int code) { return NPlatform::systemErrorText(code); }

CRunProgram<std::string>::CRunProgram(log4cxx::LoggerPtr logger) : mLogger(std::move(logger)) {}

CRunProgram<std::string>::~CRunProgram() {
  // Pipe ends still open when the runner goes (slots 1 and 3 hold the saved
  // standard handles, which are not ours).
  for (auto& process : mProcesses)
    for (NPlatform::THandle* end :
         {&process->readingPipe[0], &process->readingPipe[2], &process->writingPipe[0], &process->writingPipe[2]})
      if (*end != NPlatform::kNullHandle) NPlatform::closeHandle(*end);
}

bool CRunProgram<std::string>::obtainCurrentEnvironment() {
  RIG_LOG1(mLogger, Debug, "Process starter: obtaining current environment: ");
  mEnvironment.clear();
  char* block = NPlatform::getEnvironmentStrings();
  if (block == nullptr) {
    int error = NPlatform::lastError();
    RIG_LOG1(mLogger, Error, "Process starter: environment cannot be loaded. " << systemErrorText(error));
    return false;
  }
  for (const char* entry = block; *entry != '\0'; entry += std::strlen(entry) + 1) {
    const char* separator = std::strchr(entry, '=');
    if (separator == nullptr) {
      RIG_LOG1(mLogger, Warn,
               "The key/val separator not found for the following variable definition: '" << entry << "'.");
    } else if (separator == entry) {
      RIG_LOG1(mLogger, Warn,
               "Variable name is invalid (key/val separator is the first character) for the following variable "
               "definition: '"
                   << entry << "'.");
    } else {
      mEnvironment.emplace_back(std::string(entry, separator), std::string(separator + 1));
    }
  }
  NPlatform::freeEnvironmentStrings(block);
  return true;
}

CRunProgram<std::string>::TEnvironment::iterator CRunProgram<std::string>::findVariable(const std::string& name) {
  return std::find_if(mEnvironment.begin(), mEnvironment.end(), [&name](const TEnvironment::value_type& entry) {
    return sameNameIgnoringCase(entry.first, name);
  });
}

void CRunProgram<std::string>::replaceVariable(const std::string& name, const std::string& value) {
  RIG_LOG1(mLogger, Debug, "Process starter: setting variable: " << name << "=" << value);
  auto found = findVariable(name);
  if (found != mEnvironment.end()) mEnvironment.erase(found);
  mEnvironment.emplace_back(name, value);
}

void CRunProgram<std::string>::pushValueFront(const std::string& name, const std::string& value) {
  RIG_LOG1(mLogger, Debug, "Process starter: pushing value to front: " << name << "=" << value << "$" << name);
  auto found = findVariable(name);
  if (found != mEnvironment.end())
    found->second = value + found->second;
  else
    mEnvironment.emplace_back(name, value);
}

void CRunProgram<std::string>::logEnvironment() const {
  // The sorted copy is made only for the log, and only when it is read.
  if (mLogger == nullptr || !mLogger->isEnabledFor(log4cxx::Level::getTrace())) return;
  std::vector<TEnvironment::value_type> sorted(mEnvironment.begin(), mEnvironment.end());
  std::sort(sorted.begin(), sorted.end());
  RIG_LOG1(mLogger, Trace, "Environment passed for creating process:");
  for (const auto& entry : sorted) RIG_LOG1(mLogger, Trace, "    Variable: " << entry.first << "=" << entry.second);
}

std::unique_ptr<char[]> CRunProgram<std::string>::environmentBlock() const {
  if (mEnvironment.empty()) return nullptr;
  size_t size = 1;
  for (const auto& entry : mEnvironment) size += entry.first.size() + entry.second.size() + 2;
  std::unique_ptr<char[]> block(new char[size]);
  char* out = block.get();
  for (const auto& entry : mEnvironment) {
    std::memcpy(out, entry.first.data(), entry.first.size());
    out += entry.first.size();
    *out++ = '=';
    std::memcpy(out, entry.second.data(), entry.second.size());
    out += entry.second.size();
    *out++ = '\0';
  }
  *out = '\0';
  return block;
}

bool CRunProgram<std::string>::runProgram(const std::string& command, bool wait, unsigned long creationFlags) {
  (void)creationFlags;  // no console windows to suppress here
  RIG_LOG1(mLogger, Debug, "Process starter: creating process: '" << command << "'");
  mExitCode = 0;
  if (command.empty()) {
    RIG_LOG1(mLogger, Error, "Process starter: process cannot be created - empty command");
    return false;
  }
  logEnvironment();
  NPlatform::TStartupInfo startupInfo;
  NPlatform::CChildProcess process;
  std::unique_ptr<char[]> block = environmentBlock();
  RIG_LOG1(mLogger, Debug, "Create process: " << command);
  if (!process.create(command, block.get(), startupInfo)) {
    int error = NPlatform::lastError();
    RIG_LOG1(mLogger, Error, "Process starter: process cannot be created. " << systemErrorText(error));
    return false;
  }
  RIG_LOG1(mLogger, Debug, "Process starter: process created successfully; waiting until child process exits...");
  if (wait) process.wait(NPlatform::kInfinite);
  bool result = true;
  unsigned long code = 0;
  if (process.exitCode(code)) {
    mExitCode = code;
  } else {
    int error = NPlatform::lastError();
    RIG_LOG1(mLogger, Error,
             "Process starter: process exited, but return code cannot be obtained. Reason: " << systemErrorText(error));
    result = false;
  }
  RIG_LOG1(mLogger, Debug, "Process starter: cleanup.");
  process.close();
  RIG_LOG1(mLogger, Debug, "Process starter: all done.");
  return result;
}

}  // namespace NMisc
