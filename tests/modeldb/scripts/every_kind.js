// Every kind of kinds.txt, through its ProgID: saved, loaded back equal in every property, changed,
// saved again and deleted, with its link rows.

var failures = 0;
function expect(what, actual, expected) {
  if (actual === expected) return;
  WScript.Echo(what + " is " + actual + ", not " + expected);
  ++failures;
}

// A value of its own for each property, and a fraction where one can be held.
function fill(record, properties, first) {
  var values = {};
  for (var i = 0; i < properties.length; ++i) {
    var name = properties[i], value = first + i + 0.25;
    if (typeof record[name] == "boolean") value = (first + i) % 2 == 0;
    record[name] = value;
    values[name] = record[name];
    if (values[name] !== Math.floor(value)) expect(name, values[name], value);
  }
  return values;
}

function compare(kind, record, values) {
  for (var name in values) expect(kind + "." + name, record[name], values[name]);
}

function count(db, table) {
  return db.Query("SELECT COUNT(*) AS N FROM " + table).Fields("N").Value;
}

function round_trip(db, kind, set, properties) {
  var record = new ActiveXObject("Orv_Node." + kind);
  var table = record.SqlString(1), links = kind + set + "s";
  record.Description = "Bob's " + kind;
  record.Vertex.ID = 7;
  record[set + "s"].Add(new ActiveXObject("Orv_ModelDb." + set));
  var saved = fill(record, properties, 2);
  record.Save(db);
  expect(kind + " links", count(db, links), 1);

  var loaded = db.Load(table)(0);
  compare(kind, loaded, saved);
  expect(kind + " description", loaded.Description, "Bob's " + kind);
  expect(kind + " vertex", loaded.Vertex.ID, 7);
  expect(kind + " texts", loaded.SqlString(5), record.SqlString(4));
  // A probe does not read its scenarios back.
  expect(kind + " sets", loaded[set + "s"].Count, kind == "NodalProbe" ? 0 : 1);

  var changed = fill(loaded, properties, 31);
  loaded.Save(db);
  expect(kind + " rows", count(db, table), 1);
  compare(kind, db.Load(table)(0), changed);

  record.Delete(db);
  expect(kind + " rows left", count(db, table), 0);
  expect(kind + " links left", count(db, links), 0);
}

var kinds = 0, kind;
try {
  var db = new ActiveXObject("Orv_ModelDb.ModelDatabase");
  db.Open("every_kind.orvdb");
  var lines = new ActiveXObject("Scripting.FileSystemObject").OpenTextFile("kinds.txt");
  for (; !lines.AtEndOfStream; ++kinds) {
    var words = lines.ReadLine().split(" ");
    kind = words[0];
    round_trip(db, kind, words[1], words.slice(2));
  }
  db.Close();
} catch (error) {
  ++failures;
  WScript.Echo(kind + " failed: " + error.description);
}
WScript.Echo(kinds + " kinds, " + failures + " failures");
