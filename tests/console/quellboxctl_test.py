#!/usr/bin/env python3
"""Runs quellboxctl on real files, and compares whole outputs."""
import json
import os
import pathlib
import select
import signal
import sqlite3
import subprocess
import sys
import time
import unittest

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from bench import DAY, MONDAY, Place, message, program_of_arguments, wait_for  # noqa: E402

PROGRAM = None


def lines_of(text):
    return [json.loads(line) for line in text.splitlines()]


class Console(unittest.TestCase):
    def setUp(self):
        self.place = Place(PROGRAM)
        self.addCleanup(self.place.__exit__)

    def run_it(self, *arguments, **options):
        return self.place.run(*arguments, **options)


class ListTest(Console):
    def setUp(self):
        super().setUp()
        self.place.fill()

    def names(self, *arguments):
        return self.run_it('list', '--names', *arguments)[0].split()

    def test_rows_come_in_order_of_arrival_as_aligned_text(self):
        output, errors = self.run_it('list')
        self.assertEqual(output, (
            'Date                 To                From                     Subject     Size  SCL%  File name\n'
            '2026-03-02 10:00:00  ann@home.example  Shop <shop@example.com>  Your order   194  5.00  a.EML\n'
            '2026-03-02 10:01:00  bob@home.example  Win <win@spam.example>   You won      190  9.00  b.EML\n'
            '2026-03-03 10:00:00  ann@home.example  News <news@example.com>  Grüße        208  7.00  c.EML\n'
            '2026-03-03 10:01:00  bob@home.example  Nobody <>                Bounce       160  6.00  d.EML\n'))
        self.assertEqual(errors, '')

    def test_csv_is_that_of_the_window_without_a_byte_order_mark(self):
        output = self.run_it('list', '--csv', '--limit', '1', raw=True)[0]
        self.assertEqual(output, (
            b'"Date","To","From","Subject","Size","SCL%","File name","Envelope sender"\r\n'
            b'"2026-03-02 10:00:00","ann@home.example","Shop <shop@example.com>","Your order",194,"5.00","a.EML",'
            b'"shop@example.com"\r\n'))

    def test_json_has_an_object_in_each_line(self):
        output = self.run_it('list', '--json', '--match', 'name=c.')[0]
        self.assertEqual(lines_of(output), [
            {'date': '2026-03-03 10:00:00', 'to': 'ann@home.example', 'from': 'News <news@example.com>',
             'subject': 'Grüße', 'size': 208, 'scl': '7.00', 'file': 'c.EML', 'sender': 'news@example.com'}])

    def test_choices_are_those_of_the_window(self):
        self.assertEqual(self.names('--match', 'from=EXAMPLE.com'), ['a.EML', 'c.EML'])
        self.assertEqual(self.names('--match', 'from=example.com', '--match', 'subject=order'), ['a.EML'])
        self.assertEqual(self.names('--match', 'sender=win@'), ['b.EML'])
        self.assertEqual(self.names('--match', 'to=bob'), ['b.EML', 'd.EML'])
        self.assertEqual(self.names('--match', 'date=2026-03-03'), ['c.EML', 'd.EML'])
        self.assertEqual(self.names('--match', 'size=190'), ['b.EML'])
        self.assertEqual(self.names('--match', 'name=D.eml'), ['d.EML'])
        self.assertEqual(self.names('--min-scl', '6', '--max-scl', '7'), ['c.EML', 'd.EML'])
        self.assertEqual(self.names('--min-scl', '8.5'), ['b.EML'])

    def test_without_a_rating_no_limit_holds(self):
        self.place.put('e.EML', message('x@y.example', 'x', 'y', 'z', None), MONDAY + 2 * DAY)
        self.assertEqual(self.names('--min-scl', '0'), ['a.EML', 'b.EML', 'c.EML', 'd.EML'])
        self.assertEqual(self.names('--max-scl', '9'), ['a.EML', 'b.EML', 'c.EML', 'd.EML'])

    def test_days_count_from_today(self):
        now = int(time.time())
        self.place.put('new.EML', message('n@e.example', 'n', 't', 's', 1), now)
        self.assertEqual(self.names('--days', '1'), ['new.EML'])
        self.assertEqual(len(self.names('--days', '0')), 5)

    def test_tolerated_asks_the_whitelist(self):
        self.place.write_settings(whitelist=['@example.com'])
        self.assertEqual(self.names('--tolerated'), ['a.EML', 'c.EML'])
        self.place.write_settings()
        self.assertEqual(self.names('--tolerated'), [])

    def test_sorting_is_that_of_the_window(self):
        self.assertEqual(self.names('--sort', 'date'), ['d.EML', 'c.EML', 'b.EML', 'a.EML'])
        self.assertEqual(self.names('--sort', 'date', '--reverse'), ['a.EML', 'b.EML', 'c.EML', 'd.EML'])
        self.assertEqual(self.names('--sort', 'size'), ['d.EML', 'b.EML', 'a.EML', 'c.EML'])
        self.assertEqual(self.names('--sort', 'subject'), ['d.EML', 'c.EML', 'b.EML', 'a.EML'])
        self.assertEqual(self.names('--sort', 'scl', '--limit', '2'), ['a.EML', 'd.EML'])

    def test_names_are_bytes_and_come_back_exactly(self):
        strange = [b'caf\xe9.EML', b'line\nbreak.EML', b' blank .EML', b'-dash.EML', '“quote”.EML'.encode()]
        for name in strange:
            self.place.put(name, message('s@e.example', 'f', 't', 'u', 8), MONDAY + 5 * DAY)
        output = self.run_it('list', '--print0', '--min-scl', '8', '--max-scl', '8', raw=True)[0]
        self.assertEqual(sorted(output.split(b'\0')[:-1]), sorted(strange))
        self.run_it('delete', '-0', '-', given=output)
        self.assertEqual(self.place.names(), ['a.EML', 'b.EML', 'c.EML', 'd.EML'])

    def test_a_name_in_its_readable_form_is_taken_for_its_bytes(self):
        self.place.put(b'caf\xe9.EML', message('s@e.example', 'f', 't', 'cafe', 8))
        name = lines_of(self.run_it('list', '--json', '--match', 'subject=cafe')[0])[0]['file']
        self.assertIn('Subject: cafe', self.run_it('show', name)[0])
        self.assertIn('Subject: cafe', self.run_it('show', os.fsdecode(b'caf\xe9.EML'))[0])

    def test_an_empty_archive_is_an_empty_output(self):
        for name in self.place.names():
            os.remove(self.place.archive / name)
        self.assertEqual(self.run_it('list'), ('', ''))
        self.assertEqual(self.run_it('list', '--json'), ('', ''))
        self.assertEqual(self.run_it('list', '--csv')[0].count('\r\n'), 1)

    def test_what_is_no_message_has_a_row_that_says_so(self):
        self.place.put('e.EML', b'', MONDAY + 2 * DAY)
        rows = lines_of(self.run_it('list', '--json')[0])
        self.assertEqual([row['file'] for row in rows], ['a.EML', 'b.EML', 'c.EML', 'd.EML', 'e.EML'])
        self.assertNotEqual(rows[4]['subject'], '')

    def test_a_text_gives_no_orders_to_the_terminal(self):
        self.place.put('evil\x1b[2J.EML', message('s@e.example', 'f', 't', 'red \x1b[31m alert', 3), MONDAY + 3 * DAY)
        self.assertNotIn('\x1b', self.run_it('list')[0])

    def test_a_reader_that_has_seen_enough_is_no_error(self):
        for number in range(3000):
            self.place.put(f'm{number}.EML', message('s@e.example', 'f', 't', 'u' * 80, 3), MONDAY + number)
        program = subprocess.Popen(self.place.command('list'), stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                                   env=self.place.environment)
        program.stdout.readline()
        program.stdout.close()
        self.assertEqual(program.stderr.read(), b'')
        program.stderr.close()
        self.assertEqual(program.wait(timeout=60), 0)

    def test_the_archive_of_the_settings_is_used(self):
        self.place.write_settings(ArchiveDir=self.place.archive)
        output = self.run_it('list', '--names', plain=True)[0]
        self.assertEqual(output.split(), ['a.EML', 'b.EML', 'c.EML', 'd.EML'])

    def test_another_program_has_other_settings(self):
        other = self.place.root / 'config' / 'other' / 'settings.ini'
        other.parent.mkdir()
        other.write_text(f'[Settings]\nArchiveDir={self.place.archive}\n')
        output = self.run_it('list', '--names', '--program', 'other', plain=True)[0]
        self.assertEqual(output.split(), ['a.EML', 'b.EML', 'c.EML', 'd.EML'])


