#include "common/tlx_tree.hpp"

#include <sys/mman.h>

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <istream>
#include <new>
#include <ostream>
#include <sstream>
#include <utility>

namespace rig_common {
namespace TLXHandler {

namespace {

// The characters a line is trimmed of, and that end a keyword.
inline bool isLineBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }
inline bool isSpace(char c) { return isLineBlank(c) || c == '\v' || c == '\f'; }

bool sameKeyword(std::string_view a, std::string_view b, bool caseSensitive) {
  if (caseSensitive) return a == b;
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i)
    if (std::tolower(static_cast<unsigned char>(a[i])) != std::tolower(static_cast<unsigned char>(b[i]))) return false;
  return true;
}

void report(ILogger* logger, int level, const std::string& message) {
  if (logger != nullptr) (*logger)(level, message);
}

}  // namespace

std::ostream& operator<<(std::ostream& out, const TLXText& text) { return out << text.view(); }

// ---------------------------------------------------------------- TLXBlocks

namespace {

// The word in front of every node: the block it was cut from, or null for a
// node of its own on the heap. A node needs no more than pointer alignment.
struct TNodeHeader {
  void* block;
};
static_assert(alignof(TLXNode) <= sizeof(TNodeHeader), "a node is aligned like the word in front of it");
constexpr size_t kHeader = sizeof(TNodeHeader);

TNodeHeader* headerOf(void* node) { return static_cast<TNodeHeader*>(node) - 1; }

}  // namespace

// A block's count of nodes (plus one while a parse fills it) and its size;
// the nodes follow.
struct TLXBlocks::TBlock {
  size_t live;
  size_t bytes;
};

