-- The default workflow: migrates a VLT library into a Central Library.
-- Usage: vlt2hrw-host workflow/migrate.lua EXAMPLES_DIR OUT_DIR
local examples = assert(arg[1], "usage: migrate.lua EXAMPLES_DIR OUT_DIR")
local out = assert(arg[2], "usage: migrate.lua EXAMPLES_DIR OUT_DIR")

local function step(title) print("== " .. title) end

step("Component started; binding the script functions")
local known, unbuilt = 0, {}
for _, name in ipairs({"create_wdir", "new_1d_list", "get_1d_list_size"}) do
  if host.bind(name) then known = known + 1 else unbuilt[#unbuilt + 1] = name end
end
print(string.format("bound %d function(s)%s", known,
  #unbuilt > 0 and (", not yet built: " .. table.concat(unbuilt, ", ")) or ""))

local wdir = out .. "/wdir"
host.set_wdir(wdir)
host.set_library(examples)

step("Lists")
local rid = new_1d_list()
add_item_to_1d_list(rid, "sample")
print("a list of " .. get_1d_list_size(rid) .. " item(s): " .. get_1d_list_item(rid, 0))
remove_1d_list(rid)

print("done")
