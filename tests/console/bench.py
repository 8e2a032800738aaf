"""A place of its own for quellboxctl: an archive with known messages, a pickup directory, settings and history."""
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import time

# 2026-03-02 10:00:00 UTC, and so in every zone that the tests set.
MONDAY = 1772445600
DAY = 86400


def message(sender, header_from, to, subject, scl, body='Hello.\r\n', more=''):
    lines = [f'x-sender: {sender}', f'x-receiver: {to}', f'X-SCL: {scl}.00%' if scl is not None else 'X-None: 1',
             f'From: {header_from}', f'To: {to}', f'Subject: {subject}', 'Date: Mon, 2 Mar 2026 10:00:00 +0000']
    return ('\r\n'.join(lines) + '\r\n' + more + '\r\n' + body).encode()


class Place:
    """Files and settings of one test."""

    def __init__(self, program):
        self.program = program
        self.root = pathlib.Path(tempfile.mkdtemp(prefix='quellboxctl-'))
        self.archive = self.root / 'archive'
        self.pickup = self.root / 'pickup'
        self.archive.mkdir()
        self.pickup.mkdir()
        self.settings = self.root / 'config' / 'quellbox' / 'settings.ini'
        self.settings.parent.mkdir(parents=True)
        self.environment = dict(os.environ, XDG_CONFIG_HOME=str(self.root / 'config'),
                                XDG_DATA_HOME=str(self.root / 'data'), HOME=str(self.root), TZ='UTC', LANG='C.UTF-8',
                                LC_ALL='C.UTF-8', LANGUAGE='')
        self.environment.pop('DBUS_SESSION_BUS_ADDRESS', None)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        shutil.rmtree(self.root)

    def put(self, name, content, when=MONDAY):
        path = os.path.join(os.fsencode(self.archive), name if isinstance(name, bytes) else name.encode())
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, 'wb') as file:
            file.write(content)
        os.utime(path, (when, when))

    def fill(self):
        """Four messages, in order of arrival."""
        self.put('a.EML', message('shop@example.com', 'Shop <shop@example.com>', 'ann@home.example', 'Your order', 5))
        self.put('b.EML', message('win@spam.example', 'Win <win@spam.example>', 'bob@home.example', 'You won', 9),
                 MONDAY + 60)
        self.put('c.EML', message('news@example.com', 'News <news@example.com>', 'ann@home.example',
                                  '=?utf-8?b?R3LDvMOfZQ==?=', 7), MONDAY + DAY)
        self.put('d.EML', message('', 'Nobody <>', 'bob@home.example', 'Bounce', 6), MONDAY + DAY + 60)

    def write_settings(self, whitelist=(), **values):
        lines = ['[Settings]'] + [f'{key}={value}' for key, value in values.items()]
        lines += ['', '[Tolerate]'] + [f'{entry.replace("@", "%40")}=0' for entry in whitelist]
        self.settings.write_text('\n'.join(lines) + '\n')

    def names(self, folder=None):
        return sorted(name for name in os.listdir(folder or self.archive) if not name.startswith('.'))

    def command(self, *arguments):
        command, *others = arguments
        return [self.program, command, '--archive', str(self.archive), '--pickup', str(self.pickup), *others]

    def run(self, *arguments, code=0, given=b'', raw=False, plain=False, **environment):
        """Output and errors of the program, which has to end with that code."""
        command = [self.program, *arguments] if plain else self.command(*arguments)
        done = subprocess.run(command, input=given, capture_output=True, timeout=120,
                              env=dict(self.environment, **environment))
        if done.returncode != code:
            raise AssertionError(f'{command} ended with {done.returncode}, not {code}:\n{done.stdout!r}\n{done.stderr!r}')
        return (done.stdout, done.stderr) if raw else (done.stdout.decode(), done.stderr.decode())


def wait_for(condition, what, seconds=30):
    end = time.monotonic() + seconds
    while not condition():
        if time.monotonic() > end:
            raise AssertionError(f'{what}: not within {seconds} s')
        time.sleep(0.02)


def program_of_arguments():
    """The program's path, which the build gives; what is left is for unittest."""
    path = os.path.abspath(sys.argv.pop(1))
    return path