class ShowTest(Console):
    def setUp(self):
        super().setUp()
        self.mail = message('s@e.example', 'Ann <ann@e.example>', 'bob@h.example', 'Two parts', 4,
                            body='--x\r\nContent-Type: text/plain; charset=utf-8\r\n\r\nGr\u00fc\u00dfe\x1b[1m\r\n'
                                 '--x\r\nContent-Type: application/pdf; name=a.pdf\r\n'
                                 'Content-Disposition: attachment; filename=a.pdf\r\n\r\n%PDF\r\n--x--\r\n',
                            more='MIME-Version: 1.0\r\nContent-Type: multipart/mixed; boundary=x\r\n')
        self.place.put('m.EML', self.mail)

    def test_header_and_text(self):
        self.assertEqual(self.run_it('show', 'm.EML')[0],
                         'From: Ann <ann@e.example>\nTo: bob@h.example\nDate: Mon, 2 Mar 2026 10:00:00 +0000\n'
                         'Subject: Two parts\n\n  Grüße\\[1m\n\nAttachments:\n- a.pdf (application/pdf, 4 bytes)\n')

    def test_html_is_made_into_text_below_what_does_not_fit(self):
        self.place.put('h.EML', message('s@e.example', 'Ann <ann@e.example>', 'bob@h.example', 'Page', 4,
                                        body='<p>Go <a href="http://evil.net/x">bank.de</a></p><script>x</script>',
                                        more='Content-Type: text/html\r\n'))
        self.assertEqual(self.run_it('show', 'h.EML')[0],
                         '! A link shows bank.de, but leads to evil.net.\n\n'
                         'From: Ann <ann@e.example>\nTo: bob@h.example\nDate: Mon, 2 Mar 2026 10:00:00 +0000\n'
                         'Subject: Page\n\n  Go bank.de [1]\n\nLinks:\n[1] http://evil.net/x\n')

    def test_raw_is_the_file(self):
        self.assertEqual(self.run_it('show', '--raw', 'm.EML', raw=True)[0], self.mail)

    def test_tree_is_that_of_the_window(self):
        output = self.run_it('show', '--tree', 'm.EML')[0].splitlines()
        self.assertEqual(output[0], 'MESSAGE')
        self.assertIn('  SUBJECT: Two parts', output)
        self.assertIn('PART2', output)
        self.assertIn('  ATTACHMENT: a.pdf', output)

    def test_json_is_one_object(self):
        (found,) = lines_of(self.run_it('show', '--json', 'm.EML')[0])
        self.assertEqual((found['subject'], found['text'], found['attachments'], found['warnings'], found['sender']),
                         ('Two parts', 'Grüße[1m\n', 'a.pdf', '', 's@e.example'))

    def test_tables_hold_the_text_apart_from_the_warnings(self):
        self.place.put('h.EML', message('s@e.example', 'Ann <ann@e.example>', 'bob@h.example', 'Page', 4,
                                        body='<p>Go <a href="http://evil.net/x">bank.de</a></p>'
                                             '<a href="http://evil.net/y">other.de</a>',
                                        more='Content-Type: text/html\r\n'))
        (found,) = lines_of(self.run_it('show', '--json', 'h.EML')[0])
        self.assertEqual(found['text'], 'Go bank.de [1]\n\nother.de [2]\n')
        warnings = ['A link shows bank.de, but leads to evil.net.', 'A link shows other.de, but leads to evil.net.']
        self.assertEqual(found['warnings'], '\n'.join(warnings))
        head = self.run_it('show', '--csv', 'h.EML')[0].splitlines()[0]
        self.assertTrue(head.endswith('"Text","Attachments","Warnings"'), head)

    def test_what_is_not_there_is_named(self):
        output, errors = self.run_it('show', 'gone.EML', code=1)
        self.assertEqual(output, '')
        self.assertEqual(errors, f'quellboxctl: {self.place.archive}/gone.EML: There is no such message.\n')


