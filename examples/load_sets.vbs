' Load sets, conditions and queries.
'
'   cscript //nologo load_sets.vbs         (makes load_sets.orvdb)

Set model = CreateObject("Orv_ModelDb.ModelDatabase")
model.Open "load_sets.orvdb"

Set dead = NewSet("Dead load")
Set snow = NewSet("Snow")

' A load may be in several sets. Saving it saves its sets too.
SaveForce 1, 120, Array(dead)
SaveForce 2, 80, Array(dead, snow)
SaveForce 3, 45, Array(snow)

' A condition over the table's columns selects records.
For Each force In model.Load("NodalForces", "Magnitude > 50")
    WScript.Echo "Node " & force.Vertex.ID & ": " & force.Magnitude & " N, " & Names(force.LoadSets)
Next

' A query may join and sum. It changes nothing, and returns a recordset.
Set sums = model.Query("SELECT LoadSets.Description AS Name, SUM(Magnitude) AS Total " & _
    "FROM LoadSets JOIN NodalForceLoadSets USING (LoadSetID) " & _
    "JOIN NodalForces USING (NodalForceID) GROUP BY LoadSetID ORDER BY LoadSetID")
Do Until sums.EOF
    WScript.Echo sums.Fields("Name").Value & ": " & sums.Fields("Total").Value & " N"
    sums.MoveNext
Loop

Function NewSet(name)
    Set NewSet = CreateObject("Orv_ModelDb.LoadSet")
    NewSet.Description = name
End Function

Sub SaveForce(node, magnitude, sets)
    Dim force, loadSet
    Set force = CreateObject("Orv_Node.NodalForce")
    force.Vertex.ID = node
    force.Magnitude = magnitude
    For Each loadSet In sets
        force.LoadSets.Add loadSet
    Next
    force.Save model
End Sub

Function Names(sets)
    Dim loadSet
    For Each loadSet In sets
        If Names <> "" Then Names = Names & " and "
        Names = Names & loadSet.Description
    Next
End Function
