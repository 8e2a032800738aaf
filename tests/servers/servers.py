"""The mail servers and spam filters of the test: configured as an administrator would, but in a folder of the test's
own and on the loopback interface only.

Each chain is a postfix of its own. It takes messages in on one port, where the filter looks at them, and on another
one behind the filter, through which the filter hands back what is no spam, and the administrator what was none; its
sendmail command is behind the filter as well. Both deliver into Maildirs.
"""
import os
import pwd
import shutil
import signal
import socket
import subprocess
import time

from messages import DOMAIN, PEOPLE, RULE_TEXT

HERE = os.path.dirname(os.path.abspath(__file__))
LOOPBACK = "127.0.0.1"
# Owns the Maildirs, and runs what postfix calls for a message. Debian has it on every system.
MAIL_USER = "nobody"
PATIENCE = 120  # seconds that a server may take to start


def free_port():
    """A port on which nobody listens."""
    with socket.socket() as probe:
        probe.bind((LOOPBACK, 0))
        return probe.getsockname()[1]


def make_folder(path, user="root", mode=0o755):
    os.makedirs(path, exist_ok=True)
    entry = pwd.getpwnam(user)
    os.chown(path, entry.pw_uid, entry.pw_gid)
    os.chmod(path, mode)
    return path


def write(path, text):
    with open(path, "w", encoding="utf-8") as file:
        file.write(text)
    os.chmod(path, 0o644)
    return path


class Keeper:
    """Ends what is left of the servers when the test is killed. It runs beside the test, is told which servers there
    are, and acts when the test's end of the pipe closes."""

    def __init__(self):
        reading, self.writing = os.pipe()
        self.child = os.fork()
        if self.child:
            os.close(reading)
            return
        os.setsid()
        for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
            signal.signal(number, signal.SIG_IGN)
        os.close(self.writing)
        groups = set()
        with os.fdopen(reading) as lines:
            for line in lines:
                sign, group = line[0], int(line[1:])
                if sign == "+":
                    groups.add(group)
                else:
                    groups.discard(group)
        for group in groups:
            end_group(group, signal.SIGKILL)
        os._exit(0)

    def add(self, group):
        os.write(self.writing, f"+{group}\n".encode())

    def remove(self, group):
        os.write(self.writing, f"-{group}\n".encode())

    def end(self):
        os.close(self.writing)
        os.waitpid(self.child, 0)


def end_group(group, number):
    try:
        os.killpg(group, number)
    except ProcessLookupError:
        pass


class Server:
    """A process in the foreground, with the port on which it answers. It leads a process group, by which all that it
    starts is found."""

    def __init__(self, name, port, command, place, keeper, **options):
        self.name, self.port, self.keeper = name, port, keeper
        self.log = os.path.join(place, name + ".out")
        with open(self.log, "ab") as log:
            self.process = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=log, stderr=log, cwd="/",
                                            start_new_session=True, **options)
        keeper.add(self.process.pid)

    def wait_until_it_answers(self):
        deadline = time.monotonic() + PATIENCE
        while time.monotonic() < deadline:
            if self.process.poll() is not None:
                raise RuntimeError(f"{self.name} has ended with {self.process.returncode}: {self.last_words()}")
            try:
                with socket.create_connection((LOOPBACK, self.port), 1):
                    return
            except OSError:
                time.sleep(0.2)
        raise RuntimeError(f"{self.name} does not answer: {self.last_words()}")

    def last_words(self):
        with open(self.log, encoding="utf-8", errors="replace") as log:
            return log.read()[-2000:]

    def kill(self):
        """Ends it at once with all that it has started, as a loss of power would. Returns what was killed, by name."""
        end_group(self.process.pid, signal.SIGSTOP)  # looking for them takes time, in which it must not go on
        names = []
        for number in filter(str.isdigit, os.listdir("/proc")):
            try:
                with open(f"/proc/{number}/stat", encoding="utf-8", errors="replace") as file:
                    before, _, after = file.read().rpartition(")")
                if int(after.split()[2]) == self.process.pid:  # its process group, as proc(5) counts the fields
                    names.append(before.partition("(")[2])
            except OSError:
                pass
        end_group(self.process.pid, signal.SIGKILL)
        self.process.wait()
        self.keeper.remove(self.process.pid)
        return names

    def end(self):
        if self.process.poll() is not None and self.process.returncode == -signal.SIGKILL:
            return
        self.process.terminate()
        try:
            self.process.wait(20)
        except subprocess.TimeoutExpired:
            pass
        end_group(self.process.pid, signal.SIGKILL)
        self.process.wait()
        self.keeper.remove(self.process.pid)


