#!/usr/bin/python3
"""Messages through real mail servers and spam filters, what these block in the program's list, and releases of that.

For each chain: fifty messages are sent, the filter lets some pass and blocks others, the program lists the folder of
what is blocked, that is released behind the filter, and everything is looked for in the recipients' Maildirs. See
CONTRIBUTING.md; scripts/mail_test.sh installs what is needed and calls this as root.
"""
import argparse
import collections
import ctypes
import fcntl
import json
import os
import re
import shutil
import signal
import smtplib
import socket
import struct
import subprocess
import sys
import tempfile
import time

import messages
import stored
from servers import LOOPBACK, MAKERS, Keeper, make_folder

CLONE_NEWNET = 0x40000000
SIOCSIFFLAGS = 0x8914
IFF_UP = 1
PATIENCE = 240  # seconds until messages are where they have to be, also on a computer that has other work
REJECTED = 554  # what a milter's refusal becomes, RFC 5321, section 4.2.3
# How blocked messages are released. Each of them goes one of these ways, in turn: those of the program, as its setting
# "Delivery" has them, or those of this test where the program is left out.
SMTP, COMMAND, SMTPLIB, SENDMAIL = "smtp", "command", "smtplib", "sendmail"
WAYS_OF_PROGRAM, OWN_WAYS = [SMTP, COMMAND], [SMTPLIB, SENDMAIL]

EXPECTATIONS = "expectations.json"  # what the program is to show and to do, in the test's folder

# The chain whose server is killed, how many messages the program then releases at once, and when the server is killed:
# as soon as that share of them has left the archive.
KILLED_CHAIN, KILLED_COUNT, KILLED_AT = "spamassassin", 60, [0.2, 0.4, 0.6]

# What a message is rated at least for why it is spam.
LEAST_RATING = {messages.SPAM_GTUBE: 900, messages.SPAM_RULE: 8}

COLUMNS = ["server", "way", "messages", "refused", "blocked", "listed", "released", "found whole", "nowhere", "wrong",
           "uncertain"]


def leave_the_network():
    """From here on this process and what it starts see no network but a loopback interface of their own, where the
    system allows that. Filters like to ask the world."""
    if ctypes.CDLL(None, use_errno=True).unshare(CLONE_NEWNET):
        print("The network stays within reach, since there can be no other one here.")
        return
    with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as any_socket:
        fcntl.ioctl(any_socket, SIOCSIFFLAGS, struct.pack("16sH14x", b"lo", IFF_UP))


def make_key(place):
    """A key for signatures, and what the DNS would have about it."""
    path = os.path.join(place, "dkim.pem")
    subprocess.run(["openssl", "genrsa", "-traditional", "-out", path, "2048"], check=True, capture_output=True)
    public = subprocess.run(["openssl", "rsa", "-in", path, "-pubout"], check=True, capture_output=True).stdout
    with open(path, "rb") as file:
        return file.read(), b"v=DKIM1; k=rsa; p=" + b"".join(public.split(b"\n")[1:-2])


def connect(port):
    return smtplib.SMTP(LOOPBACK, port, local_hostname="mail." + messages.SENDER_DOMAIN, timeout=300)


def send(client, sender, recipients, data):
    """One message with CRLF; raises SMTPException unless the server takes it for all recipients."""
    options = ["BODY=8BITMIME"] if any(byte > 127 for byte in data) else []
    refused = client.sendmail(sender, recipients, data, options)
    if refused:
        raise smtplib.SMTPRecipientsRefused(refused)


