#include "dialogs/frmOwnServer.h"

#include "tests/support/MemoryFileSystem.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSemaphore>
#include <QTest>

#include <gtest/gtest.h>

using namespace quellbox;

namespace {

class OwnServerDialog : public testing::Test {
protected:
    OwnServerDialog() {
        files.AddFolder(QStringLiteral("/archive/"));
        server.rating = QStringLiteral("X-Junk-Verdict");
        server.ratingForm = QStringLiteral("behind");
        server.ratingText = QStringLiteral("points=");
        server.senders = QStringLiteral("X-Mail-From");
        server.recipients = QStringLiteral("X-Rcpt-To");
        server.recipientsRepeat = true;
        server.reasons = QStringLiteral("X-Junk-Flag, X-Why");
        server.ending = QStringLiteral(".eml");
    }

    void Open() {
        dialog = std::make_unique<frmOwnServer>(files, pool, Folder(QStringLiteral("/archive/")), server, nullptr);
        dialog->show();
        dialog->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(dialog.get()));
    }

    template <class T>
    T* Find(const char* name) const {
        T* found = dialog->findChild<T*>(QLatin1String(name));
        EXPECT_NE(found, nullptr) << name;
        return found;
    }

    QLineEdit* Field(const char* name) const { return Find<QLineEdit>(name); }
    std::string Trouble() const { return Find<QLabel>("lblTrouble")->text().toStdString(); }
    std::string Found() const { return Find<QLabel>("lblFound")->text().toStdString(); }

    void Type(const char* name, const char* text) const {
        QLineEdit* field = Field(name);
        field->setFocus();
        field->selectAll();
        QTest::keyClick(field, Qt::Key_Backspace);
        field->insert(QString::fromUtf8(text)); // as if pasted: the key clicks of Qt's tests know ASCII only
    }

    void Choose(const char* form) const {
        auto* forms = Find<QComboBox>("cboRatingForm");
        forms->setCurrentIndex(forms->findData(QLatin1String(form)));
    }

    /// What OK says of a text in a field, which then has the focus; empty where it takes it.
    std::string Refusal(const char* name, const char* text) const {
        Type(name, text);
        Find<QPushButton>("btnOK")->click();
        if (dialog->isVisible()) {
            EXPECT_TRUE(Field(name)->hasFocus()) << text;
            EXPECT_EQ(Field(name)->accessibleDescription().toStdString(), Trouble());
            return Trouble();
        }
        dialog->show();
        dialog->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(dialog.get()));
        return {};
    }

    std::string Try() const {
        auto* button = Find<QPushButton>("btnTry");
        button->setFocus();
        QTest::keyClick(button, Qt::Key_Space);
        QTest::keyClick(button, Qt::Key_Space); // which does nothing more
        EXPECT_EQ(Found(), "Looking at the newest message...");
        EXPECT_TRUE(QTest::qWaitFor([this] { return Found().rfind("Looking", 0) != 0; }));
        EXPECT_TRUE(button->hasFocus());
        EXPECT_EQ(button->accessibleDescription().toStdString(), Found());
        return Found();
    }

    static QByteArray Sample() {
        QFile file(QStringLiteral(QUELLBOX_TEST_DATA "/servers/own.eml"));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    }

    MemoryFileSystem files;
    ThreadWorkPool pool;
    OwnServer server;
    std::unique_ptr<frmOwnServer> dialog;
};

} // namespace

TEST_F(OwnServerDialog, ShowsTheServerAndGivesTheSameBack) {
    server.packed = true;
    server.maildir = true;
    Open();
    EXPECT_EQ(Field("txtRating")->text(), QStringLiteral("X-Junk-Verdict"));
    EXPECT_EQ(Field("txtRatingText")->text(), QStringLiteral("points="));
    EXPECT_EQ(Field("txtSenders")->text(), QStringLiteral("X-Mail-From"));
    EXPECT_EQ(Field("txtRecipients")->text(), QStringLiteral("X-Rcpt-To"));
    EXPECT_EQ(Field("txtReasons")->text(), QStringLiteral("X-Junk-Flag, X-Why"));
    EXPECT_EQ(Field("txtEnding")->text(), QStringLiteral(".eml"));
    EXPECT_TRUE(Find<QCheckBox>("chkPacked")->isChecked());
    EXPECT_TRUE(Find<QCheckBox>("chkMaildir")->isChecked());
    EXPECT_TRUE(Find<QCheckBox>("chkRecipientsRepeat")->isChecked());
    EXPECT_TRUE(dialog->Described() == server);
}