class DisposalTest(Console):
    def setUp(self):
        super().setUp()
        self.place.fill()

    def test_named_messages_are_deleted(self):
        output, errors = self.run_it('delete', 'a.EML', 'c.EML')
        self.assertEqual(output, 'Action  Done  Failed\ndelete     2       0\n')
        self.assertEqual(errors, '')
        self.assertEqual(self.place.names(), ['b.EML', 'd.EML'])

    def test_named_messages_are_unblocked(self):
        content = (self.place.archive / 'a.EML').read_bytes()
        output = self.run_it('unblock', '--json', 'a.EML')[0]
        self.assertEqual(lines_of(output), [{'action': 'unblock', 'done': 1, 'failed': 0}])
        self.assertEqual((self.place.pickup / 'a.EML').read_bytes(), content)
        self.assertEqual(self.place.names(), ['b.EML', 'c.EML', 'd.EML'])

    def test_chosen_messages_are_unblocked(self):
        self.run_it('unblock', '--match', 'from=@example.com')
        self.assertEqual(self.place.names(self.place.pickup), ['a.EML', 'c.EML'])

    def test_a_dry_run_prints_and_does_nothing(self):
        output = self.run_it('delete', '--all', '--dry-run', '--names')[0]
        self.assertEqual(output.split(), ['a.EML', 'b.EML', 'c.EML', 'd.EML'])
        output = self.run_it('unblock', 'b.EML', '--dry-run', '--json')[0]
        self.assertEqual([row['file'] for row in lines_of(output)], ['b.EML'])
        self.assertEqual(self.place.names(), ['a.EML', 'b.EML', 'c.EML', 'd.EML'])
        self.assertEqual(self.place.names(self.place.pickup), [])

    def test_nothing_happens_without_a_choice(self):
        for command in ('delete', 'unblock'):
            output, errors = self.run_it(command, code=2)
            self.assertEqual((output, errors), ('', 'quellboxctl: Name messages, or choose them by options. For all '
                                                    'messages there is --all.\n'))
        self.run_it('delete', '-', given=b'')
        self.assertEqual(len(self.place.names()), 4)

    def test_all_is_everything(self):
        self.run_it('delete', '--all')
        self.assertEqual(self.place.names(), [])

    def test_names_come_from_the_input(self):
        self.run_it('delete', '-', given=b'a.EML\nb.EML\n\n')
        self.assertEqual(self.place.names(), ['c.EML', 'd.EML'])

    def test_a_name_that_is_not_there_is_named_and_the_others_go(self):
        output, errors = self.run_it('delete', 'a.EML', 'gone.EML', code=1)
        self.assertEqual(output, 'Action  Done  Failed\ndelete     1       1\n')
        self.assertEqual(errors, f'quellboxctl: {self.place.archive}/gone.EML: There is no such message.\n')
        self.assertEqual(self.place.names(), ['b.EML', 'c.EML', 'd.EML'])

    def test_what_is_there_already_is_not_overwritten(self):
        (self.place.pickup / 'a.EML').write_bytes(b'other')
        errors = self.run_it('unblock', 'a.EML', 'b.EML', code=1)[1]
        self.assertIn('a.EML', errors)
        self.assertEqual((self.place.pickup / 'a.EML').read_bytes(), b'other')
        self.assertEqual(self.place.names(), ['a.EML', 'c.EML', 'd.EML'])

    def test_a_name_is_never_a_path(self):
        (self.place.root / 'precious').write_text('x')
        for name in ('../precious', '/etc/hostname', '..', '.', 'sub/x.EML'):
            errors = self.run_it('delete', '--', name, code=2)[1]
            self.assertEqual(errors, f'quellboxctl: "{name}" is no name of a message.\n')
        self.assertTrue((self.place.root / 'precious').exists())

    def test_names_and_choices_exclude_each_other(self):
        self.run_it('delete', 'a.EML', '--min-scl', '1', code=2)
        self.run_it('delete', 'a.EML', '--all', code=2)
        self.run_it('delete', 'a.EML', '-', code=2)
        self.run_it('delete', 'a.EML', '-0', code=2)
        self.assertEqual(len(self.place.names()), 4)

    def test_kept_messages_come_back(self):
        self.place.write_settings(KeepDeletedDays=5)
        self.run_it('delete', '--min-scl', '7')
        self.assertEqual(self.place.names(), ['a.EML', 'd.EML'])
        output = self.run_it('undo')[0]
        self.assertEqual(output, 'Action  Done  Failed\nundo       2       0\n')
        self.assertEqual(self.place.names(), ['a.EML', 'b.EML', 'c.EML', 'd.EML'])

    def test_a_name_in_bytes_comes_before_one_that_was_printed(self):
        self.place.put(b'\xe9.EML', message('s@e.example', 'f', 't', 'bytes', 3))
        printed = '\ufffdE9.EML'
        self.place.put(printed, message('s@e.example', 'f', 't', 'real', 3))
        self.run_it('delete', printed)
        self.assertIn(os.fsdecode(b'\xe9.EML'), self.place.names())
        self.assertNotIn(printed, self.place.names())
        self.run_it('delete', printed)
        self.assertNotIn(os.fsdecode(b'\xe9.EML'), self.place.names())

    def test_what_the_list_does_not_show_cannot_be_named(self):
        self.place.write_settings(ServerProfile='own', OwnEnding='.msg')
        self.place.put('x.msg', message('s@e.example', 'f', 't', 'u', 3))
        self.assertEqual(self.run_it('list', '--names')[0], 'x.msg\n')
        self.run_it('delete', 'a.EML', code=1)
        self.assertIn('a.EML', self.place.names())

    def test_streams_that_are_closed_do_no_harm(self):
        command = 'exec "$@" <&- >&- 2>&-'
        done = subprocess.run(['sh', '-c', command, 'sh', *self.place.command('unblock', 'a.EML', 'gone.EML')],
                              env=self.place.environment, timeout=60)
        self.assertEqual(done.returncode, 1)
        self.assertEqual(self.place.names(self.place.pickup), ['a.EML'])

    def test_an_input_that_cannot_be_read_is_an_error(self):
        folder = os.open(self.place.root, os.O_RDONLY)
        self.addCleanup(os.close, folder)
        done = subprocess.run(self.place.command('delete', '-'), stdin=folder, capture_output=True, text=True,
                              env=self.place.environment, timeout=60)
        self.assertEqual((done.returncode, done.stderr),
                         (1, 'quellboxctl: The names cannot be read from the input.\n'))

    def test_an_interruption_ends_the_wait_for_names(self):
        program = subprocess.Popen(self.place.command('delete', '-'), stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                   stderr=subprocess.PIPE, env=self.place.environment)
        time.sleep(0.5)
        program.send_signal(signal.SIGINT)
        self.assertEqual(program.wait(timeout=30), 4)
        program.communicate()

    def test_an_archive_has_one_name_in_the_history(self):
        self.place.write_settings(KeepDeletedDays=5)
        folder = os.path.relpath(self.place.archive)
        self.run_it('delete', 'a.EML', '--archive', './' + folder + '//.')
        self.run_it('undo')
        self.assertIn('a.EML', self.place.names())

    def test_an_interruption_ends_between_messages(self):
        for number in range(4000):
            self.place.put(f'm{number}.EML', message('s@e.example', 'f', 't', 'u', 3), MONDAY + number)
        program = subprocess.Popen(self.place.command('unblock', '--all'), stdout=subprocess.PIPE,
                                   stderr=subprocess.PIPE, env=self.place.environment)
        wait_for(lambda: self.place.names(self.place.pickup), 'the first message')
        program.send_signal(signal.SIGINT)
        output, errors = program.communicate(timeout=60)
        self.assertEqual((program.returncode, errors), (4, b''))
        moved = self.place.names(self.place.pickup)
        left = self.place.names()
        self.assertEqual(len(moved) + len(left), 4004)
        self.assertFalse(set(moved) & set(left))
        self.assertEqual(output.split()[-2:], [str(len(moved)).encode(), b'0'])

    def test_two_at_once_do_no_harm(self):
        for number in range(400):
            self.place.put(f'm{number}.EML', message('s@e.example', 'f', 't', 'u', 3), MONDAY + number)
        both = [subprocess.Popen(self.place.command('unblock', '--all'), stdout=subprocess.DEVNULL,
                                 stderr=subprocess.DEVNULL, env=self.place.environment) for _ in range(2)]
        for program in both:
            self.assertIn(program.wait(timeout=60), (0, 1))
        self.assertEqual(self.place.names(), [])
        self.assertEqual(len(self.place.names(self.place.pickup)), 404)


