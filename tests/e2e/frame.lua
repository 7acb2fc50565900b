-- The component frame through the real host: binding, prologue, errors.
local t = require("testlib")

-- Unknown names and a name with the wrong case are not bound.
t.eq(host.bind("no_such_function"), false, "unknown name")
t.eq(host.bind("Create_WDir"), false, "Create_WDir")
t.eq(No_Such_Global, nil, "undefined global stays nil")

-- Before a working directory is set the prologue fails on the translation sink.
host.clear_messages()
t.eq(new_1d_list(), "", "new_1d_list without wdir")
t.eq(t.lines()[1], "translation ERROR Working directory has not been set.", "prologue message")
t.eq(#t.lines(), 1, "one message")

-- Wrong argument counts and types raise the promised Lua error.
local ok, message = pcall(get_1d_list_size)
t.eq(ok, false, "call without arguments")
t.starts(message, "no match for function call 'get_1d_list_size' with the parameters ()", "no arguments")
assert(message:find("candidates are:\n", 1, true), message)
assert(message:find("get_1d_list_size(std::string const&)", 1, true), message)

ok, message = pcall(get_2d_list_item, "x", "y", true)
t.eq(ok, false, "wrong types")
t.starts(message, "no match for function call 'get_2d_list_item' with the parameters (string, string, boolean)",
         "wrong types")

-- Results cross as Lua values.
host.set_wdir(t.fresh_dir(t.scratch .. "/wdir"))
local rid = new_2d_list()
add_two_col_item_to_2d_list(rid, "a", "b")
t.eq(get_2d_list_size(rid), 1, "2d size")
t.eq(get_2d_list_item(rid, 0, 1), "b", "2d item")
t.eq(type(get_2d_list_size(rid)), "number", "int crosses as number")
remove_2d_list(rid)
t.eq(get_2d_list_size(rid), -1, "removed")

-- The per-component logger is opened and closed once per call.
local opened, closed = host.logger_counts()
t.eq(opened, closed, "every opened component logger closed")

-- Release, then start again; lists survive.
rid = new_1d_list()
add_item_to_1d_list(rid, "kept")
t.eq(host.release(), false, "releaseComponent always returns false")
-- Calls after the release are refused without a word.
host.clear_messages()
t.eq(new_1d_list(), "", "new_1d_list after release")
t.eq(create_wdir(t.scratch .. "/late"), false, "create_wdir after release")
t.eq(get_lib_unit(), "", "get_lib_unit after release")
add_item_to_1d_list(rid, "lost")
t.eq(#t.lines(), 0, "nothing logged after release")
t.eq(host.init(), true, "InitComponent again")
t.eq(get_1d_list_size(rid), 1, "nothing added after release")
t.eq(get_1d_list_item(rid, 0), "kept", "list survives release")
t.eq(host.get_param("translator"), "vlt2hrw", "translator parameter")

-- A host that fails "create component logger": messages reach the translation sink alone.
host.fail_service("create component logger", true)
host.clear_messages()
add_item_to_1d_list("nope", "x")
t.eq(#t.lines(), 1, "one sink only")
t.eq(t.lines()[1], "translation ERROR Invalid RID passed to add_item_to_1d_list() function.", "translation only")
host.fail_service("create component logger", false)

-- Exit codes of the host itself.
local script = t.scratch .. "-fail.lua"
t.write(script, "error('boom')")
t.eq(t.run_host({}, script), 1, "a Lua error exits 1")
t.write(script, "local x = 1")
t.eq(t.run_host({}, script), 0, "a clean run exits 0")
t.eq(t.run_host({"--component-dir", t.scratch .. "/nowhere"}, script), 2, "a component that cannot start exits 2")
t.eq(t.run_host({"--bogus", "x"}, script), 2, "usage error exits 2")
t.eq(t.run_host({}, t.scratch .. "-missing.lua"), 2, "a script that does not exist exits 2")
