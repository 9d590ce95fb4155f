#!/usr/bin/env python3
"""Puts small faults into a copy of the product, one at a time, and tells which no test notices.

    mutate.py CHECKOUT COPY [REGEX]      REGEX chooses faults by their file or text

The faults stand in faults.txt beside this program: blocks of lines, a blank line between them.

    file: com/boundary.h                 where
    text: return E_UNEXPECTED;           what stands there, exactly once
    fault: return S_OK;                  what is put in its place
    tests: com_test                      the tests that concern it, as a regular expression of ctest
    harmless: reason                     only where no test can or need notice it

The copy is built once and then piece by piece. The program ends with 1 when a fault survives without
a reason, is caught in spite of one, does not build, or is no longer found.
"""
import fcntl
import os
import re
import shutil
import subprocess
import sys

FIELDS = ('file', 'text', 'fault', 'tests', 'harmless')


def read_faults(path):
    faults = []
    with open(path, encoding='utf-8') as lines:
        blocks = re.split(r'\n\s*\n', lines.read())
    for block in blocks:
        pairs = [line.split(': ', 1) for line in block.splitlines() if not line.startswith('#')]
        fault = {pair[0].rstrip(':'): pair[1] if len(pair) > 1 else '' for pair in pairs}
        if not fault:
            continue
        if set(fault) - set(FIELDS) or not {'file', 'text', 'fault', 'tests'} <= set(fault):
            sys.exit(f'mutate: not a fault:\n{block}')
        faults.append(fault)
    return faults


def copy_checkout(checkout, copy):
    """Brings the copy up to date; what is the same keeps its time, so that it is not built again."""
    listed = subprocess.check_output(
        ['git', '-C', checkout, 'ls-files', '--cached', '--others', '--exclude-standard', '-z'])
    names = [os.fsdecode(name) for name in listed.split(b'\0') if name]
    names = [name for name in names if os.path.isfile(os.path.join(checkout, name))]
    for name in names:
        source, target = os.path.join(checkout, name), os.path.join(copy, name)
        os.makedirs(os.path.dirname(target), exist_ok=True)
        with open(source, 'rb') as file:
            content = file.read()
        if os.path.exists(target):
            with open(target, 'rb') as file:
                if file.read() == content:
                    continue
        shutil.copy(source, target)
    for folder, folders, files in os.walk(copy):
        inside = os.path.relpath(folder, copy)
        if inside == '.':
            folders[:] = [each for each in folders if each not in ('build', 'out')]
        for file in files:
            if os.path.normpath(os.path.join(inside, file)) not in names:
                os.remove(os.path.join(folder, file))
    fetched = os.path.join(checkout, 'build', 'sqlite')
    if os.path.isdir(fetched):
        shutil.copytree(fetched, os.path.join(copy, 'build', 'sqlite'), dirs_exist_ok=True)


class Copy:
    def __init__(self, path):
        self.path = path
        if not os.path.exists(f'{path}/build/x64/build.ninja'):
            self.run('cmake', '--preset', 'x64').check_returncode()
        targets = self.run('ninja', '-C', 'build/x64', '-t', 'targets', 'all').stdout
        self.targets = set(re.findall(r'^(\w+): phony$', targets, re.M))

    def run(self, *command):
        return subprocess.run(command, cwd=self.path, text=True, errors='replace',
                              stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT)

    def test_names(self, tests):
        listed = self.run('ctest', '--preset', 'x64', '-N', '-R', tests).stdout
        return [name for name in re.findall(r'Test +#\d+: (\S+)', listed)
                if not name.startswith('register.')]

    def build(self, names):
        """The modules, and those of the tests that are programs."""
        return self.run('cmake', '--build', '--preset', 'x64', '--target', 'modules',
                        *[name for name in names if name in self.targets])

    def passes(self, tests):
        return self.run('ctest', '--preset', 'x64', '--stop-on-failure', '-R', tests).returncode == 0


def outcome_of(fault, copy, checkout):
    """What becomes of a fault, in one word, and what is to be said of it."""
    path = os.path.join(copy.path, fault['file'])
    if not os.path.exists(path):
        return 'lost', 'there is no such file'
    with open(path, encoding='utf-8', newline='') as file:
        content = file.read()
    if content.count(fault['text']) != 1:
        return 'lost', f"its text is there {content.count(fault['text'])} times"
    names = copy.test_names(f"^({fault['tests']})$")
    if not names:
        return 'lost', 'no test has such a name'
    try:
        with open(path, 'w', encoding='utf-8', newline='') as file:
            file.write(content.replace(fault['text'], fault['fault']))
        built = copy.build(names)
        if built.returncode != 0:
            return 'does not build', built.stdout.strip()[-600:]
        if not copy.passes(f"^({fault['tests']})$"):
            return 'caught', ''
        return 'survived', fault.get('harmless', '')
    finally:
        with open(path, 'w', encoding='utf-8', newline='') as file:
            file.write(content)


def main():
    checkout, target = sys.argv[1:3]
    chosen = re.compile(sys.argv[3] if len(sys.argv) > 3 else '')
    faults = [fault for fault in read_faults(os.path.join(os.path.dirname(__file__), 'faults.txt'))
              if chosen.search(fault['file'] + ' ' + fault['text'])]
    if not faults:
        sys.exit('mutate: no fault is chosen')
    os.makedirs(target, exist_ok=True)
    lock = open(target.rstrip('/') + '.lock', 'w')
    try:
        fcntl.flock(lock, fcntl.LOCK_EX | fcntl.LOCK_NB)
    except BlockingIOError:
        sys.exit('mutate: another run is at work in this copy; wait for it, or end it')
    copy_checkout(checkout, target)
    copy = Copy(target)
    names = sorted({name for fault in faults
                    for name in copy.test_names(f"^({fault['tests']})$")})
    print(f'{len(faults)} faults, {len(names)} tests. Building and testing without a fault.', flush=True)
    built = copy.build(names)
    if built.returncode != 0:
        sys.exit('mutate: the product does not build as it is\n' + built.stdout[-2000:])
    if not copy.passes('^(' + '|'.join(re.escape(name) for name in names) + ')$'):
        sys.exit('mutate: the tests fail as it is; ./dev test shows them')

    counts, wrong = {}, 0
    for number, fault in enumerate(faults, 1):
        outcome, words = outcome_of(fault, copy, checkout)
        counts[outcome] = counts.get(outcome, 0) + 1
        as_expected = outcome == ('survived' if 'harmless' in fault else 'caught')
        wrong += not as_expected
        print(f"{number:3} {outcome:9} {fault['file']}: {fault['text']} -> {fault['fault']}", flush=True)
        if words:
            print(f'              {words}', flush=True)
        elif not as_expected and 'harmless' in fault:
            print('              though it was said to be harmless', flush=True)
    print(', '.join(f'{count} {outcome}' for outcome, count in sorted(counts.items())))
    sys.exit(1 if wrong else 0)


if __name__ == '__main__':
    main()