class Postfix:
    """A postfix with two ports. `main` are lines of its main.cf, `filtered` are options of the port in front of the
    filter, `services` are further lines of its master.cf."""

    def __init__(self, name, place, ports, main="", filtered="", services=""):
        self.name, self.place, self.port_in, self.port_behind = name, place, *ports
        self.queue = os.path.join(place, "queue")
        self.mail = make_folder(os.path.join(place, "maildirs"), MAIL_USER)
        self.etc = make_folder(os.path.join(place, "etc"))
        self.sendmail = ["/usr/sbin/sendmail", "-C", self.etc, "-i"]
        make_folder(self.queue)
        make_folder(os.path.join(place, "data"), "postfix", 0o700)
        entry = pwd.getpwnam(MAIL_USER)
        people = "".join(f"{person}@{DOMAIN} {person}/\n" for person in PEOPLE)
        write(os.path.join(self.etc, "mailboxes"), people)
        write(os.path.join(self.etc, "main.cf"), f"""compatibility_level = 3.6
queue_directory = {self.queue}
data_directory = {place}/data
maillog_file = {place}/postfix.log
maillog_file_prefixes = {place}
myhostname = mx.{DOMAIN}
mydomain = {DOMAIN}
myorigin = $mydomain
mydestination =
inet_interfaces = {LOOPBACK}
inet_protocols = ipv4
mynetworks = {LOOPBACK}/32
smtpd_peername_lookup = no
smtp_host_lookup = native
smtpd_relay_restrictions = reject_unauth_destination
alias_maps =
alias_database =
local_recipient_maps =
biff = no
# What cannot be delivered at once is to be tried again while the test still waits for it.
minimal_backoff_time = 2s
maximal_backoff_time = 5s
queue_run_delay = 2s
# The recipients are all here, one letter box for each.
virtual_mailbox_domains = {DOMAIN}
virtual_mailbox_base = {self.mail}
virtual_mailbox_maps = texthash:{self.etc}/mailboxes
virtual_uid_maps = static:{entry.pw_uid}
virtual_gid_maps = static:{entry.pw_gid}
{main}""")
        write(os.path.join(self.etc, "master.cf"), f"""# in front of the filter, and behind it
{self.port_in} inet n - n - - smtpd
{filtered}{self.port_behind} inet n - n - - smtpd
  -o content_filter=
  -o smtpd_milters=
pickup unix n - n 60 1 pickup
cleanup unix n - n - 0 cleanup
qmgr unix n - n 300 1 qmgr
tlsmgr unix - - n 1000? 1 tlsmgr
rewrite unix - - n - - trivial-rewrite
bounce unix - - n - 0 bounce
defer unix - - n - 0 bounce
trace unix - - n - 0 bounce
verify unix - - n - 1 verify
flush unix n - n 1000? 0 flush
proxymap unix - - n - - proxymap
proxywrite unix - - n - 1 proxymap
smtp unix - - n - - smtp
relay unix - - n - - smtp
showq unix n - n - - showq
error unix - - n - - error
retry unix - - n - - error
discard unix - - n - - discard
local unix - n n - - local
virtual unix - n n - - virtual
lmtp unix - - n - - lmtp
anvil unix - - n - 1 anvil
scache unix - - n - 1 scache
postlog unix-dgram n - n - 1 postlogd
{services}""")

    def start(self, keeper):
        # This makes the folders of the queue, and says what is wrong with the configuration.
        check = subprocess.run(["postfix", "-c", self.etc, "check"], capture_output=True, text=True, check=False)
        if check.returncode:
            raise RuntimeError(f"postfix of {self.name}: {check.stdout}{check.stderr}")
        programs = subprocess.run(["postconf", "-c", self.etc, "-h", "daemon_directory"], capture_output=True,
                                  text=True, check=True).stdout.strip()
        return Server("postfix", self.port_in, [os.path.join(programs, "master"), "-c", self.etc], self.place, keeper)

    def waiting(self):
        """How many messages it has not dealt with yet. What it was writing when it was killed is none, and stays: only
        a whole message has the permission to be executed (mail_queue.h of postfix)."""
        count = 0
        for folder in ("maildrop", "incoming", "active", "deferred", "hold"):
            for path, _, files in os.walk(os.path.join(self.queue, folder)):
                for name in files:
                    try:
                        count += bool(os.stat(os.path.join(path, name)).st_mode & 0o100)
                    except FileNotFoundError:
                        pass
        return count

    def log_lines(self, word):
        path = os.path.join(self.place, "postfix.log")
        if not os.path.exists(path):
            return []
        with open(path, encoding="utf-8", errors="replace") as log:
            return [line.rstrip() for line in log if word in line]


