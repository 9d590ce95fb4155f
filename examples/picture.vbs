' Draws a model, and writes a report about it.
Set model = CreateObject("Orv_ModelDb.ModelDatabase")
model.Open "frame.orvdb"
Set support = CreateObject("Orv_Node.NodalBoundaryCondition")
support.Vertex.ID = 1 : support.Vertex.X = 0
support.Tx = True : support.Ty = True : support.Tz = True
support.Save model
Set gust = CreateObject("Orv_Node.NodalForce")
gust.Vertex.ID = 2 : gust.Vertex.X = 3
gust.Magnitude = 40 : gust.Vy = 1
gust.Save model

Set picture = CreateObject("Orv_Tools.Picture")
picture.Title = "Frame"
picture.View = "+z"
picture.Labels = "values"
picture.Draw model, "frame.svg"
For Each remark In picture.Remarks
    WScript.Echo remark.Text
Next

Set report = CreateObject("Orv_Tools.Report")
report.Picture.Title = "Frame"
report.Write model, "report.html"

Set files = CreateObject("Scripting.FileSystemObject")
For Each name In Array("frame.svg", "report.html")
    WScript.Echo name & ": " & files.FileExists(name)
Next
