#include "app/StatusBarView.h"
#include "archive/RefreshTimer.h"
#include "tests/support/FileNames.h"
#include "tests/support/MainWindowFixture.h"
#include "tests/support/RealFolderWindow.h"

#include <QDialog>
#include <QPlainTextEdit>
#include <QRadioButton>

namespace quellbox {
namespace {

/// Chooses an option, unless it is negative, and presses a button.
void Choose(QDialog* dialog, int days, const char* button) {
    ASSERT_NE(dialog, nullptr);
    ASSERT_EQ(dialog->objectName(), QStringLiteral("frmCleansing"));
    if (days >= 0) {
        dialog->findChild<QRadioButton*>(QStringLiteral("optDays%1").arg(days))->click();
    }
    dialog->findChild<QAbstractButton*>(QLatin1String(button))->click();
}

/// Runs `act` on the dialog that the next command shows.
void OnDialog(QObject* context, std::function<void(QDialog*)> act) {
    QTimer::singleShot(0, context,
                       [act = std::move(act)] { act(qobject_cast<QDialog*>(QApplication::activeModalWidget())); });
}

/// Notes the file names that the panel "info" says are being removed.
QStringList& NoteRemoved(StatusPanels& panels, QStringList& names) {
    QObject::connect(&panels, &StatusPanels::Changed, [&panels, &names] {
        const QString text = panels.Info().text;
        const QString word = QStringLiteral("Removing ");
        if (text.startsWith(word) && (names.isEmpty() || names.last() != text.mid(word.size()))) {
            names += text.mid(word.size());
        }
    });
    return names;
}

class MainCleansing : public MainWindowTest {
protected:
    void AddDated(const char* name, const QDateTime& modified) {
        files_.Add(QStringLiteral("/archive/") + QLatin1String(name), QByteArray("Subject: ") + name + "\n\n",
                   modified.toMSecsSinceEpoch() * 1'000'000);
    }

    void Cleanse(int days, const char* button = "btnOK") {
        OnDialog(window_.get(), [days, button](QDialog* dialog) { Choose(dialog, days, button); });
        Action("mnuToolsCleansing")->trigger();
        Settle();
    }

    QTimer* Timer() const { return Find<QTimer>("tmrRefresh"); }
    std::string Info() const { return window_->Panels().Info().text.toStdString(); }
    std::string Files() const {
        return FileNames(files_, QStringLiteral("/archive")).join(QLatin1Char(' ')).toStdString();
    }
};

/// Counts how often a widget is painted while it shows a removal.
class PaintCount : public QObject {
public:
    explicit PaintCount(QLabel* label) : label_(label) { label->installEventFilter(this); }

    int Count() const { return count_; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Paint && label_->text().startsWith(QStringLiteral("Removing "))) {
            ++count_;
        }
        return QObject::eventFilter(watched, event);
    }

private:
    QLabel* label_;
    int count_ = 0;
};

} // namespace

TEST_F(MainCleansing, AConfirmationCountsOnlyForTheArchiveThatItNamed) {
    AddThree();
    files_.AddFolder(QStringLiteral("/other/"));
    files_.Add(QStringLiteral("/other/kept.eml"), "Subject: x\n\n", 0);
    OpenRefreshed();
    OnDialog(window_.get(), [this](QDialog* dialog) {
        window_->State().ArchiveDir = QStringLiteral("/other/");
        Choose(dialog, 0, "btnOK");
    });
    Action("mnuToolsCleansing")->trigger();
    Settle();
    EXPECT_EQ(Files(), "a.eml b.eml c.eml");
    EXPECT_TRUE(files_.FileExists(QStringLiteral("/other/kept.eml")));
}

