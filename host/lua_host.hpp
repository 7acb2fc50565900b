#pragma once
// Runs Lua workflow scripts against a loaded component: the `host` table,
// on-demand binding of undefined globals, the `arg` table.

#include <string>
#include <vector>

#include "host/host_core.hpp"

namespace vlthost {

struct TComponentEntry {
  bool (*init)(NComponent::TRegisterParams*, const NComponent::TPlatformServices*) = nullptr;
  NComponent::TRegisterParams params;
};

// Runs `script` with `args`; returns 0 when it ran to its end, 1 on a Lua
// error (written to `error`).
int runScript(CHostCore& core, TComponentEntry& entry, const std::string& script, const std::vector<std::string>& args,
              std::string& error);

}  // namespace vlthost
