#include "common/tlx_tree.hpp"

#include <algorithm>
#include <cctype>
#include <fstream>
#include <istream>
#include <ostream>
#include <sstream>

namespace rig_common {
namespace TLXHandler {

namespace {

// The characters a line is trimmed of, and that end a keyword.
inline bool isLineBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }
inline bool isSpace(char c) { return isLineBlank(c) || c == '\v' || c == '\f'; }

bool sameKeyword(const std::string& a, const std::string& b, bool caseSensitive) {
  if (caseSensitive) return a == b;
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i)
    if (std::tolower(static_cast<unsigned char>(a[i])) != std::tolower(static_cast<unsigned char>(b[i])))
      return false;
  return true;
}

void report(ILogger* logger, int level, const std::string& message) {
  if (logger != nullptr) (*logger)(level, message);
}

}  // namespace

// ---------------------------------------------------------------- TLXNode

TLXNode::TLXNode(ILogger* logger, unsigned level, std::string keyword)
    : level(level), keyword(std::move(keyword)), logger(logger) {}

TLXNode::~TLXNode() {
  // Deletes the subtree without recursion, children before their parent, so
  // that a deeply nested file cannot exhaust the stack.
  if (children.empty()) return;
  std::vector<std::unique_ptr<TLXNode>> stack;
  stack.reserve(children.size());
  for (auto& child : children)
    if (child) stack.push_back(std::move(child));
  children.clear();
  while (!stack.empty()) {
    TLXNode* top = stack.back().get();
    if (top->children.empty()) {
      stack.pop_back();
      continue;
    }
    for (auto& child : top->children)
      if (child) stack.push_back(std::move(child));
    top->children.clear();
  }
}

std::unique_ptr<TLXNode> TLXNode::clone() const {
  auto copy = std::make_unique<TLXNode>(logger, level, keyword);
  copy->values = values;
  copy->children.reserve(children.size());
  for (const auto& child : children) copy->adoptChild(child->clone());
  return copy;
}

TLXNode* TLXNode::searchFrom(size_t start, const std::string& wanted, bool caseSensitive) {
  for (size_t i = start; i < children.size(); ++i) {
    if (sameKeyword(children[i]->keyword, wanted, caseSensitive)) {
      cursor = children[i].get();
      mCursorIndex = i;
      return cursor;
    }
  }
  cursor = nullptr;
  return nullptr;
}

TLXNode* TLXNode::findFirstChild(const std::string& wanted, bool caseSensitive) {
  cursor = nullptr;
  return searchFrom(0, wanted, caseSensitive);
}

TLXNode* TLXNode::findNextChild(const std::string& wanted, bool caseSensitive) {
  if (cursor == nullptr) return nullptr;
  // The children may have changed since the last search: find the cursor again.
  if (mCursorIndex >= children.size() || children[mCursorIndex].get() != cursor) {
    auto it = std::find_if(children.begin(), children.end(), [this](const auto& c) { return c.get() == cursor; });
    if (it == children.end()) {
      cursor = nullptr;
      return nullptr;
    }
    mCursorIndex = static_cast<size_t>(it - children.begin());
  }
  return searchFrom(mCursorIndex + 1, wanted, caseSensitive);
}

std::string TLXNode::valueAt(size_t index) const { return index < values.size() ? values[index] : std::string(); }

void TLXNode::setValue(size_t index, const std::string& value) {
  if (index >= values.size()) values.resize(index + 1);
  values[index] = value;
}

TLXNode* TLXNode::addChild(const std::string& childKeyword, const std::string& value) {
  TLXNode* child = addChildWithoutValue(childKeyword);
  child->values.push_back(value);
  return child;
}

TLXNode* TLXNode::addChildWithoutValue(const std::string& childKeyword) {
  return adoptChild(std::make_unique<TLXNode>(logger, level + 1, childKeyword));
}

TLXNode* TLXNode::adoptChild(std::unique_ptr<TLXNode> child) {
  child->parent = this;
  children.push_back(std::move(child));
  return children.back().get();
}

std::unique_ptr<TLXNode> TLXNode::detachChild(const TLXNode* child) {
  auto it = std::find_if(children.begin(), children.end(), [child](const auto& c) { return c.get() == child; });
  if (it == children.end()) return nullptr;
  std::unique_ptr<TLXNode> out = std::move(*it);
  children.erase(it);
  if (cursor == child) cursor = nullptr;
  out->parent = nullptr;
  return out;
}

// ---------------------------------------------------------------- TLXInput

bool TLXInput::next(std::string& line) {
  if (!pending.empty()) {
    line = std::move(pending.back());
    pending.pop_back();
    return true;
  }
  if (!std::getline(stream, line)) return false;
  ++lineNumber;
  return true;
}

// ---------------------------------------------------------------- TLXManager

TLXManager::TLXManager(ILogger* logger) : root(std::make_unique<TLXNode>(logger)), mLogger(logger) {}

