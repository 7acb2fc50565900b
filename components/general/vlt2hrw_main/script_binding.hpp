#pragma once
// Binding of one handler into a Lua state under its script name.

#include <string>

struct lua_State;

namespace NComponent {

using TGenericHandler = void (*)();
using TBinder = void (*)(lua_State* state, const char* name, TGenericHandler handler);

struct TScriptFunction {
  const char* name;
  TGenericHandler handler;  // null while the handler is not built
  TBinder binder;
};

// Wraps the bound global `name` so that binding errors read as the script
// expects: "no match for function call '<name>' ..." for a wrong call and
// "<name>() threw an exception" for an exception of unknown type.
void wrapBindingErrors(lua_State* state, const char* name);

}  // namespace NComponent