TEST_F(OwnServerDialog, GivesBackWhatWasEnteredInOneForm) {
    Open();
    Type("txtRating", " X-Score ");
    Choose("number");
    Type("txtSenders", "X-A ,, X-B,");
    Type("txtReasons", "");
    Type("txtEnding", " .msg ");
    Find<QCheckBox>("chkPacked")->click();
    Find<QPushButton>("btnOK")->click();
    EXPECT_EQ(dialog->result(), QDialog::Accepted);
    const OwnServer described = dialog->Described();
    EXPECT_EQ(described.rating, QStringLiteral("X-Score"));
    EXPECT_EQ(described.ratingForm, QStringLiteral("number"));
    EXPECT_EQ(described.senders, QStringLiteral("X-A, X-B"));
    EXPECT_EQ(described.reasons, QString());
    EXPECT_EQ(described.ending, QStringLiteral(".msg"));
    EXPECT_TRUE(described.packed);
}

TEST_F(OwnServerDialog, AsksForATextOnlyWhereTheFormNeedsOne) {
    Open();
    for (const auto& [form, needs] : std::initializer_list<std::pair<const char*, bool>>{
             {"number", false}, {"behind", true}, {"percent", false}, {"count", true}}) {
        Choose(form);
        EXPECT_EQ(Field("txtRatingText")->isEnabled(), needs) << form;
    }
}

TEST_F(OwnServerDialog, RefusesWhatIsNoNameOfAField) {
    Open();
    for (const char* field : {"txtRating", "txtSenders", "txtRecipients", "txtReasons"}) {
        const QString before = Field(field)->text();
        for (const char* name : {"X-Junk:", "X Junk", "X-Stra\u00DFe"}) {
            const std::string words = '"' + std::string(name) +
                                      "\" cannot be the name of a header field. Such a name "
                                      "has no blanks, no colon and no accented letters.";
            EXPECT_EQ(Refusal(field, name), words) << field;
        }
        EXPECT_EQ(Refusal(field, qPrintable(before)), "") << field;
        EXPECT_EQ(Refusal(field, ""), "") << field;
        EXPECT_EQ(Field(field)->accessibleDescription(), QString());
        Field(field)->setText(before);
    }
    EXPECT_EQ(Refusal("txtRating", "X-A, X-B"), "The spam confidence stands in one field only.");
}

TEST_F(OwnServerDialog, RefusesAnEnvelopeThatTheSenderWrites) {
    Open();
    EXPECT_EQ(Refusal("txtSenders", "X-A, from"),
              "\"from\" is written by the sender of a message, and says nothing about its envelope.");
    Type("txtSenders", "X-A");
    EXPECT_EQ(Refusal("txtRecipients", "To"),
              "\"To\" is written by the sender of a message, and says nothing about its envelope.");
    Type("txtRecipients", "");
    EXPECT_EQ(Refusal("txtRating", "Subject"), "");
    EXPECT_EQ(Refusal("txtReasons", "Subject, Comments"), "");
}

TEST_F(OwnServerDialog, RefusesATextThatItsFormCannotUse) {
    Open();
    EXPECT_EQ(Refusal("txtRatingText", " "), "Enter the text behind which the number stands.");
    EXPECT_EQ(Refusal("txtRatingText", "\u00E4="), "Only ASCII can be found here.");
    Choose("count");
    EXPECT_EQ(Trouble(), "") << "it was about another form";
    EXPECT_EQ(Refusal("txtRatingText", ""), "Enter the one character that is counted.");
    EXPECT_EQ(Refusal("txtRatingText", "**"), "Enter the one character that is counted.");
    EXPECT_EQ(Refusal("txtRatingText", "*"), "");
    EXPECT_EQ(Refusal("txtEnding", "new/a"),
              "The name of a file has no slashes and no characters that cannot be seen.");
}

TEST_F(OwnServerDialog, TryShowsWhatIsInTheNewestMessage) {
    files.Add(QStringLiteral("/archive/m.eml"), Sample());
    Open();
    EXPECT_EQ(Try(), "Message: m.eml\nSpam confidence: 21.5\nEnvelope sender: bounce@shop.example\n"
                     "Recipients: anna@example.com, ben@example.com");
    Type("txtRating", "X-Other");
    EXPECT_EQ(Found(), "") << "it was about another field";
    Type("txtRecipients", "");
    EXPECT_EQ(Try(), "Message: m.eml\nSpam confidence: nothing\nEnvelope sender: bounce@shop.example\n"
                     "Recipients: nothing");
}

TEST_F(OwnServerDialog, TrySaysWhatCannotBeRead) {
    Open();
    EXPECT_EQ(Try(), "The archive holds no messages.");
    files.Add(QStringLiteral("/archive/m.eml"), "");
    EXPECT_EQ(Try().rfind("m.eml cannot be read: ", 0), 0U) << Found();
    files.LoseFolder(QStringLiteral("/archive/"));
    EXPECT_EQ(Try().rfind("The archive cannot be read: ", 0), 0U) << Found();
}