bool TLXManager::readFile(const std::string& path) {
  std::ifstream stream(path);
  if (!stream.is_open()) {
    report(mLogger, log4rig::kError, "Cannot open file for reading: " + path);
    return false;
  }
  return readStream(stream);
}

bool TLXManager::readStream(std::istream& stream) {
  TLXInput input(stream);
  return read(input);
}

// The parse is the recursive descent of the file format written as a loop
// over a stack of open nodes: the frame on top is the node whose parse is in
// hand. A keyword line two levels below it opens its last child; a line of
// its own level or above closes it and is looked at again by the frame below.
// An argument line belongs to the node in hand, not to its last child.
bool TLXManager::read(TLXInput& input) {
  if (!input.stream) {
    report(mLogger, log4rig::kError, "Input stream is not valid.");
    return false;
  }
  struct TFrame {
    TLXNode* node;
    TLXNode* last;
    bool hasKeyword;  // the last keyword line of this frame had a keyword
  };
  std::vector<TFrame> stack{{root.get(), nullptr, false}};
  std::string line;
  while (input.next(line)) {
    size_t begin = 0, end = line.size();
    while (begin < end && isLineBlank(line[begin])) ++begin;
    while (end > begin && isLineBlank(line[end - 1])) --end;
    if (begin == end || line[begin] == '!') continue;

    size_t dots = begin;
    while (dots < end && line[dots] == '.') ++dots;
    if (dots == begin) {  // argument line
      TFrame& frame = stack.back();
      if (!frame.hasKeyword) {
        report(mLogger, log4rig::kError,
               "Inconsistency found (argument without keyword) at line: " + std::to_string(input.lineNumber));
        return false;
      }
      frame.node->values.emplace_back(line, begin, end - begin);
      if (input.progress)
        input.progress(TLXInput::kArgumentLine, {frame.node->level, frame.node->keyword, line.substr(begin, end - begin)});
      continue;
    }
    if (dots == end) {
      // Full stops alone: a level without a keyword. Reading on would guess at
      // the meaning of the rest of the file, so the parse ends here.
      report(mLogger, log4rig::kError,
             "Inconsistency found (keyword missing) at line: " + std::to_string(input.lineNumber));
      return false;
    }
    const size_t level = dots - begin;
    size_t keyEnd = dots;
    while (keyEnd < end && !isLineBlank(line[keyEnd])) ++keyEnd;
    size_t valueBegin = keyEnd;
    while (valueBegin < end && isSpace(line[valueBegin])) ++valueBegin;

    while (true) {
      TFrame& frame = stack.back();
      const size_t inHand = stack.size() - 1;
      frame.hasKeyword = keyEnd > dots;
      if (level == inHand + 1) {
        auto child = std::make_unique<TLXNode>(mLogger, static_cast<unsigned>(level),
                                               std::string(line, dots, keyEnd - dots));
        child->values.emplace_back(line, valueBegin, end - valueBegin);
        frame.last = frame.node->adoptChild(std::move(child));
        if (input.progress)
          input.progress(TLXInput::kKeywordLine,
                         {frame.last->level, frame.last->keyword, line.substr(begin, end - begin)});
        break;
      }
      if (level == inHand + 2) {
        if (frame.last == nullptr) {
          report(mLogger, log4rig::kError,
                 "Found a grandchild without a parent at line: " + std::to_string(input.lineNumber));
          report(mLogger, log4rig::kDebug, "Line content: " + line.substr(begin, end - begin));
          return false;
        }
        stack.push_back({frame.last, nullptr, false});
        continue;
      }
      if (level > inHand + 2) {
        report(mLogger, log4rig::kError,
               "Inconsistency found (too many dots) at line: " + std::to_string(input.lineNumber));
        return false;
      }
      stack.pop_back();  // the line belongs to an ancestor
    }
  }
  return true;
}

// ---------------------------------------------------------------- writing

void writeTLX(std::ostream& out, const TLXNode& node) {
  std::string head(node.level, '.');
  head += node.keyword;
  head += ' ';
  out.write(head.data(), static_cast<std::streamsize>(head.size()));
  if (node.values.size() == 1) {
    out.write(node.values[0].data(), static_cast<std::streamsize>(node.values[0].size()));
    out.put('\n');
  } else if (node.values.empty()) {
    out.put('\n');
  } else {
    const std::string pad(node.keyword.size() + node.level + 1, ' ');
    for (const auto& value : node.values) {
      out.write(value.data(), static_cast<std::streamsize>(value.size()));
      out.write(pad.data(), static_cast<std::streamsize>(pad.size()));
      out.put('\n');
    }
    out.put('\n');
  }
  writeTLXChildren(out, node);
}

void writeTLXChildren(std::ostream& out, const TLXNode& node) {
  for (const auto& child : node.children) writeTLX(out, *child);
}

}  // namespace TLXHandler
}  // namespace rig_common
