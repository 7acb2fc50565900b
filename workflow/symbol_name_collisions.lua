-- Target symbol names that more than one source symbol claims in the symbol
-- name map (Library/TranslationData/symname_map.txt). Such symbols fold to
-- one file, <partition>/<target>.sym, and the later conversion overwrites
-- the earlier one: the check makes that visible.
--
-- As a module:  local collisions = dofile("workflow/symbol_name_collisions.lua")
--               for _, c in ipairs(collisions(map_file)) do
--                 -- c.partition, c.target, c.sources (in map order)
--               end
--               (nil and a message when the file cannot be read)
-- As a check:   vlt2hrw-host workflow/symbol_name_collisions.lua MAP_FILE_OR_WDIR
--               prints one line per collision, "<partition>/<target>: <source>, <source>",
--               and fails (exit status 1) when there is one.

local function collisions(map_file)
  local file, message = io.open(map_file, "rb")
  if not file then return nil, message end
  local claims, order = {}, {}
  for line in file:lines() do
    line = line:gsub("\r$", "")
    -- source, partition, target, parted by one tab; a line short of fields
    -- is one that the component passes over as well.
    local source, partition, target = line:match("^%s*([^\t]*)\t([^\t]*)\t([^\t]*)")
    if source and source ~= "" then
      target = target:gsub("%s+$", "")
      local key = partition .. "\t" .. target
      local claim = claims[key]
      if not claim then
        claim = {partition = partition, target = target, sources = {}, seen = {}}
        claims[key] = claim
        order[#order + 1] = key
      end
      if not claim.seen[source] then
        claim.seen[source] = true
        claim.sources[#claim.sources + 1] = source
      end
    end
  end
  file:close()
  local found = {}
  for _, key in ipairs(order) do
    local claim = claims[key]
    if #claim.sources > 1 then
      found[#found + 1] = {partition = claim.partition, target = claim.target, sources = claim.sources}
    end
  end
  table.sort(found, function(a, b)
    if a.partition ~= b.partition then return a.partition < b.partition end
    return a.target < b.target
  end)
  return found
end

-- Run by the host as its script, or loaded by another script.
local self = debug.getinfo(1, "S").source:gsub("^@", "")
if not (arg and arg[0] == self and arg[1]) then return collisions end

local given = arg[1]
local map_file = given
local probe = io.open(given .. "/Library/TranslationData/symname_map.txt", "rb")
if probe then
  probe:close()
  map_file = given .. "/Library/TranslationData/symname_map.txt"
end
local found, message = collisions(map_file)
if not found then error("cannot read the symbol name map: " .. tostring(message), 0) end
for _, c in ipairs(found) do
  print(c.partition .. "/" .. c.target .. ": " .. table.concat(c.sources, ", "))
end
print(#found .. " target name(s) claimed by more than one source symbol")
if #found > 0 then error("symbol name collisions in " .. map_file, 0) end
