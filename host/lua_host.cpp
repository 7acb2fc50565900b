#include "host/lua_host.hpp"

#include <cstdlib>
#include <lua.hpp>
#include <set>

#include "host/log_text.hpp"

namespace vlthost {

namespace {

struct TState {
  CHostCore* core;
  TComponentEntry* entry;
  std::set<std::string> refused;  // names bindScriptFunction said no to
  std::set<std::string> binding;  // names being bound: the binder looks them up itself
  IScriptObserver* observer;
};

TState& state(lua_State* L) { return *static_cast<TState*>(lua_touserdata(L, lua_upvalueindex(1))); }

std::string checkString(lua_State* L, int index) {
  size_t length = 0;
  const char* text = luaL_checklstring(L, index, &length);
  return std::string(text, length);
}

int hostSetService(lua_State* L) {
  std::string name = checkString(L, 1);
  if (lua_isnoneornil(L, 2)) {
    state(L).core->clearService(name);
  } else if (name == "get platform") {
    state(L).core->setPlatform(static_cast<int>(luaL_checkinteger(L, 2)));
  } else {
    state(L).core->setService(name, checkString(L, 2));
  }
  return 0;
}

int hostSetWdir(lua_State* L) {
  state(L).core->setService("get wdir", checkString(L, 1));
  return 0;
}

int hostSetLibrary(lua_State* L) {
  state(L).core->setService("get library location", checkString(L, 1));
  return 0;
}

int hostFailService(lua_State* L) {
  state(L).core->failService(checkString(L, 1), lua_isnone(L, 2) || lua_toboolean(L, 2));
  return 0;
}

int hostGetParam(lua_State* L) {
  auto& params = state(L).core->parameters();
  auto found = params.find(checkString(L, 1));
  std::string value = found == params.end() ? std::string() : found->second;
  lua_pushlstring(L, value.data(), value.size());
  return 1;
}

int hostSetParam(lua_State* L) {
  state(L).core->parameters()[checkString(L, 1)] = checkString(L, 2);
  return 0;
}

void wrapGlobal(lua_State* L, TState& s, const std::string& name);

int hostBind(lua_State* L) {
  TState& s = state(L);
  std::string name = checkString(L, 1);
  auto bind = s.entry->params.bindScriptFunction;
  s.binding.insert(name);
  bool bound = bind != nullptr && bind(L, name.c_str());
  s.binding.erase(name);
  if (bound) wrapGlobal(L, s, name);
  lua_pushboolean(L, bound);
  return 1;
}

int hostRelease(lua_State* L) {
  auto release = state(L).entry->params.releaseComponent;
  lua_pushboolean(L, release != nullptr && release());
  return 1;
}

int hostInit(lua_State* L) {
  TState& s = state(L);
  NComponent::TPlatformServices services = s.core->services();
  lua_pushboolean(L, s.entry->init(&s.entry->params, &services));
  return 1;
}

int hostSetLevel(lua_State* L) {
  state(L).core->setLevel(checkString(L, 1));
  return 0;
}

int hostSetComponentLevel(lua_State* L) {
  state(L).core->setComponentLevel(checkString(L, 1));
  return 0;
}

// host.messages(): every message so far as {sink=, level=, text=} tables.
int hostMessages(lua_State* L) {
  const auto& records = state(L).core->records();
  lua_createtable(L, static_cast<int>(records.size()), 0);
  int index = 0;
  for (const TLogRecord& r : records) {
    lua_createtable(L, 0, 3);
    lua_pushlstring(L, r.sink.data(), r.sink.size());
    lua_setfield(L, -2, "sink");
    lua_pushlstring(L, r.level.data(), r.level.size());
    lua_setfield(L, -2, "level");
    lua_pushlstring(L, r.message.data(), r.message.size());
    lua_setfield(L, -2, "text");
    lua_rawseti(L, -2, ++index);
  }
  return 1;
}

int hostClearMessages(lua_State* L) {
  state(L).core->clearRecords();
  return 0;
}

int hostLoggerCounts(lua_State* L) {
  lua_pushinteger(L, state(L).core->opened());
  lua_pushinteger(L, state(L).core->closed());
  return 2;
}

// The answer of a script function as text, for the progress display.
std::string resultText(lua_State* L, int index) {
  switch (lua_type(L, index)) {
    case LUA_TBOOLEAN:
      return lua_toboolean(L, index) ? "true" : "false";
    case LUA_TNUMBER:
    case LUA_TSTRING: {
      // On a copy: lua_tolstring turns a number into a string in place.
      lua_pushvalue(L, index);
      size_t length = 0;
      const char* text = lua_tolstring(L, -1, &length);
      std::string result(text, length);
      lua_pop(L, 1);
      return result;
    }
    case LUA_TNONE:
      return "(nothing)";
    default:
      return luaL_typename(L, index);
  }
}

// Stands in the globals for a bound script function: tells the observer of
// the call and its answer, and shortens the text of a Lua error, which can
// hold a path of any length, before it goes on to the script.
int callWrapped(lua_State* L) {
  TState& s = state(L);
  std::string name = lua_tostring(L, lua_upvalueindex(3));
  int arguments = lua_gettop(L);
  lua_pushvalue(L, lua_upvalueindex(2));
  lua_insert(L, 1);
  if (s.observer != nullptr) s.observer->callBegin(name);
  if (lua_pcall(L, arguments, LUA_MULTRET, 0) != LUA_OK) {
    if (lua_type(L, -1) == LUA_TSTRING) {
      std::string message = shortenMiddle(lua_tostring(L, -1));
      if (s.observer != nullptr) s.observer->callError(name, message);
      lua_pop(L, 1);
      lua_pushlstring(L, message.data(), message.size());
    } else if (s.observer != nullptr) {
      s.observer->callError(name, "(error object is not a string)");
    }
    return lua_error(L);
  }
  if (s.observer != nullptr) s.observer->callEnd(name, resultText(L, 1));
  return lua_gettop(L);
}

// Replaces the global `name`, a function just bound, by its wrapper.
void wrapGlobal(lua_State* L, TState& s, const std::string& name) {
  lua_pushglobaltable(L);
  lua_pushlstring(L, name.data(), name.size());
  lua_rawget(L, -2);
  if (lua_isfunction(L, -1)) {
    lua_pushlightuserdata(L, &s);
    lua_insert(L, -2);
    lua_pushlstring(L, name.data(), name.size());
    lua_pushcclosure(L, callWrapped, 3);
    lua_pushlstring(L, name.data(), name.size());
    lua_insert(L, -2);
    lua_rawset(L, -3);
  } else {
    lua_pop(L, 1);
  }
  lua_pop(L, 1);
}

// host.step(title): the workflow names the step that begins.
int hostStep(lua_State* L) {
  TState& s = state(L);
  if (s.observer != nullptr) s.observer->step(checkString(L, 1));
  return 0;
}

// os.exit(code): the observer writes what waits, then the process ends.
int hostExit(lua_State* L) {
  TState& s = state(L);
  int code = EXIT_SUCCESS;
  if (lua_isboolean(L, 1))
    code = lua_toboolean(L, 1) ? EXIT_SUCCESS : EXIT_FAILURE;
  else if (!lua_isnoneornil(L, 1))
    code = static_cast<int>(luaL_checkinteger(L, 1));
  if (s.observer != nullptr) s.observer->exiting(code);
  std::exit(code);
}

// __index of the globals: an undefined name is asked for once through
// bindScriptFunction; a bound name then stands in the globals table.
int globalIndex(lua_State* L) {
  TState& s = state(L);
  if (lua_type(L, 2) != LUA_TSTRING) return 0;
  std::string name = checkString(L, 2);
  auto bind = s.entry->params.bindScriptFunction;
  if (bind == nullptr || s.refused.count(name) != 0 || s.binding.count(name) != 0) return 0;
  s.binding.insert(name);
  bool bound = bind(L, name.c_str());
  s.binding.erase(name);
  if (!bound) {
    s.refused.insert(name);
    return 0;
  }
  wrapGlobal(L, s, name);
  lua_rawget(L, 1);
  return 1;
}

void setHostTable(lua_State* L, TState* s) {
  static const luaL_Reg functions[] = {{"set_wdir", hostSetWdir},
                                       {"set_library", hostSetLibrary},
                                       {"set_service", hostSetService},
                                       {"fail_service", hostFailService},
                                       {"get_param", hostGetParam},
                                       {"set_param", hostSetParam},
                                       {"bind", hostBind},
                                       {"release", hostRelease},
                                       {"init", hostInit},
                                       {"set_log_level", hostSetLevel},
                                       {"set_component_log_level", hostSetComponentLevel},
                                       {"messages", hostMessages},
                                       {"clear_messages", hostClearMessages},
                                       {"logger_counts", hostLoggerCounts},
                                       {"step", hostStep},
                                       {nullptr, nullptr}};
  lua_newtable(L);
  lua_pushlightuserdata(L, s);
  luaL_setfuncs(L, functions, 1);
  lua_setglobal(L, "host");

  lua_getglobal(L, "os");
  lua_pushlightuserdata(L, s);
  lua_pushcclosure(L, hostExit, 1);
  lua_setfield(L, -2, "exit");
  lua_pop(L, 1);

  lua_pushglobaltable(L);
  lua_newtable(L);
  lua_pushlightuserdata(L, s);
  lua_pushcclosure(L, globalIndex, 1);
  lua_setfield(L, -2, "__index");
  lua_setmetatable(L, -2);
  lua_pop(L, 1);
}

}  // namespace

int runScript(CHostCore& core, TComponentEntry& entry, const std::string& script, const std::vector<std::string>& args,
              std::string& error, IScriptObserver* observer) {
  TState s{&core, &entry, {}, {}, observer};
  lua_State* L = luaL_newstate();
  luaL_openlibs(L);
  // Lua 5.1 names the workflow scripts may use.
  luaL_dostring(L, "unpack = unpack or table.unpack; loadstring = loadstring or load");
  setHostTable(L, &s);

  lua_createtable(L, static_cast<int>(args.size()), 1);
  lua_pushstring(L, script.c_str());
  lua_rawseti(L, -2, 0);
  for (size_t i = 0; i < args.size(); ++i) {
    lua_pushstring(L, args[i].c_str());
    lua_rawseti(L, -2, static_cast<int>(i + 1));
  }
  lua_setglobal(L, "arg");

  int result = 0;
  if (luaL_loadfile(L, script.c_str()) != LUA_OK) {
    error = lua_tostring(L, -1);
    result = 1;
  } else {
    lua_pushcfunction(L, [](lua_State* L2) -> int {
      luaL_traceback(L2, L2, lua_tostring(L2, 1), 1);
      return 1;
    });
    lua_insert(L, -2);
    for (const std::string& a : args) lua_pushstring(L, a.c_str());
    if (lua_pcall(L, static_cast<int>(args.size()), 0, -2 - static_cast<int>(args.size())) != LUA_OK) {
      const char* text = lua_tostring(L, -1);
      error = text != nullptr ? text : "(error object is not a string)";
      result = 1;
    }
  }
  lua_close(L);
  return result;
}

}  // namespace vlthost
