#!/usr/bin/env python3
# Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
"""Inserts one fault at a time into the sources, builds and runs the tests, and prints the faults that no test detects.

Works on copies in build/mutate, one for each worker. Debian 12 has no package for this; it does not contain mull.
"""

import argparse
import filecmp
import hashlib
import json
import os
import random
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import threading
import time
from collections import Counter
from pathlib import Path

from faults import faults_of

ROOT = Path(__file__).resolve().parents[2]
FOLDERS = ['src', 'include', 'platform', 'service', 'formats', 'tools']
# The test programs of a folder. The one that most likely detects a fault comes first. Other folders use those of src.
PROGRAMS = {
    'src': ['unit_tests', 'tool_tests', 'road_tests', 'browser_tests'],
    'platform': ['platform_tests', 'unit_tests', 'road_tests'],
    'service': ['service_tests', 'road_tests', 'tool_tests'],
    'formats': ['tool_tests', 'road_tests'],
    'tools': ['tool_tests', 'browser_tests'],
}
QUICK_SUITE = 8  # seconds
FLAGS = '-O0 -g0'
LINKER = '-fuse-ld=lld' if shutil.which('ld.lld') else ''


def programs_of(group):
    return PROGRAMS.get(group.split('/')[0], PROGRAMS['src'])


class Worker:
    """A copy of the sources with its own build folder. It runs one command at a time."""

    def __init__(self, number):
        self.tree = ROOT / 'build/mutate' / str(number) / 'tree'
        self.build_folder = ROOT / 'build/mutate' / str(number) / 'build'
        self.scratch = Path(tempfile.mkdtemp(prefix='mutate'))
        self.process = None
        self.hashes = {}
        self.copy_sources()

    def copy_sources(self):
        listed = subprocess.check_output(['git', 'ls-files', '-co', '--exclude-standard'], cwd=ROOT, text=True)
        wanted = {name for name in listed.splitlines() if (ROOT / name).is_file()}
        for old in self.tree.rglob('*'):
            if old.is_file() and str(old.relative_to(self.tree)) not in wanted:
                old.unlink()
        for name in wanted:
            copy = self.tree / name
            if not copy.exists() or not filecmp.cmp(ROOT / name, copy, shallow=False):
                copy.parent.mkdir(parents=True, exist_ok=True)
                shutil.copyfile(ROOT / name, copy)
                shutil.copymode(ROOT / name, copy)

    def run(self, command, timeout, env=None):
        """Runs a command and ends all its processes. Returns its exit status; None after a timeout."""
        with open(self.scratch / 'log', 'w') as log:
            self.process = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=log, stderr=log, env=env,
                                            start_new_session=True)
        try:
            return self.process.wait(timeout)
        except subprocess.TimeoutExpired:
            return None
        finally:
            self.kill()

    def kill(self):
        """Kills the command with its process group, and every program of this build that left the group."""
        process = self.process
        if not process:
            return
        try:
            os.killpg(process.pid, signal.SIGKILL)
        except ProcessLookupError:
            pass
        process.wait()
        for entry in Path('/proc').glob('[0-9]*'):
            try:
                if os.readlink(entry / 'exe').startswith(str(self.build_folder)):
                    os.kill(int(entry.name), signal.SIGKILL)
            except OSError:
                pass

    def build(self, targets):
        """Builds programs. Returns None when they do not build, or the objects that were built."""
        start = time.time()
        if not (self.build_folder / 'build.ninja').exists():
            configure = ['cmake', '-G', 'Ninja', '-S', self.tree, '-B', self.build_folder, '-DCMAKE_BUILD_TYPE=Debug',
                         f'-DCMAKE_CXX_FLAGS_DEBUG={FLAGS}', f'-DCMAKE_C_FLAGS_DEBUG={FLAGS}',
                         f'-DCMAKE_EXE_LINKER_FLAGS={LINKER}', f'-DCMAKE_SHARED_LINKER_FLAGS={LINKER}']
            if self.run(configure, 300) != 0:
                return None
        if self.run(['ninja', '-C', self.build_folder, *targets], 3600) != 0:
            return None
        return {path: hashlib.sha1(path.read_bytes()).digest() for path in self.build_folder.rglob('*.o')
                if path.stat().st_mtime >= start}

    def test(self, program, suites, timeout, report=''):
        """Runs suites of a test program. True when they pass in time."""
        place = self.scratch / 'home'
        place.mkdir()
        env = dict(os.environ, HOME=str(place), TMPDIR=str(place), VELA_CHANNEL_DIR=str(place / 'channel'),
                   XDG_RUNTIME_DIR=str(place), XDG_DATA_HOME=str(place), QT_QPA_PLATFORM='offscreen')
        command = [self.build_folder / 'bin' / program, '--gtest_fail_fast',
                   '--gtest_filter=' + ':'.join(suite + '.*' for suite in suites)]
        try:
            return self.run(command + ([f'--gtest_output=json:{report}'] if report else []), timeout, env) == 0
        finally:
            shutil.rmtree(place, ignore_errors=True)

    def measure(self, program):
        """Runs a whole test program, once more if it fails. Returns the seconds of each suite."""
        report = self.scratch / 'times.json'
        if not self.test(program, ['*'], 1200, report) and not self.test(program, ['*'], 1200, report):
            sys.exit(f'{program} fails without any fault')
        return {suite['name']: sum(float(test['time'][:-1]) for test in suite['testsuite'])
                for suite in json.loads(report.read_text())['testsuites']}


