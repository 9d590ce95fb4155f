#!/usr/bin/env python3
"""Puts small faults into a copy of the product, one at a time, and tells which no test notices.

    mutate.py CHECKOUT COPY [REGEX]      REGEX chooses faults by their file or text

The faults stand in faults.txt beside this program: blocks of lines, a blank line between them.

    file: com/boundary.h                 where
    text: return E_UNEXPECTED;           what stands there, exactly once
    fault: return S_OK;                  what is put in its place
    tests: com_test                      the tests that concern it, as a regular expression of ctest
    first: UndoTest.*                    cases likely to notice it, which save the time of all others
    harmless: reason                     only where no test can or need notice it
    endless: reason                      only where what is to end no longer does

A fault is caught when a test fails; when a test only comes to its time limit, no more than if the
fault is endless. The copy is built once and then piece by piece, and of it only what the tests of a
fault need. The program ends with 1 when a fault survives without a reason, is caught in spite of one,
does not build, or is no longer found.
"""
import collections
import fcntl
import os
import re
import shutil
import subprocess
import sys

FIELDS = ('file', 'text', 'fault', 'tests', 'first', 'harmless', 'endless')


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


Failure = collections.namedtuple('Failure', 'test way')


class Copy:
    def __init__(self, path):
        self.path = path
        self.registry_is_touched = False
        configured = self.run('cmake', '--preset', 'x64')
        if configured.returncode != 0:
            sys.exit('mutate: the copy cannot be configured\n' + configured.stdout[-2000:])

    def run(self, *command, cases='*'):
        return subprocess.run(command, cwd=self.path, text=True, errors='replace',
                              env=dict(os.environ, GTEST_FAIL_FAST='1', GTEST_FILTER=cases),
                              stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT)

    def test_names(self, tests):
        listed = self.run('ctest', '--preset', 'x64', '-N', '-R', f'^({tests})$').stdout
        return [name for name in re.findall(r'Test +#\d+: (\S+)', listed)
                if not name.startswith('register.')]

    def build(self, names):
        """What these tests need, and nothing else."""
        return self.run('cmake', '--build', '--preset', 'x64', '--target', *names)

    def first_failure(self, names, registers=True, cases='*'):
        """The first test that fails, with the way in which it does. Registering the modules takes
        longer than most tests, and is left out where it would write what it wrote before."""
        chosen = '^(' + '|'.join(re.escape(name) for name in names) + ')$'
        without = [] if registers else ['--fixture-exclude-setup', '.']
        tried = self.run('ctest', '--preset', 'x64', '--stop-on-failure', '-R', chosen, *without,
                         cases=cases)
        if tried.returncode == 0:
            return None
        failed = [(name, way) for name, way
                  in re.findall(r'^\s+\d+ - (\S+) \((.+)\)', tried.stdout, re.M)
                  if way != 'Not Run']
        if not failed:
            return Failure('ctest', 'Not Run')
        # Of a program that ends within a case, that case.
        case = re.search(r'\[  FAILED  \] ([^\s,]+)', tried.stdout) or re.search(
            r'\[ RUN      \] (\S+)(?!.*\[ RUN      \])', tried.stdout, re.S)
        return Failure(failed[0][0] + (f', {case[1]}' if case else ''), failed[0][1])


def outcome_of(fault, copy):
    """What becomes of a fault, in one word, and what is to be said of it."""
    path = os.path.join(copy.path, fault['file'])
    if not os.path.exists(path):
        return 'lost', 'there is no such file'
    with open(path, encoding='utf-8', newline='') as file:
        content = file.read()
    if content.count(fault['text']) != 1:
        return 'lost', f"its text is there {content.count(fault['text'])} times"
    names = copy.test_names(fault['tests'])
    if not names:
        return 'lost', 'no test has such a name'
    try:
        with open(path, 'w', encoding='utf-8', newline='') as file:
            file.write(content.replace(fault['text'], fault['fault']))
        built = copy.build(names)
        if built.returncode != 0:
            return 'does not build', built.stdout.strip()[-600:]
        touches_registry = fault['file'].endswith(('.idl', '.in'))
        registers = touches_registry or copy.registry_is_touched
        copy.registry_is_touched = touches_registry
        failure = None
        if 'first' in fault:
            failure = copy.first_failure(names, registers, fault['first'])
            registers = False
        return judge(fault, failure or copy.first_failure(names, registers))
    finally:
        with open(path, 'w', encoding='utf-8', newline='') as file:
            file.write(content)


def judge(fault, failure):
    if not failure:
        return 'survived', fault.get('harmless', '')
    said = f'{failure.test} ({failure.way})'
    if failure.way == 'Timeout' and 'endless' in fault:
        return 'caught', f"{said}: {fault['endless']}"
    return 'not judged' if failure.way in ('Timeout', 'Not Run') else 'caught', said


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
    names = sorted({name for tests in {fault['tests'] for fault in faults}
                    for name in copy.test_names(tests)})
    print(f'{len(faults)} faults, {len(names)} tests. Building and testing without a fault.', flush=True)
    built = copy.build(names)
    if built.returncode != 0:
        sys.exit('mutate: the product does not build as it is\n' + built.stdout[-2000:])
    failure = copy.first_failure(names)
    if failure:
        sys.exit(f'mutate: {failure.test} fails as it is ({failure.way}); ./dev test shows it')

    counts, wrong = {}, 0
    for number, fault in enumerate(faults, 1):
        outcome, words = outcome_of(fault, copy)
        counts[outcome] = counts.get(outcome, 0) + 1
        as_expected = outcome == ('survived' if 'harmless' in fault else 'caught')
        wrong += not as_expected
        print(f"{number:3} {outcome:9} {fault['file']}: {fault['text']} -> {fault['fault']}", flush=True)
        if words:
            print(f'              {words}', flush=True)
        if outcome == 'caught' and 'harmless' in fault:
            print('              though it was said to be harmless', flush=True)
    print(', '.join(f'{count} {outcome}' for outcome, count in sorted(counts.items())))
    sys.exit(1 if wrong else 0)


if __name__ == '__main__':
    main()
