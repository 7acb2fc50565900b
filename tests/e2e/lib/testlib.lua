-- Helpers for end-to-end scripts run by vlt2hrw-host.
-- Every script gets: arg[1] source dir, arg[2] scratch dir, arg[3] host binary.
local M = {}

M.source = arg[1]
M.scratch = arg[2]
M.host_binary = arg[3]

function M.sh(command)
  local ok = os.execute(command)
  return ok == true or ok == 0
end

function M.quote(text) return "'" .. text:gsub("'", "'\\''") .. "'" end

-- A fresh, empty scratch directory (removed first).
function M.fresh_dir(path)
  M.sh("rm -rf " .. M.quote(path) .. " && mkdir -p " .. M.quote(path))
  return path
end

function M.read(path)
  local f = io.open(path, "rb")
  if not f then return nil end
  local text = f:read("*a")
  f:close()
  return text
end

function M.write(path, text)
  local f = assert(io.open(path, "wb"))
  f:write(text)
  f:close()
end

function M.exists(path) return M.sh("test -e " .. M.quote(path)) end

-- Messages logged so far as "<sink> <LEVEL> <text>" lines.
function M.lines()
  local out = {}
  for _, m in ipairs(host.messages()) do out[#out + 1] = m.sink .. " " .. m.level .. " " .. m.text end
  return out
end

function M.logged(line)
  for _, l in ipairs(M.lines()) do if l == line then return true end end
  return false
end

function M.expect_logged(line)
  if not M.logged(line) then
    error("expected log line not found: " .. line .. "\n-- log:\n" .. table.concat(M.lines(), "\n"), 2)
  end
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

-- Every occurrence of `from` in `text` replaced by `to`, literally.
function M.replace_all(text, from, to)
  local at, parts = 1, {}
  while true do
    local first, last = text:find(from, at, true)
    if not first then break end
    parts[#parts + 1] = text:sub(at, first - 1) .. to
    at = last + 1
  end
  return table.concat(parts) .. text:sub(at)
end

-- A text with the scratch and source directories written as @SCRATCH@ and
-- @SOURCE@, as the golden files hold them.
function M.neutral(text)
  return M.replace_all(M.replace_all(text, M.scratch, "@SCRATCH@"), M.source, "@SOURCE@")
end

local function sorted_lines(text)
  local lines = {}
  for line in text:gmatch("[^\n]*\n?") do lines[#lines + 1] = line end
  table.sort(lines)
  return table.concat(lines)
end

-- Compares a text with tests/e2e/golden/<name> (after M.neutral); with
-- UPDATE_GOLDEN=1 writes the golden file instead. With `any_order`, a text
-- that holds the golden lines in another order passes too (for outputs
-- whose order follows the directory iteration order of the machine).
M.golden_dir = M.source .. "/tests/e2e/golden"
M.updating = os.getenv("UPDATE_GOLDEN") == "1"
function M.golden(name, text, any_order)
  local file = M.golden_dir .. "/" .. name
  text = M.neutral(text)
  if M.updating then
    M.sh("mkdir -p " .. M.quote(file:match("^(.*)/")))
    M.write(file, text)
    return
  end
  local expected = M.read(file)
  if expected == nil then error("no golden file " .. name .. " (run with UPDATE_GOLDEN=1)", 2) end
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

-- Lines of a command's standard output.
function M.output_lines(command)
  local pipe = assert(io.popen(command))
  local out = {}
  for line in pipe:lines() do out[#out + 1] = line end
  pipe:close()
  return out
end

-- Runs a host with its own options and script; gives the exit status.
function M.run_host(options, script, ...)
  local words = {M.quote(M.host_binary)}
  for _, o in ipairs(options) do words[#words + 1] = M.quote(o) end
  words[#words + 1] = M.quote(script)
  for _, a in ipairs({...}) do words[#words + 1] = M.quote(a) end
  local ok, _, code = os.execute(table.concat(words, " ") .. " >/dev/null 2>&1")
  if ok == true then return 0 end
  return code
end

return M