namespace {

constexpr size_t kBlockStart = (sizeof(size_t) * 2 + kHeader - 1) / kHeader * kHeader;
constexpr size_t kFirstBlock = 16 * 1024;
constexpr size_t kLargestBlock = 4 * 1024 * 1024;
// Blocks from the size of a huge page on are mapped on their own, aligned
// to and asking for huge pages: a long file's nodes then fault in once per
// 2 MiB instead of once per 4 KiB, and the memory goes back whole when the
// tree goes. Smaller blocks cannot have a huge page; they come from the
// heap, which hands the same memory to the next parse without new faults.
constexpr size_t kHugePage = 2 * 1024 * 1024;
constexpr size_t kMappedBlock = kHugePage;

void* newBlock(size_t bytes) {
  if (bytes < kMappedBlock) return ::operator new(bytes);
  const size_t mapped = bytes + kHugePage;
  void* area = mmap(nullptr, mapped, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (area == MAP_FAILED) throw std::bad_alloc();
  const auto start = reinterpret_cast<uintptr_t>(area);
  const uintptr_t aligned = (start + kHugePage - 1) & ~(kHugePage - 1);
  if (aligned > start) munmap(area, aligned - start);
  if (start + mapped > aligned + bytes)
    munmap(reinterpret_cast<void*>(aligned + bytes), start + mapped - aligned - bytes);
  madvise(reinterpret_cast<void*>(aligned), bytes, MADV_HUGEPAGE);
  return reinterpret_cast<void*>(aligned);
}

}  // namespace

TLXBlocks::~TLXBlocks() {
  if (mBlock != nullptr) release(mBlock);
}

namespace {
// Nodes larger than this (a value of kilobytes) go on the heap of their own.
constexpr size_t kLargestNode = kFirstBlock / 8;
}  // namespace

void* TLXBlocks::allocate(size_t size) {
  const size_t need = kHeader + (size + kHeader - 1) / kHeader * kHeader;
  if (mBlock != nullptr && need <= kLargestNode && mUsed + need <= mBlock->bytes) {
    auto* header = reinterpret_cast<TNodeHeader*>(reinterpret_cast<char*>(mBlock) + mUsed);
    mUsed += need;
    header->block = mBlock;
    ++mBlock->live;
    return header + 1;
  }
  return allocateElsewhere(size);
}

void* TLXBlocks::allocateElsewhere(size_t size) {
  if (kHeader + size > kLargestNode) {  // not a node this parse was made for
    auto* header = static_cast<TNodeHeader*>(::operator new(kHeader + size));
    header->block = nullptr;
    return header + 1;
  }
  // Each block twice the one before: a short file takes one small block,
  // a long one few large ones.
  const size_t bytes = mBlock == nullptr ? kFirstBlock : std::min(mBlock->bytes * 2, kLargestBlock);
  auto* block = static_cast<TBlock*>(newBlock(bytes));
  block->live = 1;
  block->bytes = bytes;
  if (mBlock != nullptr) release(mBlock);
  mBlock = block;
  mUsed = kBlockStart;
  return allocate(size);
}

void TLXBlocks::release(void* block) {
  auto* held = static_cast<TBlock*>(block);
  if (--held->live != 0) return;
  if (held->bytes < kMappedBlock)
    ::operator delete(held);
  else
    munmap(held, held->bytes);
}

// ---------------------------------------------------------------- TLXNode

void* TLXNode::operator new(size_t size) {
  auto* header = static_cast<TNodeHeader*>(::operator new(kHeader + size));
  header->block = nullptr;
  return header + 1;
}

void TLXNode::operator delete(void* node) {
  if (node == nullptr) return;
  TNodeHeader* header = headerOf(node);
  if (header->block != nullptr)
    TLXBlocks::release(header->block);
  else
    ::operator delete(header);
}

size_t TLXChildren::size() const {
  size_t count = 0;
  for (TLXNode* node = mFirst; node != nullptr; node = node->nextSibling()) ++count;
  return count;
}

TLXNode* TLXChildren::operator[](size_t index) const {
  TLXNode* node = mFirst;
  while (node != nullptr && index-- > 0) node = node->nextSibling();
  return node;
}

TLXNode::TLXNode(unsigned level, std::string_view keyword) : keyword(keyword), level(level) {}

TLXNode* TLXNode::appendChild(TLXNode* child) {
  child->parent = this;
  child->mNext = nullptr;
  if (children.mLast != nullptr)
    children.mLast->mNext = child;
  else
    children.mFirst = child;
  children.mLast = child;
  return child;
}

TLXNode::TLXNode(unsigned level, std::string_view keyword, std::string_view value)
    : keyword(keyword), values{value}, level(level) {}

TLXNode* TLXNode::withText(TLXBlocks* blocks, unsigned level, size_t chars, char*& text) {
  const size_t size = sizeof(TLXNode) + chars;
  void* room = blocks != nullptr ? blocks->allocate(size) : TLXNode::operator new(size);
  text = static_cast<char*>(room) + sizeof(TLXNode);
  return ::new (room) TLXNode(level);
}

TLXNode* TLXNode::create(TLXBlocks* blocks, unsigned level, std::string_view keyword, const std::string_view* value) {
  const size_t valueSize = value != nullptr ? value->size() : 0;
  char* text = nullptr;
  TLXNode* node = withText(blocks, level, keyword.size() + valueSize, text);
  if (!keyword.empty()) std::memcpy(text, keyword.data(), keyword.size());
  if (valueSize > 0) std::memcpy(text + keyword.size(), value->data(), valueSize);
  node->keyword.borrow(std::string_view(text, keyword.size()));
  if (value != nullptr) node->values.assignBorrowed(std::string_view(text + keyword.size(), valueSize));
  return node;
}

TLXNode::~TLXNode() {
  // A work list chained through the sibling links: a node with children is
  // put behind them, so children go before their parent, and a deeply
  // nested tree needs neither recursion nor memory.
  TLXNode* work = children.mFirst;
  children.mFirst = children.mLast = nullptr;
  while (work != nullptr) {
    if (work->children.mFirst != nullptr) {
      TLXNode* first = work->children.mFirst;
      work->children.mLast->mNext = work;
      work->children.mFirst = work->children.mLast = nullptr;
      work = first;
      continue;
    }
    TLXNode* next = work->mNext;
    delete work;
    work = next;
  }
}

std::unique_ptr<TLXNode> TLXNode::clone() const {
  // A work list of (original, copy) pairs instead of recursion, so that a
  // deeply nested tree is copied in constant stack; each copy gets all its
  // children at once, in order.
  auto copy = std::make_unique<TLXNode>(level, keyword);
  copy->values = values;
  std::vector<std::pair<const TLXNode*, TLXNode*>> work{{this, copy.get()}};
  while (!work.empty()) {
    const auto [original, target] = work.back();
    work.pop_back();
    for (TLXNode* child : original->children) {
      TLXNode* made =
          target->adoptChild(std::unique_ptr<TLXNode>(create(nullptr, child->level, child->keyword, nullptr)));
      made->values = child->values;
      if (!child->children.empty()) work.emplace_back(child, made);
    }
  }
  return copy;
}

TLXNode* TLXNode::searchFrom(TLXNode* start, std::string_view wanted, bool caseSensitive) {
  for (TLXNode* node = start; node != nullptr; node = node->mNext) {
    if (sameKeyword(node->keyword, wanted, caseSensitive)) {
      cursor = node;
      return node;
    }
  }
  cursor = nullptr;
  return nullptr;
}

TLXNode* TLXNode::findFirstChild(std::string_view wanted, bool caseSensitive) {
  cursor = nullptr;
  return searchFrom(children.mFirst, wanted, caseSensitive);
}

TLXNode* TLXNode::findNextChild(std::string_view wanted, bool caseSensitive) {
  if (cursor == nullptr) return nullptr;
  if (cursor->parent != this) {  // detached since the last search
    cursor = nullptr;
    return nullptr;
  }
  return searchFrom(cursor->mNext, wanted, caseSensitive);
}

std::string TLXNode::valueAt(size_t index) const { return index < values.size() ? values[index].str() : std::string(); }

void TLXNode::setValue(size_t index, std::string_view value) {
  if (index >= values.size()) values.resize(index + 1);
  values[index] = value;
}

TLXNode* TLXNode::addChild(std::string_view childKeyword, std::string_view value) {
  return adoptChild(std::unique_ptr<TLXNode>(create(nullptr, level + 1, childKeyword, &value)));
}

TLXNode* TLXNode::addChildWithoutValue(std::string_view childKeyword) {
  return adoptChild(std::unique_ptr<TLXNode>(create(nullptr, level + 1, childKeyword, nullptr)));
}

TLXNode* TLXNode::adoptChild(std::unique_ptr<TLXNode> owned) { return appendChild(owned.release()); }

std::unique_ptr<TLXNode> TLXNode::detachChild(const TLXNode* child) {
  if (child == nullptr || child->parent != this) return nullptr;
  TLXNode* before = nullptr;
  for (TLXNode* node = children.mFirst; node != child; node = node->mNext) before = node;
  TLXNode* node = const_cast<TLXNode*>(child);
  (before != nullptr ? before->mNext : children.mFirst) = node->mNext;
  if (children.mLast == node) children.mLast = before;
  if (cursor == node) cursor = nullptr;
  node->parent = nullptr;
  node->mNext = nullptr;
  return std::unique_ptr<TLXNode>(node);
}

// ---------------------------------------------------------------- TLXInput

namespace {
constexpr size_t kBlockSize = 1 << 16;
}

bool TLXInput::fill() {
  if (mEnded) return false;
  if (mBegin > 0) {  // keep the unfinished line at the front
    std::copy(mBlock.begin() + static_cast<std::ptrdiff_t>(mBegin), mBlock.begin() + static_cast<std::ptrdiff_t>(mEnd),
              mBlock.begin());
    mEnd -= mBegin;
    mBegin = 0;
  }
  if (mBlock.size() < kBlockSize) mBlock.resize(kBlockSize);
  if (mEnd == mBlock.size()) mBlock.resize(mBlock.size() * 2);  // a line longer than a block
  stream.read(mBlock.data() + mEnd, static_cast<std::streamsize>(mBlock.size() - mEnd));
  const auto got = static_cast<size_t>(stream.gcount());
  mEnd += got;
  if (!stream) mEnded = true;
  return got > 0;
}

bool TLXInput::next(std::string_view& line) {
  if (!pending.empty()) {
    mHandedBack = std::move(pending.back());
    pending.pop_back();
    line = mHandedBack;
    return true;
  }
  while (true) {
    const char* begin = mBlock.data() + mBegin;
    const void* newline = mEnd > mBegin ? std::memchr(begin, '\n', mEnd - mBegin) : nullptr;
    if (newline != nullptr) {
      const char* stop = static_cast<const char*>(newline);
      line = std::string_view(begin, static_cast<size_t>(stop - begin));
      mBegin += line.size() + 1;
      ++lineNumber;
      return true;
    }
    if (!fill()) {
      if (mBegin == mEnd) return false;
      line = std::string_view(mBlock.data() + mBegin, mEnd - mBegin);  // last line without a line end
      mBegin = mEnd;
      ++lineNumber;
      return true;
    }
  }
}

// ---------------------------------------------------------------- TLXManager

TLXManager::TLXManager(ILogger* logger) : root(std::make_unique<TLXNode>()), mLogger(logger) {}

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
  std::string_view line;
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
      frame.node->values.push_back(line.substr(begin, end - begin));
      if (input.progress)
        input.progress(TLXInput::kArgumentLine,
                       {frame.node->level, frame.node->keyword.str(), std::string(line.substr(begin, end - begin))});
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
        // Keyword and value go behind the node in one copy, with the blanks
        // between them.
        char* text = nullptr;
        TLXNode* node = TLXNode::withText(&mBlocks, static_cast<unsigned>(level), end - dots, text);
        std::memcpy(text, line.data() + dots, end - dots);
        node->keyword.borrow(std::string_view(text, keyEnd - dots));
        node->values.assignBorrowed(std::string_view(text + (valueBegin - dots), end - valueBegin));
        frame.last = frame.node->appendChild(node);
        if (input.progress)
          input.progress(TLXInput::kKeywordLine,
                         {frame.last->level, frame.last->keyword.str(), std::string(line.substr(begin, end - begin))});
        break;
      }
      if (level == inHand + 2) {
        if (frame.last == nullptr) {
          report(mLogger, log4rig::kError,
                 "Found a grandchild without a parent at line: " + std::to_string(input.lineNumber));
          report(mLogger, log4rig::kDebug, "Line content: " + std::string(line.substr(begin, end - begin)));
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

namespace {

// The lines of one node, without its children.
void writeNodeLines(std::ostream& out, const TLXNode& node) {
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
}

}  // namespace

void writeTLX(std::ostream& out, const TLXNode& node) {
  writeNodeLines(out, node);
  writeTLXChildren(out, node);
}

// Depth first, in file order, along the parent and sibling links: no
// recursion, so the depth of a tree costs no stack.
void writeTLXChildren(std::ostream& out, const TLXNode& top) {
  const TLXNode* node = top.children.front();
  while (node != nullptr) {
    writeNodeLines(out, *node);
    if (!node->children.empty()) {
      node = node->children.front();
      continue;
    }
    while (node != &top && node->nextSibling() == nullptr) node = node->parent;
    if (node == &top) break;
    node = node->nextSibling();
  }
}

}  // namespace TLXHandler
}  // namespace rig_common
