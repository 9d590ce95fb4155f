// What scripts do wrong, one step per line, as JScript tells it: the platform's own number for each.

var force = new ActiveXObject("Orv_Node.NodalForce");
var forces = new ActiveXObject("Orv_Node.NodalForces");
force.Magnitude = 3;
forces.Add(force);

function step(name, action) {
  var outcome = "done";
  try {
    action();
  } catch (error) {
    outcome = (error.number >>> 0).toString(16);
  }
  WScript.Echo(name + ": " + outcome);
}

step("A text that is no number", function () { force.Magnitude = "much"; });
step("null", function () { force.Magnitude = null; });
step("A function for a number", function () { force.Magnitude = step; });
step("undefined, which is empty", function () { force.Magnitude = undefined; });
step("An unknown property", function () { force.NoSuchProperty = 1; });
step("An unknown method", function () { force.NoSuchMethod(); });
step("A property that cannot be set", function () { force.EventObjectType = 1; });
step("A number for a vertex", function () { force.Vertex = 7; });
step("An argument too few", function () { forces.Item(); });
step("Arguments too many", function () { forces.Item(0, 1, 2); });
step("An object of the script's own into a collection", function () { forces.Add({}); });
step("null into a collection", function () { forces.Add(null); });
step("An index below the first", function () { forces(-1); });
step("An index beyond the last", function () { forces(1); });
step("An index that is no number", function () { forces("one"); });
step("An object of the script's own for a model database", function () { force.Save({}); });
step("A class that there is not", function () { new ActiveXObject("Orv_Node.NodalSpring"); });

var met = 0;
for (var each = new Enumerator(forces); !each.atEnd(); each.moveNext()) {
  if (each.item().ID === force.ID) ++met;
}
WScript.Echo("In the end: " + force.Magnitude + ", " + forces.Count + ", " + met);
