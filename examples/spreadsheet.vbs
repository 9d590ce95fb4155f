' Many rows at once: from an array, as a range of cells gives it, and back into one.
'
'   cscript //nologo spreadsheet.vbs       (makes spreadsheet.orvdb)

Set model = CreateObject("Orv_ModelDb.ModelDatabase")
model.Open "spreadsheet.orvdb"

' An array with an array for each row; a set is a row with a name.
model.AppendRows "LoadSets", "Description", Array(Array("Dead load"), Array("Snow"))

' In a spreadsheet: cells = Range("A2:D4").Value
Dim cells(2, 3)
cells(0, 0) = "Ridge" : cells(0, 1) = 1 : cells(0, 2) = 120 : cells(0, 3) = "Dead load"
cells(1, 0) = "Ridge" : cells(1, 1) = 1 : cells(1, 2) = 80  : cells(1, 3) = "Snow"
cells(2, 0) = "Eaves" : cells(2, 1) = 2 : cells(2, 2) = 45  : cells(2, 3) = "Snow"
columns = Array("Description", "VertexID", "Magnitude", "LoadSets")

keys = model.AppendRows("NodalForces", columns, cells)
WScript.Echo "Forces " & keys(0) & " to " & keys(UBound(keys)) & " were added."

' All rows are added or none; the sentence says which cell is at fault.
On Error Resume Next
cells(2, 2) = "45 N"
model.AppendRows "NodalForces", columns, cells
WScript.Echo Err.Description
On Error GoTo 0

' A query as an array, here with the names of its columns. In a spreadsheet:
' Range("F1").Resize(UBound(sums, 1) + 1, UBound(sums, 2) + 1).Value = sums
sums = model.Rows("SELECT LoadSets.Description AS Name, SUM(Magnitude) AS Total " & _
    "FROM LoadSets JOIN NodalForceLoadSets USING (LoadSetID) " & _
    "JOIN NodalForces USING (NodalForceID) GROUP BY LoadSetID ORDER BY LoadSetID", True)
For row = 0 To UBound(sums, 1)
    WScript.Echo sums(row, 0) & ": " & sums(row, 1)
Next
model.Close
