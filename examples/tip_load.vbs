Set model = CreateObject("Orv_ModelDb.ModelDatabase")
model.Open "bridge.orvdb"
Set tip = CreateObject("Orv_Node.NodalForce")
tip.Description = "Tip load"
tip.Vertex.ID = 12
tip.Magnitude = 250 : tip.Vz = -1
tip.Save model
For Each force In model.Load("NodalForces")
    WScript.Echo force.Description & " on node " & force.Vertex.ID & ": " & force.Magnitude & " N"
Next
