#!/usr/bin/env python3
"""Reading decks, alone and into a model, beside the solver's own reading.

    decks.py FOLDER ROUNDS WINE...

FOLDER takes the decks, WINE are the words that run a Windows program. Times are processor seconds,
which other programs on the machine disturb least, without those of starting the program; medians
over the rounds. The solver reads and checks the deck, and ends at *NO ANALYSIS."""

import os
import re
import statistics
import subprocess
import sys
import time
from pathlib import Path

SIZES = (10_000, 100_000, 1_000_000)
CORNERS = ((0, 0, 0), (1, 0, 0), (1, 1, 0), (0, 1, 0), (0, 0, 1), (1, 0, 1), (1, 1, 1), (0, 1, 1))


def generate(path, nodes):
    """One element, many nodes, and a load on every tenth."""
    with open(path, "w", encoding="ascii") as file:
        file.write("*NODE,NSET=ALL\n")
        for node, (x, y, z) in enumerate(CORNERS, 1):
            file.write(f"{node},{x}.,{y}.,{z}.\n")
        for node in range(len(CORNERS) + 1, nodes + 1):
            file.write(f"{node},{node * 0.001:.3f},{node % 97}.5,1.25\n")
        file.write("*ELEMENT,TYPE=C3D8,ELSET=EALL\n1,1,2,3,4,5,6,7,8\n*MATERIAL,NAME=STEEL\n"
                   "*ELASTIC\n210000.,.3\n*SOLID SECTION,ELSET=EALL,MATERIAL=STEEL\n"
                   "*STEP\n*STATIC\n*NO ANALYSIS\n*CLOAD\n")
        for node in range(10, nodes + 1, 10):
            file.write(f"{node},{node // 10 % 3 + 1},{node * 0.25}\n")
        file.write("*END STEP\n")


def consumed(process):
    """Processor seconds so far, and memory in MiB at most."""
    fields = (process / "stat").read_text().rpartition(")")[2].split()
    peak = re.search(r"VmHWM:\s*(\d+)", (process / "status").read_text())
    ticks = int(fields[11]) + int(fields[12])
    return ticks / os.sysconf("SC_CLK_TCK"), int(peak[1]) / 1024 if peak else 0


def find(mark):
    """The Windows program with that word on its command line; Wine makes it no child of ours."""
    for process in Path("/proc").glob("[0-9]*"):
        try:
            command = (process / "cmdline").read_bytes()
        except OSError:
            continue
        if mark.encode() in command and b"cscript.exe" in command:
            return process
    return None


def run(words, folder, expected, mark=None):
    """What the program consumed, as it was seen last: deck.js rests before it ends."""
    child = subprocess.Popen(words, cwd=folder, stdin=subprocess.DEVNULL,
                             stdout=subprocess.DEVNULL, env=dict(os.environ, OMP_NUM_THREADS="1"))
    process = None if mark else Path(f"/proc/{child.pid}")
    seen = (0, 0)
    while child.poll() is None:
        process = process or find(mark)
        try:
            seen = tuple(map(max, seen, consumed(process))) if process else seen
        except OSError:
            pass
        time.sleep(0.02)
    if child.returncode != expected:
        sys.exit(f"{' '.join(words)} ended with {child.returncode}")
    return seen


def median(measurements):
    return [statistics.median(values) for values in zip(*measurements)]


def main():
    folder, rounds, wine = Path(sys.argv[1]).resolve(), int(sys.argv[2]), sys.argv[3:]
    folder.mkdir(parents=True, exist_ok=True)
    wine[0] = str(Path(wine[0]).resolve())
    script = Path(__file__).resolve().with_name("deck.js")

    def windows(nodes, times, what):
        return run([*wine, "cscript", "//nologo", f"Z:{script}", f"Z:{folder}/{nodes}.inp",
                    f"Z:{folder}/model.orvdb", str(times), what], folder, 0,
                   "model.orvdb")

    for nodes in SIZES:
        generate(folder / f"{nodes}.inp", nodes)
    size = (folder / f"{SIZES[-1]}.inp").stat().st_size / 1e6
    print(f"{SIZES[-1]:,} nodes, {SIZES[-1] // 10:,} loads, {size:.0f} MB; processor seconds and MiB")
    measured = {}
    solver = []
    for _ in range(rounds):
        start, _ = windows(SIZES[0], 0, "read")
        solver.append(run(["ccx", str(SIZES[-1])], folder, 201))
        for nodes in SIZES:
            # As much work at each size, lest starting the program count for more at some.
            times = SIZES[-1] // nodes
            for what in ("read", "copy"):
                seconds, memory = windows(nodes, times, what)
                measured.setdefault((nodes, what), []).append(
                    ((seconds - start) / times, memory))
    seconds, memory = median(solver)
    print(f"  {'the solver reads':36} {seconds:8.2f} {memory:8.0f}")
    for nodes in SIZES:
        for what, words in (("read", "the reader alone"), ("copy", "reader and model")):
            own, memory = median(measured[nodes, what])
            print(f"  {words + f', {nodes:,} nodes':36} {own:8.3f} {memory:8.0f}"
                  f"   {own / nodes * 1e6:6.2f} us a node")
    print(f"  reader / solver {median(measured[SIZES[-1], 'read'])[0] / seconds:.2f}")
    for what, words in (("read", "reader"), ("copy", "reader and model")):
        each = [median(measured[nodes, what])[0] / nodes for nodes in SIZES]
        print(f"  {words}: time per node at {SIZES[-1]:,} / at {SIZES[0]:,}: {each[-1] / each[0]:.2f}")


main()
