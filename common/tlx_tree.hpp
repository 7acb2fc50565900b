#pragma once
// Keyword tree files: line-oriented text in which the number of leading full
// stops gives a line's depth in a tree. TLXManager reads such a file into a
// tree of TLXNode; writeTLX writes a tree back in the byte format of the list
// files.
//
//   rig_common::TLXManager tree(&logger);        // logger may be null
//   if (tree.readFile("a_neut.tlx")) {
//     for (auto* n = tree.root->findFirstChild("QRN_PART"); n; n = tree.root->findNextChild("QRN_PART")) ...
//   }
//
// Writing a tree of one's own:
//   rig_common::TLXNode root;                      // level 0, no keyword
//   rig_common::TLXNode* part = root.addChild("QRN_PART", "AB-1");
//   part->addChild("QRN_COMP", "NAND2");
//   rig_common::writeTLXChildren(stream, root);    // ".QRN_PART AB-1\n..QRN_COMP NAND2\n"

#include <cstddef>
#include <functional>
#include <iosfwd>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "common/log4rig.hpp"
#include "common/tlx_values.hpp"

namespace rig_common {
namespace TLXHandler {

using log4rig::ILogger;

class TLXNode;

// The blocks the nodes of a parse are cut from: a file of a million lines
// makes a million nodes, and one allocation per node costs more than reading
// the line. Each block is twice the one before, so a short file takes one
// small block. A block is freed when the last node in it is deleted and the
// parse that filled it has moved on, so a node may outlive its parse and its
// tree (detached, adopted elsewhere) like any other.
class TLXBlocks {
 public:
  TLXBlocks() = default;
  ~TLXBlocks();
  TLXBlocks(const TLXBlocks&) = delete;
  TLXBlocks& operator=(const TLXBlocks&) = delete;

  // Room for one node of `size` bytes, counted in its block.
  void* allocate(size_t size);
  // Gives back a node's room; the block goes when its count reaches zero.
  static void release(void* block);

 private:
  void* allocateElsewhere(size_t size);
  struct TBlock;
  TBlock* mBlock = nullptr;  // the block in hand, held by one count
  size_t mUsed = 0;
};

// The children of a node, in file order: an intrusive list over the nodes
// themselves, so that appending and resuming a search cost no allocation
// and no search. Iteration yields TLXNode*. The owning node deletes them; a
// node is taken out of a tree with detachChild, never deleted in place.
class TLXChildren {
 public:
  class iterator {
   public:
    using iterator_category = std::forward_iterator_tag;
    using value_type = TLXNode*;
    using difference_type = std::ptrdiff_t;
    using pointer = TLXNode* const*;
    using reference = TLXNode*;

    explicit iterator(TLXNode* node = nullptr) : mNode(node) {}
    TLXNode* operator*() const { return mNode; }
    iterator& operator++();
    iterator operator++(int) {
      iterator old = *this;
      ++*this;
      return old;
    }
    bool operator==(const iterator& other) const { return mNode == other.mNode; }
    bool operator!=(const iterator& other) const { return mNode != other.mNode; }

   private:
    TLXNode* mNode;
  };
  using const_iterator = iterator;

  TLXChildren() = default;
  TLXChildren(const TLXChildren&) = delete;
  TLXChildren& operator=(const TLXChildren&) = delete;

  iterator begin() const { return iterator(mFirst); }
  iterator end() const { return iterator(); }
  // The number of children, counted by walking the list.
  size_t size() const;
  bool empty() const { return mFirst == nullptr; }
  TLXNode* front() const { return mFirst; }
  TLXNode* back() const { return mLast; }
  // The child at `index`, found by walking the list; null when out of range.
  TLXNode* operator[](size_t index) const;

 private:
  friend class TLXNode;
  TLXNode* mFirst = nullptr;
  TLXNode* mLast = nullptr;
};

// One node of a keyword tree. A node owns its children; the root of a tree
// has level 0 and an empty keyword. The nodes a parse or addChild makes
// keep their keyword and first value right behind them, in the same
// allocation.
class TLXNode {
 public:
  explicit TLXNode(unsigned level = 0, std::string_view keyword = std::string_view());
  // A node with one value.
  TLXNode(unsigned level, std::string_view keyword, std::string_view value);
  // Deletes the subtree, children before their parent, without recursion.
  ~TLXNode();
  TLXNode(const TLXNode&) = delete;
  TLXNode& operator=(const TLXNode&) = delete;

  // A node lives on the heap (plain new, std::make_unique, addChild) or in
  // the blocks of a parse; delete and unique_ptr free both.
  static void* operator new(size_t size);
  static void operator delete(void* node);

  // A deep copy of this node and its subtree, detached (no parent).
  std::unique_ptr<TLXNode> clone() const;

