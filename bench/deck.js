// Reads a deck, copies it into a new model, or makes an empty model, a number of times.
//
//   cscript //nologo deck.js DECK MODEL TIMES read|copy|make
var deck = new ActiveXObject("Orv_Tools.Deck");
var what = WScript.Arguments(3);
var files = new ActiveXObject("Scripting.FileSystemObject");
for (var i = 0; i < parseInt(WScript.Arguments(2), 10); i++) {
    if (what != "make") deck.Read(WScript.Arguments(0));
    if (what == "read") continue;
    var path = WScript.Arguments(1);
    if (files.FileExists(path)) files.DeleteFile(path);
    var model = new ActiveXObject("Orv_ModelDb.ModelDatabase");
    model.Open(path);
    if (what == "copy") deck.CopyTo(model);
    model.Close();
}
// The measuring program sees what was consumed before this one is gone.
WScript.Sleep(500);
