#!/usr/bin/env python3
"""Runs the work at night, as it is installed, with the real program on an archive of its own, and with programs that
end in other ways; and lets its mail be taken by a script.

Usage: nightly_test.py QUELLBOXCTL
"""
import json
import os
import subprocess
import sys
import tempfile
import time
import unittest

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
NIGHTLY = os.path.join(ROOT, "packaging", "nightly", "quellboxctl-nightly")
MAIL = os.path.join(ROOT, "packaging", "nightly", "quellboxctl-nightly-mail")
PROGRAM = os.path.abspath(sys.argv[1]) if len(sys.argv) > 1 else ""
DAY = 86400


class NightlyTest(unittest.TestCase):
    def setUp(self):
        box = tempfile.TemporaryDirectory()
        self.addCleanup(box.cleanup)
        self.folder = box.name
        self.archive = self.make_folder("archive")
        self.pickup = self.make_folder("pickup")
        self.environment = dict(os.environ, LC_ALL="C.UTF-8", LANGUAGE="", HOME=self.folder, QUELLBOXCTL=PROGRAM,
                                XDG_CONFIG_HOME=os.path.join(self.folder, "config"),
                                XDG_DATA_HOME=os.path.join(self.folder, "data"))
        self.environment.pop("KEEP_DAYS", None)
        self.settings = os.path.join(self.make_folder("config/quellbox"), "settings.ini")
        with open(self.settings, "w", encoding="utf-8") as settings:
            settings.write(f"[Settings]\nArchiveDir={self.archive}/\nPickupDir={self.pickup}/\nTolerationLevel=2\n")
        self.call("tolerate", "add", "friend@x.example")
        for sender, age in (("friend", 0), ("friend", 20), ("stranger", 0), ("stranger", 20)):
            path = os.path.join(self.archive, f"{sender}{age}.eml")
            with open(path, "w", encoding="ascii") as message:
                message.write(f"X-Sender: {sender}@x.example\nX-Receiver: b@y.example\nSubject: One\n\ntext\n")
            os.utime(path, (time.time() - age * DAY,) * 2)

    def make_folder(self, name):
        path = os.path.join(self.folder, name)
        os.makedirs(path)
        return path

    def call(self, *arguments):
        return subprocess.run([PROGRAM, *arguments], env=self.environment, capture_output=True, text=True, timeout=60,
                              check=True).stdout

    def work(self, code, **environment):
        """What a night prints, which has to end with that exit status."""
        result = subprocess.run([NIGHTLY], env={**self.environment, **environment}, cwd=self.folder, timeout=120,
                                stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False)
        self.assertEqual(result.returncode, code, result.stdout)
        return result.stdout

    def stand_in(self, **codes):
        """A program that notes its command, and ends with the exit status that is given for it."""
        path = os.path.join(self.folder, "stand-in")
        cases = "\n".join(f"  {command.replace('_', '-')}) exit {code} ;;" for command, code in codes.items())
        with open(path, "w", encoding="ascii") as script:
            script.write(f'#!/bin/sh\necho "ran $*"\ncase $1 in\n{cases}\nesac\n')
        os.chmod(path, 0o755)
        return path

    def names(self, folder):
        return sorted(os.listdir(folder))

    def test_a_night_delivers_what_is_tolerated_and_deletes_what_is_old(self):
        text = self.work(0)
        self.assertEqual(self.names(self.pickup), ["friend0.eml", "friend20.eml"])
        self.assertEqual(self.names(self.archive), ["stranger0.eml"])
        self.assertIn("What remains", text)
        self.assertIn("x.example", text)
        history = [json.loads(line) for line in self.call("history", "--json").splitlines()]
        self.assertEqual([(entry["action"], entry["result"], entry["file"]) for entry in history[:1]],
                         [("cleanse", "done", "stranger20.eml")])
        self.assertEqual({(entry["action"], entry["result"], entry["file"]) for entry in history[1:3]},
                         {("deliver-tolerated", "done", name) for name in ("friend0.eml", "friend20.eml")})

    def test_the_days_that_remain_can_be_chosen(self):
        self.work(0, KEEP_DAYS="30")
        self.assertEqual(self.names(self.archive), ["stranger0.eml", "stranger20.eml"])

    def test_days_that_are_none_are_refused(self):
        for days in ("x", "-1", "7 8"):
            self.work(2, KEEP_DAYS=days)
        self.assertEqual(len(self.names(self.archive)), 4)

    def test_nothing_is_deleted_where_nothing_could_be_delivered(self):
        with open(self.settings, encoding="utf-8") as settings:
            text = settings.read()
        self.assertIn("TolerationLevel=2", text)
        with open(self.settings, "w", encoding="utf-8") as settings:
            settings.write(text.replace("TolerationLevel=2", "TolerationLevel=0")) # the whitelist is disabled
        self.assertIn("Nothing was deleted", self.work(2))
        self.assertEqual(len(self.names(self.archive)), 4)

    def test_an_archive_that_is_not_there_is_told(self):
        os.rename(self.archive, self.archive + "2")
        self.work(3)
        os.rename(self.archive + "2", self.archive)
        self.assertEqual(len(self.names(self.archive)), 4)

    def test_a_tolerated_message_that_could_not_be_delivered_is_not_deleted(self):
        text = self.work(1, QUELLBOXCTL=self.stand_in(deliver_tolerated=1))
        self.assertEqual([line for line in text.splitlines() if line.startswith("ran ")],
                         ["ran deliver-tolerated --days 0"])

    def test_single_messages_that_cannot_be_deleted_keep_nobody_from_the_rest(self):
        text = self.work(1, QUELLBOXCTL=self.stand_in(cleanse=1))
        self.assertEqual([line for line in text.splitlines() if line.startswith("ran ")],
                         ["ran deliver-tolerated --days 0", "ran cleanse --keep-days 7", "ran stats --top 10"])

    def test_an_interruption_ends_the_night(self):
        text = self.work(4, QUELLBOXCTL=self.stand_in(cleanse=4))
        self.assertNotIn("ran stats", text)

    def test_a_program_that_is_not_there_is_told(self):
        self.assertIn("Nothing was deleted", self.work(127, QUELLBOXCTL=os.path.join(self.folder, "none")))

    def mail(self, outcome, report, **environment):
        """The mail about a night."""
        reports = self.make_folder("reports" + str(len(os.listdir(self.folder))))
        for name, text in (("outcome", outcome), ("report", report)):
            if text is not None:
                with open(os.path.join(reports, name), "w", encoding="utf-8") as file:
                    file.write(text)
        taker = os.path.join(self.folder, "sendmail")
        with open(taker, "w", encoding="ascii") as script:
            script.write(f'#!/bin/sh\necho "$*" >"{self.folder}/arguments"\ncat >"{self.folder}/mail"\n')
        os.chmod(taker, 0o755)
        subprocess.run([MAIL, reports], env={**self.environment, "SENDMAIL": taker, **environment}, timeout=60,
                       check=True)
        self.assertEqual(self.names(reports), [])
        with open(os.path.join(self.folder, "arguments"), encoding="ascii") as arguments:
            self.assertEqual(arguments.read(), "-i -t\n")
        with open(os.path.join(self.folder, "mail"), encoding="utf-8") as mail:
            head, _, body = mail.read().partition("\n\n")
        return dict(line.split(": ", 1) for line in head.splitlines()), body

    def test_the_mail_says_how_the_night_ended(self):
        for outcome, said in (("success 0\n", ": done"), ("exit-code 1\n", ": some messages could not be dealt with"),
                              ("exit-code 3\n", " cannot be reached"), ("exit-code 4\n", ": interrupted"),
                              ("exit-code 2\n", ": FAILED, exit-code 2"), ("timeout TERM\n", ": FAILED, timeout TERM"),
                              (None, ": FAILED")):
            head, body = self.mail(outcome, "Grüße\n.\n")
            self.assertTrue(head["Subject"].endswith(said), head["Subject"])
            self.assertEqual(body, "Grüße\n.\n")

    def test_the_mail_goes_where_it_is_wanted(self):
        head, _ = self.mail("success 0\n", "text\n", MAILTO="one@x.example, two@x.example")
        self.assertEqual(head["To"], "one@x.example, two@x.example")
        head, _ = self.mail("success 0\n", "text\n", MAILTO="")
        self.assertNotEqual(head["To"], "")

    def test_a_night_without_a_report_is_told(self):
        head, body = self.mail(None, None)
        self.assertIn("FAILED", head["Subject"])
        self.assertIn("journalctl", body)

    def test_no_line_of_the_mail_is_too_long(self):
        _, body = self.mail("success 0\n", "x" * 5000)
        self.assertLessEqual(max(map(len, body.splitlines())), 998)
        self.assertEqual(body.replace("\n", ""), "x" * 5000)


if __name__ == "__main__":
    del sys.argv[1:]
    unittest.main()
