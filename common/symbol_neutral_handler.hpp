#pragma once
// The reader of a neutral symbol file (<symbol name>.neut), which the symbol
// tool writes about one symbol. Only a few keyword lines are read:
//
//   SYMBOL <name>            REFDES_VALUE <value>     UNIT_NAME <unit>
//   PIN_SPACING <spacing>    BODY_PROPERTY <name>     PIN_PROPERTY <name>
//   PIN_NAME <name>
//
// The single-valued fields keep their last occurrence; the lists keep every
// line in file order, duplicates included. Values stay text (a pin spacing
// is never parsed as a number). Other keywords, empty lines and lines
// beginning with '#' are passed over.
//
//   rig_common::CVlt2hrwSymbolNeutralHandler handler;
//   if (handler.parse(path)) use(handler.getPinSpacing(), handler.getUnitName());

#include <memory>
#include <string>
#include <vector>

namespace rig_common {

struct TVlt2hrwSymbolNeutralData {
  std::string symbolName;
  std::string refdesValue;
  std::string unitName;
  std::string pinSpacing;
  std::vector<std::string> bodyProperties;
  std::vector<std::string> pinProperties;
  std::vector<std::string> pinNames;
};

class CVlt2hrwSymbolNeutralHandler {
 public:
  CVlt2hrwSymbolNeutralHandler();
  virtual ~CVlt2hrwSymbolNeutralHandler();
  CVlt2hrwSymbolNeutralHandler(const CVlt2hrwSymbolNeutralHandler&) = delete;
  CVlt2hrwSymbolNeutralHandler& operator=(const CVlt2hrwSymbolNeutralHandler&) = delete;

  // Reads the file at `path` (native form) into the fields, which are
  // emptied first. True when the file could be opened, whatever it held;
  // nothing is logged, the caller reports a failure.
  bool parse(const std::string& path);

  const TVlt2hrwSymbolNeutralData& data() const { return *mData; }
  const std::string& getSymbolName() const { return mData->symbolName; }
  const std::string& getRefdesValue() const { return mData->refdesValue; }
  const std::string& getUnitName() const { return mData->unitName; }
  const std::string& getPinSpacing() const { return mData->pinSpacing; }
  const std::vector<std::string>& getBodyProperties() const { return mData->bodyProperties; }
  const std::vector<std::string>& getPinProperties() const { return mData->pinProperties; }
  const std::vector<std::string>& getPinNames() const { return mData->pinNames; }

 private:
  void parseLine(const std::string& line);

  std::unique_ptr<TVlt2hrwSymbolNeutralData> mData;
};

}  // namespace rig_common
