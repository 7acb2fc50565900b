#pragma once
// Technologies and their geometry containers: the technology list
// (geom_technology/technology_list.xml) and the container files it names.
// Every attribute value is trimmed as it is read.

#include <boost/filesystem/path.hpp>
#include <list>
#include <string>

#include "impl/config_parser_impl.hpp"

namespace NComponent {
namespace NConfig {
namespace NGeom {
namespace NTechnology {

// One `technology` of the list; all empty stands for "not found".
struct TTechnology {
  std::string id;
  std::string containerDefFile;
  std::string translatedCellsFile;
  std::string padstackName;
};

// One `container`: a directory relative to the geometry root, with "/".
struct TContainer {
  std::string directory;
  std::string cellPartition;
};

// One `containers` element; an empty id stands for "not found".
struct TTechnologyContainer {
  std::string id;
  std::list<TContainer> containers;
};

class CTechnologyParser : public CConfigParser {
 public:
  using iterator = CElementIterator<TTechnology>;

  explicit CTechnologyParser(log4cxx::LoggerPtr logger) : CConfigParser(std::move(logger)) {}

  // Over rig/geom_data/technologies/list/technology.
  iterator begin();
  iterator end();

  // Parses `file` and gives its technology of that id, or an empty record
  // when the file cannot be parsed or has none.
  TTechnology find(const boost::filesystem::path& file, const std::string& id);
};

class CTechnologyContainerParser : public CConfigParser {
 public:
  using iterator = CElementIterator<TTechnologyContainer>;

  explicit CTechnologyContainerParser(log4cxx::LoggerPtr logger) : CConfigParser(std::move(logger)) {}

  // Over rig/geom_data/technologies/containers.
  iterator begin();
  iterator end();

  // The first `containers` of that id, or an empty record.
  TTechnologyContainer find(const std::string& id);
  // Removes every `containers` of that id.
  void removeContainers(const std::string& id);
  // Adds a `containers` of that id, making rig/geom_data/technologies first
  // where it is missing.
  void addContainers(const std::string& id);
  // Adds a `container` to the first `containers` of that id; false when
  // there is none or the element cannot be made.
  bool addContainer(const std::string& id, const std::string& directory, const std::string& cellPartition);
};

// The container file named in the technology list: a bare file name lies in
// <config>/geom_technology, anything else is taken as it stands.
boost::filesystem::path containerFilePath(const boost::filesystem::path& configDir,
                                          const std::string& containerDefFile);

}  // namespace NTechnology
}  // namespace NGeom
}  // namespace NConfig
}  // namespace NComponent
