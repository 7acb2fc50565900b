#pragma once
// The outputs of the symbol tool: the neutral symbol file (writing off) and
// the target symbol (writing on, the SymXlt configuration applied).

#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "source_symbol.hpp"

namespace sksym2td {

using TPinMap = std::vector<std::pair<std::string, std::string>>;  // source pin, target pin; script order

// Checks the pin map against the symbol's pins; an unknown source pin is a
// "Warning: ..." line on `out`. Returns the map of the known pins, a later
// line for a pin winning.
TPinMap checkPinMap(const TSourceSymbol& symbol, const TPinMap& pinMap, std::ostream& out);

// The neutral symbol file; false when it cannot be written.
bool writeNeutral(const std::string& file, const TSourceSymbol& symbol, const TPinMap& pinMap);

// The bits of a vector pin "A[0:2]": A[0], A[1], A[2]; any other name is
// itself alone.
std::vector<std::string> expandVectorPin(const std::string& name);

// The target symbol `name` into `file`. Scale comes from [DESIGN SCALING];
// false with the reason in `error` when the scale is not a number or the
// file cannot be written.
bool writeTarget(const std::string& file, const std::string& name, const TSourceSymbol& symbol, const TPinMap& pinMap,
                 const TSymXlt& config, std::string& error);

// Appends `name` as one line to the journal of target symbols of `dir`
// (`<dir>/.tdlib2zpc/journal`), from which the library update tool learns
// what is new without listing the partition; false when it cannot.
bool appendToJournal(const std::string& dir, const std::string& name);

}  // namespace sksym2td
