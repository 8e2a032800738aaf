#!/usr/bin/env python3
"""Shows that check_includes.py finds what it must, and nothing else."""
import sys
import unittest

sys.dont_write_bytecode = True
from check_includes import check_file  # noqa: E402


class CheckIncludesTest(unittest.TestCase):
    def accept(self, path, *lines):
        self.assertEqual(check_file(path, "\n".join(lines)), [])

    def reject(self, path, *lines):
        """The last line is the wrong one."""
        self.assertEqual([number for number, _ in check_file(path, "\n".join(lines))], [len(lines)])

    def test_direction(self):
        self.accept("mail/A.h", '#include "platform/FileSystem.h"', '#include "mail/B.h"')
        self.accept("app/frmMain.cpp", '#include "dialogs/frmFind.h"', '#include "ui_frmMain.h"')
        self.accept("console/A.cpp", '#include "console/B.h"', '#include "dialogs/PickupTest.h"')
        self.reject("console/A.cpp", '#include "app/Menus.h"')
        self.reject("app/A.cpp", '#include "console/Session.h"')
        self.reject("archive/A.cpp", '#include "console/Session.h"')
        self.reject("platform/A.h", '#include "mail/MailMessage.h"')
        self.reject("archive/A.cpp", '#include "dialogs/Find.h"')
        self.reject("archive/A.cpp", '#include "../dialogs/Find.h"')
        self.reject("settings/A.h", "", '  #  include "app/Menus.h"')
        self.reject("mail/A.h", '#include "tests/support/FixedClock.h"')

    def test_core_without_windows(self):
        self.accept("messages/A.h", "#include <QAbstractTableModel>", "#include <QString>", "#include <qlist.h>")
        self.accept("dialogs/frmFind.h", "#include <QDialog>", "#include <QIcon>")
        self.accept("app/Menus.h", "#include <QMenu>")
        self.reject("dialogs/Find.h", "#include <QDialog>")
        self.reject("messages/A.h", "#include <QIcon>")
        self.reject("console/A.cpp", "#include <QIcon>")
        self.reject("messages/A.h", "#include <qwidget.h>")
        self.reject("messages/A.h", "#include <QtWidgets/QWidget>")
        self.reject("messages/A.h", "#include <QtGui>")
        self.reject("dialogs/Find.cpp", '#include "ui_frmFind.h"')
        self.reject("dialogs/Find.cpp", '#include "dialogs/frmFind.h"')

    def test_mail_library(self):
        self.accept("mail/A.cpp", "#include <gmime/gmime.h>", "#include <glib.h>")
        self.accept("mail/A.cpp", "#include <uchardet/uchardet.h>")
        self.reject("archive/A.cpp", "#include <gmime/gmime.h>")
        self.accept("mail/A.cpp", "#include <libxml/HTMLparser.h>", "#include <libpsl.h>")
        self.reject("contents/A.cpp", "#include <libxml/HTMLparser.h>")
        self.reject("contents/A.cpp", "#include <libpsl.h>")
        self.reject("contents/A.cpp", "#include <uchardet/uchardet.h>")
        self.reject("contents/A.cpp", "#include <uchardet.h>")
        self.accept("delivery/A.cpp", "#include <curl/curl.h>")
        self.reject("app/A.cpp", "#include <curl/curl.h>")
        self.reject("app/A.cpp", "#include <glib.h>")

    def test_system(self):
        self.accept("platform/A.cpp", "#include <qt6keychain/keychain.h>", "#include <unistd.h>", "#include <sys/stat.h>", "#include <QSettings>", "#ifdef _WIN32")
        self.reject("archive/A.cpp", "#include <unistd.h>")
        self.reject("mail/A.cpp", "#include <sys/stat.h>")
        self.reject("app/A.cpp", "#include <Windows.h>")
        self.reject("app/A.cpp", "#include <qt6keychain/keychain.h>")
        self.reject("settings/A.cpp", "#include <QSettings>")
        self.reject("settings/A.cpp", "void Read(QSettings& store);")
        self.reject("app/main.cpp", "#ifdef _WIN32")
        self.reject("app/main.cpp", "#if defined(Q_OS_WIN)")

    def test_comments_and_texts(self):
        self.accept("settings/A.h", "// QSettings", "/* _WIN32", "#include <QWidget>", "*/ int a;")
        self.accept("settings/A.cpp", 'auto a = "QSettings \\" // x";')
        self.reject("settings/A.cpp", 'auto a = "// no comment";', 'auto b = 1\'000; QSettings c;')
        self.reject("settings/A.cpp", "/* one", "two */", "#include <QWidget> // why")


if __name__ == "__main__":
    unittest.main()
