' What scripts do wrong, one step per line. Every step ends with the server's error and the script goes on.
Option Explicit

Dim force, forces, moment, number, item

Set force = CreateObject("Orv_Node.NodalForce")
Set moment = CreateObject("Orv_Node.NodalMoment")
Set forces = CreateObject("Orv_Node.NodalForces")
force.Magnitude = 3
forces.Add force

On Error Resume Next

force.Magnitude = "much" : Report "A text that is no number"
force.MultiplierID = 5000000000 : Report "A number that does not fit"
force.Save Nothing : Report "No model database"
force.Save moment : Report "A record for a model database"
Set force.Vertex = Nothing : Report "No vertex"
Set number = force.Vertex : Report "A vertex that was taken away"
forces.Add Nothing : Report "Nothing into a collection"
forces.Add moment : Report "A record of another kind into a collection"
Set item = forces.Item(-1) : Report "An index below the first"
Set item = forces.Item(1) : Report "An index beyond the last"
forces.Remove 9 : Report "Removing beyond the last"
forces.Save Nothing : Report "Saving without a model database"

On Error GoTo 0
WScript.Echo "In the end: " & force.Magnitude & ", " & forces.Count & ", " & forces(0).Magnitude

Sub Report(step)
  WScript.Echo step & ": " & Hex(Err.Number)
  Err.Clear
End Sub
