#include "dialogs/frmOptions.h"
#include "tests/support/DialogVisit.h"
#include "tests/support/MainWindowFixture.h"
#include "tests/support/NativePath.h"
#include "whitelist/frmTolerate.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>

#include <tuple>

namespace quellbox {
namespace {

class MainOptions : public MainWindowTest {
protected:
    /// Runs `act` on the options dialog as soon as it is open; it must be closed by then.
    void OnOptions(std::function<void(frmOptions&)> act) {
        QTimer::singleShot(0, window_.get(), [this, act = std::move(act)] {
            auto* dialog = qobject_cast<frmOptions*>(QApplication::activeModalWidget());
            ASSERT_NE(dialog, nullptr);
            ++opened_;
            EXPECT_FALSE(Timer()->isActive());
            act(*dialog);
        });
    }

    static void Press(QWidget& dialog, const char* name) {
        auto* button = dialog.findChild<QAbstractButton*>(QLatin1String(name));
        ASSERT_NE(button, nullptr) << name;
        if (auto* tabs = dialog.findChild<QTabWidget*>(QStringLiteral("tbsOptions"))) {
            for (int tab = 0; tab < tabs->count(); ++tab) {
                if (tabs->widget(tab)->isAncestorOf(button)) {
                    tabs->setCurrentIndex(tab); // a page that is not shown does not hear clicks
                }
            }
        }
        ASSERT_TRUE(button->isVisible() && button->isEnabled()) << name;
        button->click();
    }

    /// Chooses (or not, without a name) an option button and closes the dialog with another one.
    void Choose(const char* option, const char* close) {
        OnOptions([this, option, close](frmOptions& dialog) {
            tab_ = dialog.findChild<QTabWidget*>(QStringLiteral("tbsOptions"))->currentIndex();
            if (option != nullptr) {
                Press(dialog, option);
            }
            Press(dialog, close);
        });
    }

    void ClickPanel(const char* key) {
        QTest::mouseClick(PanelView(key), Qt::LeftButton);
        Settle();
    }

    QWidget* FilterButton() const { return Find<QToolBar>("tlbMessages")->widgetForAction(Filter()); }

    void ClickFilter() {
        QTest::mouseClick(FilterButton(), Qt::LeftButton);
        Settle();
    }

    QAction* Filter() const { return Button("tlbMessages", "filter"); }
    QTimer* Timer() const { return Find<QTimer>("tmrRefresh"); }
    QString Mark() const { return Action("mnuToolsOptions")->property("Tag").toString(); }

    void AddTwoDays() {
        AddMessage("yesterday.eml", -12 * 60 - 1);
        AddMessage("today.eml", -12 * 60);
    }

