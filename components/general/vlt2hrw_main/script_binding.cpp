// Rewording of the binding layer's errors.
//
// luabind words a call that matches no signature as "No matching overload
// found, candidates:" and an exception of unknown type as "Unknown C++
// exception". The script interface promises other texts, so every bound
// function is called through a small C closure that rewrites those two.

#include "script_binding.hpp"

#include <cstring>
#include <lua.hpp>
#include <string>

namespace NComponent {

namespace {

const char kNoMatch[] = "No matching overload found, candidates:\n";
const char kUnknown[] = "Unknown C++ exception";

// Builds the rewritten message on the Lua stack; returns false when the
// message is to stay as it is. No C++ object outlives this function, since
// the caller raises the Lua error after it returned.
bool rewriteError(lua_State* state, int argumentCount) {
  const char* name = lua_tostring(state, lua_upvalueindex(2));
  const char* message = lua_tostring(state, -1);
  if (message == nullptr || name == nullptr) return false;
  std::string text;
  if (std::strncmp(message, kNoMatch, sizeof(kNoMatch) - 1) == 0) {
    text = std::string("no match for function call '") + name + "' with the parameters (";
    for (int i = 1; i <= argumentCount; ++i) {
      if (i > 1) text += ", ";
      text += luaL_typename(state, i);
    }
    text += ")\ncandidates are:\n";
    text += message + sizeof(kNoMatch) - 1;
    text += "\n";
  } else if (std::strcmp(message, kUnknown) == 0) {
    text = std::string(name) + "() threw an exception";
  } else {
    return false;
  }
  lua_pop(state, 1);
  lua_pushlstring(state, text.data(), text.size());
  return true;
}

int guardedCall(lua_State* state) {
  int argumentCount = lua_gettop(state);
  // Keep the arguments for the message: call a copy of them.
  lua_pushvalue(state, lua_upvalueindex(1));
  for (int i = 1; i <= argumentCount; ++i) lua_pushvalue(state, i);
  if (lua_pcall(state, argumentCount, LUA_MULTRET, 0) != LUA_OK) {
    rewriteError(state, argumentCount);
    return lua_error(state);
  }
  return lua_gettop(state) - argumentCount;
}

}  // namespace

void wrapBindingErrors(lua_State* state, const char* name) {
  lua_getglobal(state, name);
  lua_pushstring(state, name);
  lua_pushcclosure(state, &guardedCall, 2);
  lua_setglobal(state, name);
}

}  // namespace NComponent