class ChainTest:
    """One chain: its messages, and what has become of them."""

    def __init__(self, chain, sent, record, all_ways):
        self.chain, self.record, self.all_ways = chain, record, all_ways
        self.messages = sent
        self.by_identity = {message.identity: message for message in self.messages}
        self.refused, self.released, self.errors, self.files = set(), set(), [], []
        self.listed = set()  # identities of what the program lists as it is
        spam = [message.identity for message in self.messages if message.is_spam]
        self.ways = {identity: all_ways[number % len(all_ways)] for number, identity in enumerate(spam)}

    def complain(self, text):
        self.errors.append(f"{self.chain.name}: {text}")

    def send(self):
        with connect(self.chain.port) as client:
            for message in self.messages:
                try:
                    send(client, message.sender, message.recipients, message.data)
                except smtplib.SMTPDataError as error:
                    self.refused.add(message.identity)
                    if not message.is_refused or error.smtp_code != REJECTED:
                        self.complain(f"{message.identity} was refused: {error}")
                else:
                    if message.is_refused:
                        self.complain(f"{message.identity} was not refused")

    def expected_files(self):
        blocked = [message for message in self.messages if message.is_spam and not message.is_refused]
        return sum(len(message.recipients) for message in blocked) if self.chain.profile == "rspamd" else len(blocked)

    def expected_copies(self, is_released):
        return sum(len(message.recipients) for message in self.messages
                   if not message.is_refused and (is_released or not message.is_spam))

    def visible_files(self):
        return [name for name in os.listdir(self.chain.archive) if not name.startswith(".")]

    def copies(self):
        return {identity: copies for identity, copies in stored.read_maildirs(self.chain.postfix).items()
                if identity in self.by_identity}

    def wait(self, is_released):
        """Until everything is where it has to be, or long enough."""
        deadline = time.monotonic() + PATIENCE
        while time.monotonic() < deadline:
            delivered = sum(len(copies) for copies in self.copies().values())
            files = len(self.visible_files())
            if (delivered >= self.expected_copies(is_released) and (is_released or files >= self.expected_files())
                    and not self.chain.postfix.waiting()):
                return
            time.sleep(0.5)
        self.complain(f"there are {delivered} copies in the Maildirs instead of {self.expected_copies(is_released)}, "
                      f"{files} blocked files instead of {self.expected_files()}, "
                      f"and {self.chain.postfix.waiting()} messages in the queue")

    def look_at_blocked(self):
        """Reads the folder, and sets it against what was sent."""
        self.files, errors = stored.read_blocked(self.chain)
        self.errors += errors
        blocked_to = collections.defaultdict(list)
        for file in self.files:
            message = self.by_identity.get(file.identity)
            if message is None or not message.is_spam or message.is_refused:
                self.complain(f"{file.name} should not have been blocked")
                continue
            blocked_to[file.identity] += file.recipients
            wrong = stored.difference(file.data, message)
            if wrong:
                self.complain(f"{file.name} ({message.features}) is not what was sent: {wrong}")
            if file.sender != message.sender:
                self.complain(f"{file.name} says that its sender is {file.sender!r} instead of {message.sender!r}")
            # rspamd rates no message with a test line: it only says that it is spam.
            if message.kind != messages.SPAM_MARK and float(file.rating or 0) < LEAST_RATING[message.kind]:
                self.complain(f"{file.name} ({message.kind}) is rated {file.rating!r} only")
        for message in self.messages:
            if message.is_spam and not message.is_refused and \
                    sorted(blocked_to[message.identity]) != sorted(message.recipients):
                self.complain(f"{message.identity} ({message.kind}, {message.features}) is blocked for "
                              f"{blocked_to[message.identity]} instead of {message.recipients}")

    def expectation(self):
        """What the program is to show, for the test that drives it."""
        return {"name": self.chain.name, "profile": self.chain.profile, "archive": self.chain.archive + "/",
                "host": LOOPBACK, "port": self.chain.postfix.port_behind,
                "command": self.chain.postfix.sendmail,
                "files": {file.name: {"rating": file.rating, "sender": file.sender,
                                      "way": self.ways[file.identity]}
                          for file in self.files if file.identity in self.ways}}

    def look_at_untouched(self):
        """Listing must leave the folder alone."""
        if stored.read_blocked(self.chain)[0] != self.files:
            self.complain("the folder has changed while it was listed")

    def release_by_smtp(self, client, file):
        send(client, file.sender, file.recipients, stored.outgoing(file.data).replace(b"\n", b"\r\n"))

    def release_by_command(self, file):
        subprocess.run([*self.chain.postfix.sendmail, "-f", file.sender, "--", *file.recipients],
                       input=stored.outgoing(file.data), capture_output=True, check=True)

    def release(self):
        """Hands the blocked files to the server behind the filter, with the envelope that stands in them."""
        with connect(self.chain.postfix.port_behind) as client:
            for file in self.files:
                try:
                    if self.ways.get(file.identity) == SMTPLIB:
                        self.release_by_smtp(client, file)
                    else:
                        self.release_by_command(file)
                    self.released.add(file.identity)
                except (smtplib.SMTPException, subprocess.CalledProcessError) as error:
                    self.complain(f"{file.name} cannot be released: {error}")

    def judge(self, chosen):
        """Looks for messages in all Maildirs: how many are whole for each recipient, with some nowhere, or wrong."""
        copies = self.copies()
        whole = nowhere = wrong = 0
        for message in chosen:
            found = copies.get(message.identity, [])
            missing = set(message.recipients) - {copy.recipient for copy in found}
            faults = [f"in the Maildir of {copy.recipient} {error}" for copy in found
                      for error in stored.copy_errors(copy, message, self.record)]
            if sorted(copy.recipient for copy in found) != sorted(message.recipients) and not missing:
                faults.append("was delivered to " + ", ".join(sorted(copy.recipient for copy in found)))
            for recipient in sorted(missing):
                self.complain(f"{message.identity} ({message.kind}, {message.features}) is not in the Maildir of "
                              f"{recipient}")
            for fault in faults:
                self.complain(f"{message.identity} ({message.kind}, {message.features}) {fault}")
            nowhere += bool(missing)
            wrong += bool(faults) and not missing
            whole += not missing and not faults
        return whole, nowhere, wrong

    def rows(self):
        """The lines of the table: what the filter lets pass, and each way of releases. What is refused is told to the
        sender, and has to be nowhere."""
        copies = self.copies()
        for message in self.messages:
            if message.is_refused and message.identity in copies:
                self.complain(f"{message.identity} was refused and delivered")
        ordinary = [message for message in self.messages if not message.is_spam]
        rows = [[self.chain.name, "passes", len(ordinary), "", "", "", "", *self.judge(ordinary), ""]]
        in_folder = {file.identity for file in self.files}
        for way in self.all_ways:
            chosen = [message for message in self.messages if self.ways.get(message.identity) == way]
            counts = [len([message for message in chosen if message.identity in done])
                      for done in (self.refused, in_folder, self.listed, self.released)]
            rows.append([self.chain.name, way, len(chosen), *counts,
                         *self.judge([message for message in chosen if not message.is_refused]), ""])
        return rows


