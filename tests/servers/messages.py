"""The messages that are sent through each chain: the same bytes in every run, except for signatures and their key."""
import base64
import dataclasses
import itertools
import random

import dkim

DOMAIN = "quell.test"  # reserved for tests, RFC 2606, section 2
SENDER_DOMAIN = "shop.test"
SELECTOR = "mail"
PEOPLE = ["anna", "bernd", "clara", "dora"]
COUNT = 50

# SpamAssassin and amavis give this line 1000 points; rspamd refuses the message.
GTUBE = b"XJS*C4JDBQADN1.NSBN3*2IDNEN*GTUBE-STANDARD-ANTI-UBE-TEST-EMAIL*C.34X"
# rspamd's own variant, for which it adds header fields.
GTUBE_MARK = b"Y" + GTUBE[1:]
# What a rule of each filter's configuration in servers.py looks for.
RULE_TEXT = b"quellbox asks the filter for points"

SPAM_GTUBE = "test line"
SPAM_MARK = "test line of rspamd"
SPAM_RULE = "rule"
ORDINARY = "ordinary"


@dataclasses.dataclass
class Message:
    """A message as it goes over the wire, with CRLF, and what is to become of it."""
    identity: str  # Message-ID without brackets
    kind: str
    features: str
    sender: str
    recipients: list
    data: bytes
    is_signed: bool
    is_refused: bool = False  # the filter takes it only to refuse it

    @property
    def is_spam(self):
        return self.kind != ORDINARY

    def stored(self):
        """The bytes in a file of a server, which ends lines with LF."""
        return self.data.replace(b"\r\n", b"\n")


def text_part(lines, charset="us-ascii", encoding="7bit"):
    """Header fields and body of a text."""
    fields = [b"MIME-Version: 1.0", f"Content-Type: text/plain; charset={charset}".encode(),
              f"Content-Transfer-Encoding: {encoding}".encode()]
    return fields, lines


def multipart(kind, parts):
    """Header fields and body of several parts, each of them given as fields and lines."""
    boundary = b"=_part_of_the_test"
    lines = [b"This is a message in MIME format."]
    for fields, body in parts:
        lines += [b"", b"--" + boundary, *fields, b"", *body]
    lines += [b"", b"--" + boundary + b"--"]
    return [b"MIME-Version: 1.0", b"Content-Type: multipart/" + kind + b'; boundary="' + boundary + b'"'], lines


def base64_lines(data):
    return base64.encodebytes(data).rstrip(b"\n").split(b"\n")


def plain(lines, _chance):
    return text_part(lines)


def attachment(lines, chance):
    data = chance.randbytes(3000)
    fields = [b'Content-Type: application/octet-stream; name="data.bin"', b"Content-Transfer-Encoding: base64",
              b'Content-Disposition: attachment; filename="data.bin"']
    text = ([b"Content-Type: text/plain; charset=us-ascii"], lines)
    return multipart(b"mixed", [text, (fields, base64_lines(data))])


def attached_message(lines, _chance):
    inner = [b"From: inner@example.org", b"To: inner@example.com", b"Subject: a message within", b"",
             b"Its text.", b".", b"--no boundary"]
    text = ([b"Content-Type: text/plain; charset=us-ascii"], lines)
    return multipart(b"mixed", [text, ([b"Content-Type: message/rfc822"], inner)])


def page(lines, _chance):
    html = [b"<html><body><p>", *lines, b"</p></body></html>"]
    return multipart(b"alternative", [([b"Content-Type: text/plain; charset=us-ascii"], lines),
                                      ([b"Content-Type: text/html; charset=us-ascii"], html)])


def utf8_body(lines, _chance):
    return text_part(["Grüße aus Köln, 東京 und Αθήνα".encode(), *lines], "utf-8", "8bit")


def latin1_body(lines, _chance):
    return text_part(["Grüße aus Köln, façade".encode("iso-8859-1"), *lines], "iso-8859-1", "8bit")


def quoted_printable(lines, _chance):
    return text_part([b"Gr=C3=BC=C3=9Fe, a soft=", b"break and a blank at the end=20", *lines], "utf-8",
                     "quoted-printable")


def dots(lines, _chance):
    return text_part([b".", b"..", b".hidden", *lines, b". and so on", b"..."])


def long_lines(lines, chance):
    # The longest line that RFC 5322, section 2.1.1, allows, and one that is longer than servers read at a time.
    letters = b"abcdefghij klmnopqrstuvwxyz"
    return text_part([bytes(chance.choices(letters, k=998)), *lines, bytes(chance.choices(letters, k=5000))])


