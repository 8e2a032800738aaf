#include "app/MessageListView.h"
#include "tests/support/InstalledTexts.h"
#include "tests/support/MainWindowFixture.h"
#include "whitelist/frmTolerate.h"

#include <QAbstractButton>
#include <QMenuBar>
#include <QRegularExpression>

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

TEST_F(MainGerman, MenusToolbarsAndColumnsAreGerman) {
    Open();
    EXPECT_EQ(Caption("mnuFile"), "&Datei");
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
    EXPECT_EQ(Panel("count"), "2 Nachrichten");
    Action("mnuEditSelectAll")->trigger();
    EXPECT_EQ(Panel("info"), "2 ausgewählt");
}

TEST_F(MainGerman, WhatIsStoredIsNotTranslated) {
    Open();
    Action("mnuViewToolbar")->trigger();
    window_->close();
    EXPECT_EQ(Stored("Toolbar").toStdString(), "False");
    EXPECT_EQ(Stored("StatusBar").toStdString(), "True");
}

TEST_F(MainGerman, TheWhitelistDialogIsGerman) {
    AppState state;
    frmTolerate dialog(
        store_, state, [](bool) {}, nullptr);
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
