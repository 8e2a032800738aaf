#include "app/HelpBrowser.h"
#include "app/MessageListView.h"
#include "app/frmAbout.h"
#include "app/frmHelp.h"
#include "app/frmOverview.h"
#include "dialogs/frmCleansing.h"
#include "dialogs/frmFind.h"
#include "dialogs/frmFolders.h"
#include "dialogs/frmOptions.h"
#include "dialogs/frmOwnServer.h"
#include "history/frmHistory.h"
#include "messages/frmFailures.h"
#include "tests/support/InstalledTexts.h"
#include "tests/support/MainWindowFixture.h"
#include "whitelist/frmTolerate.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QRegularExpression>
#include <QTabBar>
#include <QTabWidget>
#include <QTreeWidget>

namespace quellbox {
namespace {

/// The key of a caption's mnemonic; empty without one.
QString Mnemonic(const QString& caption) {
    static const QRegularExpression pattern(QStringLiteral("&([^&])"));
    return pattern.match(QString(caption).remove(QStringLiteral("&&"))).captured(1).toLower();
}

/// The captions of which a mnemonic was taken by one before them.
std::string Ambiguous(const QStringList& captions) {
    QStringList keys;
    QStringList found;
    for (const QString& caption : captions) {
        const QString key = Mnemonic(caption);
        if (!key.isEmpty() && keys.contains(key)) {
            found += caption;
        }
        keys += key;
    }
    return found.join(QStringLiteral(", ")).toStdString();
}

QStringList Captions(const QList<QAction*>& entries) {
    QStringList captions;
    for (const QAction* entry : entries) {
        captions += entry->text();
    }
    return captions;
}

class MainGerman : public MainWindowTest {
protected:
    void SetUp() override { ASSERT_TRUE(german_.Installed()); }

    std::string Caption(const char* action) const { return Action(action)->text().toStdString(); }

