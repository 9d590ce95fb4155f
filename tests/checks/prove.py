#!/usr/bin/env python3
"""Proves the checks on a solver's own example decks.

No deck that the solver solves may have a finding that is an error. And the resultants of static steps
are held against the reaction forces: a copy of each deck prints them on all nodes that are held or
moved, and they must be in balance with the forces on all others. The solver prints what elements
do to a node, so that loads on what is held do not show."""

import argparse
import collections
import json
import math
import os
import re
import shutil
import subprocess
import sys
from pathlib import Path

# What a deck may have beside forces that loads it, or ties it to something that is not printed.
OTHERS = {
    "DLOAD": "element loads", "EQUATION": "equations", "MPC": "equations",
    "RIGIDBODY": "rigid bodies", "DISTRIBUTINGCOUPLING": "couplings", "COUPLING": "couplings",
    "TIE": "ties", "PRE-TENSIONSECTION": "pre-tension", "CYCLICSYMMETRYMODEL": "sectors",
    "SPRING": "springs", "BOUNDARYF": "face supports",
}
# What is not static, or not solved.
DYNAMIC = ("DYNAMIC", "MODALDYNAMIC", "STEADYSTATEDYNAMICS", "FREQUENCY", "BUCKLE", "NOANALYSIS",
           "COMPLEXFREQUENCY", "SENSITIVITY", "HEATTRANSFER", "GREEN")
AXISYMMETRIC = ("CAX",)
ROTATING = ("B3", "S3", "S4", "S6", "S8", "T2", "T3")
NONLINEAR = ("PLASTIC", "CREEP", "VISCO", "HYPERELASTIC", "HYPERFOAM", "CYCLICHARDENING",
             "DEFORMATIONPLASTICITY", "CONTACTPAIR", "GAP", "USERMATERIAL")
# The solver prints seven digits; where it iterates, it stops at half a percent.
AGREES = 1e-5
ITERATED = 5e-3
BLOCK = re.compile(r" forces \(fx,fy,fz\) for set ORVHELD(\d+) ")


def compact(line):
    return re.sub(r"\s", "", line).upper()


def keywords(lines):
    texts = map(compact, lines)
    return [text[1:].split(",")[0] for text in texts if text[:1] == "*" and text[:2] != "**"]


def printing_reactions(lines, steps):
    """The deck, with the reactions of each step on what is held or moved."""
    result, step, ended = [], 0, 0
    for line in lines:
        if compact(line).startswith("*STEP"):
            step += 1
        if compact(line).startswith("*ENDSTEP") and steps[step - 1]["held"]:
            ended += 1
            result.append(f"*NSET,NSET=ORVHELD{step}\n")
            result += [f"{node},\n" for node, _ in steps[step - 1]["held"]]
            result.append(f"*NODE PRINT,NSET=ORVHELD{step},GLOBAL=YES\nRF\n")
        result.append(line)
    return result if step == len(steps) else None


def solve(name, lines, work):
    """What the solver printed; nothing, if it did not solve the deck."""
    folder = work / "run"
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    (folder / f"{name}.inp").write_text("".join(lines), encoding="latin-1")
    environment = dict(os.environ, OMP_NUM_THREADS="1")
    try:
        done = subprocess.run(["ccx", name], cwd=folder, env=environment, timeout=600,
                              capture_output=True)
    except subprocess.TimeoutExpired:
        return None
    if done.returncode != 0 or b"*ERROR" in done.stdout:
        return None
    results = folder / f"{name}.dat"
    return results.read_text(encoding="latin-1").splitlines() if results.exists() else []


def reactions(printed):
    """step -> node -> force, at the end of the step."""
    steps, rows = {}, None
    for line in printed:
        match = BLOCK.match(line)
        if match:
            # A set that is printed in later steps too counts in its own only.
            step = int(match[1])
            rows = {} if not steps or step >= max(steps) else None
            if rows is not None:
                steps[step] = rows
        elif rows is not None and line.strip():
            fields = line.split()
            try:
                rows[int(fields[0])] = [float(field) for field in fields[1:4]]
            except ValueError:
                rows = None
    return steps


def cross(a, b):
    return [a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]]


def imbalance(step, rows):
    """What is left of forces and of moments, by their sizes."""
    force, moment = list(step["force"]), list(step["moment"])
    force_size, moment_size = step["force_size"], step["moment_size"]
    for node, place in step["held"]:
        reaction = rows.get(node, [0, 0, 0])
        turning = cross(place, reaction)
        for axis in range(3):
            force[axis] += reaction[axis]
            moment[axis] += turning[axis]
        moment_size += sum(map(abs, turning))
    return math.hypot(*force) / force_size, math.hypot(*moment) / (moment_size or 1)


