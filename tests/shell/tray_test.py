#!/usr/bin/python3
"""Runs the program against the two kinds of notification area that a desktop may have, on a display and a bus of its
own: one that is told of icons over the bus and draws their menus itself, and one in which icons are small windows.

Usage: tray_test.py QUELLBOX

The first is played by this script, the second by trayer. Needs dbus-run-session, xvfb-run, openbox, xdotool, xprop,
trayer, and the Python modules dbus and gi.
"""
import os
import re
import shutil
import subprocess
import sys
import tempfile
import time

PATIENCE = 60  # seconds
WATCHER = "org.kde.StatusNotifierWatcher"
ITEM = "org.kde.StatusNotifierItem"
MENU = "com.canonical.dbusmenu"
WATCHER_DESCRIPTION = f"""<node><interface name="{WATCHER}">
<method name="RegisterStatusNotifierItem"><arg name="service" type="s" direction="in"/></method>
<property name="IsStatusNotifierHostRegistered" type="b" access="read"/>
<property name="ProtocolVersion" type="i" access="read"/>
</interface></node>"""


def run(*command):
    return subprocess.run(command, capture_output=True, text=True, check=False).stdout


class Program:
    """The program over an archive of two messages, with "Hide when Minimized" switched on."""

    def __init__(self, executable, folder):
        self.settings = os.path.join(folder, "config", "quellbox", "settings.ini")
        archive = os.path.join(folder, "archive", "")
        os.makedirs(archive)
        os.makedirs(os.path.dirname(self.settings))
        for number in (1, 2):
            with open(f"{archive}{number}.eml", "w", encoding="ascii") as message:
                message.write("From: a@x.org\nTo: b@x.org\nSubject: One\n\ntext\n")
        with open(self.settings, "w", encoding="utf-8") as settings:
            settings.write(f'[Settings]\nArchiveDir="{archive}"\nPickupDir="{folder}/"\nHideMinimized=True\n')
        environment = dict(os.environ, XDG_CONFIG_HOME=os.path.join(folder, "config"), QT_QPA_PLATFORM="xcb")
        self.process = subprocess.Popen([executable], env=environment)
        wait("the window", self.is_listed)
        self.window = self.windows("^Quellbox - ")[0]

    @staticmethod
    def windows(title):
        return run("xdotool", "search", "--onlyvisible", "--name", title).split()

    def is_listed(self):
        """Whether the window manager has the window, minimized or not; a hidden one it has not."""
        listed = re.findall(r"0x[0-9a-f]+", run("xprop", "-root", "_NET_CLIENT_LIST"))
        return any("Quellbox - " in run("xprop", "-id", window, "WM_NAME") for window in listed)

    def is_shown(self):
        return self.is_listed() and bool(self.windows("^Quellbox - "))

    def is_maximized(self):
        return "_NET_WM_STATE_MAXIMIZED_VERT" in run("xprop", "-id", self.window, "_NET_WM_STATE")

    def is_active(self):
        return self.is_shown() and run("xdotool", "getactivewindow").strip() == self.window

    def open_about_box(self):
        run("xdotool", "windowactivate", "--sync", self.window)
        run("xdotool", "key", "alt+h")
        run("xdotool", "key", "a")
        wait("the about box", lambda: self.windows("^About Quellbox$"))

    def close_about_box(self):
        run("xdotool", "windowactivate", "--sync", self.windows("^About Quellbox$")[0])
        run("xdotool", "key", "Escape")
        wait("the about box to close", lambda: not self.windows("^About Quellbox$"))

    def minimize(self):
        wait("the window", self.is_shown)
        run("xdotool", "windowminimize", self.window)
        wait("the window to hide", lambda: not self.is_listed())

    def wait_for_end(self):
        wait("the program to end", lambda: self.process.poll() is not None)
        check("the program ended well", self.process.returncode == 0)


def check(what, holds):
    print(("ok      " if holds else "NOT OK  ") + what, flush=True)
    if not holds:
        sys.exit(1)


