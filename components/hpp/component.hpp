#pragma once
// Boundary records between the host framework and the component.

#include <boost/shared_ptr.hpp>
#include <string>

struct lua_State;

namespace NComponent {

// The host's service table, handed to InitComponent.
struct TPlatformServices {
  std::string (*getParameter)(const std::string& key) = nullptr;
  void (*setParameter)(const std::string& key, const std::string& value) = nullptr;
  bool (*requestService)(const std::string& service, const std::string* component, void* out) = nullptr;
  std::string componentDirectory;
};

// The component's entry points, filled by InitComponent.
struct TRegisterParams {
  bool (*bindScriptFunction)(lua_State* state, const char* name) = nullptr;
  bool (*releaseComponent)() = nullptr;
};

// The component's copy of the host's services.
class CComponent : public TPlatformServices {
 public:
  CComponent() = default;
  explicit CComponent(const TPlatformServices& services) : TPlatformServices(services) {}

 private:
  std::string mReserved;  // kept for the record layout; never assigned or read
};

extern boost::shared_ptr<CComponent> gComponent;

extern const char* const kComponentName;  // "vlt2hrw_main"

extern "C" __attribute__((visibility("default"))) bool InitComponent(TRegisterParams* params,
                                                                     const TPlatformServices* services);

bool bindScriptFunction(lua_State* state, const char* name);
bool releaseComponent();

}  // namespace NComponent