TEST_F(MainCleansing, ARefreshThatFailsIsNotReportedAndLeavesNoRows) {
    AddThree();
    OpenRefreshed();
    const qint64 modified = noon_.toMSecsSinceEpoch() * 1'000'000;
    for (int number = 0; number < 32'767; ++number) {
        files_.Add(QStringLiteral("/archive/%1.txt").arg(number), "x", modified);
    }
    Cleanse(0);
    Settle();
    EXPECT_TRUE(errors_.isEmpty()) << errors_.join(QLatin1Char(' ')).toStdString();
    EXPECT_EQ(window_->Messages().Count(), 0);
    EXPECT_EQ(Info(), "3 Messages removed !");
    EXPECT_TRUE(Timer()->isActive());
}

TEST_F(MainCleansing, EveryMessageGoesAndTheListIsEmpty) {
    AddThree();
    AddMessage("note.txt", 4);
    OpenRefreshed();
    ASSERT_EQ(window_->Messages().Count(), 4);
    Cleanse(0);
    Settle();
    EXPECT_EQ(Files(), "note.txt");
    EXPECT_EQ(Keys(), "note.txt");
    EXPECT_EQ(Info(), "3 Messages removed !");
    EXPECT_EQ(Panel("info"), "3 Messages removed !");
    EXPECT_EQ(refreshes_, 2);
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
    EXPECT_TRUE(errors_.isEmpty());
}

TEST_F(MainCleansing, TheToolbarOpensTheSameDialog) {
    AddThree();
    OpenRefreshed();
    EXPECT_TRUE(Action("mnuToolsCleansing")->isEnabled());
    ASSERT_TRUE(Button("tlbMessages", "cleansing")->isEnabled());
    OnDialog(window_.get(), [](QDialog* dialog) { Choose(dialog, 0, "btnOK"); });
    Button("tlbMessages", "cleansing")->trigger();
    Settle();
    EXPECT_EQ(Files(), "");
    EXPECT_EQ(Info(), "3 Messages removed !");
}

TEST_F(MainCleansing, CtrlCOpensTheDialogAlsoInTheRawText) {
    AddThree();
    OpenRefreshed();
    Find<QPlainTextEdit>("rtfRaw")->selectAll(); // which could be copied
    for (const char* focused : {"lvwMessages", "trvMessage", "rtfRaw"}) {
        auto* control = Find<QWidget>(focused);
        control->setFocus();
        ASSERT_TRUE(control->hasFocus()) << focused;
        bool opened = false;
        OnDialog(window_.get(), [&opened](QDialog* dialog) {
            opened = true;
            Choose(dialog, -1, "btnCancel");
        });
        QTest::keyClick(control, Qt::Key_C, Qt::ControlModifier);
        EXPECT_TRUE(opened) << focused;
        QCoreApplication::processEvents();
        window_->activateWindow();
        ASSERT_TRUE(QTest::qWaitFor([this] { return QApplication::activeWindow() == window_.get(); }, patience));
    }
    EXPECT_EQ(Files(), "a.eml b.eml c.eml");
}

TEST_F(MainCleansing, CancelTouchesNothing) {
    AddThree();
    OpenRefreshed();
    window_->Panels().SetInfo(QStringLiteral("before"));
    const QString last = window_->State().LastAddedFile;
    for (const bool ticking : {true, false}) {
        ticking ? Timer()->start(3'600'000) : Timer()->stop();
        Cleanse(0, "btnCancel");
        EXPECT_EQ(Timer()->isActive(), ticking);
    }
    Timer()->start(3'600'000);
    OnDialog(window_.get(), [](QDialog* dialog) {
        dialog->findChild<QRadioButton*>(QStringLiteral("optDays0"))->click();
        dialog->close();
    });
    Action("mnuToolsCleansing")->trigger();
    Settle();
    EXPECT_EQ(Timer()->interval(), 3'600'000);
    EXPECT_EQ(Files(), "a.eml b.eml c.eml");
    EXPECT_EQ(Info(), "before");
    EXPECT_EQ(window_->State().LastAddedFile, last);
    EXPECT_EQ(refreshes_, 1);
}

