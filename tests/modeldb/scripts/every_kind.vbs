' Every kind of kinds.txt, as in every_kind.js.

Dim db, engine, lines, kinds, failures
kinds = 0 : failures = 0

' A member whose name is in a variable is reached by a statement that is made up, and VBScript in
' Wine runs none. An engine of its own does.
Set engine = CreateObject("MSScriptControl.ScriptControl")
engine.Language = "VBScript"
engine.AddCode "Dim record" & vbCrLf & _
               "Sub Take(newRecord)" & vbCrLf & "Set record = newRecord" & vbCrLf & "End Sub"

Sub Expect(what, actual, expected)
  If actual = expected Then Exit Sub
  WScript.Echo what & " is " & actual & ", not " & expected
  failures = failures + 1
End Sub

' A value of its own for a property of the engine's record, and a fraction where one can be held: as
' text, for a statement.
Function ValueOf(name, number)
  Select Case VarType(engine.Eval("record." & name))
    Case vbBoolean
      ValueOf = "False"
      If number Mod 2 = 0 Then ValueOf = "True"
    Case vbDouble
      ValueOf = number & ".25"
    Case Else
      ValueOf = number
  End Select
End Function

Sub Fill(record, words, first)
  Dim i
  engine.Run "Take", record
  For i = 2 To UBound(words)
    engine.ExecuteStatement "record." & words(i) & " = " & ValueOf(words(i), first + i)
  Next
End Sub

Sub Compare(record, words, first)
  Dim i
  engine.Run "Take", record
  For i = 2 To UBound(words)
    Expect words(0) & "." & words(i), engine.Eval("record." & words(i)), _
           engine.Eval(ValueOf(words(i), first + i))
  Next
End Sub

Function Rows(table)
  Rows = db.Query("SELECT COUNT(*) AS N FROM " & table).Fields("N").Value
End Function

Sub RoundTrip(words)
  Dim kind, sets, table, record, loaded, expectedSets
  kind = words(0) : sets = words(1) & "s"
  Set record = CreateObject("Orv_Node." & kind)
  table = record.SqlString(1)
  record.Description = "Bob's " & kind
  record.Vertex.ID = 7
  Fill record, words, 2
  engine.ExecuteStatement "record." & sets & ".Add CreateObject(""Orv_ModelDb." & words(1) & """)"
  record.Save db
  Expect kind & " links", Rows(kind & sets), 1

  Set loaded = db.Load(table)(0)
  Compare loaded, words, 2
  Expect kind & " description", loaded.Description, "Bob's " & kind
  Expect kind & " vertex", loaded.Vertex.ID, 7
  ' A probe does not read its scenarios back.
  expectedSets = 1
  If kind = "NodalProbe" Then expectedSets = 0
  Expect kind & " sets", engine.Eval("record." & sets & ".Count"), expectedSets

  Fill loaded, words, 31
  loaded.Save db
  Expect kind & " rows", Rows(table), 1
  Compare db.Load(table)(0), words, 31

  record.Delete db
  Expect kind & " rows left", Rows(table), 0
  Expect kind & " links left", Rows(kind & sets), 0
End Sub

Set db = CreateObject("Orv_ModelDb.ModelDatabase")
db.Open "every_kind.orvdb"
Set lines = CreateObject("Scripting.FileSystemObject").OpenTextFile("kinds.txt")
Do Until lines.AtEndOfStream
  RoundTrip Split(lines.ReadLine)
  kinds = kinds + 1
Loop
db.Close
WScript.Echo kinds & " kinds, " & failures & " failures"
