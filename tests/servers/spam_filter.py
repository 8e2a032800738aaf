#!/usr/bin/python3
"""What postfix runs for each message in the chain with SpamAssassin: spam goes into a folder, the rest back to postfix.

Called with the port of spamd, the port behind the filter, the folder, the identity of the message in the queue, the
envelope sender and the recipients. The message is on the standard input.
"""
import os
import smtplib
import subprocess
import sys

IS_SPAM = 1  # what "spamc -E" ends with for spam
TRY_AGAIN = 75  # EX_TEMPFAIL: postfix keeps the message and calls again


def keep(folder, queue_id, recipients, message):
    """Writes a file that has its name only when it is whole."""
    envelope = ",\n ".join(f"<{recipient}>" for recipient in recipients)
    hidden = os.path.join(folder, "." + queue_id)
    with open(hidden, "wb") as file:
        file.write(f"X-Envelope-To: {envelope}\n".encode() + message)
        file.flush()
        os.fsync(file.fileno())
    os.rename(hidden, os.path.join(folder, queue_id + ".eml"))


def main():
    spamd, behind, folder, queue_id, sender, *recipients = sys.argv[1:]
    checked = subprocess.run(["spamc", "-d", "127.0.0.1", "-p", spamd, "-x", "-E", "-s", "10000000"],
                             stdin=sys.stdin, stdout=subprocess.PIPE, check=False)
    if checked.returncode == IS_SPAM:
        keep(folder, queue_id, recipients, checked.stdout)
        return
    if checked.returncode:
        sys.exit(TRY_AGAIN)
    with smtplib.SMTP("127.0.0.1", int(behind), local_hostname="filter.quell.test") as client:
        client.sendmail(sender, recipients, checked.stdout.replace(b"\n", b"\r\n"))


try:
    main()
except (OSError, smtplib.SMTPException) as error:
    print(error)
    sys.exit(TRY_AGAIN)
