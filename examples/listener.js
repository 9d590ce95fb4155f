// The record store tells whoever listens what is saved and deleted.
//
//   cscript //nologo listener.js           (makes listener.orvdb)

var KINDS = { 1: "vertex", 19: "force" }; // event codes

var model = new ActiveXObject("Orv_ModelDb.ModelDatabase");
model.Open("listener.orvdb");
model.RecordStore.Advise({
    RecordSaved: function(code, id) { WScript.Echo("  saved " + KINDS[code] + " " + id); },
    RecordDeleted: function(code, id) { WScript.Echo("  deleted " + KINDS[code] + " " + id); },
    RecordsSaved: function(code, ids) { WScript.Echo("  saved at once: " + list(code, ids)); },
    RecordsDeleted: function(code, ids) { WScript.Echo("  deleted at once: " + list(code, ids)); },
    RecordFailed: function(code, failure) { WScript.Echo("  failed: " + failure.Sentence); }
});

WScript.Echo("One force, which saves its vertex too:");
var force = newForce(7);
force.Save(model);

WScript.Echo("A collection of three forces:");
var forces = new ActiveXObject("Orv_Node.NodalForces");
forces.Add(force);
forces.Add(newForce(8));
forces.Add(newForce(9));
forces.Save(model);

WScript.Echo("One of them deleted, then all of them:");
force.Delete(model);
forces.Delete(model);

function newForce(node) {
    var made = new ActiveXObject("Orv_Node.NodalForce");
    made.Vertex.ID = node;
    return made;
}

function list(code, ids) {
    return KINDS[code] + " " + new VBArray(ids).toArray().join(", ");
}
