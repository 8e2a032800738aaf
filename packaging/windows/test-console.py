#!/usr/bin/env python3
"""Runs quellboxctl.exe under Wine on real files, and compares whole outputs. Called by test.sh, which provides Wine's
folder:  test-console.py QUELLBOXCTL.EXE [arguments of unittest]"""
import itertools
import json
import os
import pathlib
import shutil
import subprocess
import sys
import time
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / 'tests' / 'console'))
from bench import DAY, MONDAY, Place, message, program_of_arguments  # noqa: E402

PROGRAM = None
PREFIX = 'console-test-'  # of the names under which the tests have settings and histories of their own
NAMES = (f'{PREFIX}{os.getpid()}-{number}' for number in itertools.count())


def windows(path):
    """How Wine calls a file of this system."""
    return 'Z:' + str(path).replace('/', '\\')


def lines_of(text):
    return [json.loads(line) for line in text.splitlines()]


def registry(*arguments):
    return subprocess.run(['wine', 'reg', *arguments], capture_output=True, timeout=120, check=False)


def tearDownModule():
    keys = [line for line in registry('query', r'HKCU\Software').stdout.decode().split() if f'\\{PREFIX}' in line]
    for key in keys:
        registry('delete', key, '/f')
    for data in (pathlib.Path(os.environ['WINEPREFIX']) / 'drive_c' / 'users').glob(f'*/AppData/Local/{PREFIX}*'):
        shutil.rmtree(data)


class WinePlace(Place):
    """Files, registry and history of one test."""

    def __init__(self):
        super().__init__(PROGRAM)
        self.settings_name = next(NAMES)
        self.key = rf'HKCU\Software\{self.settings_name}'
        self.environment = dict(os.environ, TZ='UTC', LC_ALL='C.UTF-8', LANGUAGE='')

    def write_settings(self, whitelist=(), **values):
        for section, names in (('Settings', values), ('Tolerate', dict.fromkeys(whitelist, 0))):
            for name, value in names.items():
                added = registry('add', rf'{self.key}\{section}', '/v', name, '/t', 'REG_SZ', '/d', str(value), '/f')
                assert added.returncode == 0, added

    def bare(self, command, *arguments):
        """Options come first, since all that follows -- is a name."""
        return ['wine', self.program, command, '--program', self.settings_name, *arguments]

    def command(self, command, *arguments):
        return self.bare(command, '--archive', windows(self.archive), '--pickup', windows(self.pickup), *arguments)

    def run(self, *arguments, code=0, given=b'', raw=False, plain=False, **environment):
        """As Place.run(); `plain` leaves out the folders."""
        command = self.bare(*arguments) if plain else self.command(*arguments)
        done = subprocess.run(command, input=given, capture_output=True, timeout=300,
                              env=dict(self.environment, **environment))
        # What Wine itself has to say is none of the program's.
        errors = b''.join(line for line in done.stderr.splitlines(True) if not line.startswith(b'wine: '))
        if done.returncode != code:
            raise AssertionError(f'{command} ended with {done.returncode}, not {code}:\n{done.stdout!r}\n{errors!r}')
        return (done.stdout, errors) if raw else (done.stdout.decode(), errors.decode())


