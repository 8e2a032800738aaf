#!/usr/bin/env python3
"""Checks what each folder may include and name; prints a line for each violation and fails if there is one.

- A folder includes itself and those before it in FOLDERS, never later ones; app/ and console/ do not include each other.
- The core and the console (every file outside of app/ that is not named frm*) include nothing of QtWidgets or QtGui.
- Headers of GMime, GLib, zlib, uchardet, libxml2 and libpsl stay in mail/, those of QtSql in history/, those of curl in delivery/.
- System headers, QSettings and tests for the operating system stay in platform/.
"""
import glob
import os
import re
import sys

FOLDERS = ["platform", "mail", "settings", "delivery", "messages", "history", "whitelist", "contents", "archive", "dialogs", "app", "console"]
PROGRAMS = ["app", "console"]
# Folders that nothing in FOLDERS may include.
OUTER_FOLDERS = ["samples", "tests", "benchmarks", "fuzz"]
MAIL_LIBRARY = re.compile(r"(gmime|glib|gio|gobject|zlib|uchardet|libxml|libpsl)([-/].*)?(\.h)?$")
SQL_HEADER = re.compile(r"(QtSql(/.*)?|QSql\w*|qsql\w*\.h)$")
CURL_HEADER = re.compile(r"curl/.*")
SYSTEM_HEADER = re.compile(
    r"(sys|linux|arpa|netinet|net)/.*|"
    r"(unistd|fcntl|pwd|grp|dirent|poll|mntent|dlfcn|signal|pthread|termios|utime|windows|winnetwk|winioctl|aclapi|"
    r"shellapi|shlobj|shlwapi|shobjidl|lmcons|wincred|io|direct)\.h|qt6keychain/.*$", re.IGNORECASE)
SYSTEM_WORD = re.compile(r"\b(_WIN32|_WIN64|__linux__|__unix__|Q_OS_\w+|QSettings)\b")
INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]')
# Comments, and texts and characters (kept or dropped by the caller), in the order in which they begin.
TOKEN = re.compile(
    r'//[^\n]*|/\*.*?\*/|R"(?P<mark>[^()\\\s]{0,16})\(.*?\)(?P=mark)"|"(?:\\.|[^"\\\n])*"|\'(?:\\.|[^\'\\\n])+\'',
    re.DOTALL)
# Used where Qt's headers are not installed.
BUILT_IN_WINDOW_HEADERS = """QAbstractButton QAbstractItemView QAction QApplication QBitmap QBoxLayout QBrush
QCheckBox QClipboard QColor QComboBox QCursor QDesktopServices QDialog QFileDialog QFont QFontMetrics QGridLayout
QGroupBox QGuiApplication QHeaderView QIcon QImage QKeyEvent QLabel QLayout QLineEdit QListView QMainWindow QMenu
QMenuBar QMessageBox QMouseEvent QPainter QPalette QPen QPixmap QPlainTextEdit QProgressBar QPushButton QRadioButton
QScreen QShortcut QSplitter QStandardItemModel QStatusBar QStyle QSystemTrayIcon QTableView QTabWidget QTextDocument
QTextEdit QToolBar QToolButton QTreeView QTreeWidget QWidget QWindow""".split()


def window_headers():
    """The header names of QtWidgets and QtGui, in lower case and without .h."""
    names = set(BUILT_IN_WINDOW_HEADERS)
    for pattern in ("/usr/include/*/qt6/", "/usr/include/qt6/", "/usr/include/"):
        for module in ("QtWidgets", "QtGui"):
            names.update(os.path.basename(path) for path in glob.glob(f"{pattern}{module}/*"))
    return {name.lower().removesuffix(".h") for name in names}


WINDOW_HEADERS = window_headers()


def strip(text, keep_texts):
    """The text without comments; without the contents of texts too, unless they are kept. Lines keep their numbers."""
    def replacement(match):
        token = match.group()
        if keep_texts and not token.startswith(("//", "/*")):
            return token
        return " " + "\n" * token.count("\n")
    return TOKEN.sub(replacement, text)


def is_window_header(name):
    module, _, rest = name.rpartition("/")
    if module in ("QtWidgets", "QtGui") or name in ("QtWidgets", "QtGui"):
        return True
    return os.path.basename(rest).lower().removesuffix(".h") in WINDOW_HEADERS


def check_include(path, quote, name):
    """What is wrong with an #include line of the file with this path, as a list of texts."""
    folder = path.split("/")[0]
    is_core = folder != "app" and not os.path.basename(path).startswith("frm")
    problems = []
    if quote == '"':
        target = os.path.normpath(os.path.join(folder, name) if name.startswith("..") else name).split("/")[0]
        if target in OUTER_FOLDERS:
            problems.append(f"{folder}/ must not include {target}/")
        elif target != folder and target in PROGRAMS and folder in PROGRAMS:
            problems.append(f"{folder}/ must not include {target}/, which is beside it")
        elif target in FOLDERS and FOLDERS.index(target) > FOLDERS.index(folder):
            problems.append(f"{folder}/ must not include {target}/, which comes after it")
        base = os.path.basename(name)
        if is_core and (base.startswith("ui_") or base.startswith("frm")):
            problems.append(f"the core must not include the window {name}")
    if is_core and is_window_header(name):
        problems.append(f"the core must not include {name} of QtWidgets or QtGui")
    if folder != "mail" and MAIL_LIBRARY.match(name):
        problems.append(f"{name} belongs into mail/")
    if folder != "history" and SQL_HEADER.match(name):
        problems.append(f"{name} belongs into history/")
    if folder != "delivery" and CURL_HEADER.match(name):
        problems.append(f"{name} belongs into delivery/")
    if folder != "platform" and SYSTEM_HEADER.match(name):
        problems.append(f"{name} belongs into platform/")
    return problems


def check_file(path, text):
    """The violations in a file, given with its path below the project's folder; a list of (line number, text)."""
    problems = []
    for number, line in enumerate(strip(text, True).split("\n"), 1):
        include = INCLUDE.match(line)
        if include:
            problems += [(number, problem) for problem in check_include(path, *include.groups())]
    if not path.startswith("platform/"):
        for number, line in enumerate(strip(text, False).split("\n"), 1):
            # An include of QSettings is found here too.
            problems += [(number, f"{word} belongs into platform/") for word in SYSTEM_WORD.findall(line)]
    return problems


def check_tree(root):
    count = 0
    for folder in FOLDERS:
        for path in sorted(glob.glob(os.path.join(root, folder, "**", "*"), recursive=True)):
            if path.endswith((".h", ".cpp")):
                relative = os.path.relpath(path, root).replace(os.sep, "/")
                with open(path, encoding="utf-8") as file:
                    for number, problem in check_file(relative, file.read()):
                        print(f"{relative}:{number}: {problem}")
                        count += 1
    return count


if __name__ == "__main__":
    sys.exit(1 if check_tree(os.path.dirname(os.path.dirname(os.path.abspath(__file__)))) else 0)
