#!/usr/bin/env python3
"""Reading decks, alone and into a model, beside the solver's own reading.

    decks.py FOLDER ROUNDS WINE...

FOLDER takes the decks, WINE are the words that run a Windows program. Times are processor seconds,
which other programs on the machine disturb least, without those of starting the program and of
making an empty model; medians over the rounds. What the kernel takes of them, for files and for the
first touch of fresh memory, stands apart. The solver reads and checks the deck, and ends at *NO
ANALYSIS."""

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
    """Processor seconds so far, those of the kernel, and memory in MiB at most."""
    fields = (process / "stat").read_text().rpartition(")")[2].split()
    peak = re.search(r"VmHWM:\s*(\d+)", (process / "status").read_text())
    own, kernel = (int(field) / os.sysconf("SC_CLK_TCK") for field in fields[11:13])
    return own + kernel, kernel, int(peak[1]) / 1024 if peak else 0


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
    seen = (0, 0, 0)
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
        solver.append(run(["ccx", str(SIZES[-1])], folder, 201))
        for nodes in SIZES:
            # As much work at each size, lest starting the program count for more at some.
            turns = SIZES[-1] // nodes
            without = {"read": (10 * turns, windows(nodes, 0, "read")),
                       "copy": (turns, windows(nodes, turns, "make"))}
            for what, (times, (start, start_of_kernel, _)) in without.items():
                seconds, of_kernel, memory = windows(nodes, times, what)
                measured.setdefault((nodes, what), []).append(
                    ((seconds - start) / times, (of_kernel - start_of_kernel) / times, memory))
    seconds, of_kernel, memory = median(solver)
    print(f"  {'':36} {'seconds':>8} {'kernel':>8} {'MiB':>6}")
    print(f"  {'the solver reads':36} {seconds:8.2f} {of_kernel:8.2f} {memory:6.0f}")
    own = {key: median(each) for key, each in measured.items()}
    for nodes in SIZES:
        for what, words in (("read", "the reader alone"), ("copy", "reader and model")):
            seconds_of_own, of_kernel, memory = own[nodes, what]
            print(f"  {words + f', {nodes:,} nodes':36} {seconds_of_own:8.3f} {of_kernel:8.3f} "
                  f"{memory:6.0f}   {seconds_of_own / nodes * 1e6:6.2f} us a node")
    print(f"  reader / solver {own[SIZES[-1], 'read'][0] / seconds:.2f}")
    for what, words in (("read", "reader"), ("copy", "reader and model")):
        each = [(own[nodes, what][0] - own[nodes, what][1]) / nodes for nodes in SIZES]
        print(f"  {words}: time per node without the kernel's, at {SIZES[-1]:,} / at {SIZES[0]:,}: "
              f"{each[-1] / each[0]:.2f}, at {SIZES[1]:,}: {each[1] / each[0]:.2f}")


main()
