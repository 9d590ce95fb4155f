// Brings the forces and supports of a finite-element deck into a model database, opens the database
// anew and prints what it holds.
//
//   cscript //nologo plate.js DECK MODEL
//
// Of the deck it reads *NODE, *NSET, *BOUNDARY, *STEP and *CLOAD. MODEL is the database file; it is
// made, and must not exist yet.

var AXES = ["X", "Y", "Z"];
var FREEDOMS = ["Tx", "Ty", "Tz", "Rx", "Ry", "Rz"]; // degrees of freedom 1 to 6

// The cards of a deck that are read, with the options that they may have.
var CARDS = { NODE: "NSET", NSET: "NSET GENERATE", BOUNDARY: "", CLOAD: "" };

if (WScript.Arguments.length != 2) stop("Usage: cscript //nologo plate.js DECK MODEL");
main(WScript.Arguments(0), WScript.Arguments(1));

function main(deckFile, modelFile) {
    if (new ActiveXObject("Scripting.FileSystemObject").FileExists(modelFile)) {
        stop(modelFile + " exists already. Name a new file, or delete this one first.");
    }
    var deck = readDeck(deckFile);
    try {
        withModel(modelFile, function(model) {
            storeSupports(model, deck);
            storeForces(model, deck);
        });
        withModel(modelFile, function(model) {
            printForces(model);
            WScript.Echo("");
            printSupports(model);
        });
    } catch (error) {
        stop(error.message);
    }
}

function stop(sentence) {
    WScript.Echo(sentence);
    WScript.Quit(1);
}

// --- The model -----------------------------------------------------------------------------------

function withModel(file, action) {
    var model = create("Orv_ModelDb.ModelDatabase");
    model.Open(file);
    action(model);
    model.Close();
}

// One force per node, direction and step. A step is a load set.
function storeForces(model, deck) {
    var forces = create("Orv_Node.NodalForces");
    for (var step in deck.steps) {
        var loadSet = named("Orv_ModelDb.LoadSet", step);
        eachNumber(deck.steps[step], function(node, components) {
            for (var axis = 0; axis < 3; ++axis) {
                if (components[axis] == 0) continue;
                var force = named("Orv_Node.NodalForce", "Force on node " + node);
                place(force, node, deck.nodes[node]);
                force.Magnitude = Math.abs(components[axis]);
                force["V" + AXES[axis].toLowerCase()] = components[axis] < 0 ? -1 : 1;
                force.LoadSets.Add(loadSet);
                forces.Add(force);
            }
        });
    }
    forces.Save(model);
    requireAllSaved(model);
}

// One boundary condition per held node.
function storeSupports(model, deck) {
    var supports = create("Orv_Node.NodalBoundaryConditions");
    var constraintSet = named("Orv_ModelDb.ConstraintSet", "Supports");
    eachNumber(deck.supports, function(node, held) {
        var support = named("Orv_Node.NodalBoundaryCondition", "Support of node " + node);
        place(support, node, deck.nodes[node]);
        for (var i = 0; i < 6; ++i) support[FREEDOMS[i]] = held[i] == true;
        support.ConstraintSets.Add(constraintSet);
        supports.Add(support);
    });
    supports.Save(model);
    requireAllSaved(model);
}

// A collection saves what it can. What it could not save, the model tells.
function requireAllSaved(model) {
    if (model.Failures.Count > 0) throw new Error(model.Failures.Item(0).Sentence);
}

function named(progId, description) {
    var object = create(progId);
    object.Description = description;
    return object;
}

function create(progId) {
    try {
        return new ActiveXObject(progId);
    } catch (error) {
        throw new Error(progId + " cannot be created. Register orv_node.dll and orv_modeldb.dll.");
    }
}

// Every record has a vertex of its own from the start; saving the record saves its vertex too.
function place(record, node, coordinates) {
    record.Vertex.ID = node;
    for (var axis = 0; axis < 3; ++axis) record.Vertex[AXES[axis]] = coordinates[axis];
}

// --- The tables ----------------------------------------------------------------------------------

function printForces(model) {
    var forces = model.Load("NodalForces");
    var sums = {}; // load set -> [x, y, z]
    WScript.Echo(forces.Count + " forces");
    row(["node", "x", "y", "z", "magnitude", "direction", "load set"]);
    each(forces, function(force) {
        var vertex = force.Vertex;
        var vector = [force.Vx, force.Vy, force.Vz];
        var set = names(force.LoadSets);
        row([vertex.ID, number(vertex.X), number(vertex.Y), number(vertex.Z),
             number(force.Magnitude), direction(vector), set]);
        var sum = sums[set] || (sums[set] = [0, 0, 0]);
        for (var axis = 0; axis < 3; ++axis) sum[axis] += force.Magnitude * vector[axis];
    });
    for (set in sums) {
        var total = sums[set];
        WScript.Echo("  sum of the forces in " + set + ": x " + number(total[0]) + ", y " +
                     number(total[1]) + ", z " + number(total[2]));
    }
}

