#pragma once
// The base of every XML configuration file class, and the iterator by
// position that the file classes share.
//
// A file class keeps no state of its own: its rows live in the elements of
// the document, and each operation reads the document anew.

#include <log4cxx/logger.h>

#include <boost/filesystem/path.hpp>
#include <cstddef>
#include <iterator>
#include <string>
#include <utility>

#include "common/log4rig.hpp"
#include "platform/markup_core.hpp"

namespace NComponent {
namespace NConfig {

using NMarkupCore::CXMLHierPath;
using TDOMElement = NMarkupCore::CXML_Parser::CDOMElement;
using TDOMNodeList = NMarkupCore::CXML_Parser::CDOMNodeList;

class CConfigParser {
 public:
  explicit CConfigParser(log4cxx::LoggerPtr parserLogger) : logger(std::move(parserLogger)) {}
  CConfigParser(const CConfigParser&) = delete;
  CConfigParser& operator=(const CConfigParser&) = delete;

  // Loads the file; a missing file is a Fatal of its own, bad XML is
  // reported by the parser on `logger`.
  bool parse(const boost::filesystem::path& file);
  // Saves the document, replacing the file; failures are reported on `logger`.
  bool write(const boost::filesystem::path& file);
  // The first element at `path` whose `attribute` reads `value`, or null.
  TDOMElement* findElement(const CXMLHierPath& path, const char* attribute, const std::string& value);

  log4cxx::LoggerPtr logger;
  NMarkupCore::CXML_Parser parser;
};

// A position in the element list at a record path: the list as it was when
// the iterator was made, and an index. The end iterator's index is the
// length of the list at that path, fetched anew for each comparison, so a
// walk sees rows added behind it (as missing elements) and stops at rows
// removed from its end.
template <class TRecord>
class CElementIterator {
 public:
  using TReader = TRecord (*)(CConfigParser& file, TDOMElement* element);

  using iterator_category = std::input_iterator_tag;
  using value_type = TRecord;
  using difference_type = std::ptrdiff_t;
  using pointer = void;
  using reference = TRecord;

  CElementIterator(CConfigParser& file, const CXMLHierPath& path, TReader reader, bool atEnd)
      : mFile(&file), mPath(path), mReader(reader), mAtEnd(atEnd) {
    if (!atEnd) mList = file.parser.getDomNodeList(path);
  }

  // The record of the element at the index; a missing element gives an
  // empty record and an Error.
  TRecord operator*() const {
    TDOMElement* element = mFile->parser.getDOMElement(mList, mIndex);
    if (element == nullptr) {
      RIG_LOG1(mFile->logger, Error, "Not found element nb.: " << mIndex << ".");
      return TRecord();
    }
    return mReader(*mFile, element);
  }

  CElementIterator& operator++() {
    ++mIndex;
    return *this;
  }
  CElementIterator operator++(int) {
    CElementIterator before(*this);
    ++mIndex;
    return before;
  }

  // Against the end, a position at or past the current length counts as
  // the end, so that a walk whose list shrank under it still stops.
  bool operator==(const CElementIterator& other) const {
    if (mAtEnd && other.mAtEnd) return true;
    if (mAtEnd) return other.mIndex >= position();
    if (other.mAtEnd) return mIndex >= other.position();
    return mIndex == other.mIndex;
  }
  bool operator!=(const CElementIterator& other) const { return !(*this == other); }

  int index() const { return position(); }
  // The element at the index, or null.
  TDOMElement* element() const { return mFile->parser.getDOMElement(mList, mIndex); }

 private:
  int position() const {
    if (!mAtEnd) return mIndex;
    return mFile->parser.getDomNodeListLength(mFile->parser.getDomNodeList(mPath));
  }

  CConfigParser* mFile;
  CXMLHierPath mPath;
  TReader mReader;
  TDOMNodeList* mList = nullptr;
  int mIndex = 0;
  bool mAtEnd;
};

}  // namespace NConfig
}  // namespace NComponent
