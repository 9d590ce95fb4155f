' Adds forces to a new model one by one and from an array, in turn, and prints the seconds of each.
'
'   cscript //nologo bulk.vbs FOLDER COUNT ONE_BY_ONE        (from orv_bench)

folder = WScript.Arguments(0)
many = CLng(WScript.Arguments(1))
few = CLng(WScript.Arguments(2))
Dim cells

Set model = OpenModel("one_by_one")
began = Timer
model.Connection.Execute "BEGIN TRANSACTION"
For number = 1 To few
    Set force = CreateObject("Orv_Node.NodalForce")
    force.Description = "Tip load"
    force.Vertex.ID = number
    force.Magnitude = 0.1 * number
    force.Vz = -1
    force.Save model
Next
model.Connection.Execute "COMMIT TRANSACTION"
seconds = Timer - began
model.Close

Set model = OpenModel("from_array")
began = Timer
ReDim cells(many - 1)
For number = 1 To many
    cells(number - 1) = Array("Tip load", number, 0.1 * number, -1)
Next
model.AppendRows "NodalForces", "Description, VertexID, Magnitude, Vz", cells
WScript.Echo seconds & " " & (Timer - began)
model.Close

Function OpenModel(name)
    Set OpenModel = CreateObject("Orv_ModelDb.ModelDatabase")
    OpenModel.Open folder & "\orv_bench_" & name & ".orvdb"
End Function
