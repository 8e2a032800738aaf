#!/usr/bin/env python3
"""Compares quellboxctl with the loops that an administrator would write instead, on the same generated files, and
prints ratios.

Usage: console_bench.py QUELLBOXCTL [FILES [FOLDER]]

A loop that starts a program for each message is run on a part of the files only, and its time is scaled.
"""
import os
import shutil
import subprocess
import sys
import tempfile
import time

ROUNDS = 3
MOST_OF_LOOP = 2000  # messages, for loops that start a program for each

MESSAGE = """\
x-sender: sender{number}@domain{domain}.example
x-receiver: user{user}@home.example
X-SCL: {scl}.00%
Received: from mail{domain}.example (mail{domain}.example [192.0.2.{last}]) by mx.home.example; Mon, 2 Mar 2026 10:00:00 +0000
From: "Sender {number}" <sender{number}@domain{domain}.example>
To: user{user}@home.example
Subject: {subject} {number}
Date: Mon, 2 Mar 2026 10:00:00 +0000
Message-ID: <{number}@domain{domain}.example>
MIME-Version: 1.0
Content-Type: text/plain; charset=utf-8

{body}
"""

PYTHON_LOOP = """
import email.parser, os, sys
parser = email.parser.BytesHeaderParser()
folder = sys.argv[1]
entries = sorted(((entry.stat().st_mtime_ns, entry.name) for entry in os.scandir(folder)))
for _, name in entries:
    with open(os.path.join(folder, name), 'rb') as file:
        message = parser.parse(file)
    if 'invoice' in str(message['Subject']).lower():
        print(name)
"""

# What no program that looks into every file can avoid.
FLOOR = """
import os, sys
folder = os.open(sys.argv[1], os.O_RDONLY)
for name in os.listdir(folder):
    file = os.open(name, os.O_RDONLY, dir_fd=folder)
    os.read(file, 4096)
    os.close(file)
"""


def make_files(folder, count):
    for number in range(count):
        subject = 'Invoice' if number % 50 == 0 else 'You have won'
        text = MESSAGE.format(number=number, domain=number % 977, user=number % 31, last=number % 250, scl=number % 10,
                              subject=subject, body='Buy now. ' * (20 + number % 100))
        path = os.path.join(folder, f'{number * 2654435761 % 2**32:08x}{number:07x}.EML')
        with open(path, 'w') as file:
            file.write(text)
        os.utime(path, (1772445600 + number % 100000, 1772445600 + number % 100000))


def seconds_of(command, environment):
    begin = time.perf_counter()
    subprocess.run(command, stdout=subprocess.DEVNULL, check=True, env=environment)
    return time.perf_counter() - begin


def lines_of(command, environment):
    return sorted(subprocess.run(command, capture_output=True, check=True, env=environment).stdout.splitlines())


def peak_of(command, environment):
    """The most memory that a command had, in bytes."""
    code = ('import resource, subprocess, sys; subprocess.run(sys.argv[1:], stdout=subprocess.DEVNULL, check=True); '
            'print(resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss)')
    done = subprocess.run([sys.executable, '-c', code, *command], capture_output=True, check=True, env=environment)
    return int(done.stdout) * 1024


def first_line_after(command, environment):
    """Seconds until the first byte of the output, and until the end."""
    begin = time.perf_counter()
    program = subprocess.Popen(command, stdout=subprocess.PIPE, env=environment)
    program.stdout.read(1)
    first = time.perf_counter() - begin
    while program.stdout.read(1 << 20):
        pass
    program.wait()
    return first, time.perf_counter() - begin


def main():
    program = os.path.abspath(sys.argv[1])
    count = int(sys.argv[2]) if len(sys.argv) > 2 else 20000
    place = tempfile.mkdtemp(prefix='console-bench-', dir=sys.argv[3] if len(sys.argv) > 3 else None)
    try:
        compare(program, count, place)
    finally:
        shutil.rmtree(place)


def compare(program, count, place):
    archive = os.path.join(place, 'archive')
    empty = os.path.join(place, 'empty')
    few = os.path.join(place, 'few')
    for folder in (archive, empty, few):
        os.mkdir(folder)
    environment = dict(os.environ, XDG_CONFIG_HOME=place, XDG_DATA_HOME=place, LC_ALL='C.UTF-8')
    make_files(archive, count)
    names = os.listdir(archive)
    for name in names[:MOST_OF_LOOP]:
        os.link(os.path.join(archive, name), os.path.join(few, name))
    own = [program, 'list', '--names', '--match', 'subject=invoice', '--archive', archive]
    all_rows = [program, 'list', '--archive', archive]
    shell = 'cd "$0" && grep -l -i "^Subject:.*invoice" -r .'
    loops = {
        'Python, one pass over all': ([sys.executable, '-c', PYTHON_LOOP, archive], 1),
        'plain reading of 4 KiB each (Python)': ([sys.executable, '-c', FLOOR, archive], 1),
        'grep -l -r': (['sh', '-c', shell, archive], 1),
    }
    scale = count / min(count, MOST_OF_LOOP)
    if shutil.which('formail'):
        loop = 'cd "$0" && for f in *; do formail -x Subject: <"$f" | grep -qi invoice && echo "$f"; done; true'
        loops['formail for each message'] = (['sh', '-c', loop, few], scale)
    loop = 'cd "$0" && for f in *; do sed "/^\\r*$/q" "$f" | grep -qi "^Subject:.*invoice" && echo "$f"; done; true'
    loops['sed and grep for each message'] = (['sh', '-c', loop, few], scale)

    expected = lines_of(loops['Python, one pass over all'][0], environment)
    if lines_of(own, environment) != expected or not expected:
        sys.exit('quellboxctl found other messages than the loop in Python')
    best = {}
    for _ in range(ROUNDS):  # in turns, so that all meet the same disturbances
        for name, (command, factor) in {'quellboxctl': (own, 1), **loops}.items():
            best[name] = min(best.get(name, 1e9), factor * seconds_of(command, environment))
    print(f'{count} files, {len(expected)} of them found; best of {ROUNDS}')
    for name, seconds in best.items():
        print(f'{name:40} {seconds:9.2f} s  {seconds / best["quellboxctl"]:7.2f} times quellboxctl')

    bytes_of_names = sum(len(os.fsencode(name)) for name in names)
    used = peak_of(all_rows, environment) - peak_of([program, 'list', '--archive', empty], environment)
    print(f'memory of list: {used / count:.0f} bytes a file, names of {bytes_of_names / count:.0f} bytes included')
    first, whole = first_line_after(all_rows, environment)
    listing = min(seconds_of([program, 'list', '--names', '--match', 'name=/', '--archive', archive], environment)
                  for _ in range(ROUNDS))
    print(f'list: the listing alone takes {listing:.2f} s, the first line comes after {first:.2f} s, the last after '
          f'{whole:.2f} s')
    for name, command in {'--version': [program, '--version'],
                          'list of an empty folder': [program, 'list', '--archive', empty]}.items():
        times = sorted(seconds_of(command, environment) for _ in range(20))
        print(f'{name}: {1000 * times[0]:.1f} ms at best, {1000 * times[10]:.1f} ms in the middle')


if __name__ == '__main__':
    main()