class KillTest(ChainTest):
    """Spam that the program releases by SMTP, all of it at once, while the server behind the filter is killed."""

    def __init__(self, chain, key, record, number):
        super().__init__(chain, messages.make_spam(f"{chain.name}.killed{number}", key, KILLED_COUNT), record, [SMTP])
        self.uncertain = set()

    def expectation(self):
        # What may have been delivered is not released again.
        expected = super().expectation()
        for name, file in expected["files"].items():
            file["way"] = "" if is_uncertain(name) else file["way"]
        return expected

    def wait_until_quiet(self):
        """Until the server has delivered all that it has taken."""
        deadline = time.monotonic() + PATIENCE
        while self.chain.postfix.waiting() and time.monotonic() < deadline:
            time.sleep(0.5)
        if self.chain.postfix.waiting():
            self.complain("the server still has messages in its queue")

    def judge_each(self, when):
        """Looks where each message is; returns how many were taken by the server. No message may be nowhere, and none
        in two places, or there twice, without being marked."""
        copies = self.copies()
        self.files, errors = stored.read_blocked(self.chain)
        self.errors += errors
        sending = os.path.join(self.chain.archive, ".quellbox-sending")
        if os.path.isdir(sending) and os.listdir(sending):
            self.complain(f"{when}, {os.listdir(sending)} are still being sent")
        places = collections.defaultdict(list)
        for file in self.files:
            places[file.identity].append(file)
        taken = 0
        for message in self.messages:
            files, found = places[message.identity], copies.get(message.identity, [])
            names = [file.name for file in files]
            by_acceptance = collections.defaultdict(set)
            for copy in found:
                by_acceptance[stored.acceptance(copy)].add(copy.recipient)
            marked = any(is_uncertain(name) for name in names)
            faults = [error for copy in found for error in stored.copy_errors(copy, message, self.record)]
            faults += [wrong for file in files if (wrong := stored.difference(file.data, message))]
            faults += ["was not delivered to all" for people in by_acceptance.values()
                       if people != set(message.recipients)]
            if len(names) > 1 or len(by_acceptance) > 1 or (found and names and not marked):
                faults.append(f"is there twice without being marked: {names}, taken {len(by_acceptance)} times")
            if not found and not names:
                faults.append("is lost")
            for fault in faults:
                self.complain(f"{when}, {message.identity} ({message.features}) {fault}")
            taken += bool(found)
            if marked:
                self.uncertain.add(message.identity)
        return taken

    def run(self, program, place, server, keeper, share):
        """Sends, has the program release, and kills the server when that share of the messages has left the archive.
        Returns the server that was started instead, and the line of the table."""
        self.send()
        self.wait(is_released=False)
        self.look_at_blocked()
        blocked = len(self.files)
        write_expectations(place, [self])
        process = start_program(program, f"IsKilled/{self.chain.name}", place)
        while len(self.visible_files()) > blocked * (1 - share) and process.poll() is None:
            time.sleep(0.0005)
        killed = server.kill()
        self.errors += end_program(process, "IsKilled")[1]
        server = self.chain.postfix.start(keeper)
        server.wait_until_it_answers()
        self.wait_until_quiet()
        taken = self.judge_each("after the kill")
        left = [file for file in self.files if not is_uncertain(file.name)]
        delivered = [message for message in self.messages if message.identity in self.copies()]
        print(f"{self.chain.name}: killed {dict(collections.Counter(killed))}; afterwards {taken} of {blocked} messages "
              f"were in the Maildirs, {len(left)} in the archive as before, {len(self.uncertain)} marked there, of "
              f"which {len(self.uncertain & {message.identity for message in delivered})} were delivered", flush=True)
        if not left or taken == 0:
            self.complain("the server was not killed in the middle")
        else:
            write_expectations(place, [self])
            self.errors += end_program(start_program(program, f"IsKilled/{self.chain.name}", place), "IsKilled")[1]
        self.wait_until_quiet()
        taken_in_the_end = self.judge_each("in the end")
        whole = taken_in_the_end + len(self.uncertain - {identity for identity in self.copies()})
        row = [self.chain.name, f"smtp, killed at {share:.0%}", len(self.messages), "", blocked, "", taken, whole,
               len(self.messages) - whole, len(self.errors), len(self.uncertain)]
        for name in self.visible_files():
            os.remove(os.path.join(self.chain.archive, name))
        return server, row


