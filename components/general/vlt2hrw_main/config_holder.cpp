#include "config_holder.hpp"

#include <boost/filesystem/operations.hpp>

#include "misc.hpp"

namespace NComponent {

bool CConfig::parse(const boost::filesystem::path& file) {
  if (!boost::filesystem::exists(file)) {
    RIG_LOG1(mLogger, Fatal,
             "Configuration file does not exist:"
                 << " component: " << componentName() << ", path: '" << file.string() << "'");
    return false;
  }
  mParser.initialize();
  return mParser.parse(file.string(), mLogger);
}

}  // namespace NComponent