def spamassassin_settings(place):
    """Settings of SpamAssassin, besides the rules that come with the package; returns the folder."""
    folder = make_folder(os.path.join(place, "sa"))
    for name in os.listdir("/etc/spamassassin"):
        if name.endswith(".pre"):
            shutil.copy(os.path.join("/etc/spamassassin", name), folder)
    write(os.path.join(folder, "local.cf"), f"""# Messages stay as they are, but for fields on top.
report_safe 0
required_score 5.0
use_bayes 0
use_razor2 0
use_pyzor 0
skip_rbl_checks 1
trusted_networks {LOOPBACK}
# The messages of the test have a date of their own.
score DATE_IN_PAST_96_XX 0
body QUELLBOX_TEST /{RULE_TEXT.decode()}/
describe QUELLBOX_TEST The message asks for it
score QUELLBOX_TEST 12.5
""")
    return folder


class Chain:
    """A way of messages through a filter: `archive` is where the spam goes, `profile` how the program calls the
    filter."""

    def __init__(self, name, profile, postfix, port, archive, is_packed=False):
        self.name, self.profile, self.postfix, self.port = name, profile, postfix, port
        self.archive, self.is_packed = archive, is_packed


def make_amavis(place):
    """amavis between two ports of postfix, as its README.postfix tells. Two policies keep what is blocked in two ways:
    as plain files, and packed, as amavis does by itself."""
    port_in, packed_in, behind, feed, packed_feed = (free_port() for _ in range(5))
    home = make_folder(os.path.join(place, "home"), "amavis", 0o750)
    quarantine = make_folder(os.path.join(home, "quarantine"), "amavis", 0o750)
    archives = [make_folder(os.path.join(quarantine, name), "amavis", 0o750) for name in ("plain", "packed")]
    for name in ("tmp", "db"):
        make_folder(os.path.join(home, name), "amavis", 0o750)
    settings = spamassassin_settings(place)
    configuration = write(os.path.join(make_folder(os.path.join(place, "amavis")), "amavisd.conf"), f"""use strict;
# amavis 2.13 does not load what packs files by itself, and could not keep a packed one.
use Amavis::IO::Zlib;
$daemon_user = 'amavis';
$daemon_group = 'amavis';
$max_servers = 2;
$MYHOME = '{home}';
$TEMPBASE = "$MYHOME/tmp";
$ENV{{TMPDIR}} = $TEMPBASE;
$db_home = "$MYHOME/db";
$pid_file = "$MYHOME/amavisd.pid";
$lock_file = "$MYHOME/amavisd.lock";
$QUARANTINEDIR = '{quarantine}';
$quarantine_subdir_levels = 0;
$do_syslog = 0;
$logfile = "$MYHOME/amavisd.log";
$log_level = 2;
$enable_db = 0;
$enable_zmq = 0;
$enable_dkim_verification = 0;
$mydomain = '{DOMAIN}';
$myhostname = 'mx.{DOMAIN}';
@local_domains_maps = ( ['.{DOMAIN}'] );
@mynetworks = qw( {LOOPBACK}/32 );
$inet_socket_bind = '{LOOPBACK}';
$inet_socket_port = [{feed}, {packed_feed}];
@inet_acl = qw( {LOOPBACK} );
$forward_method = 'smtp:[{LOOPBACK}]:{behind}';
$notify_method = $forward_method;
# No viruses are looked for, and no names of files.
@bypass_virus_checks_maps = (1);
@bypass_banned_checks_maps = (1);
$helpers_home = $MYHOME;
$sa_local_tests_only = 1;
$sa_siteconfigpath = '{settings}';
$sa_spam_subject_tag = undef;
$sa_tag_level_deflt = 2.0;
$sa_tag2_level_deflt = 6.2;
$sa_kill_level_deflt = 6.9;
$sa_mail_body_size_limit = 400*1024;
$final_spam_destiny = D_DISCARD;
$final_bad_header_destiny = D_PASS;
$bad_header_quarantine_method = undef;
$spam_quarantine_to = 'spam-quarantine';
$spam_quarantine_method = 'local:plain/spam-%m.eml';
$interface_policy{{'{packed_feed}'}} = 'PACKED';
$policy_bank{{'PACKED'}} = {{ spam_quarantine_method => 'local:packed/spam-%m.gz' }};
1;
""")
    def feed_option(port):
        return f"  -o content_filter=amavisfeed:[{LOOPBACK}]:{port}\n"
    postfix = Postfix(
        "amavis", place, (port_in, behind), filtered=feed_option(feed) + f"{packed_in} inet n - n - - smtpd\n" +
        feed_option(packed_feed),
        # Lines that are too long must stay as they are, or else signatures break.
        services="""amavisfeed unix - - n - 2 smtp
  -o smtp_data_done_timeout=1200
  -o smtp_send_xforward_command=yes
  -o disable_dns_lookups=yes
  -o smtp_line_length_limit=0
""")
    def start(keeper):
        return Server("amavis", feed, ["amavisd", "-c", configuration, "foreground"], place, keeper)
    return [Chain("amavis", "amavis", postfix, port_in, archives[0]),
            Chain("amavis_packed", "amavis", postfix, packed_in, archives[1], True)], [start, postfix.start]


