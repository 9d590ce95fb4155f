' What scripts do wrong, one step per line. Every step ends with an error of the platform's and the
' script goes on.
Option Explicit

Dim force, forces, moment, number, item

Set force = CreateObject("Orv_Node.NodalForce")
Set moment = CreateObject("Orv_Node.NodalMoment")
Set forces = CreateObject("Orv_Node.NodalForces")
force.Magnitude = 3
forces.Add force

On Error Resume Next

force.Magnitude = "much" : Report "A text that is no number"
force.Magnitude = "4.5" : Report "A text that is one"
force.Magnitude = Empty : Report "Empty"
force.Magnitude = Null : Report "Null"
force.Magnitude = Nothing : Report "Nothing for a number"
Set force.Magnitude = moment : Report "Set of a value"
force.MultiplierID = 5000000000 : Report "A number that does not fit"
force.NoSuchProperty = 1 : Report "An unknown property is set"
number = force.NoSuchProperty : Report "An unknown property is read"
force.NoSuchMethod 1 : Report "An unknown method"
force.EventObjectType = 3 : Report "A property that cannot be set"
number = force.Magnitude(1) : Report "An argument too many"
force.Save : Report "An argument too few"
force.Save Nothing : Report "No model database"
force.Save moment : Report "A record for a model database"
force.Save "bridge.orvdb" : Report "A text for a model database"
Set force.Vertex = Nothing : Report "No vertex"
force.Vertex = 7 : Report "A number for a vertex"
Set number = force.Vertex : Report "A vertex that was taken away"
forces.Add Nothing : Report "Nothing into a collection"
forces.Add 5 : Report "A number into a collection"
forces.Add Null : Report "Null into a collection"
forces.Add moment : Report "A record of another kind into a collection"
Set item = forces.Item(-1) : Report "An index below the first"
Set item = forces.Item(1) : Report "An index beyond the last"
Set item = forces.Item("one") : Report "An index that is no number"
forces.Remove 9 : Report "Removing beyond the last"
forces.Item(0) = force : Report "Setting an item"
forces.Count = 2 : Report "Setting the count"
forces.Save Nothing : Report "Saving without a model database"
number = forces.GetIndexById("none") : Report "An identifier that is no number"
Set item = CreateObject("Orv_Node.NodalSpring") : Report "A class that there is not"

On Error GoTo 0
WScript.Echo "In the end: " & force.Magnitude & ", " & forces.Count & ", " & forces(0).Magnitude

Sub Report(step)
  WScript.Echo step & ": " & Hex(Err.Number)
  Err.Clear
End Sub
