' A collection saves and deletes all of its records in one transaction.
'
'   cscript //nologo collection.vbs        (makes collection.orvdb)

Set model = CreateObject("Orv_ModelDb.ModelDatabase")
model.Open "collection.orvdb"

Set forces = CreateObject("Orv_Node.NodalForces")
For node = 1 To 5
    Set force = CreateObject("Orv_Node.NodalForce")
    force.Vertex.ID = node
    force.Magnitude = 100 * (node - 1)
    forces.Add force
Next
forces.Save model
WScript.Echo "Not saved: " & model.Failures.Count
WScript.Echo "Saved:"
For Each force In forces
    WScript.Echo "  force " & force.ID & " on node " & force.Vertex.ID & ": " & force.Magnitude
Next
WScript.Echo "The first and the last: " & forces(0).ID & ", " & forces(forces.Count - 1).ID

' Whoever removes while walking goes backwards, so that no position moves under the walk. Remove
' takes a record out of the collection only; its row stays.
For index = forces.Count - 1 To 0 Step -1
    If forces(index).Magnitude = 0 Then forces.Remove index
Next
WScript.Echo "Without the one of no size: " & forces.Count & ", in the model: " & _
             model.Load("NodalForces").Count

' A record that fails stops nothing: Delete succeeds, and the model knows which failed, and why.
' Here one that is gone already.
forces(0).Delete model
forces.Delete model
For Each failure In model.Failures
    WScript.Echo "Not deleted: " & failure.Sentence
Next
WScript.Echo "After Delete: " & forces.Count & ", in the model: " & model.Load("NodalForces").Count
