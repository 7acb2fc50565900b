#pragma once
// Partitions of the target Central Library: the library tool's command
// lines and the two runs that add partitions, one by name, one from a file
// of names.

#include <boost/filesystem/path.hpp>
#include <string>

namespace NVlt2HrwHelpers {

// "cmd /c <tool> -CreatePartition -zpcpath=<index> -partitiontype=<type>
// -partitionname=<name> -log=<internal log> > <output> 2>>&1". The name and
// the type go in as they stand.
std::string partitionCommandLine(const boost::filesystem::path& tool, const boost::filesystem::path& indexFile,
                                 const std::string& partitionName, const std::string& partitionType,
                                 const boost::filesystem::path& internalLog, const boost::filesystem::path& output);

// The same with "<option><partition file>" in place of type and name, the
// option being "-sympartitionfile=" and the like.
std::string partitionFileCommandLine(const boost::filesystem::path& tool, const boost::filesystem::path& indexFile,
                                     const std::string& option, const boost::filesystem::path& partitionFile,
                                     const boost::filesystem::path& internalLog, const boost::filesystem::path& output);

// Adds one partition of `partitionType` ("cell", "symbol" or "pdb") to the
// library of `indexFile`. False for an unknown type, without a log
// directory or when the tool cannot be run; a non-zero exit code is a Warn.
bool createCLPartition(const boost::filesystem::path& indexFile, const std::string& partitionName,
                       const std::string& partitionType);

// Adds every partition that `partitionFile` names, one a line.
bool createCLPartitionsFromFile(const boost::filesystem::path& indexFile, const boost::filesystem::path& partitionFile,
                                const std::string& partitionType);

}  // namespace NVlt2HrwHelpers