// Supports that hold the same degrees of freedom share a line.
function printSupports(model) {
    var supports = model.Load("NodalBoundaryConditions");
    var groups = {}; // what is held, and the constraint sets -> nodes
    each(supports, function(support) {
        var held = [];
        for (var i = 0; i < 6; ++i) {
            if (support[FREEDOMS[i]]) held.push(FREEDOMS[i]);
        }
        var group = held.join(" ") + " held, in " + names(support.ConstraintSets);
        (groups[group] || (groups[group] = [])).push(support.Vertex.ID);
    });
    WScript.Echo(supports.Count + " supports");
    for (var group in groups) {
        var count = groups[group].length;
        WScript.Echo("  " + group + ": " + count + (count == 1 ? " node" : " nodes"));
        paragraph(ranges(groups[group]));
    }
}

function each(collection, action) {
    for (var walk = new Enumerator(collection); !walk.atEnd(); walk.moveNext()) {
        action(walk.item());
    }
}

function names(sets) {
    var list = [];
    each(sets, function(set) { list.push(set.Description); });
    return list.join(", ");
}

// A direction along an axis, such as "-Y".
function direction(vector) {
    for (var axis = 0; axis < 3; ++axis) {
        if (vector[axis] != 0) return (vector[axis] < 0 ? "-" : "+") + AXES[axis];
    }
    return "";
}

// Six digits after the point at most: as many as an engineer reads.
function number(value) {
    return String(Math.round(value * 1e6) / 1e6);
}

// Ascending numbers as "1-31", "101-131 by 2" or "7".
function ranges(numbers) {
    var list = [];
    for (var first = 0, last; first < numbers.length; first = last + 1) {
        var increment = numbers[first + 1] - numbers[first];
        last = first;
        while (numbers[last + 1] - numbers[last] == increment) ++last;
        if (last == first + 1 && increment > 1) last = first; // a mere pair
        var range = String(numbers[first]);
        if (last > first) range += "-" + numbers[last];
        if (last > first && increment > 1) range += " by " + increment;
        list.push(range);
    }
    return list;
}

// Numbers are read from their right end, words from their left.
function row(cells) {
    var line = "";
    for (var i = 0; i < cells.length; ++i) {
        var cell = String(cells[i]);
        var gap = new Array(Math.max(0, 10 - cell.length) + 1).join(" ");
        line += "  " + (i < 5 ? gap + cell : cell + gap);
    }
    WScript.Echo(line.replace(/\s+$/, ""));
}

function paragraph(words) {
    var line = "   ";
    for (var i = 0; i < words.length; ++i) {
        var word = " " + words[i] + (i + 1 < words.length ? "," : "");
        if (line.length + word.length > 100) {
            WScript.Echo(line);
            line = "   ";
        }
        line += word;
    }
    WScript.Echo(line);
}

// --- The deck ------------------------------------------------------------------------------------

// nodes:    number -> [x, y, z]
// sets:     name -> node numbers
// supports: node -> the six degrees of freedom, true where held
// steps:    name -> node -> [x, y, z], the force
function readDeck(file) {
    var deck = { nodes: {}, sets: {}, supports: {}, steps: {}, stepCount: 0 };
    var card = null;
    eachLine(file, function(line) {
        if (/^\*\*|^\s*$/.test(line)) return; // a comment
        if (line.charAt(0) == "*") {
            card = parseCard(line);
            if (card.name == "STEP") deck.steps["Step " + ++deck.stepCount] = {};
        } else if (card && card.name in CARDS) {
            readData(deck, card, fieldsOf(line));
        }
    });
    for (var node in deck.nodes) return deck;
    stop(file + " has no nodes. Name a finite-element deck, with *NODE and *CLOAD lines.");
}

function eachLine(file, action) {
    var stream;
    try {
        stream = new ActiveXObject("Scripting.FileSystemObject").OpenTextFile(file);
    } catch (error) {
        stop("The deck " + file + " cannot be opened. Is the path right?");
    }
    for (var number = 1; !stream.AtEndOfStream; ++number) {
        try {
            action(stream.ReadLine());
        } catch (error) {
            stop(file + ", line " + number + ": " + error.message);
        }
    }
    stream.Close();
}