def blanks(lines, _chance):
    return text_part([b"  before", b"after \t ", b"", b"", *lines, b"From the beginning of a line", b"", b"", b""])


BODIES = [plain, attachment, utf8_body, dots, latin1_body, long_lines, page, blanks, quoted_printable,
          attached_message, plain]

SUBJECTS = {
    "ascii": b"Everything must go",
    "encoded": b"=?utf-8?q?Alles_mu=C3=9F?= =?iso-8859-1?b?8w==?= raus",
    "raw": "Alles muß raus, 東京".encode(),
    "raw8": "Alles muß raus".encode("iso-8859-1"),
    "folded": b"Everything\r\n\tmust go,\r\n and even more than that",
}
NAMES = {
    "ascii": b'"The Shop"',
    "encoded": b"=?utf-8?q?J=C3=BCrgen_M=C3=BCller?=",
    "raw": "Jürgen Müller".encode(),
    "raw8": "Jürgen Müller".encode("iso-8859-1"),
    "folded": b'"The Shop,\r\n of course"',
}


def spam_kind(number, chain):
    """Three of five messages are spam. Filters that know only one test line get that for both."""
    if number % 5 >= 3:
        return ORDINARY
    if chain.startswith("rspamd"):
        # One message in the middle and one at the end are refused.
        return [SPAM_MARK, SPAM_RULE][number // 5 % 2] if number not in (22, 47) else SPAM_GTUBE
    return [SPAM_GTUBE, SPAM_RULE][number // 5 % 2]


def envelope_sender(number):
    if number % 13 == 7:
        return ""  # a bounce, RFC 5321, section 4.5.5
    if number % 13 == 3:
        return f"list+anna={DOMAIN}@{SENDER_DOMAIN}"
    return f"bounce-{number}@{SENDER_DOMAIN}"


def envelope_recipients(number):
    people = [PEOPLE[(number + k) % len(PEOPLE)] for k in range(number % 4 if number % 3 == 0 else 0)]
    return [f"{name}@{DOMAIN}" for name in people or [PEOPLE[number % len(PEOPLE)]]]


def sign(data, number, key):
    canonicalization = [(b"relaxed", b"relaxed"), (b"simple", b"simple"), (b"relaxed", b"simple")][number // 3 % 3]
    return dkim.sign(data, SELECTOR.encode(), SENDER_DOMAIN.encode(), key, canonicalize=canonicalization,
                     include_headers=[b"From", b"To", b"Subject", b"Date", b"Message-ID", b"MIME-Version",
                                      b"Content-Type"]) + data


def make_message(number, chain, key):
    chance = random.Random(number)
    kind = spam_kind(number, chain)
    style = list(SUBJECTS)[number % len(SUBJECTS)] if number % 7 else "raw"
    body = BODIES[number % len(BODIES)]
    identity = f"{chain}.{number}@{SENDER_DOMAIN}"
    recipients = envelope_recipients(number)
    lines = [f"Message {number} of the chain {chain}.".encode(), b"",
             {SPAM_GTUBE: GTUBE, SPAM_MARK: GTUBE_MARK, SPAM_RULE: RULE_TEXT, ORDINARY: b"Nothing special."}[kind], b"",
             b"Kind regards"]
    fields, content = body(lines, chance)
    head = [b"Received: from pc.shop.test (pc.shop.test [192.0.2.7])\r\n\tby mail.shop.test with ESMTP id "
            + str(1000 + number).encode() + b";\r\n\tMon, 02 Mar 2026 09:15:00 +0000",
            b"From: " + NAMES[style] + b" <offers@" + SENDER_DOMAIN.encode() + b">",
            b"To: " + ",\r\n ".join(recipients).encode(),
            b"Subject: " + SUBJECTS[style] + f" ({number})".encode(),
            b"Date: Mon, 02 Mar 2026 09:15:00 +0000",
            b"Message-ID: <" + identity.encode() + b">", *fields]
    data = b"\r\n".join([*head, b"", *content]) + b"\r\n"
    is_signed = number % 3 == 0 or number % 7 == 1
    if is_signed:
        data = sign(data, number, key)
    features = f"{body.__name__} {style}" + (" signed" if is_signed else "")
    return Message(identity, kind, features, envelope_sender(number), recipients, data, is_signed,
                   chain.startswith("rspamd") and kind == SPAM_GTUBE)


def make_spam(chain, key, count):
    """So many messages of one chain that the filter blocks."""
    blocked = (number for number in itertools.count() if spam_kind(number, chain) != ORDINARY)
    return [make_message(number, chain, key) for number in itertools.islice(blocked, count)]


def make_messages(chain, key):
    """The messages of one chain."""
    return [make_message(number, chain, key) for number in range(COUNT)]