TEST_F(MainCleansing, AnEarlierConfirmationConfirmsNothing) {
    AddThree();
    OpenRefreshed();
    window_->State().CleansingConfirmed = true;
    OnDialog(window_.get(), [](QDialog* dialog) {
        dialog->findChild<QRadioButton*>(QStringLiteral("optDays0"))->click();
        dialog->done(QDialog::Rejected); // neither a button nor the close box
    });
    Action("mnuToolsCleansing")->trigger();
    Settle();
    EXPECT_EQ(Files(), "a.eml b.eml c.eml");
    EXPECT_EQ(refreshes_, 1);
}

TEST_F(MainCleansing, TheTimerRunsAfterwardsEvenIfItDidNotBefore) {
    AddThree();
    OpenRefreshed();
    Timer()->stop();
    Cleanse(7);
    Settle();
    EXPECT_TRUE(Timer()->isActive());
    EXPECT_EQ(Timer()->interval(), RefreshIntervalMs(window_->State().RefreshInterval));
}

TEST_F(MainCleansing, SecondsAroundMidnightDecide) {
    const QDate today(2026, 6, 15);
    clock_.Set(QDateTime(today, QTime(0, 0, 30)));
    AddDated("kept.eml", QDateTime(today, QTime(0, 0, 10)));
    AddDated("gone.eml", QDateTime(today.addDays(-1), QTime(23, 59, 59)));
    OpenRefreshed();
    Cleanse(1);
    Settle();
    EXPECT_EQ(Files(), "kept.eml");
    EXPECT_EQ(Keys(), "kept.eml");
    EXPECT_EQ(Info(), "1 Messages removed !");
}

TEST_F(MainCleansing, TheWizardSaysHowManyItThenRemoves) {
    const QDate today(2026, 6, 15);
    clock_.Set(QDateTime(today, QTime(0, 0, 30)));
    AddDated("kept.eml", QDateTime(today, QTime(0, 0)));
    AddDated("gone.eml", QDateTime(today.addDays(-1), QTime(23, 59, 59)));
    AddDated("old.EML", QDateTime(today.addDays(-40), QTime(12, 0)));
    AddDated("note.txt", QDateTime(today.addDays(-40), QTime(12, 0)));
    OpenRefreshed();
    QString said;
    OnDialog(window_.get(), [&said](QDialog* dialog) {
        const auto* preview = dialog->findChild<QLabel*>(QStringLiteral("lblPreview"));
        dialog->findChild<QRadioButton*>(QStringLiteral("optDays1"))->click();
        EXPECT_TRUE(
            QTest::qWaitFor([preview] { return preview->text().endsWith(QLatin1String("removed.")); }, patience));
        said = preview->text();
        Choose(dialog, 1, "btnOK");
    });
    Action("mnuToolsCleansing")->trigger();
    Settle();
    EXPECT_TRUE(said.startsWith(QStringLiteral("2 messages "))) << said.toStdString();
    EXPECT_EQ(Info(), "2 Messages removed !");
    EXPECT_EQ(Files(), "kept.eml note.txt");
}

TEST_F(MainCleansing, AWeekKeepsSixDaysAgo) {
    const QDate today = clock_.Now().date();
    AddDated("kept.eml", QDateTime(today.addDays(-6), QTime(0, 0)));
    AddDated("gone.eml", QDateTime(today.addDays(-7), QTime(23, 59, 59)));
    OpenRefreshed();
    Cleanse(7);
    Settle();
    EXPECT_EQ(Files(), "kept.eml");
}

