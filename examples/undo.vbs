' Changes are undone and redone, one by one or a whole run at once.
'
'   cscript //nologo undo.vbs        (makes undo.orvdb)

Set model = CreateObject("Orv_ModelDb.ModelDatabase")
model.Open "undo.orvdb"

Sub Show(title)
    Dim force, line
    For Each force In model.Load("NodalForces")
        line = line & " " & force.Magnitude
    Next
    WScript.Echo title & ":" & line
End Sub

Sub AddForce(magnitude)
    Dim force
    Set force = CreateObject("Orv_Node.NodalForce")
    force.Magnitude = magnitude
    force.LoadSets.Add model.LoadSet("Wind")
    force.Save model
End Sub

model.LoadSet "Wind"
AddForce 100

' What the script does from here on can be taken back at once.
first = model.History.NextNumber
AddForce 200
model.Step = "Twice the wind"
model.Connection.Execute "UPDATE NodalForces SET Magnitude = 2 * Magnitude"
Show "Changed"

model.Undo
Show "Without the last step"
model.Redo
Show "With it again"
model.Undo first
Show "Without the whole run"

WScript.Echo "The history:"
For Each step In model.History
    state = ""
    If step.IsUndone Then state = ", undone"
    WScript.Echo "  " & step.Number & ". " & step.Name & " (" & step.Changes & ")" & state
Next

' A new change drops what could be redone.
AddForce 50
Show "Another one"
On Error Resume Next
model.Redo
WScript.Echo "Redo: " & (Err.Number <> 0)
