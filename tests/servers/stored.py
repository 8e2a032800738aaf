"""What servers have written: blocked messages in a folder, delivered ones in Maildirs."""
import dataclasses
import gzip
import os
import re

import dkim

from messages import DOMAIN, PEOPLE, SELECTOR, SENDER_DOMAIN

# Fields that mail servers and filters add, in lower case; the messages of the test have none of them.
ADDED = re.compile(r"return-path|delivered-to|x-original-to|x-envelope-.*|x-quarantine-id|x-amavis-.*|x-virus-scanned|"
                   r"x-spam|x-spam-.*|x-spamd-.*|x-rspamd-.*")
# Those that say what is nobody's business but the server's.
CONFIDENTIAL = re.compile(r"x-envelope-.*|x-quarantine-id")

# Where each filter's folder says to whom a message goes, and how it is rated.
RECIPIENT_FIELDS = {"amavis": "x-envelope-to-blocked", "spamassassin": "x-envelope-to", "rspamd": "x-original-to"}
SENDER_FIELDS = {"amavis": "x-envelope-from", "spamassassin": "return-path", "rspamd": "return-path"}
RATINGS = {"amavis": ("x-spam-score", r"(-?[\d.]+)"), "spamassassin": ("x-spam-status", r"score=(-?[\d.]+)"),
           "rspamd": ("x-spamd-result", r"\[(-?[\d.]+) /")}


def split(data):
    """The header fields as pairs of name in lower case and bytes, and the rest with the blank line."""
    head, line, body = data.partition(b"\n\n")
    fields = re.findall(rb"[^\n]*\n(?:[ \t][^\n]*\n)*", head + b"\n")
    return [(field.partition(b":")[0].decode("latin-1").strip().lower(), field) for field in fields], line[1:] + body


def value(field):
    return re.sub(rb"\n(?=[ \t])", b"", field.partition(b":")[2]).strip().decode("utf-8", "surrogateescape")


def values(data, name):
    return [value(field) for found, field in split(data)[0] if found == name]


def addresses(text):
    return [address for address in re.findall(r"<([^>]*)>", text)] or [text]


def original(data, message):
    """The message without what servers have added: fields of theirs, and what stands above the sender's own first
    Received field."""
    fields, body = split(data)
    own = [field for name, field in split(message.stored())[0] if name == "received"]
    kept = [field for name, field in fields
            if not ADDED.fullmatch(name) and (name != "received" or field in own)]
    return b"".join(kept) + body


def difference(data, message):
    """Where the message differs from what was sent; empty when it does not."""
    found, sent = original(data, message), message.stored()
    if found == sent:
        return ""
    at = next((k for k, pair in enumerate(zip(found, sent)) if pair[0] != pair[1]), min(len(found), len(sent)))
    return f"byte {at}: {found[max(at - 20, 0):at + 40]!r} instead of {sent[max(at - 20, 0):at + 40]!r}"


def signature_error(data, record):
    """Why a signature is not valid; empty when it is. `record` is what the DNS would have about the key."""
    def ask(name, timeout=5):
        asked = name.decode() if isinstance(name, bytes) else name
        return record if asked.rstrip(".") == f"{SELECTOR}._domainkey.{SENDER_DOMAIN}" else None
    try:
        return "" if dkim.verify(data.replace(b"\n", b"\r\n"), dnsfunc=ask) else "the signature is not valid"
    except dkim.DKIMException as error:
        return f"the signature is not valid: {error}"


@dataclasses.dataclass
class BlockedFile:
    """A file of the archive directory."""
    name: str
    data: bytes
    identity: str
    sender: str
    recipients: list
    rating: str  # empty where the filter has written none


def read_blocked(chain):
    """All files in the directory of a chain, and what is wrong with them."""
    files, errors = [], []
    for name in sorted(os.listdir(chain.archive)):
        if os.path.isdir(os.path.join(chain.archive, name)):
            continue  # of the program, while it sends
        with open(os.path.join(chain.archive, name), "rb") as file:
            data = file.read()
        if chain.is_packed:
            data = gzip.decompress(data)
        field, pattern = RATINGS[chain.profile]
        identity = values(data, "message-id")
        sender = values(data, SENDER_FIELDS[chain.profile])
        recipients = values(data, RECIPIENT_FIELDS[chain.profile])
        ratings = [re.search(pattern, text) for text in values(data, field)]
        if name.startswith(".") or not identity or not sender or not recipients or None in ratings:
            errors.append(f"{chain.name}: {name} is no blocked message of this filter")
            continue
        files.append(BlockedFile(name, data, identity[0].strip("<>"), addresses(sender[0])[0],
                                 addresses(recipients[0]), ratings[0].group(1) if ratings else ""))
    return files, errors


def outgoing(data):
    """The message as it is released: without what the servers have put on top of it."""
    fields, body = split(data)
    first = next((k for k, (name, _) in enumerate(fields) if name == "received"), len(fields))
    return b"".join(field for k, (name, field) in enumerate(fields) if k >= first or not ADDED.fullmatch(name)) + body


@dataclasses.dataclass
class Copy:
    """A message in somebody's Maildir."""
    recipient: str
    data: bytes


def read_maildirs(postfix):
    """All delivered messages by their identity."""
    copies = {}
    for person in PEOPLE:
        folder = os.path.join(postfix.mail, person, "new")
        for name in sorted(os.listdir(folder)) if os.path.isdir(folder) else []:
            with open(os.path.join(folder, name), "rb") as file:
                data = file.read()
            identity = (values(data, "message-id") or [""])[0].strip("<>")
            copies.setdefault(identity, []).append(Copy(f"{person}@{DOMAIN}", data))
    return copies


def acceptance(copy):
    """Under what the server that delivered a copy has taken the message: the name in its own Received field, which is
    the topmost one. A server that was killed may deliver the same acceptance once more."""
    return re.search(r"\sid\s+(\S+?);?\s", values(copy.data, "received")[0] + " ").group(1)


def copy_errors(copy, message, record):
    """What is wrong with a delivered message."""
    errors = []
    names = [name for name, _ in split(copy.data)[0]]
    wrong = difference(copy.data, message)
    if wrong:
        errors.append("is not what was sent: " + wrong)
    if [name for name in names if CONFIDENTIAL.fullmatch(name)]:
        errors.append("tells the envelope to its recipient")
    if values(copy.data, "delivered-to") != [copy.recipient]:
        errors.append(f"has Delivered-To {values(copy.data, 'delivered-to')}")
    if values(copy.data, "return-path") != [f"<{message.sender}>"]:
        errors.append(f"has Return-Path {values(copy.data, 'return-path')} instead of <{message.sender}>")
    if message.is_signed:
        wrong = signature_error(copy.data, record)
        if wrong:
            errors.append(wrong)
    return errors