def is_uncertain(name):
    return ".uncertain" in name


def start_program(program, what, place):
    """Starts some of the tests that drive the program."""
    environment = {**os.environ, "QUELLBOX_MAIL_EXPECTATIONS": os.path.join(place, EXPECTATIONS),
                   "QT_QPA_PLATFORM": "offscreen", "TZ": "UTC", "XDG_CONFIG_HOME": place, "XDG_DATA_HOME": place,
                   "XDG_CACHE_HOME": place}
    return subprocess.Popen([program, f"--gtest_filter=*{what}*"], env=environment, stdout=subprocess.PIPE,
                            stderr=subprocess.STDOUT, text=True, errors="replace")


def end_program(process, what):
    """Waits for these; returns their output and how they have ended."""
    output = process.communicate()[0]
    print(output)
    return output, [f"the program's test {what} has ended with {process.returncode}"] if process.returncode else []


def drive(program, what, place):
    """Runs some of the tests that drive the program; returns its output and how it has ended."""
    return end_program(start_program(program, what, place), what)


def write_expectations(place, tests):
    with open(os.path.join(place, EXPECTATIONS), "w", encoding="utf-8") as file:
        json.dump({"chains": [test.expectation() for test in tests]}, file, indent=1)


def list_by_program(program, tests, place):
    """Lets the program list each folder. Its test says how many rows were right; returns what went wrong."""
    write_expectations(place, tests)
    output, errors = drive(program, "Lists", place)
    listed = dict(re.findall(r"^listed: (\w+) (\d+)$", output, re.MULTILINE))
    for test in tests:
        rows = int(listed.get(test.chain.name, 0))
        if rows != len(test.files):
            errors.append(f"{test.chain.name}: the program lists {rows} of {len(test.files)} files as they are")
        else:
            test.listed = {file.identity for file in test.files}
        test.look_at_untouched()
    return errors


def release_by_program(program, tests, place):
    """Lets the program release all that is blocked; returns what went wrong."""
    errors = drive(program, "Releases", place)[1]
    for test in tests:
        left = set(test.visible_files())
        test.released = {file.identity for file in test.files if file.name not in left}
        if left:
            test.complain(f"the program has not released {sorted(left)}")
    return errors