TEST_F(OwnServerDialog, TryRefusesAsOkDoes) {
    Open();
    Type("txtSenders", "From");
    Find<QPushButton>("btnTry")->click();
    EXPECT_NE(Trouble(), "");
    EXPECT_EQ(Found(), "");
    EXPECT_TRUE(Field("txtSenders")->hasFocus());
}

TEST_F(OwnServerDialog, WhatAMessageSaysIsShortenedAndShownAsPlainText) {
    files.Add(QStringLiteral("/archive/m.eml"),
              "X-Junk-Verdict: <b>" + QByteArray(500, 'x') + "%\r\nX-Mail-From: <a@b.c>\r\n\r\n");
    Open();
    Choose("percent");
    const QString shortened = QStringLiteral("<b>") + QString(117, QLatin1Char('x')) + QStringLiteral("...");
    EXPECT_EQ(Try(), "Message: m.eml\nSpam confidence: " + shortened.toStdString() +
                         "\nEnvelope sender: a@b.c\nRecipients: nothing");
    EXPECT_EQ(Find<QLabel>("lblFound")->textFormat(), Qt::PlainText);
}

TEST_F(OwnServerDialog, TheFieldsStayInTheirPlacesAndTheWholeTextIsShown) {
    const QByteArray longName(115, 'w');
    files.Add(QStringLiteral("/archive/") + QString::fromLatin1(longName.chopped(4)) + QStringLiteral(".eml"),
              "X-Junk-Verdict: points=1\r\nX-Mail-From: <" + longName + "@b.c>\r\nX-Rcpt-To: <" + longName +
                  "@b.c>\r\nReceived: from x\r\n\r\n");
    Open();
    const int place = Field("txtEnding")->y();
    EXPECT_NE(Refusal("txtReasons", "X-Junk-Verdict-Of-A-Long-Name:"), "");
    EXPECT_EQ(Field("txtEnding")->y(), place);
    Type("txtReasons", "");
    const int before = dialog->height();
    EXPECT_EQ(Try().size(),
              std::string("Message: \nSpam confidence: 1\nEnvelope sender: \nRecipients: ").size() + 3 * 115 + 2 * 4);
    EXPECT_TRUE(QTest::qWaitFor([&] { return dialog->height() > before; }));
    QCoreApplication::processEvents();
    EXPECT_EQ(Field("txtEnding")->y(), place);
    const auto* found = Find<QLabel>("lblFound");
    EXPECT_GE(found->height(), found->heightForWidth(found->width()));
}

TEST_F(OwnServerDialog, ClosingDropsWhatIsBeingTried) {
    QSemaphore reading;
    QSemaphore mayGoOn;
    files.Add(QStringLiteral("/archive/m.eml"), Sample());
    files.SetReadHook([&](const QString&) {
        reading.release();
        mayGoOn.acquire();
    });
    Open();
    Find<QPushButton>("btnTry")->click();
    ASSERT_TRUE(QTest::qWaitFor([&reading] { return reading.available() > 0; }));
    dialog.reset();
    files.SetReadHook({});
    mayGoOn.release(100);
    pool.WaitForDone();
    QCoreApplication::processEvents();
}

TEST_F(OwnServerDialog, KeysAloneReachEverything) {
    files.Add(QStringLiteral("/archive/m.eml"), Sample());
    Open();
    QStringList reached;
    for (int number = 0; number < 14; ++number) {
        reached += dialog->focusWidget()->objectName();
        QTest::keyClick(dialog->focusWidget(), Qt::Key_Tab);
    }
    EXPECT_EQ(reached.join(QLatin1Char(' ')).toStdString(),
              "txtRating cboRatingForm txtRatingText txtSenders txtRecipients chkRecipientsRepeat txtReasons txtEnding "
              "chkPacked chkMaildir btnTry btnOK btnCancel btnHelp");
    QTest::keyClick(dialog->focusWidget(), Qt::Key_P, Qt::AltModifier);
    EXPECT_TRUE(QTest::qWaitFor([this] { return Find<QCheckBox>("chkPacked")->isChecked(); }));
    QTest::keyClick(dialog->focusWidget(), Qt::Key_T, Qt::AltModifier);
    EXPECT_TRUE(QTest::qWaitFor([this] { return Found().rfind("Message: ", 0) == 0; }));
    QTest::keyClick(dialog->focusWidget(), Qt::Key_Return);
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(dialog->result(), QDialog::Accepted);
    dialog->show();
    QTest::keyClick(dialog.get(), Qt::Key_Escape);
    EXPECT_EQ(dialog->result(), QDialog::Rejected);
}
