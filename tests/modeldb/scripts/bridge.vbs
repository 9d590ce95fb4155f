' A model as an engineer scripts it: made, read back, changed and cleared.

Dim db, tip, wind, force, forces, seen, path, failures
failures = 0
path = "bridge.orvdb"

Sub Expect(what, actual, expected)
  If actual <> expected Then
    WScript.Echo what & " is " & actual & ", not " & expected
    failures = failures + 1
  End If
End Sub

' The listener: VBScript can index the IDs that a batch reports.
Class Recorder
  Public Saved
  Public Batch
  Public Sub RecordSaved(eventObjectType, id)
    Saved = Saved & eventObjectType & ":" & id & " "
  End Sub
  Public Sub RecordsSaved(eventObjectType, ids)
    Batch = eventObjectType & ":" & (UBound(ids) + 1) & ":" & ids(0)
  End Sub
End Class

On Error Resume Next
Set db = CreateObject("Orv_ModelDb.ModelDatabase")
Expect "A new model database, open", db.IsOpen, False
db.Open path
Expect "Error of Open", Err.Description, ""
Expect "Location", Right(db.Location, 13), "\" & path
Expect "A new model, open", db.IsOpen, True
Expect "A new model, modified", db.Modified, False

Dim listener
Set listener = New Recorder
db.RecordStore.Advise listener

Set wind = CreateObject("Orv_ModelDb.LoadSet")
wind.Description = "Wind from the north"
Set tip = CreateObject("Orv_Node.NodalForce")
tip.Description = "Bob's tip load"
tip.Magnitude = 250 : tip.Vz = -1
tip.Vertex.ID = 12
tip.Vertex.X = 1.5
tip.LoadSets.Add wind
tip.Save db
Expect "Error of Save", Err.Description, ""
Expect "ID of the saved force", tip.ID, 1
Expect "Events", listener.Saved, "1:12 2:1 19:1 "
Expect "Modified", db.Modified, True

db.Close
db.Open path
Expect "Error of the second Open", Err.Description, ""
For Each force In db.Load("NodalForces")
  seen = seen & force.Vertex.ID & " " & force.Vertex.X & " " & force.Magnitude & " " & _
         force.Description & " " & force.LoadSets(0).Description & ";"
Next
Expect "Loaded", seen, "12 1.5 250 Bob's tip load Wind from the north;"
Expect "A query", db.Query("SELECT Magnitude FROM NodalForces").Fields("Magnitude").Value, 250
Expect "Forces that do not exist", db.Load("NodalForces", "Magnitude < 0").Count, 0

db.RecordStore.Advise listener
Set forces = db.Load("NodalForces")
forces.Add CreateObject("Orv_Node.NodalForce")
forces.Save db
Expect "Error of the collection's Save", Err.Description, ""
Expect "Batch", listener.Batch, "19:2:1"
forces.Delete db
Expect "Forces that are left", db.Load("NodalForces").Count, 0

' Recordsets, by their default members and by what a script may leave out.
Dim rows
Set rows = db.Connection.Execute("SELECT Description AS D, LoadSetID FROM LoadSets")
Expect "A field by its name", rows("D"), "Wind from the north"
Expect "A field's name", rows(0).Name, "D"
rows.MoveNext
Expect "Rows that are left", rows.EOF, True
Dim field, names, command, all
For Each field In rows.Fields
  names = names & field.Name & " "
Next
Expect "The fields", names, "D LoadSetID "
Set rows = db.Connection.Execute("LoadSets")
Expect "A table", rows("LoadSetID"), 1
rows.Close
Set command = db.Command
command.CommandText = "SELECT 1 AS A, 2 AS B UNION SELECT 3, 4 ORDER BY A"
Set rows = command.Execute
all = rows.GetRows
Expect "Fields by rows", all(0, 0) & all(1, 0) & all(0, 1) & all(1, 1), "1234"
Expect "Error of a recordset", Err.Description, ""

db.Close
Expect "A closed model", db.IsOpen & db.Location, "False"
Expect "Error at the end", Err.Description, ""
WScript.Echo failures & " failures"
