#!/usr/bin/env python3
"""Proves on a solver's own example decks that records carry what the decks say.

Every deck goes into records and out again, and both decks are solved: results, exit status and
first error must agree. --scale multiplies all forces and moments, and holds the deck against one
that was scaled in its text. --empty deletes all records, and holds it against the deck without the
cards. Where the texts say the same, the solver runs only with --solve; where they are the same byte
for byte, once for both. What it said of a text is kept in the folder of results."""

import argparse
import hashlib
import os
import re
import resource
import shlex
import shutil
import signal
import subprocess
import sys
from pathlib import Path

# What one deck needs of another.
NEEDS = {"submodeltwobeam": ["twobeam.frd"], "included": ["included_Rows.inc"]}
# Lines of results that tell when and by what they were made.
VOLATILE = re.compile(rb"1UDATE|1UTIME|1UPGM|1UVERSION|1UHOST|1UUSER")
# Six times what the slowest of the real decks takes.
PROCESSOR_SECONDS = 300
UNSOLVED = f"not solved in {PROCESSOR_SECONDS} seconds of the processor\n"
CARRIED = ("CLOAD", "BOUNDARY", "TEMPERATURE", "INITIALCONDITIONS", "CFLUX")


def compact(line):
    return re.sub(r"\s", "", line).upper()


def cards(lines):
    """Yields (keyword, parameters, first line, data lines); line numbers from 1."""
    card = None
    for number, line in enumerate(lines, 1):
        text = compact(line)
        if text.startswith("*") and not text.startswith("**"):
            if card:
                yield card
            keyword, *parameters = text[1:].split(",")
            card = (keyword, parameters, number, [])
        elif text and not text.startswith("**") and card:
            card[3].append(number)
    if card:
        yield card


def carried_cards(lines, stays):
    for keyword, parameters, first, data in cards(lines):
        is_carried = keyword.startswith(CARRIED) and not keyword.startswith("BOUNDARYF")
        if is_carried and not stays.intersection([first, *data]):
            yield keyword, parameters, first, data


def expected(lines, stays, options):
    """The deck as a person would change it, in its text."""
    result = list(lines)
    for keyword, parameters, first, data in carried_cards(lines, stays):
        if options.empty and data:
            if "OP=NEW" not in parameters:
                result[first - 1] = ""
            for line in data:
                result[line - 1] = ""
        elif keyword.startswith("CLOAD") and options.scale != 1:
            for line in data:
                fields = lines[line - 1].split(",")
                value = number(fields[2]) * options.scale
                result[line - 1] = f"{fields[0]},{fields[1]},{value!r}\n"
    return result


def number(text):
    """Also 1.5D3, and 1.5+3 without a letter."""
    plain = re.sub(r"(?<=[\d.])(?=[+-])", "E", compact(text).replace("D", "E"))
    return float(plain or "0")


def meaning(lines):
    """Two decks with the same meaning are the same to the solver."""
    def field(text):
        try:
            return repr(float(text))
        except ValueError:
            return text
    return [",".join(map(field, compact(line).split(","))) for line in lines if compact(line)]


def limit_processor_time():
    """A limit of time would count what other programs do meanwhile."""
    resource.setrlimit(resource.RLIMIT_CPU, (PROCESSOR_SECONDS, PROCESSOR_SECONDS + 10))


