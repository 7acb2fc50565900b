#pragma once
// Symbol list files (.caf): a keyword tree file of SK_SYMBOL_PATH items.
//
// A reader fills its list from a file:
//   rig_common::CSymbolListFileReader reader(&logger);
//   if (reader.read("cat.sym_list.caf")) for (auto& item : reader.list()) ...
//
// A writer writes its list when it is closed; one that nobody closed writes
// when it is destroyed:
//   rig_common::CSymbolListFileWriter writer(&logger);
//   writer.open("cat.sym_list.caf", true);   // true: start from the file's items
//   writer.list().add(item);
//   if (!writer.close()) ...                 // the file is written here
//
// Byte format: per node, depth first, `level` full stops, the keyword, one
// blank, then the values; one value: the value and a line end; no value: the
// line end alone; several: each followed by keyword length + level + 1 blanks
// and a line end, and an empty line behind the last. No header, no count.

#include <ios>
#include <string>

#include "common/symbol_list.hpp"

namespace rig_common {
namespace symbol {

// The suffix of a partition's or catalog's symbol list: ".sym_list.caf".
extern const char* const kSymbolListSuffix;
// True when the whole leaf name matches ".+\.sym_list\.caf".
bool isSymbolListFileName(const std::string& leaf);
// The stem of such a name ("a" for "a.sym_list.caf"); empty when it does not match.
std::string symbolListStem(const std::string& leaf);

class CSymbolListFileHandler {
 public:
  class CImpl;

  virtual ~CSymbolListFileHandler();
  CSymbolListFileHandler(const CSymbolListFileHandler&) = delete;
  CSymbolListFileHandler& operator=(const CSymbolListFileHandler&) = delete;
  // Moving hands the list and the pending write over; the source is left
  // with an empty list and no file.
  CSymbolListFileHandler(CSymbolListFileHandler&& other);
  CSymbolListFileHandler& operator=(CSymbolListFileHandler&& other);

  // The list the handler reads into and writes from.
  CSymbolList& list();
  const CSymbolList& list() const;
  CImpl& impl() { return *mImpl; }

 protected:
  explicit CSymbolListFileHandler(ILogger* logger);

 private:
  CImpl* mImpl;
};

class CSymbolListFileHandler::CImpl {
 public:
  explicit CImpl(ILogger* logger);
  // Writes `list` to `fileName` when a writer was opened and not closed.
  virtual ~CImpl();
  CImpl(const CImpl&) = delete;
  CImpl& operator=(const CImpl&) = delete;

  // Reads the file and appends its valid items to `list`, as they stand
  // (without merging).
  bool read(const std::string& name);
  // With readExisting, first reads the file if it can be opened (a missing
  // file is no fault; a damaged one gives false and leaves the writer
  // unopened, so the file survives). Otherwise, or after a good read, the
  // writer is opened: the file is written at destruction.
  bool open(const std::string& name, bool readExisting);
  // add() of a new item "<directory>/<name>"; always true.
  bool add(const std::string& directory, const std::string& name);
  // Writes the list now (when opened) and closes the writer; false, after
  // an error message, when the file could not be written.
  bool close();

  CSymbolList list;
  std::string fileName;
  std::ios_base::openmode openMode = std::ios_base::openmode();
  ILogger* logger;

 private:
  bool parse(std::istream& stream);
  bool write();
};

class CSymbolListFileReader : public CSymbolListFileHandler {
 public:
  explicit CSymbolListFileReader(ILogger* logger = nullptr) : CSymbolListFileHandler(logger) {}
  bool read(const std::string& fileName);
};

class CSymbolListFileWriter : public CSymbolListFileHandler {
 public:
  explicit CSymbolListFileWriter(ILogger* logger = nullptr) : CSymbolListFileHandler(logger) {}
  bool open(const std::string& fileName, bool readExisting = false);
  bool add(const std::string& directory, const std::string& name);
  bool close();
};

}  // namespace symbol

using symbol::CSymbolListFileHandler;
using symbol::CSymbolListFileReader;
using symbol::CSymbolListFileWriter;

}  // namespace rig_common