def make_spamassassin(place):
    """SpamAssassin, called by a filter that postfix runs for what it has taken in."""
    ports = free_port(), free_port()
    spamd = free_port()
    archive = make_folder(os.path.join(place, "spam"), MAIL_USER)
    settings = spamassassin_settings(place)
    script = shutil.copy(os.path.join(HERE, "spam_filter.py"), os.path.join(place, "spam_filter.py"))
    os.chmod(script, 0o755)
    home = make_folder(os.path.join(place, "home"), MAIL_USER)
    postfix = Postfix(
        "spamassassin", place, ports, filtered="  -o content_filter=spamfilter:dummy\n",
        services=f"""spamfilter unix - n n - 2 pipe
  flags=Rq user={MAIL_USER} null_sender=
  argv=/usr/bin/python3 {script} {spamd} {ports[1]} {archive} ${{queue_id}} ${{sender}} ${{recipient}}
""")
    def start(keeper):
        command = ["spamd", "--local", "--nouser-config", f"--username={MAIL_USER}", f"--helper-home-dir={home}",
                   f"--siteconfigpath={settings}", f"--listen={LOOPBACK}:{spamd}", f"--allowed-ips={LOOPBACK}",
                   "--max-children=2", f"--syslog={place}/spamd.log", f"--pidfile={place}/spamd.pid"]
        return Server("spamd", spamd, command, place, keeper)
    return [Chain("spamassassin", "spamassassin", postfix, ports[0], archive)], [start, postfix.start]


