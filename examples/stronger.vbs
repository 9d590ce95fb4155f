' Scales the forces of one load set and adds a force of its own to it.
'
'   cscript //nologo stronger.vbs MODEL SET FACTOR NODE FORCE
'
' The new force stands on the node and points along y.
If WScript.Arguments.Count <> 5 Then
    WScript.Echo "Usage: cscript //nologo stronger.vbs MODEL SET FACTOR NODE FORCE"
    WScript.Quit 1
End If
Set model = CreateObject("Orv_ModelDb.ModelDatabase")
model.Open WScript.Arguments(0)
factor = CDbl(WScript.Arguments(2))

Set chosen = Nothing
For Each loads In model.Load("LoadSets")
    If loads.Description = WScript.Arguments(1) Then Set chosen = loads
Next
If chosen Is Nothing Then
    WScript.Echo "The model has no load set " & WScript.Arguments(1) & "."
    WScript.Quit 1
End If
model.Connection.Execute "BEGIN TRANSACTION" ' all of it, or nothing
changed = 0
For Each force In model.Load("NodalForces")
    For Each loads In force.LoadSets
        If loads.ID = chosen.ID Then
            force.Magnitude = force.Magnitude * factor
            force.Save model
            changed = changed + 1
        End If
    Next
Next

Set added = CreateObject("Orv_Node.NodalForce")
added.Description = "Added"
added.Vertex.ID = CLng(WScript.Arguments(3))
added.Magnitude = CDbl(WScript.Arguments(4)) : added.Vy = 1
added.LoadSets.Add chosen
added.Save model
model.Connection.Execute "COMMIT TRANSACTION"
WScript.Echo changed & " forces times " & factor & ", and one more on node " & added.Vertex.ID
