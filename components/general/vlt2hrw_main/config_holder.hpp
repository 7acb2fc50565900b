#pragma once
// The component configuration file: required to exist and to be XML.

#include <log4cxx/logger.h>

#include <boost/filesystem/path.hpp>

#include "platform/markup_core.hpp"

namespace NComponent {

class CConfig {
 public:
  explicit CConfig(log4cxx::LoggerPtr logger) : mLogger(std::move(logger)) {}
  bool parse(const boost::filesystem::path& file);

 private:
  log4cxx::LoggerPtr mLogger;
  NMarkupCore::CXML_Parser mParser;
};

}  // namespace NComponent
