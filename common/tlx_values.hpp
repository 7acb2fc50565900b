#pragma once
// The values of a keyword tree node: a vector of texts that keeps its first
// element in place, so that the usual node of one value costs no allocation
// of its own. It offers the parts of std::vector<std::string> that callers
// use, and converts to one.

#include <cstddef>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "common/tlx_text.hpp"

namespace rig_common {
namespace TLXHandler {

class TLXValues {
 public:
  template <class TOwner, class TValue>
  class TIterator {
   public:
    using iterator_category = std::random_access_iterator_tag;
    using value_type = TLXText;
    using difference_type = std::ptrdiff_t;
    using pointer = TValue*;
    using reference = TValue&;

    TIterator(TOwner* owner = nullptr, size_t index = 0) : mOwner(owner), mIndex(index) {}
    reference operator*() const { return (*mOwner)[mIndex]; }
    pointer operator->() const { return &(*mOwner)[mIndex]; }
    TIterator& operator++() { return ++mIndex, *this; }
    TIterator operator++(int) { return TIterator(mOwner, mIndex++); }
    TIterator& operator--() { return --mIndex, *this; }
    TIterator& operator+=(difference_type n) { return mIndex += n, *this; }
    TIterator operator+(difference_type n) const { return TIterator(mOwner, mIndex + n); }
    TIterator operator-(difference_type n) const { return TIterator(mOwner, mIndex - n); }
    difference_type operator-(const TIterator& other) const {
      return static_cast<difference_type>(mIndex) - static_cast<difference_type>(other.mIndex);
    }
    reference operator[](difference_type n) const { return (*mOwner)[mIndex + n]; }
    bool operator==(const TIterator& other) const { return mIndex == other.mIndex; }
    bool operator!=(const TIterator& other) const { return mIndex != other.mIndex; }
    bool operator<(const TIterator& other) const { return mIndex < other.mIndex; }

   private:
    TOwner* mOwner;
    size_t mIndex;
  };
  using iterator = TIterator<TLXValues, TLXText>;
  using const_iterator = TIterator<const TLXValues, const TLXText>;
  using value_type = TLXText;
  using size_type = size_t;

  TLXValues() { mFirst.mData = nullptr; }
  TLXValues(std::initializer_list<std::string_view> values) : TLXValues() {
    for (const auto& v : values) push_back(v);
  }
  TLXValues(const std::vector<std::string>& values) : TLXValues() {  // NOLINT: converts like the vector it stands for
    for (const auto& v : values) push_back(v);
  }

  TLXValues(const TLXValues& other) : TLXValues() { *this = other; }
  TLXValues& operator=(const TLXValues& other) {
    if (this != &other) {
      clear();
      for (const auto& v : other) push_back(v);
    }
    return *this;
  }
  TLXValues(TLXValues&& other) noexcept : TLXValues() { *this = std::move(other); }
  TLXValues& operator=(TLXValues&& other) noexcept {
    if (this != &other) {
      clear();
      if (!other.empty()) mFirst = std::move(other.mFirst);
      mRest = std::move(other.mRest);
      other.clear();
    }
    return *this;
  }

  size_t size() const { return empty() ? 0 : 1 + restSize(); }
  bool empty() const { return mFirst.mData == nullptr; }
  TLXText& operator[](size_t i) { return i == 0 ? mFirst : (*mRest)[i - 1]; }
  const TLXText& operator[](size_t i) const { return i == 0 ? mFirst : (*mRest)[i - 1]; }
  TLXText& front() { return mFirst; }
  const TLXText& front() const { return mFirst; }
  TLXText& back() { return restSize() == 0 ? mFirst : mRest->back(); }
  const TLXText& back() const { return restSize() == 0 ? mFirst : mRest->back(); }

  TLXText& push_back(std::string_view value) {
    if (empty()) {
      mFirst.assign(value);
      return mFirst;
    }
    if (!mRest) mRest.reset(new std::vector<TLXText>());
    return mRest->emplace_back(value);
  }
  // Makes the values one value that borrows its characters (TLXText::borrow).
  void assignBorrowed(std::string_view value) {
    clear();
    mFirst.borrow(value);
  }
  void resize(size_t n) {
    if (n == 0) return clear();
    if (empty()) mFirst.assign(std::string_view());
    if (n == 1) return mRest.reset();
    if (!mRest) mRest.reset(new std::vector<TLXText>());
    mRest->resize(n - 1);
  }
  void clear() {
    mFirst.release();
    mFirst.mData = nullptr;
    mRest.reset();
  }

  iterator begin() { return iterator(this, 0); }
  iterator end() { return iterator(this, size()); }
  const_iterator begin() const { return const_iterator(this, 0); }
  const_iterator end() const { return const_iterator(this, size()); }

  operator std::vector<std::string>() const { return std::vector<std::string>(begin(), end()); }
  bool operator==(const TLXValues& other) const {
    if (size() != other.size()) return false;
    for (size_t i = 0; i < size(); ++i)
      if ((*this)[i] != other[i]) return false;
    return true;
  }
  bool operator!=(const TLXValues& other) const { return !(*this == other); }
  friend bool operator==(const TLXValues& a, const std::vector<std::string>& b) { return a == TLXValues(b); }
  friend bool operator==(const std::vector<std::string>& a, const TLXValues& b) { return b == TLXValues(a); }

 private:
  size_t restSize() const { return mRest ? mRest->size() : 0; }

  // The first value in place (a null text when there is none); the others,
  // rare, behind a pointer.
  TLXText mFirst;
  std::unique_ptr<std::vector<TLXText>> mRest;
};

}  // namespace TLXHandler
}  // namespace rig_common
