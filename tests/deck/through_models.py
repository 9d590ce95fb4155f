#!/usr/bin/env python3
"""Brings decks into models and out again by chain.js, which runs under Wine.

    through_models.py WINE... FROM TO [--rows] [--scale FACTOR] [--empty] < NAMES

WINE are the words that run a Windows program. FROM and TO are folders, and NAMES are names of
decks, one a line. --rows means nothing here: rows are written for records that changed. Prints what
prove.py expects of its chain: "NAME: records N", "NAME: stays LINE" for each line about which there
is a remark, and "NAME: error TEXT"."""

import subprocess
import sys
from pathlib import Path


def windows(path):
    return "Z:" + str(path.resolve()).replace("/", "\\")


words = sys.argv[1:]
options = next((i for i, word in enumerate(words) if word.startswith("--")), len(words))
*wine, source, target = words[:options]
change = [word.lstrip("-") for word in words[options:] if word != "--rows"]
names = Path(target) / "names"
names.write_text(sys.stdin.read(), newline="\r\n")
script = Path(__file__).with_name("chain.js")
sys.exit(subprocess.run([*wine, "cscript", "//nologo", windows(script), windows(Path(source)),
                         windows(Path(target)), windows(names), *change],
                        stdin=subprocess.DEVNULL).returncode)