    int opened_ = 0;
    int tab_ = -1;
};

} // namespace

TEST_F(MainOptions, AnotherFilterRefreshesOnceAfterTheDialog) {
    AddTwoDays();
    OpenRefreshed();
    EXPECT_TRUE(Action("mnuToolsOptions")->isEnabled());
    OnOptions([this](frmOptions& dialog) {
        Press(dialog, "optDays1");
        Press(dialog, "cmdOK");
        EXPECT_EQ(refreshes_, 1);
        EXPECT_EQ(Mark(), QStringLiteral("X"));
        EXPECT_TRUE(Filter()->isChecked());
    });
    Action("mnuToolsOptions")->trigger();
    Settle();
    EXPECT_EQ(opened_, 1);
    EXPECT_EQ(refreshes_, 2);
    EXPECT_EQ(Keys(), "today.eml");
    EXPECT_EQ(Panel("count"), "1 (just today)");
    EXPECT_TRUE(Mark().isEmpty());
    EXPECT_TRUE(Timer()->isActive());
}

TEST_F(MainOptions, AnotherServerMakesTheListAnew) {
    files_.Add(QStringLiteral("/archive/a.eml"), "X-Spam-Status: Yes, score=9.5 required=5\nSubject: a\n\n", 1);
    files_.Add(QStringLiteral("/archive/b.eml"), "X-Spam-Status: Yes, score=10 required=5\nSubject: b\n\n", 2);
    OpenRefreshed();
    EXPECT_EQ(Cell(0, ColumnScl) + Cell(1, ColumnScl), "");
    const auto choose = [this](const char* server) {
        OnOptions([server](frmOptions& dialog) {
            dialog.findChild<QTabWidget*>(QStringLiteral("tbsOptions"))->setCurrentIndex(6);
            auto* box = dialog.findChild<QComboBox*>(QStringLiteral("cboServer"));
            box->setCurrentIndex(box->findData(QLatin1String(server)));
            Press(dialog, "cmdOK");
        });
        Action("mnuToolsOptions")->trigger();
        Settle();
    };
    choose("spamassassin");
    EXPECT_EQ(opened_, 1);
    EXPECT_EQ(refreshes_, 2);
    ASSERT_EQ(window_->Messages().Count(), 2);
    EXPECT_TRUE(window_->Messages().RatesByNumber());
    ClickHeader(ColumnScl);
    ClickHeader(ColumnScl);
    const std::string sorted = Keys();
    EXPECT_TRUE(sorted == "a.eml b.eml" || sorted == "b.eml a.eml");
    EXPECT_EQ(Cell(sorted == "a.eml b.eml" ? 0 : 1, ColumnScl), "9.5");
    choose("spamassassin");
    EXPECT_EQ(refreshes_, 2) << "the same one";
    choose("imf");
    EXPECT_EQ(refreshes_, 3);
    EXPECT_FALSE(window_->Messages().RatesByNumber());
    EXPECT_EQ(Cell(0, ColumnScl) + Cell(1, ColumnScl), "");
}

TEST_F(MainOptions, AnotherDescriptionOfTheServerMakesTheListAnew) {
    files_.Add(QStringLiteral("/archive/a.eml"), "X-Junk: 7\nX-Points: 9.5\nSubject: a\n\n", 1);
    Set("ServerProfile", "own");
    Set("OwnRating", "X-Junk");
    OpenRefreshed();
    EXPECT_EQ(Cell(0, ColumnScl), "7");
    const auto describe = [this](const char* field) {
        OnOptions([field](frmOptions& dialog) {
            dialog.findChild<QTabWidget*>(QStringLiteral("tbsOptions"))->setCurrentIndex(6);
            const DialogVisit visit("frmOwnServer", [field](QDialog& fields) {
                fields.findChild<QLineEdit*>(QStringLiteral("txtRating"))->setText(QLatin1String(field));
                fields.findChild<QPushButton*>(QStringLiteral("btnOK"))->click();
            });
            Press(dialog, "btnOwnServer");
            EXPECT_TRUE(visit.Happened());
            Press(dialog, "cmdOK");
        });
        Action("mnuToolsOptions")->trigger();
        Settle();
    };
    describe("X-Points");
    EXPECT_EQ(refreshes_, 2);
    EXPECT_EQ(Cell(0, ColumnScl), "9.5");
    describe("X-Points");
    EXPECT_EQ(refreshes_, 2) << "the same one";
}

TEST_F(MainOptions, TheSameFilterDoesNotRefresh) {
    AddTwoDays();
    Set("FilterDays", "1");
    OpenRefreshed();
    ASSERT_FALSE(Filter()->isChecked());
    Choose("optDays1", "cmdOK");
    Action("mnuToolsOptions")->trigger();
    Settle();
    EXPECT_EQ(opened_, 1);
    EXPECT_EQ(refreshes_, 1);
    EXPECT_EQ(Keys(), "today.eml yesterday.eml");
    EXPECT_TRUE(Filter()->isChecked()); // OK presses the button whenever there is a day window
    EXPECT_TRUE(Timer()->isActive());
}

TEST_F(MainOptions, AnotherArchiveIsListedAfterTheDialogEvenIfThatIsCancelled) {
    AddThree();
    files_.AddFolder(QStringLiteral("/other/"));
    files_.Add(QStringLiteral("/other/new.eml"), "Subject: x\n\n", 0);
    OpenRefreshed();
    OnOptions([](frmOptions& dialog) {
        QTimer::singleShot(0, &dialog, [] {
            QWidget* folders = QApplication::activeModalWidget();
            ASSERT_EQ(folders->objectName(), QStringLiteral("frmFolders"));
            folders->findChild<QAbstractButton*>(QStringLiteral("chkShare"))->click();
            folders->findChild<QLineEdit*>(QStringLiteral("txtShare"))->setText(NativePath(QStringLiteral("/other")));
            folders->findChild<QAbstractButton*>(QStringLiteral("btnOK"))->click();
        });
        Press(dialog, "btnArchive");
        Press(dialog, "cmdCancel");
    });
    Action("mnuToolsOptions")->trigger();
    Settle();
    EXPECT_EQ(opened_, 1);
    EXPECT_EQ(refreshes_, 2);
    EXPECT_EQ(Keys(), "new.eml");
    EXPECT_EQ(SlashPath(Stored("ArchiveDir")), QStringLiteral("/other/"));
}

TEST_F(MainOptions, TheSameArchiveConfirmedDoesNotMakeTheListNew) {
    Set("AutoRefresh", "1");
    Set("ArchiveDir", qPrintable(NativePath(QStringLiteral("/archive/"))));
    AddTwoDays();
    files_.AddFolder(QStringLiteral("/"));
    OpenRefreshed();
    QTest::keyClick(List(), Qt::Key_Escape);
    Settle();
    OnOptions([](frmOptions& dialog) {
        QTimer::singleShot(0, &dialog, [] {
            QWidget* folders = QApplication::activeModalWidget();
            ASSERT_EQ(folders->objectName(), QStringLiteral("frmFolders"));
            EXPECT_EQ(folders->windowTitle(), QStringLiteral("Select Archive Directory"));
            folders->findChild<QAbstractButton*>(QStringLiteral("chkShare"))->click();
            folders->findChild<QLineEdit*>(QStringLiteral("txtShare"))->setText(NativePath(QStringLiteral("/archive")));
            folders->findChild<QAbstractButton*>(QStringLiteral("btnOK"))->click();
        });
        Press(dialog, "btnArchive");
        EXPECT_EQ(SlashPath(dialog.findChild<QLineEdit*>(QStringLiteral("txtArchive"))->text()),
                  QStringLiteral("/archive/"));
        Press(dialog, "cmdCancel");
    });
    Action("mnuToolsOptions")->trigger();
    Settle();
    EXPECT_EQ(opened_, 1);
    Tick();
    EXPECT_EQ(Keys(), "today.eml yesterday.eml");
    EXPECT_FALSE(IsUnread(0));
    EXPECT_FALSE(IsUnread(1));
}

TEST_F(MainOptions, ACancelledSelectionShowsTheOldDirectory) {
    OpenRefreshed();
    OnOptions([](frmOptions& dialog) {
        for (const auto& [button, edit, folder] :
             {std::tuple{"btnArchive", "txtArchive", "/archive/"}, {"btnPickup", "txtPickup", "/pickup/"}}) {
            QTimer::singleShot(0, &dialog, [] {
                QWidget* folders = QApplication::activeModalWidget();
                ASSERT_EQ(folders->objectName(), QStringLiteral("frmFolders"));
                folders->findChild<QAbstractButton*>(QStringLiteral("chkShare"))->click();
                folders->findChild<QLineEdit*>(QStringLiteral("txtShare"))
                    ->setText(NativePath(QStringLiteral("/other")));
                folders->findChild<QAbstractButton*>(QStringLiteral("btnCancel"))->click();
            });
            Press(dialog, button);
            EXPECT_EQ(dialog.findChild<QLineEdit*>(QLatin1String(edit))->text(), QLatin1String(folder));
        }
        Press(dialog, "cmdOK");
    });
    Action("mnuToolsOptions")->trigger();
    Settle();
    EXPECT_EQ(opened_, 1);
    EXPECT_EQ(window_->State().ArchiveDir, QStringLiteral("/archive/"));
    EXPECT_EQ(window_->State().PickupDir, QStringLiteral("/pickup/"));
}

TEST_F(MainOptions, ARefreshThatWasDueDoesNotStartTheTimerBehindTheDialog) {
    OpenRefreshed();
    OnOptions([this](frmOptions& dialog) {
        window_->mnuAcRefresh_Click();
        EXPECT_FALSE(Timer()->isActive());
        Press(dialog, "cmdCancel");
    });
    Action("mnuToolsOptions")->trigger();
    Settle();
    EXPECT_EQ(refreshes_, 2);
    EXPECT_TRUE(Timer()->isActive());
}

TEST_F(MainOptions, CancelChangesNothing) {
    AddTwoDays();
    OpenRefreshed();
    Choose("optDays7", "cmdCancel");
    Action("mnuToolsOptions")->trigger();
    Settle();
    EXPECT_EQ(opened_, 1);
    EXPECT_EQ(refreshes_, 1);
    EXPECT_EQ(window_->State().FilterDays, 0);
    EXPECT_FALSE(Filter()->isChecked());
    EXPECT_TRUE(Timer()->isActive());
}

TEST_F(MainOptions, NoFilteringReleasesTheButton) {
    AddTwoDays();
    Set("FilterDays", "1");
    Set("FilterMessages", "1");
    OpenRefreshed();
    ASSERT_TRUE(Filter()->isChecked());
    Choose("optDays0", "cmdOK");
    Action("mnuToolsOptions")->trigger();
    Settle();
    EXPECT_FALSE(Filter()->isChecked());
    EXPECT_EQ(refreshes_, 2);
    EXPECT_EQ(Keys(), "today.eml yesterday.eml");
}

TEST_F(MainOptions, TheFilterButtonAsksForADayWindowFirst) {
    AddTwoDays();
    OpenRefreshed();
    Choose("optDays1", "cmdOK");
    ClickFilter();
    EXPECT_EQ(opened_, 1);
    EXPECT_EQ(tab_, 2);
    EXPECT_TRUE(Filter()->isChecked());
    EXPECT_EQ(refreshes_, 2);
    EXPECT_EQ(Keys(), "today.eml");
    EXPECT_EQ(window_->State().ActiveFilterDays, QStringLiteral("1"));
    ClickFilter(); // with a day window it asks no more
    ClickFilter();
    EXPECT_EQ(opened_, 1);
    EXPECT_EQ(refreshes_, 4);
    EXPECT_EQ(Keys(), "today.eml");
}

TEST_F(MainOptions, TheFilterButtonStaysPressedWhenTheDialogIsCancelled) {
    AddTwoDays();
    OpenRefreshed();
    Choose(nullptr, "cmdCancel");
    ClickFilter();
    EXPECT_EQ(opened_, 1);
    EXPECT_TRUE(Filter()->isChecked());
    EXPECT_EQ(refreshes_, 2);
    EXPECT_EQ(Keys(), "today.eml yesterday.eml");
    EXPECT_EQ(window_->State().ActiveFilterDays, QStringLiteral("0"));
    ClickFilter(); // released: nothing is asked
    EXPECT_EQ(opened_, 1);
    EXPECT_FALSE(Filter()->isChecked());
    EXPECT_EQ(refreshes_, 3);
}

TEST_F(MainOptions, TheFilterButtonIsReleasedByOkWithoutADayWindow) {
    OpenRefreshed();
    Choose(nullptr, "cmdOK");
    ClickFilter();
    EXPECT_EQ(opened_, 1);
    EXPECT_FALSE(Filter()->isChecked());
    EXPECT_EQ(refreshes_, 2);
}

TEST_F(MainOptions, ThePanelsOpenTheirPagesAndRefreshInAnyCase) {
    AddTwoDays();
    OpenRefreshed();
    Choose(nullptr, "cmdCancel");
    ClickPanel("count");
    EXPECT_EQ(opened_, 1);
    EXPECT_EQ(tab_, 2);
    EXPECT_EQ(refreshes_, 2);
    Choose(nullptr, "cmdCancel");
    ClickPanel("size");
    EXPECT_EQ(opened_, 2);
    EXPECT_EQ(tab_, 4);
    EXPECT_EQ(refreshes_, 3);
    ClickPanel("info");
    QTest::mouseClick(PanelView("count"), Qt::RightButton);
    Settle();
    EXPECT_EQ(opened_, 2);
    EXPECT_EQ(refreshes_, 3);
    EXPECT_EQ(PanelView("size")->cursor().shape(), Qt::PointingHandCursor);
    EXPECT_EQ(PanelView("count")->cursor().shape(), Qt::PointingHandCursor);
    EXPECT_EQ(PanelView("info")->cursor().shape(), Qt::ArrowCursor);
    Choose(nullptr, "cmdCancel");
    Action("mnuToolsOptions")->trigger(); // on the page that was open last
    EXPECT_EQ(tab_, 4);
}

TEST_F(MainOptions, AFilterChosenFromAPanelLeavesItsMarkToTheMenu) {
    AddTwoDays();
    OpenRefreshed();
    Choose("optDays1", "cmdOK");
    ClickPanel("count");
    EXPECT_EQ(refreshes_, 2);
    EXPECT_EQ(Keys(), "today.eml");
    EXPECT_EQ(Mark(), QStringLiteral("X"));
    Choose(nullptr, "cmdCancel");
    Action("mnuToolsOptions")->trigger();
    Settle();
    EXPECT_EQ(refreshes_, 3);
    EXPECT_TRUE(Mark().isEmpty());
}

TEST_F(MainOptions, ANewIntervalTakesEffectWithTheNextRefresh) {
    Set("RefreshInterval", "60");
    OpenRefreshed();
    ASSERT_EQ(Timer()->interval(), 60'000);
    OnOptions([](frmOptions& dialog) {
        dialog.findChild<QSlider*>(QStringLiteral("sliRefreshInterval"))->setValue(5);
        Press(dialog, "cmdOK");
    });
    Action("mnuToolsOptions")->trigger();
    Settle();
    EXPECT_EQ(window_->State().RefreshInterval, 5);
    EXPECT_EQ(Timer()->interval(), 60'000);
    EXPECT_TRUE(Timer()->isActive());
    window_->mnuAcRefresh_Click();
    Settle();
    EXPECT_EQ(Timer()->interval(), 5'000);
}

TEST_F(MainOptions, ATimerThatStoodStillStartsWithAnIntervalOfTheDialog) {
    Set("RefreshInterval", "0");
    OpenRefreshed();
    ASSERT_FALSE(Timer()->isActive());
    Choose(nullptr, "cmdCancel");
    Action("mnuToolsOptions")->trigger();
    Settle();
    EXPECT_FALSE(Timer()->isActive());
    Choose(nullptr, "cmdOK");
    Action("mnuToolsOptions")->trigger();
    Settle();
    EXPECT_TRUE(Timer()->isActive());
    EXPECT_EQ(Timer()->interval(), 5'000);
}

TEST_F(MainOptions, TheFirstRefreshWaitsForTheDialog) {
    AddThree();
    Open();
    ASSERT_EQ(refreshes_, 0);
    Choose(nullptr, "cmdOK");
    Action("mnuToolsOptions")->trigger();
    Settle();
    EXPECT_EQ(refreshes_, 0);
    ASSERT_TRUE(WaitForRefreshes(1));
    QCoreApplication::processEvents();
    EXPECT_EQ(SelectedKeys(), "a.eml");
}

TEST_F(MainOptions, AnotherLevelIsFollowedByWhatIsEnabled) {
    AddThree();
    OpenRefreshed();
    EXPECT_FALSE(Button("tlbMessages", "whitelist")->isEnabled());
    Choose("optToleration1", "cmdOK");
    Action("mnuToolsOptions")->trigger();
    Settle();
    EXPECT_TRUE(Button("tlbMessages", "whitelist")->isEnabled());
    EXPECT_TRUE(Button("tlbMessages", "tolerate")->isEnabled());
    Choose("optToleration0", "cmdOK");
    Action("mnuToolsOptions")->trigger();
    Settle();
    EXPECT_FALSE(Button("tlbMessages", "whitelist")->isEnabled());
    EXPECT_EQ(refreshes_, 1);
}

TEST_F(MainOptions, TheWhitelistOpensAboveAndTheTimerStillRests) {
    OpenRefreshed();
    bool seen = false;
    OnOptions([this, &seen](frmOptions& dialog) {
        QTimer::singleShot(0, &dialog, [this, &dialog, &seen] {
            auto* whitelist = qobject_cast<frmTolerate*>(QApplication::activeModalWidget());
            ASSERT_NE(whitelist, nullptr);
            EXPECT_EQ(whitelist->parentWidget(), &dialog);
            seen = true;
            Press(*whitelist, "btnOK");
        });
        Press(dialog, "btnTolerate");
        EXPECT_TRUE(seen);
        EXPECT_FALSE(Timer()->isActive());
        window_->mnuAcRefresh_Click(); // one that was due
        EXPECT_FALSE(Timer()->isActive());
        Press(dialog, "cmdCancel");
    });
    Action("mnuToolsOptions")->trigger();
    Settle();
    EXPECT_TRUE(seen);
    EXPECT_TRUE(Timer()->isActive());
    EXPECT_EQ(refreshes_, 2);
}

TEST_F(MainOptions, NothingOpensWhileAPassRuns) {
    for (int number = 0; number < 300; ++number) {
        AddMessage(qPrintable(QStringLiteral("m%1.eml").arg(number)), number);
    }
    files_.SetLatency(std::chrono::milliseconds(60));
    Open();
    bool looked = false;
    WhileBusy([this, &looked] {
        looked = true;
        Action("mnuToolsOptions")->trigger();
        QTest::mouseClick(PanelView("count"), Qt::LeftButton);
        QTest::mouseClick(FilterButton(), Qt::LeftButton);
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
        EXPECT_FALSE(Filter()->isChecked());
    });
    ASSERT_TRUE(WaitForRefreshes(1));
    QCoreApplication::processEvents();
    EXPECT_TRUE(looked);
    EXPECT_EQ(refreshes_, 1);
    EXPECT_EQ(window_->Messages().Count(), 300);
}

TEST_F(MainOptions, WhatWasChosenIsStoredOnClosing) {
    OpenRefreshed();
    OnOptions([](frmOptions& dialog) {
        Press(dialog, "optDays7");
        Press(dialog, "optToleration2");
        Press(dialog, "chkRawBody");
        Press(dialog, "chkAutoRefresh");
        dialog.findChild<QSlider*>(QStringLiteral("sliRefreshInterval"))->setValue(25);
        Press(dialog, "cmdOK");
    });
    Action("mnuToolsOptions")->trigger();
    Settle();
    EXPECT_EQ(Stored("FilterDays"), QStringLiteral("absent"));
    window_->close();
    EXPECT_EQ(Stored("FilterDays"), QStringLiteral("7"));
    EXPECT_EQ(Stored("FilterMessages"), QStringLiteral("1"));
    EXPECT_EQ(Stored("TolerationLevel"), QStringLiteral("2"));
    EXPECT_EQ(Stored("RefreshInterval"), QStringLiteral("25"));
    EXPECT_EQ(Stored("RawBody"), QStringLiteral("1"));
    EXPECT_EQ(Stored("AutoRefresh"), QStringLiteral("1"));
}

TEST_F(MainOptions, WhatWasChosenIsLostWhenTheWindowClosesMinimized) {
    Set("FilterDays", "2");
    Set("RefreshInterval", "40");
    Set("TolerationLevel", "1");
    const QStringList keys = store_.Keys(QStringLiteral("Settings"));
    OpenRefreshed();
    OnOptions([](frmOptions& dialog) {
        Press(dialog, "optDays7");
        Press(dialog, "optToleration2");
        Press(dialog, "chkRawBody");
        dialog.findChild<QSlider*>(QStringLiteral("sliRefreshInterval"))->setValue(25);
        Press(dialog, "cmdOK");
    });
    Action("mnuToolsOptions")->trigger();
    Settle();
    ASSERT_EQ(window_->State().FilterDays, 7);
    window_->showMinimized();
    ASSERT_TRUE(QTest::qWaitFor([this] { return window_->isMinimized(); }, patience));
    window_->close();
    EXPECT_EQ(Stored("FilterDays"), QStringLiteral("2"));
    EXPECT_EQ(Stored("RefreshInterval"), QStringLiteral("40"));
    EXPECT_EQ(Stored("TolerationLevel"), QStringLiteral("1"));
    EXPECT_EQ(store_.Keys(QStringLiteral("Settings")), keys);
    EXPECT_EQ(store_.FlushCount(), 0);
}

} // namespace quellbox
