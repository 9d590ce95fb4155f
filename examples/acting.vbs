' Tells what acts in the second step of a model, and who said so: a step goes on with what the one
' before it said, unless it says otherwise.
Set model = CreateObject("Orv_ModelDb.ModelDatabase")
model.Open "mast.orvdb"
For Each line In Array("1,Model,foot", "2,Step 1: wind,40", "2,Step 2: gust,55", "3,Step 1: ice,7", _
                       "3,Step 1: snow,5")
    part = Split(line, ",")
    If part(2) = "foot" Then
        Set record = CreateObject("Orv_Node.NodalBoundaryCondition")
        record.Tx = True : record.Ty = True : record.Tz = True
        record.ConstraintSets.Add model.ConstraintSet(part(1))
    Else
        Set record = CreateObject("Orv_Node.NodalForce")
        record.Magnitude = part(2) : record.Vy = 1
        record.LoadSets.Add model.LoadSet(part(1))
    End If
    record.Vertex.ID = part(0)
    record.Save model
Next

Set check = CreateObject("Orv_Tools.Check")
For Each action In check.Acting(model, 2)
    WScript.Echo "Node " & action.Node & ", freedom " & action.Freedom & ": " & action.What & " " & _
                 action.Value & ", since step " & action.Step
    For Each record In action.Records
        WScript.Echo "  " & record.Table & " " & record.ID & " in the set " & record.SetName
    Next
Next