class TolerateTest(Console):
    def entries(self):
        return self.run_it('tolerate', 'list')[0].splitlines()[1:]

    def test_entries_are_added_listed_and_removed(self):
        self.assertEqual(self.run_it('tolerate', 'list'), ('', ''))
        output = self.run_it('tolerate', 'add', 'Joe@Example.com')[0]
        self.assertEqual(output, 'Whitelist entry  Result\njoe@example.com  added\n')
        self.assertEqual(self.entries(), ['joe@example.com'])
        output = self.run_it('tolerate', 'remove', 'joe@example.com')[0]
        self.assertEqual(output, 'Whitelist entry  Result\njoe@example.com  removed\n')
        self.assertEqual(self.entries(), [])

    def test_a_domain_takes_the_place_of_addresses_only_when_told(self):
        self.place.write_settings(whitelist=['joe@example.com', 'ann@example.com', 'x@other.example'])
        errors = self.run_it('tolerate', 'add', '@example.com', code=1)[1]
        self.assertIn('--replace', errors)
        self.assertEqual(len(self.entries()), 3)
        self.run_it('tolerate', 'add', '@example.com', '--replace')
        self.assertEqual(sorted(self.entries()), ['@example.com', 'x@other.example'])

    def test_a_sender_is_tested_by_the_rules(self):
        self.place.write_settings(whitelist=['@example.com'])
        self.assertEqual(self.run_it('tolerate', 'test', 'Joe@Example.COM')[0],
                         'Sender           Result\nJoe@Example.COM  tolerated\n')
        self.run_it('tolerate', 'test', 'joe@example.com.au')
        self.assertEqual(self.run_it('tolerate', 'test', '--json', 'joe@else.example', code=1)[0],
                         '{"sender":"joe@else.example","result":"not tolerated"}\n')

    def test_what_is_no_entry_is_refused(self):
        for text in ('joe', '@', 'a@b', '*@example.com', ''):
            errors = self.run_it('tolerate', 'add', text, code=2)[1]
            self.assertEqual(errors, f'quellboxctl: Invalid email address specified: {text}'.rstrip() + '\n')
        for text in ('jo e@example.com', 'joe@example.com\nx'):
            self.run_it('tolerate', 'add', text, code=2)
        self.run_it('tolerate', 'remove', 'joe@example.com', code=1)
        self.run_it('tolerate', 'add', ' Joe@example.com ')
        self.assertEqual(self.entries(), ['joe@example.com'])
        self.run_it('tolerate', 'remove', 'Joe@Example.com')
        self.assertEqual(self.entries(), [])
        self.run_it('tolerate', 'frob', 'x', code=2)
        self.run_it('tolerate', code=2)
        self.run_it('tolerate', 'add', code=2)

    def test_two_at_once_lose_no_entry(self):
        adding = [subprocess.Popen(self.place.command('tolerate', 'add', f'n{number}@example.com'),
                                   stdout=subprocess.DEVNULL, env=self.place.environment) for number in range(8)]
        self.assertEqual([program.wait(timeout=60) for program in adding], [0] * 8)
        self.assertEqual(sorted(self.entries()), [f'n{number}@example.com' for number in range(8)])


