-- The name collision check of the symbol name map, as a check run by the
-- host and as a module.
local t = require("testlib")

local dir = t.fresh_dir(t.scratch)
local map = dir .. "/symname_map.txt"
t.write(map, "/a/x.y/b\tP\tx_y_b\n/a/q/c\tP\tq_c\n/a/x_y/b\tP\tx_y_b\n/z/x.y/b\tQ\tx_y_b\n" ..
             "only two\tfields\n/a/x.y/b\tP\tx_y_b\n\"/a b/x/y_b\"\tP\tx_y_b\r\n")
local collisions = dofile(t.source .. "/workflow/symbol_name_collisions.lua")
local found = collisions(map)
-- One claimed name, its claimants in map order, once each.
t.eq(#found .. " " .. found[1].partition .. "/" .. found[1].target .. " " .. table.concat(found[1].sources, "|"),
     "1 P/x_y_b /a/x.y/b|/a/x_y/b|\"/a b/x/y_b\"", "collisions")
t.eq(select(2, collisions(dir .. "/missing")) ~= nil, true, "a missing map gives a message")

local check = t.source .. "/workflow/symbol_name_collisions.lua"
t.eq(t.run({check, map}) ~= 0, true, "a collision fails the check")
t.write(map, "/a/b\tP\tb\n/a/c\tP\tc\n")
t.eq(t.run({check, map}), 0, "no collision")
