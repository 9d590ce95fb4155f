' What goes wrong, with the numbers and sentences that a script sees. Wine's engines have no numbers
' of their own for E_NOINTERFACE and DISP_E_TYPEMISMATCH.

Dim db, other, files, path, force, forces, rows, failures, ignored
failures = 0

Sub Refused(number, sentence)
  If Err.Number <> number Or InStr("." & Err.Description, sentence) = 0 Or _
     (sentence = NONE And Err.Description <> "") Then
    WScript.Echo Err.Number & ": " & Err.Description & " - not " & number & ": " & sentence
    failures = failures + 1
  End If
  Err.Clear
End Sub

Sub Expect(what, actual, expected)
  If actual <> expected Or Err.Number <> 0 Then
    WScript.Echo what & " is " & actual & ", not " & expected & " " & Err.Description
    failures = failures + 1
  End If
  Err.Clear
End Sub

Const NONE = "."
Const CLOSED = "No model is open. Call Open with the path of a model database file first."
Const TEXT = "*NODE, NSET=all"

On Error Resume Next
Set files = CreateObject("Scripting.FileSystemObject")
Set db = CreateObject("Orv_ModelDb.ModelDatabase")
Set force = CreateObject("Orv_Node.NodalForce")
Set forces = CreateObject("Orv_Node.NodalForces")

' Before a model is open. The server has no sentences of its own.
db.Load "NodalForces" : Refused 3704, CLOSED
db.Query "SELECT 1" : Refused 3704, CLOSED
Set ignored = db.Connection : Refused 3704, CLOSED
force.Save db : Refused 3704, CLOSED
force.Save Nothing : Refused -2147467261, NONE
forces.Add force
forces.Save db : Refused 3704, CLOSED
forces.Delete db : Refused 3704, CLOSED
Expect "A collection that was not deleted", forces.Count, 1
db.RecordStore.Advise files : Refused 3704, CLOSED

' Files that are no model are left alone.
files.CreateTextFile("notes.txt").Write TEXT
path = files.GetAbsolutePathName("notes.txt")
db.Open path
Refused 3002, path
Expect "The text", files.OpenTextFile(path).ReadAll, TEXT
db.Open "" : Refused 3002, "No model database is named."
db.Open "." : Refused 3002, "is that of a folder."
db.Open "no\such\folder\a.orvdb" : Refused 3002, "no\such\folder\a.orvdb"
db.Open "ODBC:DSN=model;Pwd=x"
If Err.Number = 3251 Then
    Refused 3251, "There is no ODBC on this machine" ' as for 32-bit programs under Wine
Else
    Refused 3002, "The model ""odbc:DSN=model;"" cannot be opened: "
End If

db.Open "failures.orvdb"
path = db.Location
db.Open "other.orvdb"
Refused 3705, path
Expect "The other file", files.FileExists("other.orvdb"), False
force.Save db
Expect "The model goes on", force.ID, 1

' Objects and rows that are not there.
force.ID = 77
force.Delete db : Refused 3265, "NodalForce 77 is not in the model, so that it cannot be deleted."
force.ID = 0
force.Delete db : Refused 3265, "The new NodalForce is not in the model"
db.Load "Forces" : Refused 3265, "a table ""Forces"". The tables that can be loaded are Vertices, LoadSets,"
db.RecordStore.SaveRecord Nothing : Refused -2147467261, "No record was passed"
db.RecordStore.SaveRecord db : Refused -2147467262, "is no record"
db.RecordStore.Advise Nothing : Refused -2147467261, "no object"
db.RecordStore.Advise db.RecordStore : Refused 3001, "record store"
db.RecordStore.Unadvise db : Refused 3265, "is not being notified"
Set force.LoadSets = CreateObject("Orv_ModelDb.ConstraintSets")
force.Save db : Refused -2147467262, "The new NodalForce has some other object as its LoadSets."
Set force.LoadSets = Nothing : Err.Clear
force.Save db : Refused -2147467261, "The new NodalForce has no LoadSets."
Set force.Vertex = files
force.Save db : Refused -2147467262, "The new NodalForce has some other object as its vertex."
Set force.Vertex = Nothing : Err.Clear
force.Save db
Refused -2147467261, "The new NodalForce has no vertex. Set its Vertex before it is saved."
Expect "Forces after failures", db.Load("NodalForces").Count, 1

' Statements.
db.Query "DELETE FROM NodalForces"
Refused 3720, """DELETE FROM NodalForces"""
db.Query "WITH x AS (SELECT 1) INSERT INTO LoadSets (LoadSetID) SELECT * FROM x"
Refused 3720, "insert into the table LoadSets"
db.Connection.Execute "INSERT INTO NodalForces (NodalForceID) VALUES (1)"
Refused 3719, "its values break a rule of the table"
db.Query "SELECT Nope FROM NodalForces"
Refused -2147217900, "no such column: Nope"
Set rows = db.Query("SELECT * FROM NodalForces")
rows.MovePrevious
Refused 3251, "Recordset.MovePrevious"
ignored = rows.Fields(Null) : Refused -2147352571, "neither a name nor a number"
ignored = rows.Fields("Nothing") : Refused 3265, "no field ""Nothing"", only NodalForceID, Description,"
rows.Fields(1).Value = "x" : Refused 3251, "Field.Value"
rows.Close
db.Connection.Close : Refused 3251, "Connection.Close"
db.Connection.Execute "UPDATE NodalForces SET Magnitude = 'much'"
db.Load "NodalForces"
Refused -2147352571, "Its Magnitude is ""much"""
db.Connection.Execute "UPDATE NodalForces SET Magnitude = NULL"
db.Load "NodalForces" : Refused -2147352571, "Its Magnitude is empty. Correct the row."
db.Connection.Execute "UPDATE NodalForces SET NodalForceID = 3000000000, Magnitude = 1"
db.Load "NodalForces"
Refused -2147352566, "NodalForceID is ""3000000000"""
db.Load "NodalForces", db : Refused -2147352571, "The condition that Load was given is no text."

' Transactions, and another program: it is told after some seconds.
Set other = CreateObject("Orv_ModelDb.ModelDatabase")
other.Open path
other.Command.ActiveConnection = db.Connection : Refused 3251, "belongs to the model database"
other.Command.ActiveConnection = other.Connection
Expect "The command's own connection", Err.Number, 0
db.Connection.Execute "COMMIT TRANSACTION" : Refused 3714, "Begin one first."
db.Connection.Execute "BEGIN TRANSACTION"
other.Connection.Execute "BEGIN TRANSACTION"
Refused 3729, path
db.Close
other.Connection.Execute "BEGIN TRANSACTION"
Expect "The lock", Err.Number, 0
other.Close

WScript.Echo failures & " failures"
