// Brings the loads and supports of a finite-element deck into a model, and prints its forces and
// what they add up to in each load set.
//
//   cscript //nologo plate.js DECK MODEL
//
// MODEL is the model's file; it is made, and must hold nothing yet.

if (WScript.Arguments.length != 2) stop("Usage: cscript //nologo plate.js DECK MODEL");

var model = new ActiveXObject("Orv_ModelDb.ModelDatabase");
var deck = new ActiveXObject("Orv_Tools.Deck");
try {
    deck.Read(WScript.Arguments(0));
    model.Open(WScript.Arguments(1));
    deck.CopyTo(model);
} catch (error) {
    stop(error.message);
}
each(deck.Remarks, function(remark) { WScript.Echo("stays in the deck: " + remark.Text); });
printForces(model.Load("NodalForces"));
WScript.Echo(model.Load("NodalBoundaryConditions").Count + " supports");

function printForces(forces) {
    var sums = {}; // name of the load set -> [x, y, z]
    each(forces, function(force) {
        var set = force.LoadSets(0).Description;
        var vector = [force.Magnitude * force.Vx, force.Magnitude * force.Vy,
                      force.Magnitude * force.Vz];
        WScript.Echo("node " + force.Vertex.ID + " at x " + number(force.Vertex.X) + ", y " +
                     number(force.Vertex.Y) + ": " + vector.join(", ") + " in " + set);
        var sum = sums[set] || (sums[set] = [0, 0, 0]);
        for (var axis = 0; axis < 3; ++axis) sum[axis] += vector[axis];
    });
    for (var set in sums) WScript.Echo("sum of " + set + ": " + sums[set].join(", "));
}

function each(collection, action) {
    for (var all = new Enumerator(collection); !all.atEnd(); all.moveNext()) action(all.item());
}

// Six digits after the point at most: as many as an engineer reads.
function number(value) {
    return String(Math.round(value * 1e6) / 1e6);
}

function stop(sentence) {
    WScript.Echo(sentence);
    WScript.Quit(1);
}
