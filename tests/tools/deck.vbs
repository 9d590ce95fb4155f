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
On Error GoTo 0
For Each finding In CreateObject("Orv_Tools.Check").Run(model)
    If finding.Code = "no-coordinates" Then WScript.Echo finding.Text
Next

Set after = files.OpenTextFile("stronger.inp")
Do Until after.AtEndOfStream
    WScript.Echo after.ReadLine
Loop
