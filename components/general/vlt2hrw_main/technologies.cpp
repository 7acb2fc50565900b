// Technologies and containers, and the script function that fills the
// container file of the technology "default".

#include "technologies.hpp"

#include <boost/filesystem/operations.hpp>

#include "common/text_helpers.hpp"
#include "geometry_helpers.hpp"
#include "misc.hpp"
#include "script_functions.hpp"

namespace NComponent {
namespace NConfig {
namespace NGeom {
namespace NTechnology {

namespace {

CXMLHierPath technologiesPath() { return CXMLHierPath("rig") / "geom_data" / "technologies"; }
CXMLHierPath technologyPath() { return technologiesPath() / "list" / "technology"; }
CXMLHierPath containersPath() { return technologiesPath() / "containers"; }

std::string trimmed(CConfigParser& file, TDOMElement* element, const std::string& name) {
  return rig_common::trim(file.parser.getAttribute(element, name));
}

TTechnology readTechnology(CConfigParser& file, TDOMElement* element) {
  return {trimmed(file, element, "id"), trimmed(file, element, "container_def_file"),
          trimmed(file, element, "translated_cells_file"), trimmed(file, element, "padstack_name")};
}

TTechnologyContainer readContainers(CConfigParser& file, TDOMElement* element) {
  TTechnologyContainer record;
  record.id = trimmed(file, element, "id");
  TDOMNodeList* list = file.parser.getDomNodeList(element, std::string("container"));
  for (int i = 0, n = file.parser.getDomNodeListLength(list); i < n; ++i) {
    TDOMElement* container = file.parser.getDOMElement(list, i);
    record.containers.push_back({trimmed(file, container, "directory"), trimmed(file, container, "cell_partition")});
  }
  return record;
}

}  // namespace

// ---------------------------------------------------------------------------
// CTechnologyParser

CTechnologyParser::iterator CTechnologyParser::begin() {
  return iterator(*this, technologyPath(), &readTechnology, false);
}

CTechnologyParser::iterator CTechnologyParser::end() {
  return iterator(*this, technologyPath(), &readTechnology, true);
}

TTechnology CTechnologyParser::find(const boost::filesystem::path& file, const std::string& id) {
  if (!parse(file)) return TTechnology();
  for (iterator it = begin(), last = end(); it != last; ++it) {
    TTechnology technology = *it;
    if (technology.id == id) return technology;
  }
  return TTechnology();
}

// ---------------------------------------------------------------------------
// CTechnologyContainerParser

CTechnologyContainerParser::iterator CTechnologyContainerParser::begin() {
  return iterator(*this, containersPath(), &readContainers, false);
}

CTechnologyContainerParser::iterator CTechnologyContainerParser::end() {
  return iterator(*this, containersPath(), &readContainers, true);
}

TTechnologyContainer CTechnologyContainerParser::find(const std::string& id) {
  TDOMNodeList* list = parser.getDomNodeList(containersPath());
  for (int i = 0, n = parser.getDomNodeListLength(list); i < n; ++i) {
    TDOMElement* element = parser.getDOMElement(list, i);
    if (element != nullptr && trimmed(*this, element, "id") == id) return readContainers(*this, element);
  }
  return TTechnologyContainer();
}

void CTechnologyContainerParser::removeContainers(const std::string& id) {
  TDOMNodeList* list = parser.getDomNodeList(containersPath());
  for (int i = 0, n = parser.getDomNodeListLength(list); i < n; ++i) {
    TDOMElement* element = parser.getDOMElement(list, i);
    if (element != nullptr && trimmed(*this, element, "id") == id) parser.remove(element);
  }
}

void CTechnologyContainerParser::addContainers(const std::string& id) {
  TDOMElement* technologies = parser.getDOMElement(technologiesPath());
  if (technologies == nullptr) technologies = parser.addElement(technologiesPath());
  parser.addAttribute(parser.addElement(technologies, CXMLHierPath("containers")), "id", id);
}

bool CTechnologyContainerParser::addContainer(const std::string& id, const std::string& directory,
                                              const std::string& cellPartition) {
  TDOMNodeList* list = parser.getDomNodeList(containersPath());
  TDOMElement* containers = nullptr;
  for (int i = 0, n = parser.getDomNodeListLength(list); i < n && containers == nullptr; ++i) {
    TDOMElement* element = parser.getDOMElement(list, i);
    if (element != nullptr && trimmed(*this, element, "id") == id) containers = element;
  }
  if (containers == nullptr) return false;
  TDOMElement* container = parser.addElement(containers, CXMLHierPath("container"));
  if (container == nullptr) return false;
  parser.addAttribute(container, "directory", directory);
  parser.addAttribute(container, "cell_partition", cellPartition);
  return true;
}

boost::filesystem::path containerFilePath(const boost::filesystem::path& configDir,
                                          const std::string& containerDefFile) {
  boost::filesystem::path file(containerDefFile);
  if (!containerDefFile.empty() && !file.has_parent_path()) return configDir / "geom_technology" / file;
  return file;
}

}  // namespace NTechnology
}  // namespace NGeom
}  // namespace NConfig
}  // namespace NComponent

namespace NComponent {

namespace fs = boost::filesystem;
using NConfig::NGeom::NTechnology::CTechnologyContainerParser;
using NConfig::NGeom::NTechnology::CTechnologyParser;
using NConfig::NGeom::NTechnology::TTechnology;

bool createDefaultContainerFile(const std::string& /*libraryName*/, const std::string& /*locationMapFile*/,
                                const std::string& /*libraryDir*/) {
  CScriptCall call(CScriptCall::kWdirAndSource);
  if (!call.ok()) return false;
  RIG_LOG(call, Debug, "Creating default geometry container file for VLT geometry root.");

  const std::string configName = getConfigName(call.services());
  if (configName.empty()) {
    RIG_LOG(call, Fatal, "Cannot obtain path to the configuration directory.");
    return false;
  }
  const fs::path configDir = fs::path(getWorkingDirectory(call.services())) / configName;

  const std::string id = "default";
  CTechnologyParser technologies(call.translation());
  const TTechnology technology = technologies.find(configDir / "geom_technology" / "technology_list.xml", id);
  if (technology.id.empty()) {
    RIG_LOG(call, Error, "Cannot obtain data for technology id: \"" << id << "\"");
    return false;
  }

  const fs::path file = NConfig::NGeom::NTechnology::containerFilePath(configDir, technology.containerDefFile);
  CTechnologyContainerParser containers(call.translation());
  if (fs::exists(file)) {
    if (!containers.parse(file)) {
      RIG_LOG(call, Fatal, "Cannot load technology containers file: '" << file.string() << "'.");
      return false;
    }
  } else {
    containers.parser.createEmptyDocument("rig");
  }

  // Without a geometry root from obtain_vlt_geom_path nothing is written.
  const fs::path root(call.services().getParameter("geom path"));
  if (!fs::is_directory(root)) return false;

  std::list<std::string> directories;
  if (!NVlt2HrwHelpers::buildGeometryContainerList(call, directories, root)) return false;
  if (directories.empty())
    RIG_LOG(call, Warn,
            "There are no geometry containers (subdirectories) in geometry root: '" << root.string() << "'.");

  // The entry of "default" is made anew; other technologies' entries stay.
  containers.removeContainers(id);
  containers.addContainers(id);
  for (const std::string& directory : directories) containers.addContainer(id, directory, "");

  if (!containers.write(file)) {
    RIG_LOG(call, Fatal, "Cannot save technology containers file: '" << file.string() << "'.");
    return false;
  }
  return true;
}

}  // namespace NComponent