// "*NODE, NSET=ALL" has the name NODE and the option NSET.
function parseCard(line) {
    var fields = fieldsOf(line.substr(1).toUpperCase());
    var card = { name: fields[0], options: {} };
    for (var i = 1; i < fields.length; ++i) {
        var pair = fields[i].split("=");
        var option = trim(pair[0]);
        if (card.name in CARDS && (" " + CARDS[card.name] + " ").indexOf(" " + option + " ") < 0) {
            throw new Error("this script does not read *" + card.name + " with " + option);
        }
        card.options[option] = trim(pair[1] || "");
    }
    return card;
}

function readData(deck, card, fields) {
    switch (card.name) {
    case "NODE":
        var node = integer(fields[0]);
        deck.nodes[node] = [real(fields[1]), real(fields[2]), real(fields[3])];
        if (card.options.NSET) nodeSet(deck, card.options.NSET).push(node);
        break;
    case "NSET":
        var set = nodeSet(deck, card.options.NSET);
        set.push.apply(set, "GENERATE" in card.options ? range(fields) : list(deck, fields));
        break;
    case "BOUNDARY":
        hold(deck, nodesOf(deck, fields[0]), fields);
        break;
    case "CLOAD":
        load(deck, nodesOf(deck, fields[0]), integer(fields[1]), real(fields[2]));
        break;
    }
}

function nodeSet(deck, name) {
    return deck.sets[name] || (deck.sets[name] = []);
}

// First, last and increment.
function range(fields) {
    var increment = fields.length > 2 ? integer(fields[2]) : 1;
    if (increment < 1) throw new Error("the increment " + increment + " is not positive");
    var nodes = [];
    for (var node = integer(fields[0]); node <= integer(fields[1]); node += increment) {
        nodes.push(node);
    }
    return nodes;
}

// Node numbers and names of node sets.
function list(deck, fields) {
    var nodes = [];
    for (var i = 0; i < fields.length; ++i) {
        if (fields[i] != "") nodes = nodes.concat(nodesOf(deck, fields[i]));
    }
    return nodes;
}

function nodesOf(deck, name) {
    if (/^\d+$/.test(name)) return [integer(name)];
    var set = deck.sets[name.toUpperCase()];
    if (!set) throw new Error("there is no node set " + name);
    return set;
}

// Node, first and last degree of freedom, and the displacement there.
function hold(deck, nodes, fields) {
    var first = integer(fields[1]);
    var last = fields[2] ? integer(fields[2]) : first;
    if (first < 1 || last > 6) throw new Error("degrees of freedom go from 1 to 6");
    if (real(fields[3]) != 0) throw new Error("only supports that do not move are read");
    for (var i = 0; i < nodes.length; ++i) {
        requireNode(deck, nodes[i]);
        var held = deck.supports[nodes[i]] || (deck.supports[nodes[i]] = []);
        for (var dof = first; dof <= last; ++dof) held[dof - 1] = true;
    }
}

// Forces on one node in one step add up.
function load(deck, nodes, dof, value) {
    if (deck.stepCount == 0) throw new Error("*CLOAD stands before the first *STEP");
    if (dof < 1 || dof > 3) throw new Error("only forces, degrees of freedom 1 to 3, are read");
    var forces = deck.steps["Step " + deck.stepCount];
    for (var i = 0; i < nodes.length; ++i) {
        requireNode(deck, nodes[i]);
        var force = forces[nodes[i]] || (forces[nodes[i]] = [0, 0, 0]);
        force[dof - 1] += value;
    }
}

function requireNode(deck, node) {
    if (!deck.nodes[node]) throw new Error("there is no node " + node);
}

function fieldsOf(line) {
    var fields = line.split(",");
    for (var i = 0; i < fields.length; ++i) fields[i] = trim(fields[i]);
    return fields;
}

function trim(text) {
    return text.replace(/^\s+|\s+$/g, "");
}

function integer(text) {
    if (!/^[-+]?\d+$/.test(text)) throw new Error("'" + text + "' is not a whole number");
    return parseInt(text, 10);
}

// An empty field is 0; exponents may begin with d, as Fortran writes them.
function real(text) {
    var number = (text || "0").replace(/d/i, "e");
    if (!/^[-+]?(\d+\.?\d*|\.\d+)(e[-+]?\d+)?$/i.test(number)) {
        throw new Error("'" + text + "' is not a number");
    }
    return parseFloat(number); // Number() of Wine's JScript does not know "1.5e3"
}

// Calls action(number, value) for the members of an object in the order of their numbers.
function eachNumber(object, action) {
    var numbers = [];
    for (var name in object) numbers.push(Number(name));
    numbers.sort(function(a, b) { return a - b; });
    for (var i = 0; i < numbers.length; ++i) action(numbers[i], object[numbers[i]]);
}