def print_table(rows):
    table = [COLUMNS, *[[str(cell) for cell in row] for row in rows]]
    widths = [max(len(row[column]) for row in table) for column in range(len(COLUMNS))]
    for row in table:
        print("  ".join(cell.ljust(width) if column < 2 else cell.rjust(width)
                        for column, (cell, width) in enumerate(zip(row, widths))))


def run(place, keeper, servers, program):
    """Everything; returns the rows of the table and what went wrong."""
    key, record = make_key(place)
    tests = []
    for name, make in MAKERS.items():
        chains, starts = make(make_folder(os.path.join(place, name)))
        servers += [start(keeper) for start in starts]
        ways = WAYS_OF_PROGRAM if program else OWN_WAYS
        tests += [ChainTest(chain, messages.make_messages(chain.name, key), record, ways) for chain in chains]
    for server in servers:
        server.wait_until_it_answers()
    with open(os.path.join(place, "sent.json"), "w", encoding="utf-8") as file:
        json.dump({test.chain.name: [{"identity": message.identity, "kind": message.kind, "features": message.features,
                                      "sender": message.sender, "recipients": message.recipients}
                                     for message in test.messages] for test in tests}, file, indent=1)
    for test in tests:
        began = time.monotonic()
        test.send()
        test.wait(is_released=False)
        test.look_at_blocked()
        print(f"{test.chain.name}: {len(test.messages)} messages sent, {len(test.files)} files in the folder, "
              f"{time.monotonic() - began:.0f} s", flush=True)
    errors = []
    if program:
        errors += list_by_program(program, tests, place)
        errors += release_by_program(program, tests, place)
    else:
        for test in tests:
            test.release()
    for test in tests:
        test.wait(is_released=True)
    rows = [row for test in tests for row in test.rows()]
    for test in tests:
        unknown = set(stored.read_maildirs(test.chain.postfix)) - {one for other in tests for one in other.by_identity}
        if unknown:
            test.complain(f"there are messages in the Maildirs that nobody has sent: {sorted(unknown)}")
        errors += test.errors
    if program:
        killed_rows, killed_errors = run_killed(place, keeper, servers, program, (key, record), tests)
        rows += killed_rows
        errors += killed_errors
    return rows, errors


def run_killed(place, keeper, servers, program, key_and_record, tests):
    """The releases during which the server is killed; returns rows of the table and what went wrong."""
    chain = next(test.chain for test in tests if test.chain.name == KILLED_CHAIN)
    rows, errors = [], []
    for number, share in enumerate(KILLED_AT):
        test = KillTest(chain, *key_and_record, number)
        server = next(server for server in servers if server.port == chain.port and server.name == "postfix")
        fresh, row = test.run(program, place, server, keeper, share)
        servers[servers.index(server)] = fresh
        rows.append(row)
        errors += test.errors
    return rows, errors


class Interrupted(Exception):
    """The test is to end at once."""


def interrupt(number, _frame):
    raise Interrupted(f"interrupted by signal {number}")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--program", help="the test that drives the program; without it only the servers are tried")
    program = parser.parse_args().program
    if os.geteuid() != 0:
        sys.exit("The servers change to users of their own, for which this needs root.")
    os.environ["PATH"] += ":/usr/local/sbin:/usr/sbin:/sbin"
    os.umask(0o022)
    leave_the_network()
    place = tempfile.mkdtemp(prefix="quellbox-mail-")
    os.chmod(place, 0o755)
    keeper, servers = Keeper(), []
    for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
        signal.signal(number, interrupt)
    rows, errors = [], []
    try:
        rows, errors = run(place, keeper, servers, program)
    except (Interrupted, RuntimeError, OSError, smtplib.SMTPException) as error:
        errors.append(f"{type(error).__name__}: {error}")
    finally:
        for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
            signal.signal(number, signal.SIG_IGN)
        for server in servers:
            server.end()
        keeper.end()
        if os.environ.get("KEEP"):
            print(f"All messages and logs are in {place}")
        else:
            shutil.rmtree(place, ignore_errors=True)
    for error in errors:
        print("wrong: " + error)
    if rows:
        print_table(rows)
    print(f"{len(errors)} differences" if errors or not rows else "Every message is where it has to be.")
    sys.exit(1 if errors or not rows else 0)


if __name__ == "__main__":
    main()
