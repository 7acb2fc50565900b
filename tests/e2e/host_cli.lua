-- The host program: the component frame through it (binding, the script
-- interface's errors and values; the prologue, the private logger and the
-- release are the unit tests' part), and the host as a user meets it: its
-- options and exit codes, its log for people, its progress lines, and a Lua
-- error with a long path.
local t = require("testlib")

-- Unknown names and a name with the wrong case are not bound.
t.eq(host.bind("no_such_function"), false, "unknown name")
t.eq(host.bind("Create_WDir"), false, "Create_WDir")
t.eq(No_Such_Global, nil, "undefined global stays nil")

-- Wrong argument counts and types raise the promised Lua error.
t.eq(select(2, pcall(get_1d_list_size)), "no match for function call 'get_1d_list_size' with the parameters ()\n" ..
     "candidates are:\nint get_1d_list_size(std::string const&)\n", "no arguments")
t.eq(select(2, pcall(get_2d_list_item, "x", "y", true)), "no match for function call 'get_2d_list_item' with the " ..
     "parameters (string, string, boolean)\ncandidates are:\nstd::string get_2d_list_item(std::string const&,int,int)\n",
     "wrong types")

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

local dir = t.fresh_dir(t.scratch .. "/run")

local status, out, err = t.run({"--version"})
t.eq(status, 0, "--version")
assert(out:match("^vlt2hrw%-host %d+%.%d+%.%d+\n$"), out)

local usage = "usage: vlt2hrw-host [OPTIONS] SCRIPT.lua [ARGS...]\n       vlt2hrw-host --summary WDIR\n" ..
              "Try 'vlt2hrw-host --help' for the options.\n"
for _, c in ipairs({{{"--log-level", "FOO", "x.lua"}, "unknown log level FOO; the levels are TRACE, DEBUG, INFO, " ..
                       "WARN, ERROR, FATAL, OFF\n"}, {{"--log"}, "option --log needs a value\n"},
                   {{"--bogus", "x", "x.lua"}, "unknown option --bogus\n"},
                   {{dir .. "/missing.lua"}, "cannot read script " .. dir .. "/missing.lua\n"}}) do
  status, out, err = t.run(c[1])
  t.eq(status, 2, c[1][1])
  t.eq(err, "vlt2hrw-host: " .. c[2] .. usage, "message and usage alone")
end
t.write(dir .. "/clean.lua", "local x = 1")
t.eq(t.run({dir .. "/clean.lua"}), 0, "a clean run exits 0")
t.eq(t.run({"--component-dir", dir .. "/nowhere", dir .. "/clean.lua"}), 2, "a component that cannot start exits 2")
status, out = t.run({"--help"})
t.eq(status, 0, "--help")
for _, text in ipairs({"--log-format FORM", "--progress MODE", "--summary WDIR", "Exit status:",
                       "  1  the script stopped with a Lua error"}) do
  assert(out:find(text, 1, true), "help lacks " .. text)
end

-- A workflow: two named steps, a message on both sinks with a control byte,
-- and a file-system failure on a 600-character path.
local script = dir .. "/flow.lua"
local long = dir .. "/missing/" .. string.rep("d", 600)
t.write(script, [[
host.set_wdir(arg[1] .. "/wdir")
host.step("Working directory")
assert(create_wdir(arg[1] .. "/wd\1x"))
host.step("Checks")
create_wdir(arg[2])
]])
status, out, err = t.run({"--progress", "lines", "--log-format", "people", "--log", dir .. "/host.log", script, dir, long})
t.eq(status, 1, "Lua error exits 1")
assert(err:match("^Working directory: done, [0-9.]+ s\nChecks: FAILED %(create_wdir stopped with a Lua error%), [0-9.]+ s\n"),
       "one line per step:\n" .. err)
assert(err:find("bytes left out", 1, true) and #err < 2000, "the error is shortened:\n" .. err)
local text = t.read(dir .. "/host.log")
local header, first = text:match("^([^\n]*\n)([^\n]*\n)")
assert(header:match("^=== %d%d%d%d%-%d%d%-%d%d %d%d:%d%d:%d%d UTC vlt2hrw%-host .* ===\n$"), "header: " .. header)
t.eq(first:gsub("^%d%d:%d%d:%d%d%.%d%d%d ", "TIME "),
     "TIME INFO  init: Creating working directory at: " .. dir .. "/wd\\x01x\n", "time, level, sink, escaped text")
assert(text:find("\nTIME", 1, true) == nil and text:find("Lua error: ", 1, true), "the Lua error is in the log")
for line in text:gmatch("[^\n]*ERROR[^\n]*") do assert(#line < 700, "long line: " .. #line) end

-- The exact form: one line per message and sink.
t.eq(t.run({"--progress", "off", "--log-format", "exact", "--log", dir .. "/exact.log", script, dir, long}), 1, "exact run")
t.starts(t.read(dir .. "/exact.log"), "init INFO Creating working directory at: " .. dir .. "/wd\\x01x\n", "exact form")
