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

// What the host program wants to know of a run: each call of a script
// function of the component, and the steps the script names.
class IScriptObserver {
 public:
  virtual ~IScriptObserver() = default;
  virtual void callBegin(const std::string& function) = 0;
  // The answer as text: "true", "false", a number, a string.
  virtual void callEnd(const std::string& function, const std::string& result) = 0;
  // `message` is already shortened.
  virtual void callError(const std::string& function, const std::string& message) = 0;
  virtual void step(const std::string& title) = 0;
  // The script calls os.exit(code): the last chance to write what waits.
  virtual void exiting(int code) = 0;
};

// Runs `script` with `args`; returns 0 when it ran to its end, 1 on a Lua
// error (written to `error`), or the status the script gave to os.exit.
// A Lua error raised by a script function reaches the script with its text
// shortened in the middle.
int runScript(CHostCore& core, TComponentEntry& entry, const std::string& script, const std::vector<std::string>& args,
              std::string& error, IScriptObserver* observer = nullptr);

}  // namespace vlthost