def wait(what, holds, idle=lambda: time.sleep(0.1)):
    """Ends the test unless `holds` comes true in time."""
    end = time.monotonic() + PATIENCE
    while not holds():
        if time.monotonic() > end:
            check("waited for " + what, False)
        idle()


def test_drawing_host(executable, folder):
    import dbus
    import dbus.mainloop.glib
    import dbus.service
    from gi.repository import GLib

    dbus.mainloop.glib.DBusGMainLoop(set_as_default=True)
    bus = dbus.SessionBus()
    context = GLib.MainContext.default()
    items = []

    class Watcher(dbus.service.Object):
        @dbus.service.method(WATCHER, in_signature="s", sender_keyword="sender")
        def RegisterStatusNotifierItem(self, service, sender=None):
            items.append(sender if service.startswith("/") else service)

        @dbus.service.method(dbus.INTROSPECTABLE_IFACE, out_signature="s")
        def Introspect(self):  # the module's own description would leave the properties out
            return WATCHER_DESCRIPTION

        @dbus.service.method(dbus.PROPERTIES_IFACE, in_signature="ss", out_signature="v")
        def Get(self, _interface, name):
            return {"IsStatusNotifierHostRegistered": True, "ProtocolVersion": 0}.get(name, dbus.Array([], "s"))

    def idle():
        context.iteration(False)
        time.sleep(0.02)

    def wait_here(what, holds):
        wait(what, holds, idle)

    def ask(path, interface, method, *arguments):
        """Calls a method while this script goes on answering."""
        answers = []
        proxy = bus.get_object(items[-1], path, introspect=False)
        proxy.get_dbus_method(method, interface)(
            *arguments, reply_handler=lambda *values: answers.append(values), error_handler=answers.append)
        wait_here(method, lambda: answers)
        if isinstance(answers[0], Exception):
            raise answers[0]
        return answers[0]

    def entries():
        """The visible entries that the desktop would draw: number by caption."""
        layout = ask(menu, MENU, "GetLayout", 0, -1, dbus.Array([], "s"))[1]
        shown = [entry for entry in layout[2] if entry[1].get("visible", True)]
        return {str(entry[1].get("label", "-")).replace("_", ""): entry[0] for entry in shown}

    def click(caption):
        number = entries()[caption]
        ask(menu, MENU, "AboutToShow", 0)
        ask(menu, MENU, "Event", number, "clicked", dbus.String("", variant_level=1), dbus.UInt32(0))

    name = dbus.service.BusName(WATCHER, bus)
    Watcher(name, "/StatusNotifierWatcher")
    program = Program.__new__(Program)
    real_wait = globals()["wait"]
    globals()["wait"] = lambda what, holds, _=None: real_wait(what, holds, idle)
    try:
        program.__init__(executable, folder)
        wait_here("the icon", lambda: items)
        item = "/StatusNotifierItem"
        menu = ask(item, dbus.PROPERTIES_IFACE, "Get", ITEM, "Menu")[0]

        def tip():
            return str(ask(item, dbus.PROPERTIES_IFACE, "Get", ITEM, "ToolTip")[0][2])

        wait_here("the tip", lambda: tip() == "Quellbox: 2 messages")
        check("the menu has its entries", set(entries()) >= {"Restore", "Exit"})

        program.minimize()
        ask(item, ITEM, "Activate", 0, 0)
        wait_here("the window after a click", program.is_active)
        check("a left click brings the window back", True)

        program.open_about_box()
        wait_here("the menu to be empty", lambda: not entries())
        check("no menu is offered while a dialog is open", True)
        ask(menu, MENU, "AboutToShow", 0)
        program.close_about_box()
        wait_here("the menu to have entries", lambda: "Restore" in entries())
        check("the menu is offered again afterwards", True)

        program.minimize()
        click("Restore")
        wait_here("the window after Restore", program.is_shown)
        check("Restore brings the window back", True)

        program.minimize()
        bus.release_name(WATCHER)
        wait_here("the window without a notification area", program.is_shown)
        check("a vanished notification area gives the window back", True)

        seen = len(items)
        bus.request_name(WATCHER)
        wait_here("the icon to come back", lambda: len(items) > seen)
        check("a new notification area gets the icon", True)

        program.minimize()
        click("Exit")
        program.wait_for_end()
        with open(program.settings, encoding="utf-8") as settings:
            check("Exit stores a window that is not minimized", "MainWindowState=0" in settings.read())
    finally:
        globals()["wait"] = real_wait
        end(program)
        bus.release_name(WATCHER)


