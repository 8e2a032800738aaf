#!/usr/bin/env python3
"""Reads and operates the program as a screen reader does, through the accessibility bus of the desktop.

usage: atspi_test.py PROGRAM SAMPLES FOLDER
It needs a message bus of its own: start it under dbus-run-session. It makes a virtual display for itself.
"""
import contextlib
import os
import pathlib
import shutil
import subprocess
import sys
import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

COUNT = 12
PATIENCE = 60  # seconds


def children(node):
    for index in range(node.get_child_count()):
        child = node.get_child_at_index(index)
        if child is not None:
            yield child


def find(node, role, name=None, depth=12):
    """The first descendant with a role and, where one is given, a name."""
    for child in children(node):
        try:
            if child.get_role() == role and name in (None, child.get_name()):
                return child
            found = find(child, role, name, depth - 1) if depth > 0 else None
        except GLib.Error:
            continue  # gone meanwhile
        if found is not None:
            return found
    return None


def wait_for(what, look, process=None):
    """What `look` returns as soon as that is true."""
    end = time.monotonic() + PATIENCE
    while time.monotonic() < end and (process is None or process.poll() is None):
        try:
            found = look()
        except GLib.Error:
            found = None  # not there yet
        if found:
            return found
        time.sleep(0.1)
    sys.exit(f"Not found: {what}")


def application():
    desktop = Atspi.get_desktop(0)
    return next((child for child in children(desktop) if child.get_name().lower() == "quellbox"), None)


def expect(what, found, expected):
    if found != expected:
        sys.exit(f"{what}: {found!r}, not {expected!r}")


def operate(process):
    program = wait_for("the program", application, process)
    window = wait_for("the window", lambda: find(program, Atspi.Role.FRAME))
    expect("the window's name", window.get_name().startswith("Quellbox - "), True)

    # The list, with as many rows as there are messages, and each cell under its column's caption.
    messages = wait_for("the list", lambda: find(window, Atspi.Role.TREE, "Messages"))
    wait_for(f"{COUNT} rows", lambda: Atspi.Table.get_n_rows(messages) == COUNT)
    columns = range(Atspi.Table.get_n_columns(messages))
    headers = [Atspi.Table.get_column_header(messages, column).get_name() for column in columns]
    # The hidden column is told as well: the toolkit does not leave it out.
    expect("the columns", headers, ["Date", "To", "From", "Subject", "Size", "Bytes", "SCL%"])
    dates = [Atspi.Table.get_accessible_at(messages, row, 0).get_name() for row in range(COUNT)]
    expect("dates that are none", [date for date in dates if len(date) != len("2026-01-31 23:59:59")], [])

    def panel(text):
        return find(window, Atspi.Role.LABEL, text)

    wait_for("the panel with the number", lambda: panel(f"Number of messages: {COUNT} messages"))

    # A menu command, found by its name and given without keyboard or mouse.
    everything = wait_for("the command", lambda: find(window, Atspi.Role.MENU_ITEM, "Select All"))
    Atspi.Action.do_action(everything, 0)
    wait_for("the selection", lambda: panel(f"State: {COUNT} selected"))
    told = detect(program, window)
    print(f"{COUNT} rows read, one command given, {len(told)} changes told")


def detect(program, window):
    """Lets the options find out about the server; what is found has to be told without a look for it."""
    told = []

    def note(event):
        with contextlib.suppress(GLib.Error):
            told.append((event.type, event.source.get_name(), event.source.get_description()))

    listener = Atspi.EventListener.new(note)
    for kind in ("name", "description"):
        listener.register(f"object:property-change:accessible-{kind}")
    with contextlib.suppress(GLib.Error):  # the answer comes when the dialog is closed
        Atspi.Action.do_action(find(window, Atspi.Role.MENU_ITEM, "Options..."), 0)
    options = wait_for("the options", lambda: find(program, Atspi.Role.DIALOG, "Options"))
    page = wait_for("the page Server", lambda: find(options, Atspi.Role.PAGE_TAB, "Server"))
    Atspi.Action.do_action(page, 0)
    button = wait_for("the button Detect", lambda: find(options, Atspi.Role.PUSH_BUTTON, "Detect"))
    Atspi.Action.do_action(button, 0)
    found = f"Found in {COUNT} of the newest messages ({COUNT}): Intelligent Message Filter"

    def is_told(kind, place):
        while GLib.MainContext.default().iteration(False):
            pass
        return any(event[0].endswith(kind) and event[place] == found for event in told)

    wait_for("the change of the label", lambda: is_told("accessible-name", 1))
    wait_for("the change of the button's description", lambda: is_told("accessible-description", 2))
    return told


@contextlib.contextmanager
def virtual_display():
    """A display of its own, whose number the server chooses, so that tests side by side do not meet."""
    reader, writer = os.pipe()
    command = ["Xvfb", "-displayfd", str(writer), "-screen", "0", "1280x800x24", "-nolisten", "tcp"]
    with subprocess.Popen(command, pass_fds=[writer], stderr=subprocess.DEVNULL) as server:
        os.close(writer)
        try:
            with os.fdopen(reader) as pipe:
                yield ":" + pipe.readline().strip()
        finally:
            server.terminate()


@contextlib.contextmanager
def running(command, environment):
    with subprocess.Popen(command, env=environment) as process:
        try:
            yield process
        finally:
            process.terminate()


def main():
    program, samples, folder = sys.argv[1:4]
    folder = pathlib.Path(folder)
    shutil.rmtree(folder, ignore_errors=True)
    archive = folder / "archive"
    subprocess.run([samples, "--count", str(COUNT), "--seed", "4", "--out", archive], check=True)
    with virtual_display() as display:
        environment = dict(os.environ, DISPLAY=display, QT_QPA_PLATFORM="xcb", QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1",
                           XDG_CONFIG_HOME=str(folder / "config"), LC_ALL="C.UTF-8", LANGUAGE="")
        with running([program, archive], environment) as process:
            operate(process)
    shutil.rmtree(folder)


if __name__ == "__main__":
    main()