class Meaning:
    """What of a deck's text tells how its reactions are to be read."""

    def __init__(self, lines):
        texts = [compact(line) for line in lines]
        self.words = keywords(lines)
        self.types = [text.split("TYPE=")[1].split(",")[0] for text in texts
                      if text.startswith("*ELEMENT,") and "TYPE=" in text]
        self.is_static = "STATIC" in self.words and not any(
            word.startswith(DYNAMIC) for word in self.words)
        self.is_iterated = any("NLGEOM" in text or "ITERATIVE" in text for text in texts) or any(
            word.startswith(NONLINEAR) for word in self.words)
        # Moments of beams and shells act on their rotations too, and large displacements move forces.
        self.has_moments = not self.is_iterated and all(
            kind.startswith("C3D") for kind in self.types)
        self.others = {OTHERS[word] for word in self.words if word in OTHERS}
        if any(kind.startswith(AXISYMMETRIC) for kind in self.types):
            self.others.add("axisymmetric elements")
        if any(kind.startswith(ROTATING) for kind in self.types):
            self.others.add("beams or shells")
        if any(text.startswith("*BOUNDARY") and "FIXED" in text for text in texts):
            self.others.add("supports that stay in the deck")


class Verdicts:
    def __init__(self):
        self.counts = collections.Counter()
        self.decks = collections.defaultdict(set)
        self.largest = collections.defaultdict(float)

    def tell(self, deck, number, verdict, value, why=""):
        print(f"{deck:18} step {number}  {verdict:26} {value:.1e}  {why}".rstrip(), flush=True)
        self.counts[verdict] += 1
        self.decks[verdict].add(deck)
        self.largest[verdict] = max(self.largest[verdict], value)


def verdict_of(difference, is_iterated, reasons):
    if difference <= AGREES:
        return "agree"
    if difference <= ITERATED and is_iterated:
        return "agree as iterated"
    return "other loads" if reasons else "differ"


def hold_against_reactions(options, name, steps, verdicts):
    with open(options.decks / f"{name}.inp", encoding="latin-1", newline="\n") as file:
        lines = file.readlines()
    meaning = Meaning(lines)
    copy = printing_reactions(lines, steps) if meaning.is_static else None
    printed = solve(name, copy, options.work) if copy else None
    if printed is None:
        return
    printed = reactions(printed)
    for number, step in enumerate(steps, 1):
        if step["force_size"] == 0 or number not in printed:
            continue
        reasons = meaning.others | ({"amplitudes"} if step["has_amplitude"] else set())
        force, moment = imbalance(step, printed[number])
        verdict = verdict_of(force, meaning.is_iterated, reasons)
        why = "has " + ", ".join(sorted(reasons)) if verdict == "other loads" else ""
        verdicts.tell(name, number, "forces: " + verdict, force, why)
        if verdict == "agree" and meaning.has_moments:
            verdict = verdict_of(moment, False, reasons)
            verdicts.tell(name, number, "moments: " + verdict, moment)


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--program", required=True, help="check_decks")
    parser.add_argument("--decks", required=True, type=Path, help="the folder of the decks")
    parser.add_argument("--work", required=True, type=Path, help="a folder for results")
    parser.add_argument("names", nargs="*", metavar="DECK")
    options = parser.parse_args()
    names = options.names or sorted(path.stem for path in options.decks.glob("*.inp"))
    done = subprocess.run([options.program, str(options.decks)], text=True, check=True,
                          input="".join(name + "\n" for name in names), stdout=subprocess.PIPE)
    verdicts, alarms, codes = Verdicts(), 0, collections.Counter()
    for line in done.stdout.splitlines():
        deck = json.loads(line)
        name = deck["deck"]
        findings = deck.get("answer", {}).get("findings", [])
        codes.update({(finding["severity"], finding["code"]) for finding in findings})
        if any(finding["severity"] == "error" for finding in findings):
            with open(options.decks / f"{name}.inp", encoding="latin-1", newline="\n") as file:
                if solve(name, file.readlines(), options.work) is not None:
                    alarms += 1
                    print(f"{name}: has an error by the checks, and is solved")
        if any(step["force_size"] > 0 for step in deck.get("steps", [])):
            hold_against_reactions(options, name, deck["steps"], verdicts)
    print(f"\n{len(names)} decks")
    for (severity, code), count in sorted(codes.items()):
        print(f"{count:4} decks with the {severity} {code}")
    print(f"{alarms:4} decks with an error that the solver solves\n")
    for verdict, count in sorted(verdicts.counts.items()):
        print(f"{verdict:26} {count:3} steps of {len(verdicts.decks[verdict]):3} decks, "
              f"to {verdicts.largest[verdict]:.1e}")
    return 1 if alarms or any(verdict.endswith(" differ") for verdict in verdicts.counts) else 0


sys.exit(main())
