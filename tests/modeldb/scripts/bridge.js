// The same model from JScript: listeners that are plain objects, and sets that are shared.

var failures = 0;
function expect(what, actual, expected) {
  if (actual !== expected) {
    WScript.Echo(what + " is " + actual + ", not " + expected);
    failures++;
  }
}

function run() {
  var path = "bridge.orvdb";
  var db = new ActiveXObject("Orv_ModelDb.ModelDatabase");
  db.Open(path);

  var told = [];
  db.RecordStore.Advise({
    RecordsSaved: function (type, ids) {
      told.push(type + ":" + new VBArray(ids).toArray().join("+"));
    }
  });

  var supports = new ActiveXObject("Orv_Node.NodalBoundaryConditions");
  var clamped = new ActiveXObject("Orv_ModelDb.ConstraintSet");
  clamped.Description = "Clamped end";
  for (var node = 1; node <= 3; node++) {
    var support = new ActiveXObject("Orv_Node.NodalBoundaryCondition");
    support.Vertex.ID = node;
    support.Tx = true;
    support.ConstraintSets.Add(clamped);
    supports.Add(support);
  }
  supports.Save(db);
  expect("batch", told.join(), "14:1+2+3");

  db.Close();
  db.Open(path);
  var sets = db.Load("ConstraintSets");
  expect("sets", sets.Count, 1);
  var nodes = [];
  for (var e = new Enumerator(db.Load("NodalBoundaryConditions", "Tx <> 0")); !e.atEnd(); e.moveNext()) {
    nodes.push(e.item().Vertex.ID + e.item().ConstraintSets(0).Description);
  }
  expect("nodes", nodes.join(), "1Clamped end,2Clamped end,3Clamped end");

  var answer = "";
  try {
    db.Load("NodalBoundaryConditions", "Tx; DROP TABLE Vertices");
  } catch (error) {
    answer = error.description;
  }
  expect("answer", answer.indexOf("cannot be used") > 0, true);
  db.Close();
}

try {
  run();
} catch (error) {
  failures++;
  WScript.Echo("failed: " + error.description);
}
WScript.Echo(failures + " failures");
