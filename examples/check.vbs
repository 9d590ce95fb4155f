' Finds what was forgotten in a model, and sums up its loads.
Set model = CreateObject("Orv_ModelDb.ModelDatabase")
model.Open "frame.orvdb"
Set wind = CreateObject("Orv_ModelDb.LoadSet")
wind.Description = "Step 1: wind"

Set support = CreateObject("Orv_Node.NodalBoundaryCondition")
support.Vertex.ID = 1 : support.Vertex.X = 0
support.Tx = True : support.Ty = True : support.Tz = True
support.Save model
Set gust = CreateObject("Orv_Node.NodalForce")
gust.Vertex.ID = 2 : gust.Vertex.X = 3
gust.Magnitude = 40 : gust.Vy = 1
gust.LoadSets.Add wind
gust.Save model
Set forgotten = CreateObject("Orv_Node.NodalForce")
forgotten.Description = "Without a direction"
Set forgotten.Vertex = gust.Vertex
forgotten.Magnitude = 10
forgotten.LoadSets.Add wind
forgotten.Save model

Set check = CreateObject("Orv_Tools.Check")
For Each finding In check.Run(model)
    WScript.Echo finding.Severity & " " & finding.Code & ": " & finding.What
    WScript.Echo "  " & finding.Where
    WScript.Echo "  " & finding.Advice
Next
For Each sum In check.Resultants(model, 0, 0, 0)
    WScript.Echo sum.Name & ": Fy " & sum.Fy & ", Mz " & sum.Mz
Next
