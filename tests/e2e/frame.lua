-- The component frame through the real host: binding, the script
-- interface's errors and values, the host's exit codes. (The prologue,
-- the private logger and the release are the unit tests' part.)
local t = require("testlib")

-- Unknown names and a name with the wrong case are not bound.
t.eq(host.bind("no_such_function"), false, "unknown name")
t.eq(host.bind("Create_WDir"), false, "Create_WDir")
t.eq(No_Such_Global, nil, "undefined global stays nil")

-- Wrong argument counts and types raise the promised Lua error.
local message = select(2, pcall(get_1d_list_size))
t.starts(message, "no match for function call 'get_1d_list_size' with the parameters ()", "no arguments")
assert(message:find("candidates are:\n", 1, true), message)
assert(message:find("get_1d_list_size(std::string const&)", 1, true), message)
t.starts(select(2, pcall(get_2d_list_item, "x", "y", true)),
         "no match for function call 'get_2d_list_item' with the parameters (string, string, boolean)", "wrong types")

-- Results cross as Lua values.
host.set_wdir(t.fresh_dir(t.scratch .. "/wdir"))
local rid = new_2d_list()
add_two_col_item_to_2d_list(rid, "a", "b")
t.eq(get_2d_list_size(rid), 1, "2d size, an int crossing as a number")
t.eq(get_2d_list_item(rid, 0, 1), "b", "2d item")
remove_2d_list(rid)
t.eq(get_2d_list_size(rid), -1, "removed")

-- A host that fails "create component logger": messages reach the translation sink alone.
host.fail_service("create component logger", true)
host.clear_messages()
add_item_to_1d_list("nope", "x")
t.eq(t.take_log(), "translation ERROR Invalid RID passed to add_item_to_1d_list() function.\n", "translation only")
host.fail_service("create component logger", false)

-- Exit codes of the host itself (a Lua error and usage errors: host_cli.lua).
local script = t.scratch .. "-clean.lua"
t.write(script, "local x = 1")
t.eq(t.run({script}), 0, "a clean run exits 0")
t.eq(t.run({"--component-dir", t.scratch .. "/nowhere", script}), 2, "a component that cannot start exits 2")
t.eq(t.run({t.scratch .. "-missing.lua"}), 2, "a script that does not exist exits 2")
