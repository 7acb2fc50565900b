-- Helpers for end-to-end scripts run by vlt2hrw-host.
-- Every script gets: arg[1] source dir, arg[2] scratch dir, arg[3] host binary.
local M = {}

M.source, M.scratch, M.host_binary = arg[1], arg[2], arg[3]
M.bin = M.host_binary:match("^(.*)/[^/]*$")

function M.sh(command) return os.execute(command) == true end

function M.quote(text) return "'" .. text:gsub("'", "'\\''") .. "'" end

-- A fresh, empty scratch directory (removed first).
function M.fresh_dir(path)
  return assert(M.sh("rm -rf " .. M.quote(path) .. " && mkdir -p " .. M.quote(path))) and path
end

function M.read(path)
  local f = io.open(path, "rb")
  if not f then return nil end
  local text = f:read("*a")
  f:close()
  return text
end

function M.write(path, text) assert(io.open(path, "wb")):write(text):close() end

function M.exists(path) return M.sh("test -e " .. M.quote(path)) end

-- Messages logged so far as "<sink> <LEVEL> <text>" lines.
function M.lines()
  local out = {}
  for _, m in ipairs(host.messages()) do out[#out + 1] = m.sink .. " " .. m.level .. " " .. m.text end
  return out
end

function M.expect_logged(line)
  for _, l in ipairs(M.lines()) do if l == line then return end end
  error("expected log line not found: " .. line .. "\n-- log:\n" .. table.concat(M.lines(), "\n"), 2)
end

function M.eq(actual, expected, what)
  if actual ~= expected then
    error(string.format("%s: expected %q, got %q", what or "value", tostring(expected), tostring(actual)), 2)
  end
end

function M.starts(text, prefix, what)
  if type(text) ~= "string" or text:sub(1, #prefix) ~= prefix then
    error(string.format("%s: expected text starting with %q, got %q", what or "text", prefix, tostring(text)), 2)
  end
end

-- Named cases: a failing case is reported and the script goes on with the
-- next one; finish() raises when any case failed.
local failed = {}
function M.case(name, body)
  local ok, message = pcall(body)
  if not ok then
    failed[#failed + 1] = name .. ": " .. tostring(message)
    io.stderr:write("FAILED case ", name, ": ", tostring(message), "\n")
  end
end

function M.finish()
  if #failed > 0 then error(#failed .. " case(s) failed:\n" .. table.concat(failed, "\n"), 0) end
end

local function literal(s) return (s:gsub("%p", "%%%0")) end
local function sorted_lines(text)
  local lines = {}
  for line in text:gmatch("[^\n]*\n?") do lines[#lines + 1] = line end
  table.sort(lines)
  return table.concat(lines)
end

-- Compares a text, with the scratch and source directories written as
-- @SCRATCH@ and @SOURCE@, with tests/e2e/golden/<name>; with
-- UPDATE_GOLDEN=1 writes the golden file instead. With `any_order`, a text
-- that holds the golden lines in another order passes too (for outputs
-- whose order follows the directory iteration order of the machine).
M.golden_dir = M.source .. "/tests/e2e/golden"
M.updating = os.getenv("UPDATE_GOLDEN") == "1"
function M.golden(name, text, any_order)
  local file = M.golden_dir .. "/" .. name
  text = text:gsub(literal(M.scratch), "@SCRATCH@"):gsub(literal(M.source), "@SOURCE@")
  if M.updating then
    M.sh("mkdir -p " .. M.quote(file:match("^(.*)/")))
    return M.write(file, text)
  end
  local expected = M.read(file) or error("no golden file " .. name .. " (run with UPDATE_GOLDEN=1)", 2)
  if text ~= expected and not (any_order and sorted_lines(text) == sorted_lines(expected)) then
    error(string.format("%s differs from its golden file:\n-- expected:\n%s\n-- got:\n%s", name, expected, text), 2)
  end
end

-- The messages logged since the last clear as one text, then cleared.
function M.take_log()
  local text = table.concat(M.lines(), "\n") .. "\n"
  host.clear_messages()
  return text
end

-- The items of a list (sorted with `sorted`) joined by commas; removes it.
function M.items(rid, sorted)
  local out = {}
  for i = 0, get_1d_list_size(rid) - 1 do out[#out + 1] = get_1d_list_item(rid, i) end
  remove_1d_list(rid)
  if sorted then table.sort(out) end
  return table.concat(out, ",")
end

-- Copies tests/e2e/fixtures/<name> (a file or a directory's content) to
-- `to`, with @SOURCE@ in its files standing for the source directory.
function M.fixture(name, to)
  assert(M.sh("cp -R " .. M.quote(M.source .. "/tests/e2e/fixtures/" .. name) .. " " .. M.quote(to)))
  local files = io.popen("find " .. M.quote(to) .. " -type f")
  for file in files:lines() do M.write(file, (M.read(file):gsub("@SOURCE@", (M.source:gsub("%%", "%%%%"))))) end
  files:close()
end

-- The sample library: a fresh scratch directory holding a location map of
-- it, the host's library and working directory (`name` in the scratch
-- directory, made by create_wdir when `create`, else empty) set. Gives the
-- location map and the working directory.
M.examples = M.source .. "/examples"
function M.on_sample(name, create)
  local wdir = M.fresh_dir(M.scratch) .. "/" .. name
  host.set_wdir(wdir)
  host.set_library(M.examples)
  host.set_service("get qlln installation path", M.scratch .. "/qlln")
  if create then M.eq(create_wdir(wdir), true, "create_wdir") else M.fresh_dir(wdir) end
  return dofile(M.examples .. "/make_location_map.lua")(M.examples, M.scratch), wdir
end

-- Runs a host with these arguments; gives the exit status, its standard
-- output and its standard error (or both in one text, `merged`).
function M.run(args, merged)
  local words, out, err = {M.quote(M.host_binary)}, M.scratch .. "-out.txt", M.scratch .. "-err.txt"
  for _, a in ipairs(args) do words[#words + 1] = M.quote(a) end
  local ok, _, code = os.execute(table.concat(words, " ") .. " > " .. M.quote(out) .. " 2>" ..
                                 (merged and "&1" or " " .. M.quote(err)))
  return ok and 0 or code, M.read(out), not merged and M.read(err) or nil
end

return M
