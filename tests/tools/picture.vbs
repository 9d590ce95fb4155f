' Pictures and reports as scripts make them, and what is refused.
Set model = CreateObject("Orv_ModelDb.ModelDatabase")
model.Open "plate.orvdb"
Set deck = CreateObject("Orv_Tools.Deck")
deck.Read "plate.inp"
deck.CopyTo model
Set files = CreateObject("Scripting.FileSystemObject")
Set mesh = files.CreateTextFile("mesh.inp")
mesh.WriteLine "*NODE" : mesh.WriteLine "1, 0, 0" : mesh.WriteLine "3, 3, 0"
mesh.WriteLine "13, 3, 1" : mesh.WriteLine "11, 0, 1"
mesh.WriteLine "*ELEMENT, TYPE=S4" : mesh.WriteLine "1, 1, 3, 13, 11"
mesh.Close

Function Content(name)
    Content = files.OpenTextFile(name).ReadAll
End Function

Function Glyphs(name)
    Glyphs = UBound(Split(Content(name), "data-record="))
End Function

folder = files.GetAbsolutePathName(".")
Sub Told
    WScript.Echo Replace(Err.Description, folder, "")
    Err.Clear
End Sub

Set picture = CreateObject("Orv_Tools.Picture")
WScript.Echo "[" & picture.Deck & picture.View & picture.Sets & picture.Kinds & picture.Title & "] " & _
             picture.Labels & " " & picture.Scale & " " & picture.Step & " " & picture.Remarks.Count
picture.Draw model, "all.svg"
picture.Deck = "mesh.inp"
picture.Draw model, "mesh.svg"
WScript.Echo picture.Remarks(0)
WScript.Echo Glyphs("all.svg") & " glyphs, with mesh " & Glyphs("mesh.svg") & ", another " & _
             (Content("mesh.svg") <> Content("all.svg"))
picture.Kinds = "NodalForces;moment"
WScript.Echo picture.Kinds
picture.Draw model, "forces.svg"
picture.Kinds = ""
picture.Sets = "Step 1, CLOAD"
picture.Draw model, "set.svg"
picture.Sets = ""
picture.Step = 0
picture.Draw model, "before.svg"
WScript.Echo Glyphs("forces.svg") & " " & Glyphs("set.svg") & " " & Glyphs("before.svg")
Set gust = CreateObject("Orv_Node.NodalForce")
gust.Vertex.ID = 3 : gust.Magnitude = 1 : gust.Vz = 1
gust.LoadSets.Add model.LoadSet("Step 2: gust")
gust.Save model
picture.Kinds = "force" : picture.Step = 2
picture.Draw model, "second.svg"
WScript.Echo "gust " & (InStr(Content("second.svg"), "NodalForce " & gust.ID) > 0)
gust.Delete model
picture.Kinds = ""

On Error Resume Next
picture.View = "sideways"
Told
picture.Labels = "loud"
Told
picture.Scale = 0
Told
WScript.Echo "[" & picture.View & "] " & picture.Labels & " " & picture.Scale
picture.Step = 9
picture.Draw model, "before.svg"
Told
picture.Step = -1
picture.Sets = "Step 1, CLOAD; snow"
picture.Draw model, "before.svg"
Told
picture.Sets = ""
picture.Kinds = "spring"
picture.Draw model, "before.svg"
Told
picture.Kinds = ""
picture.Deck = "nowhere.inp"
picture.Draw model, "before.svg"
Told
picture.Deck = ""
picture.Draw files, "before.svg"
Told
picture.Draw model, ""
Told
Set held = files.OpenTextFile("before.svg")
before = files.GetFolder(".").Files.Count
picture.Draw model, "before.svg"
WScript.Echo "Held open: " & (Err.Number <> 0) & ", " & files.GetFolder(".").Files.Count - before & " left"
Err.Clear
held.Close
On Error GoTo 0
WScript.Echo Glyphs("before.svg")

Set report = CreateObject("Orv_Tools.Report")
report.Picture.Deck = "mesh.inp"
report.Picture.View = "-z"
report.Write model, "report.html"
page = Content("report.html")
For Each part In Array("<h1>plate.inp</h1>", "1 element,", "<h2>Findings</h2>", "<h2>Resultants</h2>", _
                       "Step 1, CLOAD", "data-record=""NodalForce 1""")
    WScript.Echo part & " " & (InStr(page, part) > 0)
Next
For Each finding In CreateObject("Orv_Tools.Check").Run(model)
    WScript.Echo finding.Code & " " & (InStr(page, finding.Code) > 0)
Next

' A node of which a coordinate is not known lies nowhere, not at 0.
model.Connection.Execute "UPDATE Vertices SET X = NULL WHERE VertexID = 3"
WScript.Echo CreateObject("Orv_Tools.Check").Run(model)(0)