class Sample:
    """A deterministic selection of faults: each kind in turn, until enough faults are tried."""

    def __init__(self, group, count, seed):
        self.group = group
        self.count = count
        self.results = Counter()
        kinds = {}
        path = ROOT / group
        for file in sorted([path] if path.is_file() else [*path.rglob('*.h'), *path.rglob('*.cpp')]):
            for fault in faults_of(file.relative_to(ROOT), file.read_text()):
                kinds.setdefault(fault.kind, []).append(fault)
        for kind in sorted(kinds):
            random.Random(f'{seed} {group} {kind}').shuffle(kinds[kind])
        rounds = max(map(len, kinds.values()), default=0)
        self.faults = iter([kinds[kind][i] for i in range(rounds) for kind in sorted(kinds) if i < len(kinds[kind])])

    def next(self):
        """The next fault; None when enough faults are tried or in progress."""
        if self.results['detected'] + self.results['survived'] + self.results['in progress'] >= self.count:
            return None
        fault = next(self.faults, None)
        self.results['in progress'] += fault is not None
        return fault

    def settle(self, result):
        self.results['in progress'] -= 1
        self.results[result] += 1

    def __str__(self):
        tried = self.results['detected'] + self.results['survived']
        percent = 100 * self.results['detected'] // max(1, tried)
        return (f"{self.group}: {self.results['detected']} of {tried} detected, {percent} % "
                f"({self.results['no build']} more did not build, {self.results['equal']} changed nothing)")


