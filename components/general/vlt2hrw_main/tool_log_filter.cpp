// The problem filter over tool log lines.

#include "tool_log_filter.hpp"

#include <boost/regex.hpp>

namespace NComponent {

std::string filterLogLine(const std::string& line, bool warnings) {
  const boost::regex expression(warnings ? "\\s*(?:err|warn)\\S*\\s*:*\\s*(.*)" : "\\s*(?:err)\\S*\\s*:*\\s*(.*)",
                                boost::regex::perl | boost::regex::icase);
  boost::smatch match;
  if (!boost::regex_match(line, match, expression)) return {};
  return match[1].str();
}

}  // namespace NComponent