# What asks other servers, or needs a database.
RSPAMD_OFF = """
antivirus arc asn aws_s3 bimi clickhouse dcc dkim dkim_signing dmarc elastic emails external_services fuzzy_check
greylist history_redis hfilter mx_check neural p0f phishing ratelimit rbl replies reputation rspamd_update spf surbl
url_redirector whitelist
""".split()


def make_rspamd(place):
    """rspamd as a milter. Postfix hands what it has marked to a transport that writes files, one for each recipient."""
    ports = free_port(), free_port()
    milter = free_port()
    archive = make_folder(os.path.join(place, "spam"), MAIL_USER)
    script = shutil.copy(os.path.join(HERE, "store_blocked.sh"), os.path.join(place, "store_blocked.sh"))
    os.chmod(script, 0o755)
    user = "_rspamd"
    local = make_folder(os.path.join(place, "rspamd"))
    for name in ("db", "log", "run", "tmp"):
        make_folder(os.path.join(place, name), user)
    make_folder(os.path.join(local, "local.d"))
    make_folder(os.path.join(local, "override.d"))
    files = {
        "local.d/options.inc": f"""enable_test_patterns = true;
disable_hyperscan = true;
filters = "chartable,regexp";
tempdir = "{place}/tmp";
dns {{ nameserver = ["{LOOPBACK}:9"]; timeout = 100ms; retransmits = 1; }}
# The whole list of suffixes takes most of a minute to read.
url_tld = "{local}/suffixes";
""",
        "suffixes": "test\norg\ncom\n",
        "local.d/worker-proxy.inc": f"""bind_socket = "{LOOPBACK}:{milter}";
milter = yes;
upstream "local" {{ default = yes; self_scan = yes; }}
""",
        "local.d/worker-normal.inc": "enabled = false;\n",
        "local.d/worker-controller.inc": "enabled = false;\n",
        # Only messages with the standard test line are refused, for which points do not count.
        "local.d/actions.conf": "reject = 150;\n",
        # What comes from this computer is looked at as well.
        "local.d/milter_headers.conf": "extended_spam_headers = true;\nskip_local = false;\n",
        "rspamd.local.lua": f"""config['regexp']['QUELLBOX_TEST'] = {{
  re = 'Content=/{RULE_TEXT.decode()}/{{sa_raw_body}}', score = 9.5, description = 'The message asks for it' }}
""",
    }
    files.update({f"local.d/{module}.conf": "enabled = false;\n" for module in RSPAMD_OFF})
    for name, text in files.items():
        write(os.path.join(local, name), text)
    checks = write(os.path.join(place, "milter_header_checks"), "/^X-Spam:[[:space:]]*Yes/ FILTER blocked:dummy\n")
    postfix = Postfix(
        "rspamd", place, ports,
        main=f"""milter_protocol = 6
milter_default_action = tempfail
milter_header_checks = regexp:{checks}
# A file for each recipient: the fields that say to whom a message goes hold one address.
blocked_destination_recipient_limit = 1
""",
        filtered=f"  -o smtpd_milters=inet:{LOOPBACK}:{milter}\n",
        services=f"""blocked unix - n n - 2 pipe
  flags=DORq user={MAIL_USER} null_sender=
  argv=/bin/sh {script} {archive} ${{queue_id}}
""")
    def start(keeper):
        variables = {"LOCAL_CONFDIR": local, "DBDIR": place + "/db", "LOGDIR": place + "/log",
                     "RUNDIR": place + "/run"}
        command = ["rspamd", "--no-fork", f"--user={user}", f"--group={user}", "--config=/etc/rspamd/rspamd.conf"]
        command += [f"--var={name}={value}" for name, value in variables.items()]
        return Server("rspamd", milter, command, place, keeper)
    return [Chain("rspamd", "rspamd", postfix, ports[0], archive)], [start, postfix.start]


MAKERS = {"amavis": make_amavis, "spamassassin": make_spamassassin, "rspamd": make_rspamd}
