-- Writes the location map of the sample library from location_map.template.
--
--   local make_location_map = dofile(examples .. "/make_location_map.lua")
--   local map = make_location_map(examples, out_dir)
--
-- `examples` is the directory of the sample library, `out_dir` an existing
-- directory; the map is written there as "location_map" and its path is
-- returned. Every "@EXAMPLES@" of the template becomes `examples`.
return function(examples, out_dir)
  local template = assert(io.open(examples .. "/location_map.template", "rb"))
  local text = template:read("*a")
  template:close()
  -- A function as replacement keeps "%" in the directory name literal.
  text = text:gsub("@EXAMPLES@", function() return examples end)
  local path = out_dir .. "/location_map"
  local map = assert(io.open(path, "wb"))
  map:write(text)
  map:close()
  return path
end