    InstalledTexts german_{{QStringLiteral("de-DE"), QStringLiteral("de")}};
};

TEST_F(MainGerman, TheTextsOfTheLibraryAreGermanToo) {
    EXPECT_EQ(QCoreApplication::translate("QPlatformTheme", "Cancel").toStdString(), "Abbrechen");
}

TEST_F(MainGerman, MenusToolbarsAndColumnsAreGerman) {
    Open();
    EXPECT_EQ(Caption("mnuFile"), "&Datei");
    EXPECT_EQ(Caption("mnuFileExport"), "Liste &exportieren...");
    EXPECT_EQ(Caption("mnuFiExit"), "&Beenden");
    EXPECT_EQ(Caption("mnuEditFindNext"), "&Weitersuchen");
    EXPECT_EQ(Caption("mnuActionsUnblock"), "&Freigeben");
    EXPECT_EQ(Caption("mnuTrRestore"), "Wiederherstellen");
    EXPECT_EQ(Button("tlbMessages", "filter")->toolTip().toStdString(), "Angezeigte Nachrichten filtern");
    EXPECT_EQ(List()->model()->headerData(ColumnSubject, Qt::Horizontal).toString().toStdString(), "Betreff");
    EXPECT_EQ(List()->accessibleName().toStdString(), "Nachrichten");
}

// The same English word stands for a menu and for what it does to a message.
TEST_F(MainGerman, ViewIsAMenuAndACommand) {
    Open();
    EXPECT_EQ(Caption("mnuView"), "&Ansicht");
    EXPECT_EQ(Caption("mnuMessageView"), "&Anzeigen");
}

TEST_F(MainGerman, NoTwoEntriesOfAMenuShareAMnemonic) {
    Open();
    EXPECT_EQ(Ambiguous(Captions(window_->menuBar()->actions())), "");
    const QList<QMenu*> menus = window_->findChildren<QMenu*>(QRegularExpression(QStringLiteral("^mnu")));
    EXPECT_EQ(menus.size(), 9);
    for (const QMenu* menu : menus) {
        EXPECT_EQ(Ambiguous(Captions(menu->actions())), "") << menu->objectName().toStdString();
    }
}

TEST_F(MainGerman, AnEntryHasAMnemonicWhereTheEnglishOneHas) {
    Open();
    for (const QAction* entry : window_->findChildren<QAction*>(QRegularExpression(QStringLiteral("^mnu")))) {
        const QStringList without = {QStringLiteral("mnuOpenFolder"),
                                     QStringLiteral("mnuOpenFolderSelect0"),
                                     QStringLiteral("mnuOpenFolderSelect1"),
                                     QStringLiteral("mnuViewBulk"),
                                     QStringLiteral("mnuHelpStarting1"),
                                     QStringLiteral("mnuMessage"),
                                     QStringLiteral("mnuTray"),
                                     QStringLiteral("mnuTrRestore"),
                                     QStringLiteral("mnuTrExit")};
        const bool expected = !entry->isSeparator() && !without.contains(entry->objectName());
        EXPECT_EQ(!Mnemonic(entry->text()).isEmpty(), expected) << entry->objectName().toStdString();
    }
}

TEST_F(MainGerman, OneMessageIsSingular) {
    AddMessage("a.eml", 1);
    OpenRefreshed();
    EXPECT_EQ(Panel("count"), "1 Nachricht");
    AddMessage("b.eml", 2);
    window_->mnuAcRefresh_Click();
    Settle();
    EXPECT_EQ(Panel("count"), "2 Nachrichten");
    Action("mnuEditSelectAll")->trigger();
    Settle();
    EXPECT_EQ(Panel("info"), "2 ausgewählt");
}

TEST_F(MainGerman, WhatIsStoredIsNotTranslated) {
    Open();
    Action("mnuViewToolbar")->trigger();
    Settle();
    window_->close();
    EXPECT_EQ(Stored("Toolbar").toStdString(), "False");
    EXPECT_EQ(Stored("StatusBar").toStdString(), "True");
}

TEST_F(MainGerman, TheWhitelistDialogIsGerman) {
    AppState state;
    frmTolerate dialog(store_, state, nullptr);
    EXPECT_EQ(dialog.windowTitle().toStdString(), "Tolerieren");
    QStringList captions;
    for (const QAbstractButton* button : dialog.findChildren<QAbstractButton*>()) {
        captions += button->text();
    }
    EXPECT_TRUE(captions.contains(QStringLiteral("&Hinzufügen"))) << captions.join(QLatin1Char(' ')).toStdString();
    EXPECT_EQ(Ambiguous(captions), "");
    dialog.findChild<QAbstractButton*>(QStringLiteral("btnOK"))->click();
    EXPECT_EQ(state.ToleranceResult.toStdString(), "OK");
}

/// Texts of the buttons, group boxes and tabs of a dialog that can be reached by a key at the same time.
QStringList Mnemonics(const QWidget& dialog) {
    QStringList captions;
    for (const QAbstractButton* button : dialog.findChildren<QAbstractButton*>()) {
        captions += button->isVisibleTo(&dialog) ? button->text() : QString();
    }
    for (const QGroupBox* box : dialog.findChildren<QGroupBox*>()) {
        captions += box->isVisibleTo(&dialog) ? box->title() : QString();
    }
    for (const QTabBar* bar : dialog.findChildren<QTabBar*>()) {
        for (int tab = 0; tab < bar->count(); ++tab) {
            captions += bar->tabText(tab);
        }
    }
    return captions;
}

TEST_F(MainGerman, TheCleansingDialogIsGerman) {
    AppState state;
    state.ArchiveDir = QStringLiteral("/archive/");
    const frmCleansing dialog({files_, pool_, clock_}, state, nullptr);
    EXPECT_EQ(dialog.windowTitle().toStdString(), "Bereinigungs-Assistent");
    EXPECT_EQ(Ambiguous(Mnemonics(dialog)), "");
    const auto* every = dialog.findChild<QAbstractButton*>(QStringLiteral("optDays0"));
    EXPECT_EQ(every->accessibleDescription().toStdString(), "Wird gezählt...");
    const QString nothing = QStringLiteral("Nichts würde entfernt.");
    EXPECT_TRUE(QTest::qWaitFor([&] { return every->accessibleDescription() == nothing; }, patience));
}

TEST_F(MainGerman, TheFindDialogIsGerman) {
    AppState state;
    RefreshTimer timer(state);
    frmFind dialog(store_, state, timer, nullptr);
    dialog.Prepare();
    EXPECT_EQ(dialog.windowTitle().toStdString(), "Suchen");
    EXPECT_EQ(Ambiguous(Mnemonics(dialog)), "");
}

TEST_F(MainGerman, TheWindowOfFailuresIsGerman) {
    FailureList failures;
    failures.TakeAction({FileFailure(FileError(QStringLiteral("/p/a.eml"), {}, FileProblem::Exists))}, noon_);
    const frmFailures dialog(failures, nullptr);
    EXPECT_EQ(dialog.windowTitle().toStdString(), "Nicht bearbeitete Nachrichten");
    EXPECT_EQ(Ambiguous(Mnemonics(dialog)), "");
    const auto* list = dialog.findChild<QTreeWidget*>(QStringLiteral("lvwFailures"));
    EXPECT_EQ(list->topLevelItem(0)->text(1).toStdString(),
              "Im Pickup-Verzeichnis liegt schon eine Nachricht dieses Namens.");
}

TEST_F(MainGerman, TheWindowOfTheHistoryIsGerman) {
    Journal journal(pool_, clock_, {});
    const frmHistory window(journal, nullptr);
    EXPECT_EQ(window.windowTitle().toStdString(), "Verlauf");
    EXPECT_EQ(Ambiguous(Mnemonics(window)), "");
    const auto* actions = window.findChild<QComboBox*>(QStringLiteral("cboAction"));
    EXPECT_EQ(actions->itemText(1).toStdString(), "Freigeben");
    EXPECT_EQ(window.Model().headerData(HistorySender, Qt::Horizontal).toString().toStdString(), "Absender");
}

TEST_F(MainGerman, TheOverviewIsGerman) {
    frmOverview window(nullptr);
    EXPECT_EQ(window.windowTitle().toStdString(), "\u00DCbersicht");
    EXPECT_EQ(Ambiguous(Mnemonics(window)), "");
    const auto* table = window.findChild<QAbstractButton*>(QStringLiteral("btnDaysTable"));
    EXPECT_EQ(table->text().toStdString(), "Tabelle");
    EXPECT_EQ(TitleOf(OverviewKind::Days).toStdString(), "Nachrichten nach Tag und Bewertung");
    window.ShowOverview({});
    EXPECT_EQ(window.windowTitle().toStdString(), "\u00DCbersicht \u00FCber 0 Nachrichten");
}

TEST_F(MainGerman, TheDirectoryDialogIsGerman) {
    AppState state;
    const frmFolders dialog({files_, volumes_, pool_}, state, nullptr);
    EXPECT_EQ(dialog.findChild<QAbstractButton*>(QStringLiteral("btnCancel"))->text().toStdString(), "A&bbrechen");
    EXPECT_EQ(Ambiguous(Mnemonics(dialog)), "");
}

TEST_F(MainGerman, TheOptionsDialogIsGermanOnEachTab) {
    AppState state;
    OptionsCalls calls;
    const frmOptions dialog(files_, pool_, program_, state, std::move(calls), nullptr);
    EXPECT_EQ(dialog.windowTitle().toStdString(), "Optionen");
    auto* tabs = dialog.findChild<QTabWidget*>(QStringLiteral("tbsOptions"));
    for (int tab = 0; tab < tabs->count(); ++tab) {
        tabs->setCurrentIndex(tab);
        EXPECT_EQ(Ambiguous(Mnemonics(dialog)), "") << tab;
    }
    const auto* information = dialog.findChild<QTreeWidget*>(QStringLiteral("trvOptions"));
    EXPECT_EQ(information->topLevelItem(1)->text(0).toStdString(), "Verzeichnisse");
}

TEST_F(MainGerman, TheDialogOfAnotherServerIsGerman) {
    const frmOwnServer dialog(files_, pool_, Folder(QStringLiteral("/archive/")), OwnServer(), nullptr);
    EXPECT_EQ(dialog.windowTitle().toStdString(), "Felder eines anderen Servers");
    QStringList captions = Mnemonics(dialog);
    for (const QLabel* label : dialog.findChildren<QLabel*>()) {
        captions += label->text();
    }
    EXPECT_EQ(Ambiguous(captions), "");
    const auto* forms = dialog.findChild<QComboBox*>(QStringLiteral("cboRatingForm"));
    EXPECT_EQ(forms->itemText(0).toStdString(), "die Zahl am Anfang");
}

TEST_F(MainGerman, TheAboutBoxIsGerman) {
    ProgramInfo program = MakeProgramInfo(QStringLiteral("/prog/quellbox"));
    program.CompanyName = QStringLiteral("Example Software");
    const frmAbout dialog(program, files_, shell_, nullptr);
    EXPECT_EQ(dialog.windowTitle().toStdString(), "Info über Quellbox");
    const QString head = dialog.findChild<QLabel*>(QStringLiteral("lblApplication"))->text();
    EXPECT_EQ(head.toStdString(), "Quellbox von Example Software\n\nSieht das Archiv des Spamfilters eines Mailservers "
                                  "durch und stellt zu, was kein Spam ist.");
    const QString version = dialog.findChild<QLabel*>(QStringLiteral("lblVersionInfo"))->text();
    EXPECT_TRUE(version.contains(QStringLiteral("\n\nVerwaltung von Spam-Archiven\n"))) << version.toStdString();
    EXPECT_TRUE(version.endsWith(QStringLiteral("\nMit Qt, GLib und GMime, die unter der GNU LGPL stehen.")));
    EXPECT_EQ(dialog.findChild<QLabel*>(QStringLiteral("lblLinks0"))->text().toStdString(), "Firma:");
    EXPECT_EQ(Ambiguous(Mnemonics(dialog)), "");
}

TEST_F(MainGerman, TheHelpWindowIsGermanAndItsTopicsAreNot) {
    frmHelp help(shell_, store_, [](const QString&) {});
    help.ShowDefaultTopic();
    EXPECT_EQ(help.windowTitle().toStdString(), "Getting Started - Quellbox-Hilfe");
    EXPECT_EQ(help.findChild<QAbstractButton*>(QStringLiteral("btnBack"))->text().toStdString(), "&Zurück");
    EXPECT_EQ(help.findChild<HelpBrowser*>(QStringLiteral("txtTopic"))->accessibleName().toStdString(), "Thema");
    QStringList captions = Mnemonics(help);
    captions += help.findChild<QLabel*>(QStringLiteral("lblSearch"))->text();
    EXPECT_EQ(Ambiguous(captions), "");
}

TEST_F(MainGerman, TheSearchOfTheHelpSaysInGermanThatNothingIsFound) {
    frmHelp help(shell_, store_, [](const QString&) {});
    help.ShowDefaultTopic();
    auto* search = help.findChild<QLineEdit*>(QStringLiteral("txtSearch"));
    EXPECT_EQ(search->accessibleName().toStdString(), "Hilfe durchsuchen");
    QTest::keyClicks(search, QStringLiteral("xyzzy"));
    Settle();
    const auto* none = help.findChild<QLabel*>(QStringLiteral("lblNone"));
    EXPECT_TRUE(none->isVisible());
    EXPECT_EQ(none->text().toStdString(), "Kein Thema enthält diese Wörter.");
}

class MainLanguage : public MainWindowTest {};

TEST_F(MainLanguage, EnglishIsNotTranslated) {
    for (const char* language : {"C", "en", "en-US", "en-GB"}) {
        EXPECT_FALSE(InstallTranslation(*qApp, {QLatin1String(language)})) << language;
    }
    AddMessage("a.eml", 1);
    OpenRefreshed();
    EXPECT_EQ(Action("mnuFile")->text().toStdString(), "&File");
    EXPECT_EQ(Panel("count"), "1 messages");
}

TEST_F(MainLanguage, EnglishBeforeGermanIsEnglish) {
    EXPECT_FALSE(InstallTranslation(*qApp, {QStringLiteral("en-GB"), QStringLiteral("de-DE")}));
}

TEST_F(MainLanguage, AnUnknownLanguageBeforeGermanIsGerman) {
    const InstalledTexts texts({QStringLiteral("rm-CH"), QStringLiteral("de-CH")});
    EXPECT_TRUE(texts.Installed());
    EXPECT_EQ(QCoreApplication::translate("quellbox", "Subject").toStdString(), "Betreff");
}

TEST_F(MainLanguage, AnUnknownLanguageAloneIsEnglish) {
    EXPECT_FALSE(InstallTranslation(*qApp, {QStringLiteral("rm-CH"), QStringLiteral("rm")}));
}

} // namespace
} // namespace quellbox
