// Every kind, through its ProgID: saved, loaded back equal in every property, changed, saved again
// and deleted, with its link rows.

var V = ["Vx", "Vy", "Vz"];
var FORCE = ["Magnitude", "MultiplierID", "CoordinateSystemID"].concat(V);
var KINDS = {
  NodalBoundaryCondition: ["Tx", "Ty", "Tz", "Rx", "Ry", "Rz"],
  NodalRigidBoundary: ["FixedX", "FixedY", "FixedZ", "Stiffness", "IsRotate"],
  NodalElasticBoundary: V.concat("Stiffness", "IsRotate"),
  NodalDisplacementBoundary: V.concat("Magnitude", "Stiffness", "IsRotate"),
  NodalForce: FORCE,
  NodalMoment: FORCE,
  NodalLumpedMass: ["Wx", "Wy", "Wz", "Mx", "My", "Mz", "UseMassUnits"],
  NodalPrescribedDisplacement:
      V.concat("IsRotate", "Direction", "Magnitude", "ActiveRangeID", "MultiplierID"),
  NodalPrescribedVelocity: ["MagnitudeX", "MagnitudeY", "MagnitudeZ", "UseX", "UseY", "UseZ"],
  NodalTemperature: ["Magnitude"],
  NodalAppliedTemperature:
      ["Magnitude", "Stiffness", "MultiplierID", "Scale", "ActivationTime", "IsTimeVarying"],
  NodalHeatSource: ["Magnitude", "MultiplierID", "ActivationTime"],
  NodalVoltage: ["Magnitude"],
  NodalAppliedVoltage: ["Magnitude", "Stiffness"],
  NodalCurrent: ["Magnitude"],
  NodalCharge: ["Magnitude"],
  NodalPrescribedInOutlet: ["Type"],
  NodalProbe: ["Type", "UseSeparateWindow"]
};

var failures = 0;
function expect(what, actual, expected) {
  if (actual === expected) return;
  WScript.Echo(what + " is " + actual + ", not " + expected);
  ++failures;
}

// A value of its own for each property; real where the property is.
function fill(record, properties, offset) {
  var values = {};
  for (var i = 0; i < properties.length; ++i) {
    var name = properties[i];
    var before = record[name];
    record[name] = typeof before == "boolean" ? (i + offset) % 2 == 0 : i + offset + 0.0;
    if (/^(Magnitude|V|W|M.$|Stiffness|Scale|Act.*Time)/.test(name)) record[name] = i + offset + 0.1;
    values[name] = record[name];
  }
  return values;
}

function compare(kind, record, values) {
  for (var name in values) expect(kind + "." + name, record[name], values[name]);
}

function count(db, table) {
  return db.Query("SELECT COUNT(*) AS N FROM " + table).Fields("N").Value;
}

function round_trip(db, kind, properties) {
  var record = new ActiveXObject("Orv_Node." + kind);
  var sets = "LoadSets", set = "LoadSet";
  if (/Condition|Boundary/.test(kind)) { sets = "ConstraintSets"; set = "ConstraintSet"; }
  if (kind == "NodalProbe") { sets = "DesignScenarios"; set = "DesignScenario"; }
  var table = record.SqlString(1);
  record.Description = "Bob's " + kind;
  record.Vertex.ID = 7;
  record[sets].Add(new ActiveXObject("Orv_ModelDb." + set));
  var saved = fill(record, properties, 2);
  record.Save(db);
  expect(kind + " links", count(db, kind + sets), 1);

  var loaded = db.Load(table)(0);
  compare(kind, loaded, saved);
  expect(kind + " description", loaded.Description, "Bob's " + kind);
  expect(kind + " vertex", loaded.Vertex.ID, 7);
  expect(kind + " texts", loaded.SqlString(5), record.SqlString(4));
  // A probe does not read its scenarios back.
  expect(kind + " sets", loaded[sets].Count, kind == "NodalProbe" ? 0 : 1);

  var changed = fill(loaded, properties, 31);
  loaded.Save(db);
  expect(kind + " rows", count(db, table), 1);
  compare(kind, db.Load(table)(0), changed);

  record.Delete(db);
  expect(kind + " rows left", count(db, table), 0);
  expect(kind + " links left", count(db, kind + sets), 0);
}

try {
  var db = new ActiveXObject("Orv_ModelDb.ModelDatabase");
  db.Open("every_kind.orvdb");
  for (var kind in KINDS) round_trip(db, kind, KINDS[kind]);
  db.Close();
} catch (error) {
  ++failures;
  WScript.Echo(kind + " failed: " + error.description);
}
WScript.Echo(failures + " failures");
