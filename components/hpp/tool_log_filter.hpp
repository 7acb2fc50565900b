#pragma once
// The problem filter over the logs of the source suite's tools, shared by the
// reports of the catalog and the symbol steps.

#include <string>

namespace NComponent {

// The message of a tool log line: what follows an "err..." or, with
// `warnings`, a "warn..." word at the start of the line (case ignored, blanks
// and colons behind the word dropped); empty otherwise, also when nothing
// follows the word.
std::string filterLogLine(const std::string& line, bool warnings);

}  // namespace NComponent