class Run:
    """All samples, distributed to the workers."""

    def __init__(self, samples, near, jobs):
        self.samples = samples
        self.near = near
        self.lock = threading.Lock()
        self.building = threading.Lock()
        self.stopping = False
        self.errors = []
        self.times = {}
        self.originals = {}
        self.workers = [Worker(number) for number in range(jobs)]
        self.programs = sorted({program for sample in samples for program in programs_of(sample.group)})

    def stages(self, fault):
        """The test runs for a fault, in order: (program, suites)."""
        name = fault.file.stem.replace('Private', '').lower()
        late = []
        for program in programs_of(str(fault.file)):
            suites = self.times[program]
            matching = [suite for suite in suites if name in suite.lower()]
            quick = [suite for suite in suites if suites[suite] <= QUICK_SUITE and suite not in matching]
            yield program, matching
            yield program, quick
            late.append((program, [suite for suite in suites if suite not in matching + quick]))
        if not self.near:
            yield from late

    def is_detected(self, worker, fault):
        for program, suites in self.stages(fault):
            seconds = sum(self.times[program][suite] for suite in suites)
            if suites and (worker.build([program]) is None or not worker.test(program, suites, 20 + 5 * seconds)):
                return True
        return False

    def try_fault(self, worker, fault):
        file = worker.tree / fault.file
        source = file.read_text()
        file.write_text(source[:fault.start] + fault.text + source[fault.end:])
        try:
            for targets in programs_of(str(fault.file))[:1], self.programs:
                built = worker.build(targets)
                if built is None:
                    return 'no build'
                if any(self.originals[worker].get(path) != digest for path, digest in built.items()):
                    return 'detected' if self.is_detected(worker, fault) else 'survived'
            return 'equal'
        finally:
            file.write_text(source)

    def prepare(self, worker):
        """Builds without a fault, and measures this worker's share of the test programs."""
        with self.building:  # one at a time: with ccache the second build is fast
            built = worker.build(self.programs)
        if built is None:
            sys.exit((worker.scratch / 'log').read_text() + 'the sources do not build')
        objects = worker.build_folder.rglob('*.o')
        self.originals[worker] = {path: hashlib.sha1(path.read_bytes()).digest() for path in objects}
        for program in self.programs[self.workers.index(worker)::len(self.workers)]:
            self.times[program] = worker.measure(program)

    def work(self, worker):
        for sample in self.samples:
            while not self.stopping:
                with self.lock:
                    fault = sample.next()
                if not fault:
                    break
                result = self.try_fault(worker, fault)
                with self.lock:
                    if not self.stopping:
                        sample.settle(result)
                        if result == 'survived':
                            print_survivor(fault)

    def on_all(self, task):
        def guarded(worker):
            try:
                task(worker)
            except BaseException as error:
                self.errors.append(error)
                self.stop()

        threads = [threading.Thread(target=guarded, args=[worker]) for worker in self.workers]
        for thread in threads:
            thread.start()
        try:
            for thread in threads:
                thread.join()
        except KeyboardInterrupt:
            self.stop()
            for thread in threads:
                thread.join()
            raise
        if self.errors:
            raise self.errors[0]

    def stop(self):
        self.stopping = True
        for worker in self.workers:
            worker.kill()


def print_survivor(fault):
    source = (ROOT / fault.file).read_text()
    start = source.rfind('\n', 0, fault.start) + 1
    end = (source + '\n').find('\n', fault.end)
    changed = source[start:fault.start] + fault.text + source[fault.end:end]
    old, new = (re.sub(r'\s+', ' ', text).strip() for text in (source[start:end], changed))
    print(f"{fault.file}:{source.count(chr(10), 0, fault.start) + 1}  - {old}  + {new}", flush=True)


def main():
    parser = argparse.ArgumentParser(prog='./dev mutate', description=__doc__)
    parser.add_argument('files', nargs='*', metavar='FILE', default=FOLDERS, help='files or folders; default: all code')
    parser.add_argument('--count', type=int, default=30, help='faults for each of them (default: 30)')
    parser.add_argument('--seed', type=int, default=1, help='another seed selects other faults')
    parser.add_argument('--near', action='store_true',
                        help=f'skip suites over {QUICK_SUITE} s whose names do not contain the name of the file')
    parser.add_argument('--jobs', type=int, default=os.cpu_count())
    options = parser.parse_args()
    samples = [Sample(os.path.relpath(Path(file).absolute(), ROOT), options.count, options.seed)
               for file in options.files]
    for number in signal.SIGINT, signal.SIGTERM:
        signal.signal(number, signal.default_int_handler)
    run = Run(samples, options.near, options.jobs)
    try:
        run.on_all(run.prepare)
        run.on_all(run.work)
    except KeyboardInterrupt:
        sys.exit(130)
    finally:
        for worker in run.workers:
            shutil.rmtree(worker.scratch, ignore_errors=True)
        print('\n'.join(map(str, samples)))


if __name__ == '__main__':
    main()
