#include "common/symbol_list_file.hpp"

#include <boost/regex.hpp>
#include <fstream>
#include <vector>

#include "common/whole_file.hpp"

namespace rig_common {
namespace symbol {

const char* const kSymbolListSuffix = ".sym_list.caf";

namespace {

// Larger stream buffers: list files of a whole library run to many megabytes.
constexpr size_t kBufferSize = 1 << 16;

void report(ILogger* logger, const std::string& message) {
  if (logger != nullptr) (*logger)(log4rig::kError, message);
}

// The file name as the operating system takes it.
std::string nativeName(const std::string& name) { return name; }

}  // namespace

bool isSymbolListFileName(const std::string& leaf) {
  const boost::regex pattern(".+\\.sym_list\\.caf");
  return boost::regex_match(leaf, pattern);
}

std::string symbolListStem(const std::string& leaf) {
  const boost::regex pattern("(.+)\\.sym_list\\.caf");
  boost::smatch match;
  return boost::regex_match(leaf, match, pattern) ? match.str(1) : std::string();
}

// ---------------------------------------------------------------- handler

CSymbolListFileHandler::CSymbolListFileHandler(ILogger* logger) : mImpl(new CImpl(logger)) {}

CSymbolListFileHandler::~CSymbolListFileHandler() { delete mImpl; }

CSymbolListFileHandler::CSymbolListFileHandler(CSymbolListFileHandler&& other) : mImpl(other.mImpl) {
  other.mImpl = new CImpl(mImpl->logger);
}

CSymbolListFileHandler& CSymbolListFileHandler::operator=(CSymbolListFileHandler&& other) {
  if (this != &other) {
    delete mImpl;  // writes what this handler held
    mImpl = other.mImpl;
    other.mImpl = new CImpl(mImpl->logger);
  }
  return *this;
}

CSymbolList& CSymbolListFileHandler::list() { return mImpl->list; }
const CSymbolList& CSymbolListFileHandler::list() const { return mImpl->list; }

bool CSymbolListFileReader::read(const std::string& name) { return impl().read(name); }

bool CSymbolListFileWriter::open(const std::string& name, bool readExisting) { return impl().open(name, readExisting); }

bool CSymbolListFileWriter::add(const std::string& directory, const std::string& name) {
  return impl().add(directory, name);
}

bool CSymbolListFileWriter::close() { return impl().close(); }

// ---------------------------------------------------------------- CImpl

CSymbolListFileHandler::CImpl::CImpl(ILogger* logger) : list(logger), logger(logger) {}

CSymbolListFileHandler::CImpl::~CImpl() { close(); }

bool CSymbolListFileHandler::CImpl::close() {
  bool written = false;
  try {
    written = write();
  } catch (const std::exception&) {
    report(logger, "Problem found during writing to the following symbol list file: " + fileName);
  }
  fileName.clear();
  return written;
}

bool CSymbolListFileHandler::CImpl::parse(std::istream& stream) {
  TLXManager tree(logger);
  if (!tree.readStream(stream)) {
    report(logger, "Problem found during reading from the following symbol list file: " + fileName);
    return false;
  }
  // Every SK_SYMBOL_PATH child of the root, in order, becomes an item; the
  // other children go with the tree.
  TLXNode* child = tree.root->children.front();
  while (child != nullptr) {
    TLXNode* next = child->nextSibling();
    if (child->keyword == kSymbolPath) {
      CSymbolListItem item(logger, tree.root->detachChild(child));
      if (item.isValid(nullptr)) list.append(std::move(item));
    }
    child = next;
  }
  return true;
}

bool CSymbolListFileHandler::CImpl::read(const std::string& name) {
  std::vector<char> buffer(kBufferSize);
  std::ifstream stream;
  stream.rdbuf()->pubsetbuf(buffer.data(), static_cast<std::streamsize>(buffer.size()));
  stream.open(nativeName(name));
  if (!stream.is_open()) {
    // The stored name is still empty here; the text stays as it is.
    report(logger, "Cannot open the following symbol list file for reading: " + fileName);
    return false;
  }
  return parse(stream);
}

bool CSymbolListFileHandler::CImpl::open(const std::string& name, bool readExisting) {
  if (readExisting) {
    std::vector<char> buffer(kBufferSize);
    std::ifstream stream;
    stream.rdbuf()->pubsetbuf(buffer.data(), static_cast<std::streamsize>(buffer.size()));
    stream.open(nativeName(name));
    if (stream.is_open() && !parse(stream)) return false;
  }
  openMode = std::ios_base::out | std::ios_base::trunc;
  fileName = nativeName(name);
  return true;
}

bool CSymbolListFileHandler::CImpl::add(const std::string& directory, const std::string& name) {
  list.add(CSymbolListItem(logger, directory, name));
  return true;
}

bool CSymbolListFileHandler::CImpl::write() {
  if (fileName.empty()) return true;
  // Written beside the file and renamed over it: a failed or killed write
  // leaves the old list whole.
  CWholeFile out{boost::filesystem::path(fileName)};
  if (!out) {
    out.discard();
    report(logger, "Cannot open the following symbol list file for writing: " + fileName);
    return false;
  }
  for (const auto& item : list)
    if (item.root) writeTLX(out.stream(), *item.root);
  const bool written = out.commit();
  if (!written) report(logger, "Problem found during writing to the following symbol list file: " + fileName);
  list.clear();
  return written;
}

}  // namespace symbol
}  // namespace rig_common
