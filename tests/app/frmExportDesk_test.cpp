#include "tests/support/CallGate.h"
#include "tests/support/DialogVisit.h"
#include "tests/support/MainWindowFixture.h"

#include <QAbstractButton>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QTemporaryDir>

namespace quellbox {
namespace {

using namespace Qt::StringLiterals;

const QByteArray mark = "\xEF\xBB\xBF";

/// The list is exported into a real folder by the library's own dialog, which is the same on every system.
class MainExport : public MainWindowTest {
protected:
    MainExport() { QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs); }
    ~MainExport() override {
        window_.reset();
        pool_.WaitForDone();
        QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs, false);
    }

    QString Path(const QString& name) const { return folder_.path() + u'/' + name; }
    QStringList Files() const { return QDir(folder_.path()).entryList(QDir::Files); }

    QByteArray Bytes(const QString& name) const {
        QFile file(Path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("absent");
    }

    void Write(const QString& name, const QByteArray& bytes) const {
        QFile file(Path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }

    static void Type(QDialog& dialog, const QString& path) {
        dialog.findChild<QLineEdit*>(u"fileNameEdit"_s)->setText(path);
    }

    /// Begins to export into a file of that path.
    void Begin(const QString& path, const std::function<void(QFileDialog&)>& before = {}) {
        const DialogVisit visit("dlgExport", [&](QDialog& dialog) {
            if (before) {
                before(dynamic_cast<QFileDialog&>(dialog));
            }
            Type(dialog, path);
            dialog.accept();
        });
        Action("mnuFileExport")->trigger();
        EXPECT_TRUE(visit.Happened());
    }

    void Export(const QString& path, const std::function<void(QFileDialog&)>& before = {}) {
        Begin(path, before);
        Settle();
    }

    std::string Info() const { return window_->Panels().Info().text.toStdString(); }

    static QByteArray CsvLine(const QByteArray& name, const QByteArray& minute, const QByteArray& size) {
        return "\"2026-03-10 12:" + minute + ":00\",\"to-" + name + "\",\"from-" + name + "\",\"about " + name + "\"," +
               size + ",\"\",\"" + name + "\",\"\"\r\n";
    }

    QTemporaryDir folder_;
};

} // namespace

TEST_F(MainExport, NeedsMessages) {
    OpenRefreshed();
    EXPECT_FALSE(Action("mnuFileExport")->isEnabled());
    AddThree();
    window_->mnuAcRefresh_Click();
    Settle();
    EXPECT_TRUE(Action("mnuFileExport")->isEnabled());
}

TEST_F(MainExport, WritesWhatTheListShowsInItsOrder) {
    AddThree();
    OpenRefreshed();
    ClickHeader(ColumnSize);
    ASSERT_EQ(Keys(), "b.eml a.eml c.eml");
    Export(Path(u"list.csv"_s));
    EXPECT_EQ(Bytes(u"list.csv"_s),
              mark + "\"Date\",\"To\",\"From\",\"Subject\",\"Size\",\"SCL%\",\"File name\",\"Envelope sender\"\r\n" +
                  CsvLine("b.eml", "02", "100") + CsvLine("a.eml", "03", "900") + CsvLine("c.eml", "01", "1200"));
    EXPECT_EQ(Info(), "3 messages written to " + QDir::toNativeSeparators(Path(u"list.csv"_s)).toStdString());
    EXPECT_EQ(Files(), QStringList{u"list.csv"_s});
    EXPECT_TRUE(errors_.isEmpty());
}

TEST_F(MainExport, TheChosenFormGivesTheNameItsEnding) {
    AddMessage("a.eml", 3, 900);
    OpenRefreshed();
    Export(Path(u"one"_s));
    EXPECT_EQ(Info(), "One message written to " + QDir::toNativeSeparators(Path(u"one.csv"_s)).toStdString());
    Export(Path(u"two.x"_s), [](QFileDialog& dialog) { dialog.selectNameFilter(dialog.nameFilters().at(1)); });
    EXPECT_EQ(Bytes(u"two.x.jsonl"_s),
              "{\"date\":\"2026-03-10 12:03:00\",\"to\":\"to-a.eml\",\"from\":\"from-a.eml\",\"subject\":\"about "
              "a.eml\",\"size\":900,\"scl\":\"\",\"file\":\"a.eml\",\"sender\":\"\"}\n");
    EXPECT_EQ(Files(), QStringList({u"one.csv"_s, u"two.x.jsonl"_s}));
}

TEST_F(MainExport, TheRatingIsANumberWhereTheServerWritesNumbers) {
    Set("ServerProfile", "spamassassin");
    files_.Add(u"/archive/a.eml"_s, "X-Spam-Status: Yes, score=7.5 required=5\nSubject: s\n\n");
    files_.Add(u"/archive/b.eml"_s, "Subject: s\n\n");
    OpenRefreshed();
    Export(Path(u"list.jsonl"_s));
    EXPECT_EQ(Bytes(u"list.jsonl"_s).count("\"scl\":7.5,"), 1);
    EXPECT_EQ(Bytes(u"list.jsonl"_s).count("\"scl\":null,"), 1);
    Export(Path(u"list.csv"_s));
    EXPECT_TRUE(Bytes(u"list.csv"_s).contains(",7.5,\"a.eml\""));
}

TEST_F(MainExport, ATypedEndingCountsMoreThanTheChosenForm) {
    AddThree();
    OpenRefreshed();
    Export(Path(u"list.JSONL"_s));
    EXPECT_EQ(Bytes(u"list.JSONL"_s).count('\n'), 3);
}

TEST_F(MainExport, CancelWritesNothing) {
    AddThree();
    OpenRefreshed();
    window_->Panels().SetInfo(u"before"_s);
    const DialogVisit visit("dlgExport", [this](QDialog& dialog) {
        Type(dialog, Path(u"list.csv"_s));
        dialog.reject();
    });
    Action("mnuFileExport")->trigger();
    Settle();
    EXPECT_TRUE(visit.Happened());
    EXPECT_TRUE(Files().isEmpty());
    EXPECT_EQ(Info(), "before");
}

TEST_F(MainExport, ProposesANameWithTheDayAndOffersBothForms) {
    AddThree();
    OpenRefreshed();
    QStringList filters;
    QString name;
    bool rests = false;
    Export(Path(u"list.csv"_s), [&](QFileDialog& dialog) {
        filters = dialog.nameFilters();
        name = dialog.findChild<QLineEdit*>(u"fileNameEdit"_s)->text();
        rests = !Find<QTimer>("tmrRefresh")->isActive();
    });
    EXPECT_EQ(filters, QStringList({u"CSV (*.csv)"_s, u"JSON Lines (*.jsonl)"_s}));
    EXPECT_EQ(name, u"Messages of 2026-03-10"_s);
    EXPECT_TRUE(rests);
}

TEST_F(MainExport, AnotherFileIsReplacedOnlyAfterAQuestionAboutItsWholeName) {
    AddThree();
    OpenRefreshed();
    Write(u"list.csv"_s, "precious");
    for (const QMessageBox::StandardButton answer : {QMessageBox::No, QMessageBox::Yes}) {
        std::unique_ptr<DialogVisit> again;
        const DialogVisit question("msgReplace", [&](QDialog& box) {
            EXPECT_TRUE(dynamic_cast<QMessageBox&>(box).text().contains(u"list.csv"_s));
            again = std::make_unique<DialogVisit>("dlgExport", [](QDialog& dialog) { dialog.reject(); });
            dynamic_cast<QMessageBox&>(box).button(answer)->click();
        });
        Export(Path(u"list"_s));
        EXPECT_TRUE(question.Happened());
        EXPECT_EQ(again->Happened(), answer == QMessageBox::No) << "the dialog, to choose another name";
        EXPECT_EQ(Bytes(u"list.csv"_s).startsWith(mark), answer == QMessageBox::Yes);
        EXPECT_EQ(Files(), QStringList{u"list.csv"_s});
    }
}

TEST_F(MainExport, WhatGoesWrongIsSaid) {
    AddThree();
    OpenRefreshed();
    Export(Path(u"none/list.csv"_s));
    ASSERT_EQ(errors_.size(), 1);
    EXPECT_TRUE(errors_.at(0).endsWith(u"There is no such folder."_s)) << errors_.at(0).toStdString();
    EXPECT_FALSE(window_->Panels().Info().text.contains(u"written"_s));
    EXPECT_TRUE(window_->Jobs().IsIdle());
}

TEST_F(MainExport, StoppedItLeavesEverythingAsItWas) {
    AddThree();
    OpenRefreshed();
    Write(u"list.csv"_s, "precious");
    CallGate gate;
    pool_.SetMost(1);
    pool_.Start(WorkPool::Kind::Single, [&gate] { gate.Pass(0); });
    const DialogVisit question("msgReplace",
                               [](QDialog& box) { dynamic_cast<QMessageBox&>(box).button(QMessageBox::Yes)->click(); });
    Begin(Path(u"list.csv"_s));
    EXPECT_TRUE(window_->Jobs().IsAtWork()) << "beside the window";
    EXPECT_TRUE(QTest::qWaitFor([this] { return !List()->isEnabled(); }, patience)) << "which shows that it is busy";
    window_->activateWindow();
    EXPECT_TRUE(QTest::qWaitFor([this] { return QApplication::activeWindow() == window_.get(); }, patience));
    QWidget* focus = window_->focusWidget();
    QTest::keyClick(focus != nullptr ? focus : window_.get(), Qt::Key_Escape);
    EXPECT_TRUE(window_->Jobs().IsIdle());
    gate.LetAll();
    pool_.WaitForDone();
    Settle();
    EXPECT_EQ(Bytes(u"list.csv"_s), "precious");
    EXPECT_EQ(Files(), QStringList{u"list.csv"_s});
    EXPECT_EQ(Info(), "Done");
    EXPECT_TRUE(errors_.isEmpty());
}

TEST_F(MainExport, ClosingTheWindowGivesItUp) {
    AddThree();
    OpenRefreshed();
    CallGate gate;
    pool_.SetMost(1);
    pool_.Start(WorkPool::Kind::Single, [&gate] { gate.Pass(0); });
    Begin(Path(u"list.csv"_s));
    window_->close();
    gate.LetAll();
    pool_.WaitForDone();
    EXPECT_TRUE(Files().isEmpty());
}

TEST_F(MainExport, TheListMayChangeMeanwhileButNotWhatIsWritten) {
    AddThree();
    OpenRefreshed();
    CallGate gate;
    pool_.SetMost(1);
    pool_.Start(WorkPool::Kind::Single, [&gate] { gate.Pass(0); });
    Begin(Path(u"list.csv"_s));
    window_->Messages().Clear();
    gate.LetAll();
    Settle();
    EXPECT_EQ(Bytes(u"list.csv"_s).count("\r\n"), 4);
}

} // namespace quellbox