  // Resumable searches over the children: findFirstChild starts over,
  // findNextChild goes on behind the child found last (`cursor`). Two
  // interleaved searches on one node disturb each other.
  TLXNode* findFirstChild(std::string_view keyword, bool caseSensitive = true);
  TLXNode* findNextChild(std::string_view keyword, bool caseSensitive = true);

  // values[index], or an empty string when the index is out of range.
  std::string valueAt(size_t index) const;
  size_t valueCount() const { return values.size(); }
  void addValue(std::string_view value) { values.push_back(value); }
  // Replaces values[index]; an index behind the end first grows the values
  // with empty strings.
  void setValue(size_t index, std::string_view value);

  // Appends a new child of level + 1 with `value` as its first value.
  TLXNode* addChild(std::string_view keyword, std::string_view value);
  // Appends a new child of level + 1 without any value.
  TLXNode* addChildWithoutValue(std::string_view keyword);
  // Appends a node that was detached or cloned; sets its parent.
  TLXNode* adoptChild(std::unique_ptr<TLXNode> child);
  // Removes `child` from the children and hands it over; null if it is not a
  // child of this node.
  std::unique_ptr<TLXNode> detachChild(const TLXNode* child);
  // The sibling behind this node, or null.
  TLXNode* nextSibling() const { return mNext; }

  TLXNode* parent = nullptr;
  TLXChildren children;
  TLXNode* cursor = nullptr;
  TLXText keyword;
  TLXValues values;
  unsigned level = 0;

 private:
  friend class TLXManager;
  // A node with its keyword and, if `value` is given, its one value written
  // behind it: from `blocks`, or on the heap when `blocks` is null.
  static TLXNode* create(TLXBlocks* blocks, unsigned level, std::string_view keyword, const std::string_view* value);
  // A node with room for `chars` bytes behind it, which `text` points at.
  static TLXNode* withText(TLXBlocks* blocks, unsigned level, size_t chars, char*& text);
  TLXNode* appendChild(TLXNode* child);
  TLXNode* searchFrom(TLXNode* start, std::string_view keyword, bool caseSensitive);
  TLXNode* mNext = nullptr;
};

inline TLXChildren::iterator& TLXChildren::iterator::operator++() {
  mNode = mNode->nextSibling();
  return *this;
}

// What the progress callback of a parse gets for each line.
struct TLXProgress {
  unsigned level;
  std::string keyword;
  std::string line;
};

// The line source of one parse: a stream, the count of lines taken from it,
// and lines handed back, which come out again before the stream is read.
// The stream is read in blocks; lines are looked at where they lie in the
// block, so the text is neither copied line by line nor held whole.
class TLXInput {
 public:
  enum { kKeywordLine = 0, kArgumentLine = 1 };
  using TCallback = std::function<void(int kind, const TLXProgress& progress)>;

  explicit TLXInput(std::istream& stream) : stream(stream) {}
  // The next line without its line end, handed-back lines first; false at
  // the end of the input. The view lasts until the next call.
  bool next(std::string_view& line);
  void handBack(std::string line) { pending.push_back(std::move(line)); }

  std::istream& stream;
  long lineNumber = 0;
  TCallback progress;
  std::vector<std::string> pending;  // the last element comes out first

 private:
  bool fill();
  std::vector<char> mBlock;
  size_t mBegin = 0;
  size_t mEnd = 0;
  bool mEnded = false;
  std::string mHandedBack;
};

// Owner of a tree read from a keyword tree file.
class TLXManager {
 public:
  explicit TLXManager(ILogger* logger = nullptr);
  virtual ~TLXManager() = default;
  TLXManager(const TLXManager&) = delete;
  TLXManager& operator=(const TLXManager&) = delete;

  // Parses into `root`. On a failure the report goes to the logger, the
  // result is false, and what was built so far stays in the tree.
  bool readFile(const std::string& path);
  bool readStream(std::istream& stream);
  bool read(TLXInput& input);

  std::unique_ptr<TLXNode> root;

 private:
  TLXBlocks mBlocks;
  ILogger* mLogger;
};

// Writes `node` and its subtree: per node `level` full stops, the keyword,
// one blank, then the values (one value: the value; several: each followed
// by keyword length + level + 1 blanks and a line end, then an empty line).
void writeTLX(std::ostream& out, const TLXNode& node);
// Writes the children of `node` and their subtrees (a whole file from a root).
void writeTLXChildren(std::ostream& out, const TLXNode& node);

}  // namespace TLXHandler

using TLXHandler::TLXInput;
using TLXHandler::TLXManager;
using TLXHandler::TLXNode;
using TLXHandler::writeTLX;
using TLXHandler::writeTLXChildren;

}  // namespace rig_common