def test_window_host(executable, folder):
    tray = subprocess.Popen(["trayer", "--edge", "bottom", "--align", "left", "--widthtype", "request", "--height", "40",
                             "--SetDockType", "true"], stderr=subprocess.DEVNULL)
    program = Program.__new__(Program)

    def icon():
        """The middle of the notification area, which holds nothing but the icon."""
        for window in run("xdotool", "search", "--onlyvisible", "--class", "trayer").split():
            place = dict(re.findall(r"(\w+)=(-?\d+)", run("xdotool", "getwindowgeometry", "--shell", window)))
            if 10 < int(place.get("WIDTH", 0)) < 200:
                return [str(int(place["X"]) + int(place["WIDTH"]) // 2), str(int(place["Y"]) + int(place["HEIGHT"]) // 2)]
        return None

    def click(button):
        run("xdotool", "mousemove", *icon())
        run("xdotool", "click", button)

    try:
        wait("trayer", lambda: run("xdotool", "search", "--class", "trayer"))
        program.__init__(executable, folder)
        wait("the icon", icon)
        program.minimize()
        wait("the window after a click", lambda: click("1") or program.is_shown())
        check("a left click brings the window back", True)
        program.minimize()
        click("3")
        run("xdotool", "key", "Down", "Return")
        wait("the window after Restore", program.is_active)
        check("the menu's first entry brings the window back", True)
        program.open_about_box()
        before = program.windows(".*")
        click("3")
        time.sleep(1)
        check("no menu is offered while a dialog is open", program.windows(".*") == before)
        run("xdotool", "windowminimize", program.window)
        wait("the window to hide", lambda: not program.is_listed())
        wait("the window and its dialog after a click", lambda: click("1") or program.is_shown())
        wait("the dialog", lambda: program.windows("^About Quellbox$"))
        check("a left click brings the window back below its dialog", True)
        program.close_about_box()
        program.minimize()
        tray.terminate()
        tray.wait()
        wait("the window without a notification area", program.is_shown)
        check("a vanished notification area gives the window back", True)
    finally:
        end(program)
        if tray.poll() is None:
            tray.terminate()


def end(program):
    process = getattr(program, "process", None)
    if process is not None and process.poll() is None:
        process.terminate()
        process.wait()


def main():
    if os.environ.get("QUELLBOX_TRAY_TEST") != "inside":
        environment = dict(os.environ, QUELLBOX_TRAY_TEST="inside", LC_ALL="C.UTF-8")
        environment.pop("DISPLAY", None)
        environment.pop("WAYLAND_DISPLAY", None)
        command = ["dbus-run-session", "--", "xvfb-run", "-a", "-s", "-screen 0 1280x800x24", sys.executable,
                   os.path.abspath(__file__), os.path.abspath(sys.argv[1])]
        sys.exit(subprocess.run(command, env=environment, check=False).returncode)
    folder = tempfile.mkdtemp()
    manager = subprocess.Popen(["openbox"], stderr=subprocess.DEVNULL)
    try:
        wait("the window manager", lambda: "window id" in run("xprop", "-root", "_NET_SUPPORTING_WM_CHECK"))
        print("A notification area that draws the menu")
        test_drawing_host(sys.argv[1], os.path.join(folder, "drawing"))
        print("A notification area of windows")
        test_window_host(sys.argv[1], os.path.join(folder, "window"))
    finally:
        manager.terminate()
        manager.wait()
        shutil.rmtree(folder)


if __name__ == "__main__":
    main()