class NightTest(Console):
    def setUp(self):
        super().setUp()
        self.place.fill()

    def test_tolerated_messages_are_delivered(self):
        self.place.write_settings(whitelist=['@example.com'], TolerationLevel=1)
        output = self.run_it('deliver-tolerated', '--dry-run', '--names')[0]
        self.assertEqual(output.split(), ['a.EML', 'c.EML'])
        self.assertEqual(self.place.names(self.place.pickup), [])
        output = self.run_it('deliver-tolerated')[0]
        self.assertEqual(output, 'Action             Done  Failed\ndeliver-tolerated     2       0\n')
        self.assertEqual(self.place.names(self.place.pickup), ['a.EML', 'c.EML'])
        output = self.run_it('history', '--json')[0]
        self.assertEqual(sorted((line['file'], line['action'], line['result']) for line in lines_of(output)),
                         [('a.EML', 'deliver-tolerated', 'done'), ('c.EML', 'deliver-tolerated', 'done')])

    def test_a_disabled_whitelist_delivers_nothing(self):
        self.place.write_settings(whitelist=['@example.com'], TolerationLevel=0)
        self.run_it('deliver-tolerated', code=2)
        self.assertEqual(self.place.names(self.place.pickup), [])

    def test_the_day_filter_of_the_window_holds(self):
        now = int(time.time())
        self.place.put('new.EML', message('n@example.com', 'n', 't', 's', 1), now)
        self.place.write_settings(whitelist=['@example.com'], TolerationLevel=2, FilterDays=1, FilterMessages=1)
        self.run_it('deliver-tolerated')
        self.assertEqual(self.place.names(self.place.pickup), ['new.EML'])
        self.run_it('deliver-tolerated', '--days', '0')
        self.assertEqual(self.place.names(self.place.pickup), ['a.EML', 'c.EML', 'new.EML'])

    def test_cleansing_keeps_days_and_other_files(self):
        now = int(time.time())
        self.place.put('new.EML', message('n@example.com', 'n', 't', 's', 1), now)
        self.place.put('notes.txt', b'x')
        output = self.run_it('cleanse', '--keep-days', '7', '--dry-run', '--names')[0]
        self.assertEqual(output.split(), ['a.EML', 'b.EML', 'c.EML', 'd.EML'])
        self.assertEqual(len(self.place.names()), 6)
        output = self.run_it('cleanse', '--keep-days', '7')[0]
        self.assertEqual(output, 'Action   Done  Failed\ncleanse     4       0\n')
        self.assertEqual(self.place.names(), ['new.EML', 'notes.txt'])
        self.run_it('cleanse', '--keep-days', '0')
        self.assertEqual(self.place.names(), ['notes.txt'])

    def test_cleansing_wants_its_days(self):
        self.run_it('cleanse', code=2)
        for days in ('-1', '40000', 'x', ''):
            self.run_it('cleanse', f'--keep-days={days}', code=2)
        self.assertEqual(len(self.place.names()), 4)

    def test_what_was_kept_long_enough_goes(self):
        self.place.write_settings(KeepDeletedDays=1)
        self.run_it('delete', 'a.EML')
        (kept,) = (self.place.archive / self.kept_name()).iterdir()
        old = kept.with_name('20200101' + kept.name[8:])
        kept.rename(old)
        self.run_it('cleanse', '--keep-days', '30000')
        self.assertFalse(old.exists())

    def kept_name(self):
        (name,) = [name for name in os.listdir(self.place.archive) if name.startswith('.')]
        return name

    def test_statistics_count_and_add_up(self):
        output = self.run_it('stats')[0]
        self.assertEqual(output, (
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
        output = self.run_it('stats', '--by', 'domain', '--top', '1', '--json')[0]
        self.assertEqual(lines_of(output), [{'group': 'domain', 'count': 2, 'bytes': 402, 'value': 'example.com'}])
        self.run_it('stats', '--by', 'moon', code=2)
        for number in range(3):
            self.place.put(f'i{number}.EML', message('s@e.example', 'f', 'kim@home.example', f'Invoice {number}', 3))
        output = self.run_it('stats', '--by', 'subject', '--top', '1', '--json')[0]
        self.assertEqual([(row['group'], row['value'], row['count']) for row in lines_of(output)],
                         [('subject', 'Invoice …', 3)])
        self.assertNotIn('subject', self.run_it('stats')[0], 'scripts read what was always printed')
        self.run_it('stats', '--top', '0', code=2)


class HistoryTest(Console):
    def setUp(self):
        super().setUp()
        self.place.fill()

    def test_what_was_done_is_told_and_taken_back(self):
        self.run_it('unblock', 'a.EML', 'b.EML')
        self.run_it('delete', 'c.EML')
        lines = lines_of(self.run_it('history', '--json')[0])
        self.assertEqual([(line['action'], line['result'], line['file']) for line in lines][:1],
                         [('delete', 'done', 'c.EML')])
        self.assertEqual({line['file'] for line in lines[1:]}, {'a.EML', 'b.EML'})
        text = self.run_it('history', '--limit', '1')[0]
        self.assertEqual(text.splitlines()[0].split()[:4], ['Entry', 'Number', 'Time', 'Action'])
        # The delete was for good, so nothing is left of it to take back.
        self.run_it('undo', code=1)
        (entry,) = [line['id'] for line in lines if line['file'] == 'a.EML']
        self.run_it('undo', '--entry', str(entry))
        self.assertEqual(self.place.names(), ['a.EML', 'd.EML'])
        (action,) = {line['actionId'] for line in lines if line['action'] == 'unblock'}
        self.run_it('undo', str(action))
        self.assertEqual(self.place.names(), ['a.EML', 'b.EML', 'd.EML'])
        lines = lines_of(self.run_it('history', '--json', '--result', 'undone')[0])
        self.assertEqual({line['file'] for line in lines}, {'a.EML', 'b.EML'})

    def test_a_message_that_the_server_has_taken_does_not_come_back(self):
        self.run_it('unblock', 'a.EML')
        os.remove(self.place.pickup / 'a.EML')
        errors = self.run_it('undo', code=1)[1]
        self.assertIn('The mail server has taken the message out of the pickup directory.', errors)

    def test_bad_numbers_and_words_are_refused(self):
        for arguments in (('undo', 'x'), ('undo', '0'), ('undo', '1', '2'), ('undo', '1', '--entry', '1'),
                          ('history', '--action', 'frob'), ('history', '--result', 'maybe'), ('history', 'x'),
                          ('history', '--limit', '-1')):
            self.run_it(*arguments, code=2)
        self.run_it('undo', '4711', code=1)
        self.run_it('undo', '--entry', '4711', code=1)

    def test_no_history_is_told(self):
        self.place.write_settings(HistoryDays=0)
        output, errors = self.run_it('history')
        self.assertEqual((output, errors), ('', 'quellboxctl: The settings have no history kept (HistoryDays is 0).\n'))

    def test_a_locked_history_stops_no_action(self):
        self.run_it('delete', 'a.EML')
        database = sqlite3.connect(self.place.root / 'data' / 'quellbox' / 'history.sqlite', isolation_level=None)
        database.execute('BEGIN EXCLUSIVE')
        try:
            output, errors = self.run_it('delete', 'b.EML')
            self.assertEqual(output, 'Action  Done  Failed\ndelete     1       0\n')
            self.assertNotEqual(errors, '')
        finally:
            database.close()
        self.assertEqual(self.place.names(), ['c.EML', 'd.EML'])

    def test_a_damaged_history_is_told_and_put_aside(self):
        file = self.place.root / 'data' / 'quellbox' / 'history.sqlite'
        file.parent.mkdir(parents=True)
        file.write_bytes(b'no database at all' * 1000)
        errors = self.run_it('delete', 'a.EML')[1]
        self.assertEqual(errors.count('quellboxctl: '), 1)
        self.assertEqual(self.place.names(), ['b.EML', 'c.EML', 'd.EML'])


class PickupTest(Console):
    def test_a_test_message_is_written(self):
        output = self.run_it('pickup-test', '--json')[0]
        self.assertEqual(lines_of(output), [{'result': 'sent', 'detail': 'Testmessage send. Verify postmaster mailbox '
                                                                         'now!'}])
        self.assertIn(b'postmaster', (self.place.pickup / 'quellbox.eml').read_bytes())

    def test_it_waits_until_the_server_has_taken_the_message(self):
        program = subprocess.Popen(self.place.command('pickup-test', '--wait', '60', '--json'), stdout=subprocess.PIPE,
                                   env=self.place.environment)
        wait_for((self.place.pickup / 'quellbox.eml').exists, 'the test message')
        (self.place.pickup / 'quellbox.eml').unlink()
        output = program.communicate(timeout=60)[0].decode()
        self.assertEqual((program.returncode, lines_of(output)[0]['result']), (0, 'taken'))

    def test_a_server_that_does_not_take_it_is_a_failure(self):
        errors = self.run_it('pickup-test', '--wait', '1', code=1)[1]
        self.assertIn('Nobody has taken the test message', errors)


class WatchTest(Console):
    def begin(self, *arguments):
        return subprocess.Popen(self.place.command('watch', '--interval', '1', *arguments), stdout=subprocess.PIPE,
                                stderr=subprocess.PIPE, env=self.place.environment)

    def first_line(self, program):
        """What it prints first of new messages, of which there are ever more: when it began to watch nobody knows."""
        number = 0
        while not select.select([program.stdout], [], [], 0.5)[0]:
            number += 1
            self.assertLess(number, 120, 'nothing was printed for a minute')
            for name, to in (('bob', 'bob@home.example'), ('ann', 'ann@home.example')):
                self.place.put(f'new-{name}-{number}.EML', message('s@e.example', 'f', to, 'u', 3), MONDAY - DAY)
        return program.stdout.readline()

    def test_new_messages_are_printed_and_an_interruption_ends_it(self):
        self.place.fill()
        program = self.begin('--names', '--match', 'to=ann')
        self.assertRegex(self.first_line(program), rb'^new-ann-\d+\.EML\n$')
        program.send_signal(signal.SIGTERM)
        output, errors = program.communicate(timeout=60)
        self.assertEqual((program.returncode, errors), (4, b''))
        self.assertNotIn(b'bob', output)

    def test_an_archive_that_goes_and_comes_is_followed(self):
        program = self.begin('--json')
        self.first_line(program)
        self.place.archive.rename(self.place.root / 'away')
        self.assertIn(b'not found', program.stderr.readline())
        (self.place.root / 'away').rename(self.place.archive)
        self.place.put('back.EML', message('s@e.example', 'f', 'ann@home.example', 'u', 3))
        wait_for(lambda: json.loads(program.stdout.readline())['file'] == 'back.EML', 'the message')
        program.send_signal(signal.SIGINT)
        self.assertEqual(program.communicate(timeout=60)[1], b'')


class BadInputTest(Console):
    def test_usage_is_told_on_the_error_output(self):
        cases = [((), 'A command is missing. See quellboxctl --help.'),
                 (('frob',), '"frob" is no command. See quellboxctl --help.'),
                 (('list', '--frob'), "Unknown option 'frob'."),
                 (('list', 'x'), '"x" is one argument too many.'),
                 (('list', '--csv', '--json'), '--csv and --json exclude each other.'),
                 (('list', '--names', '--json'), '--names and --print0 cannot be combined with --csv or --json.'),
                 (('list', '--days', 'x'), '--days: "x" is no whole number from 0 to 32767.'),
                 (('list', '--days', '-1'), '--days: "-1" is no whole number from 0 to 32767.'),
                 (('list', '--days', '99999'), '--days: "99999" is no whole number from 0 to 32767.'),
                 (('list', '--min-scl', 'x'), '--min-scl: "x" is no number.'),
                 (('list', '--match', 'moon=x'),
                  '"moon=x" is no FIELD=TEXT; the fields are date, to, from, sender, subject, size, name.'),
                 (('list', '--match', 'subject'),
                  '"subject" is no FIELD=TEXT; the fields are date, to, from, sender, subject, size, name.'),
                 (('delete', '--match', 'subject='), '--match: the text after "subject=" is missing.'),
                 (('delete', '--min-scl', 'nan'), '--min-scl: "nan" is no number.'),
                 (('delete', '--days', '0'), 'Name messages, or choose them by options. For all messages there is '
                                             '--all.'),
                 (('delete', '--all', '--archive', ''), 'The name of a directory is empty.'),
                 (('unblock', 'a.EML', '--names'), '--names and --print0 need --dry-run.'),
                 (('delete', '--all', '-0'), '-0 needs "-", for names from the input.'),
                 (('tolerate', 'list', '--replace'), '--replace belongs to add.'),
                 (('list', '--sort', 'moon'), '--sort: there is no column "moon".'),
                 (('list', '--program', '../x'), '--program: "../x" is no name of a program.'),
                 (('show',), 'An argument is missing.'),
                 (('pickup-test', '--wait', '-3'), '--wait: "-3" is no whole number from 0 to 86400.'),
                 (('watch', '--interval', '0'), '--interval: "0" is no whole number from 1 to 86400.')]
        for arguments, text in cases:
            with self.subTest(arguments):
                output, errors = self.run_it(*arguments, plain=True, code=2)
                self.assertEqual((output, errors), ('', f'quellboxctl: {text}\n'))

    def test_an_archive_that_cannot_be_read_is_told(self):
        for folder in (self.place.root / 'none', self.place.settings):
            for command in (('list',), ('delete', '--all'), ('delete', 'a.EML'), ('show', 'a.EML'), ('stats',),
                            ('watch',), ('cleanse', '--keep-days', '1')):
                with self.subTest(folder=folder, command=command):
                    folder.parent.mkdir(exist_ok=True)
                    output, errors = self.run_it(*command, '--archive', str(folder), plain=True, code=3)
                    self.assertEqual(output, '')
                    self.assertIn('not found', errors)

    def test_an_archive_without_rights_is_told(self):
        self.place.fill()
        self.addCleanup(self.place.archive.chmod, 0o700)
        for rights in (0, 0o444):
            self.place.archive.chmod(rights)
            for command in (('list',), ('delete', '--all'), ('stats',)):
                with self.subTest(rights=oct(rights), command=command):
                    output, errors = self.run_as_nobody(*command, code=3)
                    self.assertEqual((output, errors.count('quellboxctl: ')), ('', 1))
                    self.assertIn('ermission denied', errors)

    def run_as_nobody(self, *arguments, code):
        """The superuser may read everything."""
        if os.geteuid() != 0:
            return self.run_it(*arguments, code=code)
        for folder in (self.place.root, self.place.settings.parent.parent, self.place.settings.parent):
            folder.chmod(0o755)
        self.place.environment['XDG_DATA_HOME'] = str(self.place.root / 'none')
        done = subprocess.run(self.place.command(*arguments), capture_output=True, text=True, timeout=60, user=65534,
                              env=self.place.environment)
        self.assertEqual(done.returncode, code, done.stderr)
        return done.stdout, done.stderr

    def test_without_an_archive_in_the_settings_nothing_is_touched(self):
        for command in (('list',), ('delete', '--all'), ('cleanse', '--keep-days', '0'), ('stats',), ('undo',)):
            with self.subTest(command):
                errors = self.run_it(*command, plain=True, code=3)[1]
                self.assertEqual(errors, 'quellboxctl: No archive is set up. Choose one in the window, or name it by '
                                         '--archive.\n')

    def test_a_pickup_directory_that_is_not_there_is_told_before_anything_moves(self):
        self.place.fill()
        missing = ['--archive', str(self.place.archive), '--pickup', str(self.place.root / 'none')]
        for command in (('unblock', '--all'), ('deliver-tolerated',), ('pickup-test',)):
            self.place.write_settings(TolerationLevel=1)
            errors = self.run_it(*command, *missing, plain=True, code=3)[1]
            self.assertEqual(errors, f'quellboxctl: Pickup directory {self.place.root}/none/ not found\n')
        self.assertEqual(len(self.place.names()), 4)

    def test_broken_settings_count_as_far_as_they_can_be_read(self):
        self.place.fill()
        for text, told in (('ServerProfile=moon', 'ServerProfile'), ('this is no setting', '.broken')):
            self.place.settings.write_text(f'[Settings]\n{text}\n')
            output, errors = self.run_it('list', '--names')
            self.assertEqual(output.split(), ['a.EML', 'b.EML', 'c.EML', 'd.EML'])
            self.assertIn(told, errors)

    def test_the_output_cannot_be_written(self):
        self.place.fill()
        with open('/dev/full', 'wb') as full:
            done = subprocess.run(self.place.command('list'), stdout=full, stderr=subprocess.PIPE,
                                  env=self.place.environment, timeout=60)
        self.assertEqual((done.returncode, done.stderr), (1, b'quellboxctl: The output cannot be written.\n'))

    def test_errors_are_told_in_german(self):
        errors = self.run_it('frob', plain=True, code=2, LANG='de_DE.UTF-8', LC_ALL='', LANGUAGE='de')[1]
        self.assertEqual(errors, 'quellboxctl: "frob" ist kein Befehl. Siehe quellboxctl --help.\n')

    def test_each_command_has_a_help_with_an_example(self):
        help_text = self.run_it('--help', plain=True)[0]
        commands = [line.split()[0] for line in help_text.splitlines() if line.startswith('  ')]
        self.assertEqual(commands, ['list', 'show', 'unblock', 'delete', 'tolerate', 'deliver-tolerated', 'cleanse',
                                    'stats', 'history', 'undo', 'pickup-test', 'watch'])
        for command in commands:
            text = self.run_it(command, '--help', plain=True)[0]
            self.assertTrue(text.startswith(f'Usage: quellboxctl {command} [options]'), text)
            self.assertIn(f'Example: quellboxctl ', text)
            self.assertIn('--archive', text)

    def test_the_version_is_told(self):
        self.assertRegex(self.run_it('--version', plain=True)[0], r'^quellboxctl \d+\.\d+\.\d+\n$')


class LibraryTest(Console):
    @unittest.skipUnless(sys.platform == 'linux', 'ldd is of Linux')
    def test_no_window_library_is_loaded(self):
        libraries = subprocess.run(['ldd', PROGRAM], capture_output=True, check=True, text=True).stdout
        self.assertIn('libQt6Core', libraries)
        for name in ('Qt6Gui', 'Qt6Widgets', 'libX11', 'libxcb', 'libwayland', 'libGL'):
            self.assertNotIn(name, libraries)

    @unittest.skipUnless(os.path.exists('/proc/self/maps'), 'there is no /proc')
    def test_none_is_loaded_later_either(self):
        self.place.fill()
        program = subprocess.Popen(self.place.command('watch', '--interval', '60'), stdout=subprocess.DEVNULL,
                                   env=self.place.environment)
        try:
            time.sleep(1)
            maps = pathlib.Path(f'/proc/{program.pid}/maps').read_text()
        finally:
            program.send_signal(signal.SIGINT)
            program.wait(timeout=60)
        self.assertIn('libQt6Core', maps)
        self.assertNotIn('Qt6Gui', maps)


if __name__ == '__main__':
    PROGRAM = program_of_arguments()
    unittest.main()