class Console(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        self.place = WinePlace()
        self.addCleanup(self.place.__exit__)
        self.place.fill()

    def run_it(self, *arguments, **options):
        return self.place.run(*arguments, **options)

    def tell(self, *arguments, **options):
        """The output of what tells no error."""
        output, errors = self.run_it(*arguments, **options)
        self.assertEqual(errors, b'' if options.get('raw') else '')
        return output

    def refused(self, text, *arguments, **options):
        self.assertEqual(self.run_it(*arguments, code=2, **options), ('', f'quellboxctl: {text}\n'))


class ListTest(Console):
    def test_text(self):
        self.assertEqual(self.tell('list'), (
            'Date                 To                From                     Subject     Size  SCL%  File name\n'
            '2026-03-02 10:00:00  ann@home.example  Shop <shop@example.com>  Your order   194  5.00  a.EML\n'
            '2026-03-02 10:01:00  bob@home.example  Win <win@spam.example>   You won      190  9.00  b.EML\n'
            '2026-03-03 10:00:00  ann@home.example  News <news@example.com>  Grüße        208  7.00  c.EML\n'
            '2026-03-03 10:01:00  bob@home.example  Nobody <>                Bounce       160  6.00  d.EML\n'))

    def test_csv(self):
        self.assertEqual(self.tell('list', '--csv', '--match', 'name=C.', raw=True), (
            '"Date","To","From","Subject","Size","SCL%","File name","Envelope sender"\r\n'
            '"2026-03-03 10:00:00","ann@home.example","News <news@example.com>","Grüße",208,"7.00","c.EML",'
            '"news@example.com"\r\n').encode())

    def test_json(self):
        self.assertEqual(self.tell('list', '--json', '--match', 'name=c.', raw=True), (
            '{"date":"2026-03-03 10:00:00","to":"ann@home.example","from":"News <news@example.com>",'
            '"subject":"Grüße","size":208,"scl":"7.00","file":"c.EML","sender":"news@example.com"}\n').encode())

    def test_names(self):
        self.assertEqual(self.tell('list', '--names', '--sort', 'size', raw=True), b'd.EML\nb.EML\na.EML\nc.EML\n')
        strange = ['Grüße 日本.EML', ' blank.EML', '-dash.EML', "don't.EML", 'a&b^c%PATH%.EML']
        for name in strange:
            self.place.put(name, message('s@e.example', 'f', 't', 'u', 3), MONDAY + 5 * DAY)
        output = self.tell('list', '--print0', '--max-scl', '3', raw=True)
        self.assertEqual(sorted(output.decode().split('\0')), sorted(strange + ['']))
        self.assertEqual(self.tell('delete', '-0', '-', given=output), 'Action  Done  Failed\ndelete     5       0\n')
        self.assertEqual(self.place.names(), ['a.EML', 'b.EML', 'c.EML', 'd.EML'])

    def test_the_archive_of_the_settings(self):
        self.place.write_settings(ArchiveDir=windows(self.place.archive), whitelist=['@example.com'])
        self.assertEqual(self.tell('list', '--names', '--tolerated', plain=True), 'a.EML\nc.EML\n')

    def test_a_relative_archive(self):
        done = subprocess.run(self.place.bare('list', '--names', '--archive', 'archive'), capture_output=True,
                              timeout=300, env=self.place.environment, cwd=self.place.root)
        self.assertEqual((done.returncode, done.stdout), (0, b'a.EML\nb.EML\nc.EML\nd.EML\n'))

    def test_the_columns_of_an_archive_without_messages(self):
        for name in self.place.names():
            os.remove(self.place.archive / name)
        self.assertEqual(self.tell('list'), '')
        self.assertEqual(self.tell('list', '--csv'),
                         '"Date","To","From","Subject","Size","SCL%","File name","Envelope sender"\r\n')


class ShowTest(Console):
    def setUp(self):
        super().setUp()
        self.mail = message('s@e.example', 'Ann <ann@e.example>', 'bob@h.example', 'Two parts', 4,
                            body='--x\r\nContent-Type: text/plain; charset=utf-8\r\n\r\nGrüße 日本\r\nzwei\r\n'
                                 '--x\r\nContent-Type: application/pdf; name=a.pdf\r\n'
                                 'Content-Disposition: attachment; filename=a.pdf\r\n\r\n%PDF\r\n--x--\r\n',
                            more='MIME-Version: 1.0\r\nContent-Type: multipart/mixed; boundary=x\r\n')
        self.place.put('m.EML', self.mail)

    def test_text(self):
        self.assertEqual(self.tell('show', 'm.EML', raw=True),
                         'Date: Mon, 2 Mar 2026 10:00:00 +0000\nFrom: Ann <ann@e.example>\nTo: bob@h.example\n'
                         'Subject: Two parts\n\nGrüße 日本\nzwei\n[Attachment: a.pdf]\n'.encode())

    def test_raw(self):
        for mail in (self.mail, bytes(range(256)) + b'\x1a\r\n\n\r', b'Subject: s\n\n' + b'\xff\x00\r' * 100_000):
            self.place.put('m.EML', mail)
            self.assertEqual(self.tell('show', '--raw', 'm.EML', raw=True), mail)

    def test_tree(self):
        self.assertEqual(self.tell('show', '--tree', 'm.EML'), (
            'MESSAGE\n'
            '  DATE: Mon, 2 Mar 2026 10:00:00 +0000\n'
            '  FROM: Ann <ann@e.example>\n'
            '  TO: bob@h.example\n'
            '  SUBJECT: Two parts\n'
            'PART1\n'
            '  HEADERS\n'
            '    CONTENT-TYPE: text/plain; charset=utf-8\n'
            '  TEXT: Grüße 日本\n'
            'PART2\n'
            '  HEADERS\n'
            '    CONTENT-TYPE: application/pdf; name=a.pdf\n'
            '    CONTENT-DISPOSITION: attachment; filename=a.pdf\n'
            '  ATTACHMENT: a.pdf\n'))

    def test_json(self):
        self.assertEqual(lines_of(self.tell('show', '--json', 'm.EML')), [
            {'date': '2026-03-02 10:00:00', 'to': 'bob@h.example', 'from': 'Ann <ann@e.example>',
             'subject': 'Two parts', 'size': len(self.mail), 'scl': '4.00', 'file': 'm.EML', 'sender': 's@e.example',
             'text': 'Grüße 日本\nzwei\n[Attachment: a.pdf]\n', 'attachments': 'a.pdf'}])

    def test_what_is_not_there(self):
        self.assertEqual(self.run_it('show', 'gone.EML', code=1), (
            '', f'quellboxctl: {windows(self.place.archive)}\\gone.EML: There is no such message.\n'))


class DisposalTest(Console):
    def test_names_with_the_line_ends_of_windows(self):
        self.place.put('Grüße 日本.EML', message('s@e.example', 'f', 't', 'u', 3))
        names = 'a.EML\r\n\r\nGrüße 日本.EML\r\ngone.EML\r\nd.EML'
        output, errors = self.run_it('delete', '-', given=names.encode(), code=1)
        self.assertEqual(output, 'Action  Done  Failed\ndelete     3       1\n')
        self.assertEqual(errors,
                         f'quellboxctl: {windows(self.place.archive)}\\gone.EML: There is no such message.\n')
        self.assertEqual(self.place.names(), ['b.EML', 'c.EML'])

    def test_deleting_by_arguments_and_choices(self):
        self.place.put('Grüße 日本.EML', message('s@e.example', 'f', 't', 'u', 3))
        self.assertEqual(self.tell('delete', 'Grüße 日本.EML', 'C.eml'),
                         'Action  Done  Failed\ndelete     2       0\n')
        self.assertEqual(self.place.names(), ['a.EML', 'b.EML', 'd.EML'])
        self.assertEqual(self.tell('delete', '--min-scl', '6', '--dry-run', '--names'), 'b.EML\nd.EML\n')
        self.assertEqual(self.place.names(), ['a.EML', 'b.EML', 'd.EML'])
        self.assertEqual(self.tell('delete', '--min-scl', '6', '--json'), '{"action":"delete","done":2,"failed":0}\n')
        self.assertEqual(self.place.names(), ['a.EML'])

    def test_unblocking(self):
        contents = {name: (self.place.archive / name).read_bytes() for name in ('a.EML', 'b.EML')}
        self.assertEqual(self.tell('unblock', 'a.EML', 'b.EML'), 'Action   Done  Failed\nunblock     2       0\n')
        self.assertEqual(self.place.names(), ['c.EML', 'd.EML'])
        self.assertEqual(self.place.names(self.place.pickup), ['a.EML', 'b.EML'])
        for name, content in contents.items():
            self.assertEqual((self.place.pickup / name).read_bytes(), content)

    def test_what_is_there_already_is_not_overwritten(self):
        (self.place.pickup / 'a.EML').write_bytes(b'other')
        output, errors = self.run_it('unblock', 'a.EML', 'b.EML', code=1)
        self.assertEqual(output, 'Action   Done  Failed\nunblock     1       1\n')
        self.assertRegex(errors, r'^quellboxctl: Z:[^\n]*\\a\.EML: [^\n]+\n$')
        self.assertEqual((self.place.pickup / 'a.EML').read_bytes(), b'other')
        self.assertEqual(self.place.names(), ['a.EML', 'c.EML', 'd.EML'])

    def test_a_name_is_never_a_path(self):
        (self.place.root / 'precious').write_text('x')
        precious = windows(self.place.root / 'precious')
        for name in ('..\\precious', '../precious', 'C:precious', 'a.EML:stream', 'a.EML::$DATA', '..', '.',
                     'sub\\x.EML', '\\\\server\\share\\x', '\\a.EML', precious, '\\\\.\\NUL', '\\\\?\\' + precious):
            with self.subTest(name):
                self.refused(f'"{name}" is no name of a message.', 'delete', '--', name)
        self.refused('"..\\precious" is no name of a message.', 'delete', '-', given=b'a.EML\r\n..\\precious\r\n')
        self.refused('"..\\precious" is no name of a message.', 'unblock', 'a.EML', '..\\precious')
        self.refused('"..\\precious" is no name of a message.', 'show', '..\\precious')
        self.assertEqual((self.place.root / 'precious').read_text(), 'x')
        self.assertEqual(self.place.names(), ['a.EML', 'b.EML', 'c.EML', 'd.EML'])

    def test_names_that_windows_takes_for_others(self):
        for name in ('NUL', 'CON', 'nul.EML', '*.EML', '?.EML', 'a.EML.', 'a.EML ', 'a.EM<'):
            with self.subTest(name):
                output, errors = self.run_it('delete', '--', name, code=1)
                self.assertEqual(output, 'Action  Done  Failed\ndelete     0       1\n')
                self.assertTrue(errors.startswith(f'quellboxctl: {windows(self.place.archive)}\\{name}: '), errors)
        self.assertEqual(self.place.names(), ['a.EML', 'b.EML', 'c.EML', 'd.EML'])

    def test_nothing_happens_without_a_choice(self):
        self.refused('Name messages, or choose them by options. For all messages there is --all.', 'delete')
        self.assertEqual(len(self.place.names()), 4)


class TolerateTest(Console):
    def stored(self):
        answer = registry('query', rf'{self.place.key}\Tolerate').stdout.decode()
        return sorted(line.split()[0] for line in answer.splitlines() if line.startswith('    '))

    def test_entries(self):
        self.assertEqual(self.tell('tolerate', 'list'), '')
        self.assertEqual(self.tell('tolerate', 'add', 'Joe@Example.com'),
                         'Whitelist entry  Result\njoe@example.com  added\n')
        self.assertEqual(self.tell('tolerate', 'add', '@other.example'),
                         'Whitelist entry  Result\n@other.example   added\n')
        self.assertEqual(self.stored(), ['@other.example', 'joe@example.com'])
        self.assertEqual(self.tell('tolerate', 'list').splitlines()[0], 'Whitelist entry')
        self.assertEqual(sorted(self.tell('tolerate', 'list').splitlines()[1:]), ['@other.example', 'joe@example.com'])
        self.assertEqual(self.tell('tolerate', 'test', 'X@Other.Example'),
                         'Sender           Result\nX@Other.Example  tolerated\n')
        self.assertEqual(self.run_it('tolerate', 'test', '--json', 'x@example.com', code=1),
                         ('{"sender":"x@example.com","result":"not tolerated"}\n', ''))
        self.assertEqual(self.tell('tolerate', 'remove', 'joe@example.com'),
                         'Whitelist entry  Result\njoe@example.com  removed\n')
        self.assertEqual(self.stored(), ['@other.example'])
        self.refused('Invalid email address specified: joe', 'tolerate', 'add', 'joe')

    def test_two_at_once_lose_no_entry(self):
        adding = [subprocess.Popen(self.place.command('tolerate', 'add', f'n{number}@example.com'),
                                   stdout=subprocess.DEVNULL, env=self.place.environment) for number in range(4)]
        self.assertEqual([program.wait(timeout=300) for program in adding], [0] * 4)
        self.assertEqual(self.stored(), [f'n{number}@example.com' for number in range(4)])

    def test_their_messages_are_delivered(self):
        self.place.write_settings(whitelist=['@example.com'], TolerationLevel=1)
        self.assertEqual(self.tell('deliver-tolerated', '--dry-run', '--names'), 'a.EML\nc.EML\n')
        self.assertEqual(self.tell('deliver-tolerated'),
                         'Action             Done  Failed\ndeliver-tolerated     2       0\n')
        self.assertEqual(self.place.names(self.place.pickup), ['a.EML', 'c.EML'])


class NightTest(Console):
    def test_cleansing(self):
        self.place.put('new.EML', message('n@example.com', 'n', 't', 's', 1), int(time.time()))
        self.place.put('notes.txt', b'x')
        self.assertEqual(self.tell('cleanse', '--keep-days', '7', '--dry-run', '--names'),
                         'a.EML\nb.EML\nc.EML\nd.EML\n')
        self.assertEqual(len(self.place.names()), 6)
        self.assertEqual(self.tell('cleanse', '--keep-days', '7'), 'Action   Done  Failed\ncleanse     4       0\n')
        self.assertEqual(self.place.names(), ['new.EML', 'notes.txt'])
        self.refused('--keep-days: "x" is no whole number from 0 to 32767.', 'cleanse', '--keep-days', 'x')

    def test_statistics(self):
        self.assertEqual(self.tell('stats'), (
            'Group   Value             Messages  Bytes\n'
            'day     2026-03-02               2    384\n'
            'day     2026-03-03               2    368\n'
            'scl     5.00                     1    194\n'
            'scl     6.00                     1    160\n'
            'scl     7.00                     1    208\n'
            'scl     9.00                     1    190\n'
            'domain  example.com              2    402\n'
            'domain                           1    160\n'
            'domain  spam.example             1    190\n'
            'to      ann@home.example         2    402\n'
            'to      bob@home.example         2    350\n'))


class HistoryTest(Console):
    def test_what_was_kept_comes_back(self):
        self.place.write_settings(KeepDeletedDays=5)
        contents = (self.place.archive / 'b.EML').read_bytes()
        self.assertEqual(self.tell('delete', '--min-scl', '7'), 'Action  Done  Failed\ndelete     2       0\n')
        self.assertEqual(self.place.names(), ['a.EML', 'd.EML'])
        self.assertEqual(sorted(kept.name for kept in self.place.archive.glob('.*/*/*')), ['b.EML', 'c.EML'])
        self.assertEqual(self.tell('list', '--names'), 'a.EML\nd.EML\n')
        self.assertEqual(self.tell('undo'), 'Action  Done  Failed\nundo       2       0\n')
        self.assertEqual(sorted(os.listdir(self.place.archive)), ['a.EML', 'b.EML', 'c.EML', 'd.EML'])
        self.assertEqual((self.place.archive / 'b.EML').read_bytes(), contents)

    def test_what_was_done_is_told(self):
        self.assertEqual(self.tell('history'), '')
        self.tell('unblock', 'a.EML')
        self.tell('delete', 'c.EML')
        lines = lines_of(self.tell('history', '--json'))
        for line in lines:
            self.assertRegex(line.pop('time'), r'^\d{4}-\d\d-\d\dT\d\d:\d\d:\d\dZ$')
            self.assertNotEqual((line.pop('user'), line.pop('computer')), ('', ''))
        self.assertEqual(lines, [
            {'id': 2, 'actionId': 2, 'action': 'delete', 'result': 'done', 'file': 'c.EML',
             'from': 'News <news@example.com>', 'to': 'ann@home.example', 'subject': 'Grüße', 'size': 208,
             'scl': '7.00', 'sender': 'news@example.com', 'reason': ''},
            {'id': 1, 'actionId': 1, 'action': 'unblock', 'result': 'done', 'file': 'a.EML',
             'from': 'Shop <shop@example.com>', 'to': 'ann@home.example', 'subject': 'Your order', 'size': 194,
             'scl': '5.00', 'sender': 'shop@example.com', 'reason': ''}])
        self.assertEqual(self.tell('undo', '1'), 'Action  Done  Failed\nundo       1       0\n')
        self.assertEqual(self.place.names(), ['a.EML', 'b.EML', 'd.EML'])
        (line,) = lines_of(self.tell('history', '--json', '--action', 'unblock'))
        self.assertEqual((line['file'], line['result']), ('a.EML', 'undone'))

    def test_what_the_server_has_taken_does_not_come_back(self):
        self.tell('unblock', 'a.EML')
        os.remove(self.place.pickup / 'a.EML')
        output, errors = self.run_it('undo', code=1)
        self.assertEqual(output, 'Action  Done  Failed\nundo       0       1\n')
        self.assertEqual(errors, f'quellboxctl: {windows(self.place.pickup)}\\a.EML: The mail server has taken the '
                                 'message out of the pickup directory.\n')


class UsageTest(Console):
    def test_the_version(self):
        answer = subprocess.run(['wine', PROGRAM, '--version'], capture_output=True, timeout=300, check=True)
        self.assertRegex(answer.stdout.decode(), r'^quellboxctl \d+\.\d+\.\d+\n$')

    def test_what_is_refused(self):
        self.refused('"frob" is no command. See quellboxctl --help.', 'frob', plain=True)
        self.refused("Unknown option 'frob'.", 'list', '--frob')
        self.refused('--csv and --json exclude each other.', 'list', '--csv', '--json')
        self.refused('--program: "..\\x" is no name of a program.', 'list', '--program', '..\\x')

    def test_the_folder_of_the_program_is_no_archive(self):
        for command in (('list',), ('delete', '--all'), ('cleanse', '--keep-days', '0', '--dry-run')):
            with self.subTest(command):
                self.assertEqual(self.run_it(*command, plain=True, code=3),
                                 ('', 'quellboxctl: No archive is set up. Choose one in the window, or name it by '
                                      '--archive.\n'))

    def test_folders_that_are_not_there(self):
        missing = windows(self.place.root / 'none')
        for command in (('list',), ('delete', '--all'), ('stats',), ('cleanse', '--keep-days', '1')):
            with self.subTest(command):
                output, errors = self.run_it(*command, '--archive', missing, plain=True, code=3)
                self.assertEqual((output, errors), ('', f'quellboxctl: Archive {missing.upper()}\\ not found\n'))
        told = self.run_it('unblock', '--all', '--archive', windows(self.place.archive), '--pickup', missing,
                           plain=True, code=3)
        self.assertEqual(told, ('', f'quellboxctl: Pickup directory {missing}\\ not found\n'))
        self.assertEqual(len(self.place.names()), 4)

    def test_a_reader_that_has_seen_enough_is_no_error(self):
        for number in range(3000):
            self.place.put(f'm{number}.EML', message('s@e.example', 'f', 't', 'u' * 80, 3), MONDAY + number)
        program = subprocess.Popen(self.place.command('list'), stdout=subprocess.PIPE, env=self.place.environment)
        program.stdout.readline()
        program.stdout.close()
        self.assertEqual(program.wait(timeout=300), 0)


if __name__ == '__main__':
    PROGRAM = program_of_arguments()
    unittest.main(verbosity=2)
