' A deck as scripts use it: read, copied into a model, changed, written; and what is refused.
Set model = CreateObject("Orv_ModelDb.ModelDatabase")
model.Open "plate.orvdb"
Set deck = CreateObject("Orv_Tools.Deck")

On Error Resume Next
deck.CopyTo model
WScript.Echo Err.Description
Err.Clear
deck.Read "nowhere.inp"
Set files = CreateObject("Scripting.FileSystemObject")
folder = files.GetAbsolutePathName(".")
WScript.Echo Replace(Err.Description, folder, "") & " Read: """ & deck.Path & """"
On Error GoTo 0

deck.Read "plate.inp"
model.Connection.CommandTimeout = 7
deck.CopyTo model
WScript.Echo "As before: " & model.Connection.CommandTimeout
WScript.Echo deck.Remarks.Count & " remarks, checksum of " & Len(deck.Checksum) & " digits"
For Each remark In deck.Remarks
    WScript.Echo remark.Line & ": " & (InStr(remark.Text, remark.Reason) > 0)
Next
For Each source In deck.Sources(model)
    WScript.Echo source.Deck & ", line " & source.Line & ": step " & source.Step & " " & _
                 source.Keyword & " is load set " & source.LoadSetID & ", constraint set " & _
                 source.ConstraintSetID
Next
Set steps = model.Query("SELECT Number, Procedure, Line FROM DeckSteps ORDER BY Number")
Do Until steps.EOF
    WScript.Echo "step " & steps.Fields(0).Value & " (" & steps.Fields(1).Value & "), line " & _
                 steps.Fields(2).Value
    steps.MoveNext
Loop

For Each force In model.Load("NodalForces", "VertexID = 13")
    force.Magnitude = force.Magnitude * 1.5
    force.Save model
Next
deck.Write model, "stronger.inp"
For Each action In CreateObject("Orv_Tools.Check").Acting(model, 1)
    If action.Node = 13 Then WScript.Echo action.Text
Next

On Error Resume Next
deck.CopyTo model
WScript.Echo Err.Description
Err.Clear
deck.Write model, "plate.inp"
WScript.Echo Mid(Err.Description, InStrRev(Err.Description, "\") + 1)
Err.Clear
Set lost = CreateObject("Orv_Node.NodalForce")
lost.Description = "Lost" : lost.Magnitude = 1 : lost.Vertex.ID = 4711 : lost.Save model
deck.Write model, "stronger.inp"
WScript.Echo InStr(Err.Description, "Lost") > 0
Err.Clear
Set other = CreateObject("Orv_ModelDb.ModelDatabase")
other.Open "other.orvdb"
lost.ID = 0 : lost.Save other
deck.CopyTo other
WScript.Echo Err.Description
On Error GoTo 0
For Each finding In CreateObject("Orv_Tools.Check").Run(model)
    If finding.Code = "no-coordinates" Then WScript.Echo finding.Text
Next
other.Undo

' A force along the radius of a cylinder, and its moments about a point.
Set small = files.CreateTextFile("round.inp")
small.WriteLine "*NODE, NSET=N" : small.WriteLine "1, 0, 2, 0"
small.WriteLine "*TRANSFORM, NSET=N, TYPE=C" : small.WriteLine "0, 0, 0, 0, 0, 1"
small.WriteLine "*STEP" : small.WriteLine "*STATIC" : small.WriteLine "*CLOAD" : small.WriteLine "1, 1, 5."
small.WriteLine "*END STEP"
small.Close
deck.Read "round.inp"
deck.CopyTo other
For Each sum In CreateObject("Orv_Tools.Check").Resultants(other, 1, 0, 4)
    WScript.Echo sum.Name & ": " & sum.Fx & " " & sum.Fy & " " & sum.Fz & ", " & sum.Mx & " " & _
                 sum.My & " " & sum.Mz
Next

Set after = files.OpenTextFile("stronger.inp")
Do Until after.AtEndOfStream
    WScript.Echo after.ReadLine
Loop
