// Brings decks through models as a user's script would: read, copied into a model, changed there,
// and written. through_models.py runs it.
//
//   cscript //nologo chain.js FROM TO LIST [scale FACTOR|empty]
//
// FROM and TO are folders, and LIST is a file with the name of a deck in each line. "scale"
// multiplies all forces and moments, "empty" deletes all records.
var kinds = ["NodalForces", "NodalMoments", "NodalBoundaryConditions",
             "NodalPrescribedDisplacements", "NodalAppliedTemperatures", "NodalTemperatures",
             "NodalHeatSources"];
var from = WScript.Arguments(0) + "\\", to = WScript.Arguments(1) + "\\";
var change = WScript.Arguments.Count() > 3 ? WScript.Arguments(3) : "";
var fileSystem = new ActiveXObject("Scripting.FileSystemObject");

function expectNoFailures(model) {
    if (model.Failures.Count > 0) throw new Error(model.Failures(0).Text);
}

function scale(model, factor) {
    for (var i = 0; i < 2; i++) {
        var loads = model.Load(kinds[i]);
        for (var all = new Enumerator(loads); !all.atEnd(); all.moveNext()) {
            all.item().Magnitude = all.item().Magnitude * factor;
        }
        loads.Save(model);
        expectNoFailures(model);
    }
}

function empty(model) {
    for (var i = 0; i < kinds.length; i++) {
        model.Load(kinds[i]).Delete(model);
        expectNoFailures(model);
    }
}

function countRecords(model) {
    var count = 0;
    for (var i = 0; i < kinds.length; i++) {
        count += model.Query("SELECT COUNT(*) AS N FROM " + kinds[i]).Fields("N").Value;
    }
    return count;
}

function bring(name, model) {
    var deck = new ActiveXObject("Orv_Tools.Deck");
    deck.Read(from + name);
    deck.CopyTo(model);
    WScript.Echo(name + ": records " + countRecords(model));
    for (var i = 0; i < deck.Remarks.Count; i++) {
        var remark = deck.Remarks(i);
        var file = remark.File.replace(/.*[\\\/]/, "");
        if (file == name && remark.Line > 0) WScript.Echo(name + ": stays " + remark.Line);
    }
    if (change == "scale") scale(model, parseFloat(WScript.Arguments(4)));
    if (change == "empty") empty(model);
    deck.Write(model, to + name);
}

var names = fileSystem.OpenTextFile(WScript.Arguments(2));
while (!names.AtEndOfStream) {
    var name = names.ReadLine();
    var path = to + name + ".orvdb";
    var model = new ActiveXObject("Orv_ModelDb.ModelDatabase");
    try {
        model.Open(path);
        bring(name, model);
    } catch (error) {
        WScript.Echo(name + ": error " + error.message.replace(/[\r\n]+/g, " "));
    }
    model.Close();
    fileSystem.DeleteFile(path);
}
