#pragma once
// Helpers of the working directory and of the seed library: directory
// creation with its messages, and the numbering of the VALUE_VLT text
// property in the seed's property file.

#include <log4cxx/logger.h>

#include <boost/filesystem/path.hpp>
#include <string>
#include <vector>

namespace NVlt2HrwHelpers {

// Makes one directory level. True when the directory exists already or was
// made; a missing parent raises boost::filesystem::filesystem_error.
bool createDirectory(const boost::filesystem::path& dir, log4cxx::LoggerPtr logger);

// The command line that makes the seed library: the tool with its options,
// its standard output and error redirected into `output`.
std::string seedCommandLine(const boost::filesystem::path& tool, const boost::filesystem::path& index,
                            const boost::filesystem::path& internalLog, const boost::filesystem::path& output);

// The property line added to CentLib.prp, with `number` in decimal.
std::string valueVltPropertyLine(int number);

// The result of placing the VALUE_VLT property among the lines of a
// property file.
struct TTextPropertyInsertion {
  int number = 0;                    // the smallest free number, 2048 when none is free
  std::vector<std::string> lines;    // the file's lines with the new line in place
  std::vector<std::string> invalid;  // *TEXTPROP lines whose number does not convert
};

// Takes the numbers of the *TEXTPROP lines out of the free ranges 221-255,
// 457-511 and 1025-2047, and inserts the property line with the smallest
// free number before the first *TEXTPROP line of a greater number, or at
// the end. All other lines are kept as they stand.
TTextPropertyInsertion insertValueVltProperty(const std::vector<std::string>& lines);

}  // namespace NVlt2HrwHelpers
