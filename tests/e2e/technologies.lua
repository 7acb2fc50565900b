-- create_default_container on the sample library's geometry tree, through
-- the real host, after obtain_vlt_geom_path.
local t = require("testlib")

local examples = t.source .. "/examples"
local scratch = t.fresh_dir(t.scratch)
local wdir = scratch .. "/wdir"
local techdir = wdir .. "/config/geom_technology"
local container_file = techdir .. "/default_containers.xml"
assert(t.sh("mkdir -p " .. t.quote(techdir)))
host.set_wdir(wdir)
host.set_library(examples)

t.write(techdir .. "/technology_list.xml", [[<?xml version="1.0" encoding="UTF-8"?>
<rig><geom_data><technologies><list>
  <technology id="default" container_def_file="default_containers.xml" translated_cells_file="t.txt" padstack_name="default"/>
  <technology id="fine" container_def_file="default_containers.xml" translated_cells_file="" padstack_name=""/>
</list></technologies></geom_data></rig>
]])
t.write(container_file, [[<rig><geom_data><technologies>
<containers id="fine"><container directory="smd/ic" cell_partition="FINE_IC"/></containers>
<containers id="default"><container directory="old" cell_partition=""/></containers>
</technologies></geom_data></rig>]])

local make_location_map = dofile(examples .. "/make_location_map.lua")
local map = make_location_map(examples, scratch)
t.eq(obtain_vlt_geom_path("CORP_LIB", map, examples), true, "geometry path")
host.clear_messages()
t.eq(create_default_container("CORP_LIB", map, examples), true, "default containers")
t.eq(#t.lines(), 4, "two debug messages on both sinks")

-- The other technology stays in front; every geometry directory is listed
-- (in the directory order of the machine) and the earlier entry is gone.
local text = t.read(container_file)
t.golden("technologies/default_containers.xml", text, true)
t.starts(text, '<?xml version="1.0" encoding="UTF-8"?>\n<rig>\n  <geom_data>\n    <technologies>\n' ..
  '      <containers id="fine">\n        <container directory="smd/ic" cell_partition="FINE_IC" />\n' ..
  '      </containers>\n      <containers id="default">\n', "other technology kept in front")
t.eq(text:find("old", 1, true), nil, "the earlier default entry is gone")

-- A second run gives the same file.
t.eq(create_default_container("CORP_LIB", map, examples), true, "second run")
t.eq(t.read(container_file), text, "idempotent")
