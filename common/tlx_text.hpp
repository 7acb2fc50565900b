#pragma once
// The text of a keyword or a value in a keyword tree: read-only characters
// that are either the text's own (on the heap) or borrowed from the node that
// holds the text. A parse writes a node's keyword and first value right
// behind the node, in the same block, so that a line of the file costs one
// allocation from a block and no string of its own.
//
// A copy or a move always owns its characters: only the node that holds a
// borrowed text can keep it. Reads go through std::string_view; the text
// converts to std::string where a caller wants one.

#include <cstddef>
#include <cstring>
#include <iosfwd>
#include <string>
#include <string_view>

namespace rig_common {
namespace TLXHandler {

class TLXText {
 public:
  TLXText() = default;
  explicit TLXText(std::string_view text) { assign(text); }
  // Points the text at characters that live as long as it and stay
  // unchanged (a node's own), letting go of those it had.
  TLXText& borrow(std::string_view text) {
    release();
    if (!text.empty()) {
      mData = text.data();
      mSize = text.size();
    }
    return *this;
  }
  ~TLXText() { release(); }

  TLXText(const TLXText& other) { assign(other.view()); }
  TLXText(TLXText&& other) noexcept { take(other); }
  TLXText& operator=(const TLXText& other) {
    if (this != &other) assign(other.view());
    return *this;
  }
  TLXText& operator=(TLXText&& other) noexcept {
    if (this != &other) {
      release();
      take(other);
    }
    return *this;
  }
  TLXText& operator=(std::string_view text) { return assign(text); }

  TLXText& assign(std::string_view text) {
    const char* old = owned() ? mData : nullptr;  // text may lie in the old characters
    if (text.empty()) {
      mData = "";
      mSize = 0;
    } else {
      char* copy = new char[text.size()];
      std::memcpy(copy, text.data(), text.size());
      mData = copy;
      mSize = text.size() | kOwned;
    }
    delete[] old;
    return *this;
  }
  void clear() { assign(std::string_view()); }

  std::string_view view() const { return std::string_view(mData, size()); }
  operator std::string_view() const { return view(); }
  std::string str() const { return std::string(view()); }
  operator std::string() const { return str(); }

  const char* data() const { return mData; }
  size_t size() const { return mSize & ~kOwned; }
  size_t length() const { return size(); }
  bool empty() const { return size() == 0; }
  char operator[](size_t i) const { return mData[i]; }
  const char* begin() const { return mData; }
  const char* end() const { return mData + size(); }

  friend bool operator==(const TLXText& a, const TLXText& b) { return a.view() == b.view(); }
  friend bool operator==(const TLXText& a, std::string_view b) { return a.view() == b; }
  friend bool operator==(std::string_view a, const TLXText& b) { return a == b.view(); }
  friend bool operator!=(const TLXText& a, const TLXText& b) { return a.view() != b.view(); }
  friend bool operator!=(const TLXText& a, std::string_view b) { return a.view() != b; }
  friend bool operator!=(std::string_view a, const TLXText& b) { return a != b.view(); }
  friend bool operator<(const TLXText& a, const TLXText& b) { return a.view() < b.view(); }
  friend std::string operator+(const TLXText& a, std::string_view b) { return a.str().append(b); }
  friend std::string operator+(const std::string& a, const TLXText& b) { return std::string(a).append(b.view()); }
  friend std::string operator+(const char* a, const TLXText& b) { return std::string(a).append(b.view()); }
  friend std::ostream& operator<<(std::ostream& out, const TLXText& text);

 private:
  friend class TLXValues;                               // keeps "no value" as a null mData
  static constexpr size_t kOwned = ~(~size_t(0) >> 1);  // the top bit of mSize

  bool owned() const { return (mSize & kOwned) != 0; }
  void release() {
    if (owned()) delete[] mData;
    mData = "";
    mSize = 0;
  }
  // Takes the characters of `other` if they are its own, else copies them;
  // `other` is left empty.
  void take(TLXText& other) {
    if (other.owned()) {
      mData = other.mData;
      mSize = other.mSize;
      other.mData = "";
      other.mSize = 0;
    } else {
      assign(other.view());
    }
  }

  const char* mData = "";  // never null, except in TLXValues' first place when it is empty
  size_t mSize = 0;
};

}  // namespace TLXHandler
}  // namespace rig_common
