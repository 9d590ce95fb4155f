#!/usr/bin/env python3
"""What an import tells while it takes its time: on a terminal how long already, in a pipe nothing.

    progress.py DECK PROGRAM...      the words that run orv.exe

The model is one that another program writes, for which the import waits some seconds before it gives
up: so it takes long enough, however fast the machine is."""

import fcntl
import os
import pty
import re
import sqlite3
import struct
import subprocess
import sys
import tempfile
import termios

MODEL = "waits.orvdb"


def printed_on_terminal(words):
    child, terminal = pty.fork()
    if child == 0:
        os.environ["TERM"] = "xterm"
        os.execvp(words[0], words)
    fcntl.ioctl(terminal, termios.TIOCSWINSZ, struct.pack("4H", 24, 200, 0, 0))
    printed = b""
    try:
        while some := os.read(terminal, 4096):
            printed += some
    except OSError:  # how Linux tells that nobody has the other end any more
        pass
    os.waitpid(child, 0)
    text = printed.decode().replace("\x1b[1C", " ")  # one column further
    return re.sub(r"\x1b\[[0-9;?]*[A-Za-z]", "", text)


def expect(condition, what, text):
    if not condition:
        sys.exit(f"{what}: {text!r}")


deck, *program = sys.argv[1:]
folder = tempfile.TemporaryDirectory()
os.chdir(folder.name)
# An empty model.
subprocess.run([*program, "import", deck, MODEL], check=True, stdout=subprocess.DEVNULL)
subprocess.run([*program, "undo", MODEL], check=True, stdout=subprocess.DEVNULL)
writer = sqlite3.connect(MODEL, isolation_level=None)
writer.execute("BEGIN IMMEDIATE")
command = [*program, "import", deck, MODEL]

text = printed_on_terminal(command)
expect(f"Copying it to {MODEL} ... 1 s" in text, "The terminal sees no progress", text)
expect(re.search(r"\r +\rorv: The model database .* is in use", text),
       "The line of the progress stays", text)

piped = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True).stdout
expect(piped.startswith("orv: The model database"), "A pipe is told more than the failure", piped)
expect(piped.count("\n") == text.count("\n"), "A pipe is told another failure", piped)
