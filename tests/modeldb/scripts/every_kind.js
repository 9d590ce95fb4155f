// Every kind of kinds.txt, through its ProgID: saved, loaded back equal in every property, changed,
// saved again, copied as an array, and deleted, with its link rows.

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
  var its_set = new ActiveXObject("Orv_ModelDb." + set);
  its_set.Description = kind;
  record[set + "s"].Add(its_set);
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

  append_copy(db, kind, set, loaded);
  record.Delete(db);
  expect(kind + " rows left", count(db, table), 0);
  expect(kind + " links left", count(db, links), 0);
}

// The row of the record, read and appended as an array, and a row of no values but its set's name:
// they are as records make them.
function append_copy(db, kind, set, record) {
  var table = record.SqlString(1);
  var found = new VBArray(db.Rows("SELECT * FROM " + table, true)), names = [], cells = [];
  for (var i = 1; i <= found.ubound(2); ++i) {
    names.push(found.getItem(0, i));
    cells.push(found.getItem(1, i));
  }
  names.push(set + "s");
  cells.push(kind);
  var copy = new VBArray(db.AppendRows(table, names, [cells])).getItem(0);
  var blank = new VBArray(db.AppendRows(table, set + "s", [[kind]])).getItem(0);
  // A probe that is saved anew after it was loaded is in no scenario.
  expect(kind + " links of copies", count(db, kind + set + "s"), kind == "NodalProbe" ? 2 : 3);

  var records = db.Load(table);
  expect(kind + " copy", records(1).SqlString(5), record.SqlString(4));
  var fresh = new ActiveXObject("Orv_Node." + kind);
  fresh.Vertex.ID = records(2).Vertex.ID;
  expect(kind + " without values", records(2).SqlString(5), fresh.SqlString(4));
  expect(kind + " keys", [records(1).ID, records(2).ID].join(), [copy, blank].join());
  records(2).Delete(db);
  records(1).Delete(db);
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
