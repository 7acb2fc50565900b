#pragma once
// The values of a keyword tree node: a vector of strings that keeps its
// first element in place, so that the usual node of one value costs no
// allocation of its own. It offers the parts of std::vector<std::string>
// that callers use, and converts to one.

#include <cstddef>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace rig_common {
namespace TLXHandler {

class TLXValues {
 public:
  template <class TOwner, class TValue>
  class TIterator {
   public:
    using iterator_category = std::random_access_iterator_tag;
    using value_type = std::string;
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
  using iterator = TIterator<TLXValues, std::string>;
  using const_iterator = TIterator<const TLXValues, const std::string>;
  using value_type = std::string;
  using size_type = size_t;

  TLXValues() = default;
  // One value.
  explicit TLXValues(std::string_view first) : mFirst(first), mHasFirst(true) {}
  TLXValues(std::initializer_list<std::string> values) {
    for (const auto& v : values) push_back(v);
  }
  TLXValues(const std::vector<std::string>& values) {  // NOLINT: converts like the vector it stands for
    for (const auto& v : values) push_back(v);
  }

  TLXValues(const TLXValues& other) { *this = other; }
  TLXValues& operator=(const TLXValues& other) {
    if (this != &other) {
      mFirst = other.mFirst;
      mHasFirst = other.mHasFirst;
      mRest.reset(other.mRest ? new std::vector<std::string>(*other.mRest) : nullptr);
    }
    return *this;
  }
  TLXValues(TLXValues&&) noexcept = default;
  TLXValues& operator=(TLXValues&&) noexcept = default;

  size_t size() const { return mHasFirst ? 1 + restSize() : 0; }
  bool empty() const { return !mHasFirst; }
  std::string& operator[](size_t i) { return i == 0 ? mFirst : (*mRest)[i - 1]; }
  const std::string& operator[](size_t i) const { return i == 0 ? mFirst : (*mRest)[i - 1]; }
  std::string& front() { return mFirst; }
  const std::string& front() const { return mFirst; }
  std::string& back() { return restSize() == 0 ? mFirst : mRest->back(); }
  const std::string& back() const { return restSize() == 0 ? mFirst : mRest->back(); }

  template <class... TArgs>
  std::string& emplace_back(TArgs&&... args) {
    if (!mHasFirst) {
      mFirst.assign(std::forward<TArgs>(args)...);
      mHasFirst = true;
      return mFirst;
    }
    if (!mRest) mRest.reset(new std::vector<std::string>());
    return mRest->emplace_back(std::forward<TArgs>(args)...);
  }
  void push_back(const std::string& value) { emplace_back(value); }
  void push_back(std::string&& value) { emplace_back(std::move(value)); }
  void resize(size_t n) {
    if (n == 0) return clear();
    mHasFirst = true;
    if (!mRest) mRest.reset(new std::vector<std::string>());
    mRest->resize(n - 1);
  }
  void clear() {
    mFirst.clear();
    mRest.reset();
    mHasFirst = false;
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

  // The first value in place; the others, rare, behind a pointer.
  std::string mFirst;
  std::unique_ptr<std::vector<std::string>> mRest;
  bool mHasFirst = false;
};

}  // namespace TLXHandler
}  // namespace rig_common
