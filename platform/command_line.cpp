// Parsing of the command lines handed to the process layer.

#include "platform/command_line.hpp"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>

namespace NPlatform {

namespace {

bool isBlank(char c) { return c == ' ' || c == '\t'; }

std::string lower(std::string text) {
  for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return text;
}

std::string slashes(std::string text) {
  std::replace(text.begin(), text.end(), '\\', '/');
  return text;
}

size_t skipBlanks(const std::string& text, size_t pos) {
  while (pos < text.size() && isBlank(text[pos])) ++pos;
  return pos;
}

// Reads one blank-delimited word at `pos` (lower-cased); `pos` moves past it.
std::string wordAt(const std::string& text, size_t& pos) {
  size_t start = pos;
  while (pos < text.size() && !isBlank(text[pos])) ++pos;
  return lower(text.substr(start, pos - start));
}

// "cmd /c <rest>": true with the rest when the line has that form.
bool matchInterpreter(const std::string& line, const char* const names[], const std::string& option,
                      std::string& rest) {
  size_t pos = skipBlanks(line, 0);
  std::string program = wordAt(line, pos);
  bool known = false;
  for (const char* const* name = names; *name != nullptr; ++name) known = known || program == *name;
  if (!known || pos >= line.size()) return false;
  pos = skipBlanks(line, pos);
  std::string opt = wordAt(line, pos);
  if (opt != option) return false;
  rest = line.substr(skipBlanks(line, pos));
  return true;
}

size_t countQuotes(const std::string& text) { return std::count(text.begin(), text.end(), '"'); }

bool isExecutableFile(const std::string& file) {
  struct stat info;
  return ::stat(file.c_str(), &info) == 0 && S_ISREG(info.st_mode) && ::access(file.c_str(), X_OK) == 0;
}

bool hasExtension(const std::string& word) {
  size_t slash = word.find_last_of('/');
  size_t dot = word.find_last_of('.');
  return dot != std::string::npos && (slash == std::string::npos || dot > slash + 1);
}

std::string tryCandidates(const std::string& file) {
  if (isExecutableFile(file)) return file;
  if (!hasExtension(file) && isExecutableFile(file + ".exe")) return file + ".exe";
  return std::string();
}

// cmd removes an outer pair of quotes, except around a lone quoted name of
// an existing program ("cmd /c "C:\Program Files\x.exe"").
std::string stripOuterQuotes(const std::string& rest) {
  if (rest.size() < 2 || rest.front() != '"' || rest.back() != '"') return rest;
  std::string inner = rest.substr(1, rest.size() - 2);
  if (countQuotes(inner) % 2 != 0) return rest;
  if (countQuotes(inner) == 0 && inner.find_first_of(" \t") != std::string::npos &&
      inner.find_first_of("&<>()@^|") == std::string::npos && !tryCandidates(slashes(inner)).empty())
    return rest;
  return inner;
}

}  // namespace

TCommandPlan parseCmdCommand(const std::string& text) {
  TCommandPlan plan;
  plan.interpreter = TInterpreter::kCmd;
  std::string rest = text;
  while (!rest.empty() && isBlank(rest.back())) rest.pop_back();
  rest = stripOuterQuotes(rest);

  std::string word;
  bool started = false;
  bool inQuotes = false;
  bool pending = false;  // the last redirection still waits for its file
  auto flush = [&]() {
    if (!started) return;
    if (pending) {
      plan.redirections.back().file = slashes(word);
      pending = false;
    } else {
      plan.arguments.push_back(slashes(word));
    }
    word.clear();
    started = false;
  };

  for (size_t i = 0; i < rest.size(); ++i) {
    char c = rest[i];
    if (inQuotes) {
      if (c == '"')
        inQuotes = false;
      else
        word += c;
      continue;
    }
    if (c == '"') {
      inQuotes = true;
      started = true;
      continue;
    }
    if (isBlank(c)) {
      flush();
      continue;
    }
    bool digitOperator = !started && (c == '0' || c == '1' || c == '2') && i + 1 < rest.size() &&
                         (rest[i + 1] == '>' || rest[i + 1] == '<');
    if (c != '>' && c != '<' && !digitOperator) {
      word += c;
      started = true;
      continue;
    }
    flush();
    if (pending) {
      plan.syntaxError = "The syntax of the command is incorrect.";
      return plan;
    }
    TRedirection redirection;
    redirection.fd = c == '<' ? 0 : 1;
    if (digitOperator) redirection.fd = c - '0';
    if (digitOperator) c = rest[++i];
    if (c == '<') {
      redirection.kind = TRedirection::kRead;
    } else {
      redirection.kind = TRedirection::kWrite;
      if (i + 1 < rest.size() && rest[i + 1] == '>') {
        redirection.kind = TRedirection::kAppend;
        ++i;
      }
      if (i + 2 < rest.size() && rest[i + 1] == '&' && std::isdigit(static_cast<unsigned char>(rest[i + 2]))) {
        redirection.kind = TRedirection::kDuplicate;
        redirection.sourceFd = rest[i + 2] - '0';
        i += 2;
        plan.redirections.push_back(redirection);
        continue;
      }
    }
    plan.redirections.push_back(redirection);
    pending = true;
  }
  flush();
  if (pending) plan.syntaxError = "The syntax of the command is incorrect.";
  return plan;
}

std::vector<std::string> splitWindowsCommandLine(const std::string& line) {
  std::vector<std::string> words;
  size_t pos = skipBlanks(line, 0);
  if (pos >= line.size()) return words;
  // The program name: up to the closing quote or the first blank, taken as is.
  std::string program;
  if (line[pos] == '"') {
    size_t end = line.find('"', pos + 1);
    if (end == std::string::npos) end = line.size();
    program = line.substr(pos + 1, end - pos - 1);
    pos = end < line.size() ? end + 1 : end;
  } else {
    size_t start = pos;
    while (pos < line.size() && !isBlank(line[pos])) ++pos;
    program = line.substr(start, pos - start);
  }
  words.push_back(program);

  std::string word;
  bool started = false;
  bool inQuotes = false;
  for (size_t i = pos; i < line.size(); ++i) {
    char c = line[i];
    if (c == '\\') {
      size_t count = 0;
      while (i < line.size() && line[i] == '\\') {
        ++count;
        ++i;
      }
      if (i < line.size() && line[i] == '"') {
        word.append(count / 2, '\\');
        if (count % 2 != 0) {
          word += '"';
        } else {
          --i;  // the quote is handled by the next turn
        }
      } else {
        word.append(count, '\\');
        --i;
      }
      started = true;
      continue;
    }
    if (c == '"') {
      if (inQuotes && i + 1 < line.size() && line[i + 1] == '"') {
        word += '"';
        ++i;
      } else {
        inQuotes = !inQuotes;
      }
      started = true;
      continue;
    }
    if (isBlank(c) && !inQuotes) {
      if (started) words.push_back(word);
      word.clear();
      started = false;
      continue;
    }
    word += c;
    started = true;
  }
  if (started) words.push_back(word);
  return words;
}

// The bodies the component hands to ksh are tool calls on paths; it writes
// no variables or substitutions into them. A path may hold "$" or "`",
// which ksh would expand inside the double quotes around a path, so they are
// escaped and reach the tool as they stand.
static std::string literalDollars(const std::string& body) {
  std::string escaped;
  escaped.reserve(body.size());
  for (char c : body) {
    if (c == '$' || c == '`') escaped += '\\';
    escaped += c;
  }
  return escaped;
}

TCommandPlan parseCommandLine(const std::string& line) {
  static const char* const cmdNames[] = {"cmd", "cmd.exe", nullptr};
  static const char* const kshNames[] = {"ksh", "ksh.exe", nullptr};
  std::string rest;
  if (matchInterpreter(line, cmdNames, "/c", rest)) return parseCmdCommand(rest);

  TCommandPlan plan;
  if (matchInterpreter(line, kshNames, "-c", rest)) {
    plan.interpreter = TInterpreter::kKsh;
    size_t last = rest.find_last_of('"');
    std::string body = rest;
    if (!rest.empty() && rest.front() == '"' && last > 0) body = rest.substr(1, last - 1);
    plan.arguments = {"ksh", "-c", literalDollars(body)};
    return plan;
  }
  plan.arguments = splitWindowsCommandLine(line);
  return plan;
}

std::vector<std::string> splitSearchPath(const std::string& value) {
  std::vector<std::string> dirs;
  std::string dir;
  auto flush = [&]() {
    dir.erase(std::remove(dir.begin(), dir.end(), '"'), dir.end());
    if (!dir.empty()) dirs.push_back(slashes(dir));
    dir.clear();
  };
  for (char c : value) {
    if (c == ';' || c == ':')
      flush();
    else
      dir += c;
  }
  flush();
  return dirs;
}

std::string toPosixSearchPath(const std::string& value) {
  std::string out;
  for (const std::string& dir : splitSearchPath(value)) out += (out.empty() ? "" : ":") + dir;
  return out;
}

std::string findProgram(const std::string& word, const std::string& searchPath) {
  if (word.empty()) return std::string();
  if (word.find('/') != std::string::npos) return tryCandidates(word);
  for (const std::string& dir : splitSearchPath(searchPath)) {
    std::string found = tryCandidates(dir + "/" + word);
    if (!found.empty()) return found;
  }
  return std::string();
}

}  // namespace NPlatform