TEST_F(MainCleansing, EveryTwentyFifthFileIsNamedAndTheFirstOneSeen) {
    for (int number = 1; number <= 60; ++number) {
        AddMessage(qPrintable(QStringLiteral("m%1.eml").arg(number, 2, 10, QLatin1Char('0'))), 1);
    }
    OpenRefreshed();
    QStringList removed;
    NoteRemoved(window_->Panels(), removed);
    const PaintCount paints(PanelView("info"));
    Cleanse(0);
    Settle();
    EXPECT_EQ(removed.join(QLatin1Char(' ')).toStdString(), "m01.eml m26.eml m51.eml");
    EXPECT_GE(paints.Count(), 1);
    EXPECT_EQ(Info(), "60 Messages removed !");
}

TEST_F(MainCleansing, NothingToRemoveIsSaidToo) {
    AddThree();
    OpenRefreshed();
    Cleanse(1);
    Settle();
    EXPECT_EQ(Files(), "a.eml b.eml c.eml");
    EXPECT_EQ(Info(), "0 Messages removed !");
    EXPECT_EQ(refreshes_, 2);
}

TEST_F(MainCleansing, WhatCannotBeRemovedCountsAndIsListedAgain) {
    AddThree();
    OpenRefreshed();
    files_.SetReadOnly(QStringLiteral("/archive/a.eml"));
    files_.FailPath(QStringLiteral("/archive/b.eml"), QStringLiteral("The file is in use."));
    Cleanse(0);
    Settle();
    EXPECT_EQ(Files(), "a.eml b.eml");
    EXPECT_EQ(Info(), "3 Messages removed !");
    EXPECT_TRUE(errors_.isEmpty()) << errors_.join(QLatin1Char(' ')).toStdString();
}

TEST_F(MainCleansing, AMissingArchiveEndsWithNone) {
    AddThree();
    OpenRefreshed();
    window_->State().ArchiveDir = QStringLiteral("/none/");
    QStringList texts;
    QObject::connect(&window_->Panels(), &StatusPanels::Changed, [&] { texts += window_->Panels().Info().text; });
    Cleanse(0);
    Settle();
    EXPECT_TRUE(texts.contains(QStringLiteral("Archive /NONE/ not found")));
    EXPECT_EQ(Info(), "0 Messages removed !");
    EXPECT_EQ(window_->Messages().Count(), 0);
    EXPECT_EQ(Files(), "a.eml b.eml c.eml");
    EXPECT_TRUE(Timer()->isActive());
    EXPECT_TRUE(errors_.isEmpty());
}

TEST_F(MainCleansing, WaitsForNoPass) {
    AddThree();
    files_.SetLatency(std::chrono::milliseconds(60));
    Open();
    bool tried = false;
    WhileBusy([this, &tried] {
        Action("mnuToolsCleansing")->trigger();
        Button("tlbMessages", "cleansing")->trigger();
        tried = true;
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    });
    ASSERT_TRUE(WaitForRefreshes(1));
    files_.SetLatency(std::chrono::microseconds(0));
    EXPECT_TRUE(tried);
    EXPECT_EQ(Files(), "a.eml b.eml c.eml");
}

namespace {

class RealCleansing : public RealFolderWindowTest {};

} // namespace

TEST_F(RealCleansing, AnArchiveThatVanishesMeanwhileIsCountedAndReported) {
    Open(60);
    QStringList removed;
    NoteRemoved(window->Panels(), removed);
    QObject::connect(&window->Panels(), &StatusPanels::Changed, window.get(), [&] {
        if (removed.size() == 2 && QFileInfo::exists(Archive())) {
            QDir(root.path()).rename(QStringLiteral("archive"), QStringLiteral("gone"));
        }
    });
    OnDialog(window.get(), [](QDialog* dialog) { Choose(dialog, 0, "btnOK"); });
    Command("mnuToolsCleansing")->trigger();
    Settle();
    EXPECT_EQ(window->Panels().Info().text, QStringLiteral("60 Messages removed !"));
    EXPECT_EQ(removed.size(), 3);
    EXPECT_TRUE(QFileInfo::exists(root.path() + QStringLiteral("/gone")));
    EXPECT_EQ(window->Messages().Count(), 0);
}

} // namespace quellbox