class Solver:
    """Runs ccx in a folder of its own, and keeps what it said of a deck."""

    def __init__(self, decks, folder):
        self.decks, self.folder = decks, folder
        self.environment = dict(os.environ, OMP_NUM_THREADS="1")

    def solve(self, name, lines):
        text = "".join(lines).encode("latin-1")
        kept = self.folder / "kept" / f"{name}-{hashlib.sha256(text).hexdigest()[:16]}"
        if not kept.exists():
            kept.parent.mkdir(parents=True, exist_ok=True)
            partial = kept.with_suffix(".partial")
            partial.write_text(self.run(name, text))
            partial.rename(kept)
        return kept.read_text()

    def run(self, name, text):
        work = self.folder / "run"
        shutil.rmtree(work, ignore_errors=True)
        work.mkdir(parents=True)
        (work / f"{name}.inp").write_bytes(text)
        for needed in NEEDS.get(name, []):
            shutil.copy(self.decks / needed, work)
        done = subprocess.run(["ccx", name], cwd=work, env=self.environment, capture_output=True,
                              preexec_fn=limit_processor_time)
        if done.returncode == -signal.SIGXCPU:
            return UNSOLVED
        said = done.stdout.decode("latin-1").splitlines()
        error = next((i for i, line in enumerate(said) if "*ERROR" in line), len(said))
        answer = [f"status {done.returncode}", *said[error:error + 2]]
        for ending in ("dat", "frd"):
            file = work / f"{name}.{ending}"
            if file.exists():
                rows = [row for row in file.read_bytes().split(b"\n") if not VOLATILE.search(row)]
                digest = hashlib.sha256(b"\n".join(rows)).hexdigest()
                answer.append(f"{ending} {digest}")
        return "\n".join(answer) + "\n"


def bring(names, options, out):
    """Runs the decks through the records; what was said of each deck."""
    command = [*shlex.split(options.chain), str(options.decks), str(out)]
    command += ["--scale", repr(options.scale)] if options.scale != 1 else []
    command += ["--empty"] if options.empty else []
    command += ["--rows"] if options.scale == 1 and not options.empty else []
    done = subprocess.run(command, input="".join(f"{name}.inp\n" for name in names), text=True,
                          stdout=subprocess.PIPE, check=True)
    said = {name: [] for name in names}
    for line in done.stdout.splitlines():
        name, what = line.split(".inp: ", 1)
        said[name].append(what.strip())
    return said


def read(path):
    with open(path, encoding="latin-1", newline="\n") as file:
        return file.readlines()


def judge(name, said, options, out, solver):
    error = next((what for what in said if what.startswith("error")), None)
    if error or not said:
        return error or "crash"
    lines = read(options.decks / f"{name}.inp")
    stays = {int(what.split()[1]) for what in said if what.startswith("stays")}
    if not any(True for _ in carried_cards(lines, stays)):
        return "not applicable"
    wanted = expected(lines, stays, options)
    written = read(out / f"{name}.inp")
    if not options.solve and meaning(wanted) == meaning(written):
        return "identical"
    of_wanted, of_written = solver.solve(name, wanted), solver.solve(name, written)
    if of_wanted == of_written == UNSOLVED:
        return "not solved"
    return "identical" if of_wanted == of_written else "differs"


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--chain", required=True, help="the command that brings decks through, as a shell has it")
    parser.add_argument("--decks", required=True, type=Path, help="the folder of the decks")
    parser.add_argument("--work", required=True, type=Path, help="a folder for results")
    parser.add_argument("--scale", type=float, default=1)
    parser.add_argument("--empty", action="store_true")
    parser.add_argument("--solve", action="store_true",
                        help="solve both decks even where their texts say the same")
    parser.add_argument("names", nargs="*", metavar="DECK")
    options = parser.parse_args()
    if not options.decks.is_dir():
        sys.exit(f"There is no folder {options.decks}; ./dev decks fetches the decks.")
    names = [Path(name).stem for name in options.names]
    names = names or sorted(path.stem for path in options.decks.glob("*.inp"))
    out = options.work / "out"
    shutil.rmtree(out, ignore_errors=True)
    out.mkdir(parents=True)
    said = bring(names, options, out)
    solver = Solver(options.decks, options.work)
    counts = {}
    for name in names:
        verdict = judge(name, said[name], options, out, solver)
        records = next((what.split()[1] for what in said[name] if what.startswith("records")), "")
        print(f"{name:20} {records:>7} records  {verdict}", flush=True)
        verdict = verdict.split()[0] if verdict.startswith("error") else verdict
        counts[verdict] = counts.get(verdict, 0) + 1
    print(", ".join(f"{count} {verdict}" for verdict, count in sorted(counts.items())))
    return 0 if set(counts) <= {"identical", "not applicable"} else 1


sys.exit(main())
