' What a script sees when something goes wrong. A failed operation leaves the model as it was.
'
'   cscript //nologo errors.vbs            (makes errors.orvdb)

Set model = CreateObject("Orv_ModelDb.ModelDatabase")
Set force = CreateObject("Orv_Node.NodalForce")

On Error Resume Next

force.Save model
Report "Saving before a model is open"

model.Open "errors.orvdb"
Report "Opening a model"

force.Delete model
Report "Deleting what was never saved"

model.Load "NodalForces", "Magnitud > 5"
Report "A condition with a misspelt column"

' Where no model database is concerned there is a number, but no sentence.
Set force.Vertex = Nothing
Report "Taking the vertex away"

force.Save model
Report "Saving without a vertex"

WScript.Echo "Forces in the model: " & model.Load("NodalForces").Count

Sub Report(what)
    If Err.Number = 0 Then
        WScript.Echo what & ": done"
    Else
        WScript.Echo what & ": " & Hex(Err.Number) & " " & Err.Description
    End If
    Err.Clear
End Sub
