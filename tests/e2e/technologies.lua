-- create_default_container on the sample library's geometry tree, through
-- the real host, after obtain_vlt_geom_path.
local t = require("testlib")

local map, wdir = t.on_sample("wdir")
local techdir = t.fresh_dir(wdir .. "/config/geom_technology")
local container_file = techdir .. "/default_containers.xml"

-- Two technologies on one container file, the other one in front of the
-- default one, whose entry is stale.
t.fixture("technologies/.", techdir)

t.eq(obtain_vlt_geom_path("CORP_LIB", map, t.examples), true, "geometry path")
t.eq(create_default_container("CORP_LIB", map, t.examples), true, "default containers")

-- The other technology stays in front; every geometry directory is listed
-- (in the directory order of the machine) and the earlier entry is gone.
local text = t.read(container_file)
t.golden("technologies/default_containers.xml", text, true)
t.starts(text, '<?xml version="1.0" encoding="UTF-8"?>\n<rig>\n  <geom_data>\n    <technologies>\n' ..
  '      <containers id="fine">\n        <container directory="smd/ic" cell_partition="FINE_IC" />\n' ..
  '      </containers>\n      <containers id="default">\n', "other technology kept in front")

-- A second run gives the same file.
t.eq(create_default_container("CORP_LIB", map, t.examples), true, "second run")
t.eq(t.read(container_file), text, "idempotent")
