#include "app/ContentsPane.h"

#include "tests/support/Gzip.h"
#include "tests/support/MemoryFileSystem.h"
#include "tests/support/MemorySettingsStore.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QSemaphore>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

#include <stdexcept>

namespace quellbox {
namespace {

using namespace std::chrono_literals;

const QString pathA = QStringLiteral("/archive/a.eml");
const QString pathB = QStringLiteral("/archive/b.eml");

/// The pane over two messages in memory, in a window that is nothing but its two halves.
class ContentsPaneTest : public testing::Test {
protected:
    ContentsPaneTest() {
        files_.Add(pathA, "From: f@x.org\r\nSubject: about a\r\n\r\none\r\ntwo\r\n");
        files_.Add(pathB, "From: f@x.org\r\nSubject: about b\r\n\r\none\r\ntwo\r\n");
        Make(60s);
    }

    ~ContentsPaneTest() override {
        LetGo();
        pool_.WaitForDone();
    }

    void Make(std::chrono::milliseconds wait) {
        pane_.reset();
        window_ = std::make_unique<QWidget>();
        pane_ = std::make_unique<ContentsPane>(ContentsPorts{files_, store_, pool_, state_, wait}, window_.get());
        auto* layout = new QHBoxLayout(window_.get());
        layout->addWidget(&pane_->Tree());
        layout->addWidget(&pane_->Raw());
        window_->resize(600, 300);
        window_->show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(window_.get()));
        QObject::connect(pane_.get(), &ContentsPane::MessageSeen, [this](const QString& path) { seen_ += path; });
        QObject::connect(pane_.get(), &ContentsPane::Failed, [this](const QString& text) { failures_ += text; });
    }

    /// Reading waits until LetGo().
    void Stall() {
        files_.SetReadHook([this](const QString&) { release_.acquire(); });
    }

    void LetGo() {
        files_.SetReadHook({});
        release_.release(100);
    }

    bool WaitUntilLoaded() {
        return QTest::qWaitFor([this] { return !pane_->IsLoading(); }, 10'000);
    }

    void Show(const QString& path) {
        pane_->Show(path);
        ASSERT_TRUE(WaitUntilLoaded());
    }

    void ShowNext(const QString& path) {
        pane_->ShowNext(path);
        ASSERT_TRUE(WaitUntilLoaded());
    }

    void ShowInViewer(const QString& path) {
        pane_->ShowInViewer(path);
        ASSERT_TRUE(WaitUntilLoaded());
    }

    void ClickNode(QTreeWidgetItem* node) {
        pane_->Tree().scrollToItem(node);
        const int y = pane_->Tree().visualItemRect(node).center().y();
        QTest::mouseClick(pane_->Tree().viewport(), Qt::LeftButton, {}, {20, y});
    }

    std::string Subject() const {
        const QTreeWidgetItem* root = pane_->Tree().topLevelItem(0);
        return root == nullptr ? std::string() : root->child(1)->text(0).toStdString();
    }

    bool IsEmpty() const { return pane_->Tree().topLevelItemCount() == 0 && pane_->Raw().toPlainText().isEmpty(); }

    static frmView* Viewer() {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (auto* view = qobject_cast<frmView*>(widget); view != nullptr && view->isVisible()) {
                return view;
            }
        }
        return nullptr;
    }

    MemoryFileSystem files_;
    MemorySettingsStore store_;
    AppState state_;
    ThreadWorkPool pool_;
    QSemaphore release_;
    std::unique_ptr<QWidget> window_;
    std::unique_ptr<ContentsPane> pane_;
    QStringList seen_;
    QStringList failures_;
};

TEST_F(ContentsPaneTest, ShowsTheMessageAsAPersonReadsItWhereThatIsSet) {
    files_.Add(pathA, "From: f@x.org\r\nSubject: about a\r\nContent-Transfer-Encoding: base64\r\n\r\naGVsbG8K\r\n");
    state_.ReadableText = true;
    Show(pathA);
    EXPECT_EQ(pane_->Raw().FileName(), pathA);
    EXPECT_EQ(pane_->Raw().Form(), TextForm::Readable);
    EXPECT_TRUE(pane_->Raw().Text().contains(QStringLiteral("hello"))) << pane_->Raw().Text().toStdString();
    EXPECT_FALSE(pane_->Raw().Text().contains(QStringLiteral("aGVsbG8K")));
    EXPECT_EQ(Subject(), "SUBJECT: about a");
    EXPECT_EQ(pane_->Raw().accessibleName(), QStringLiteral("Readable text of the message"));
}

TEST_F(ContentsPaneTest, AnotherFormIsShownAtOnce) {
    QObject::connect(pane_.get(), &ContentsPane::WholeMessageWanted, [this] { pane_->ShowText(pathA); });
    Show(pathA);
    const QString source = pane_->Raw().Text();
    const QFont font = pane_->Raw().font();
    for (const bool readable : {true, false}) {
        state_.ReadableText = readable;
        pane_->ShowAnew();
        ASSERT_TRUE(WaitUntilLoaded());
        EXPECT_EQ(pane_->Raw().Text() == source, !readable);
        EXPECT_EQ(pane_->Raw().font() == font, !readable);
    }
    EXPECT_EQ(pane_->Raw().accessibleName(), QStringLiteral("Raw message contents"));
}

TEST_F(ContentsPaneTest, WhereNothingIsShownAnotherFormShowsNothing) {
    int wanted = 0;
    QObject::connect(pane_.get(), &ContentsPane::WholeMessageWanted, [&wanted] { ++wanted; });
    state_.ReadableText = true;
    pane_->ShowAnew();
    EXPECT_EQ(wanted, 0);
}

TEST_F(ContentsPaneTest, APartIsShownAsItIsWhateverTheForm) {
    state_.ReadableText = true;
    Show(pathA);
    pane_->SetToggles({false, false});
    pane_->Tree().expandAll();
    ClickNode(pane_->Tree().topLevelItem(0)->child(1));
    EXPECT_EQ(pane_->Raw().Form(), TextForm::Source);
    EXPECT_EQ(pane_->Raw().FileName(), QString());
}

TEST_F(ContentsPaneTest, ShowsTextAndStructureAndTellsThatTheMessageWasSeen) {
    Show(pathA);
    EXPECT_EQ(pane_->Raw().FileName(), pathA);
    EXPECT_EQ(Subject(), "SUBJECT: about a");
    EXPECT_EQ(seen_, QStringList(pathA));
}

TEST_F(ContentsPaneTest, AMessageThatIsShownIsNotReadAgainUnlessItTakesAPlace) {
    Show(pathA);
    const int opened = files_.OpenCount();
    Show(pathA);
    EXPECT_EQ(files_.OpenCount(), opened);
    ShowNext(pathA);
    EXPECT_EQ(files_.OpenCount(), opened + 1);
}

TEST_F(ContentsPaneTest, AFileThatHasGoneEmptiesBothHalvesUnseen) {
    Show(pathA);
    seen_.clear();
    files_.Remove(pathB);
    Show(pathB);
    EXPECT_TRUE(IsEmpty());
    EXPECT_TRUE(seen_.isEmpty());
    EXPECT_TRUE(failures_.isEmpty());
}

TEST_F(ContentsPaneTest, AnUnreadableMessageEmptiesBothHalvesAndCountsAsSeen) {
    Show(pathA);
    files_.FailPath(pathB, QStringLiteral("bad sector"));
    ShowNext(pathB);
    EXPECT_TRUE(IsEmpty());
    EXPECT_EQ(seen_, QStringList({pathA, pathB}));
    EXPECT_TRUE(failures_.isEmpty());
}

TEST_F(ContentsPaneTest, NothingIsShownAfterClearAndOnlyTheStructureAfterClearText) {
    Show(pathA);
    pane_->ClearText();
    EXPECT_TRUE(pane_->Raw().toPlainText().isEmpty());
    EXPECT_EQ(Subject(), "SUBJECT: about a");
    pane_->Clear();
    EXPECT_TRUE(IsEmpty());
}

TEST_F(ContentsPaneTest, ALeafShowsItselfAndAParentAsksForTheWholeMessage) {
    Show(pathA);
    const QSignalSpy wanted(pane_.get(), &ContentsPane::WholeMessageWanted);
    ClickNode(pane_->Tree().topLevelItem(0)->child(1));
    EXPECT_EQ(pane_->Raw().toPlainText(), QStringLiteral("SUBJECT: about a"));
    EXPECT_EQ(wanted.count(), 0);
    ClickNode(pane_->Tree().topLevelItem(0));
    EXPECT_EQ(wanted.count(), 1);
    EXPECT_EQ(pane_->Raw().toPlainText(), QStringLiteral("SUBJECT: about a"));
    pane_->ShowText(pathB);
    ASSERT_TRUE(WaitUntilLoaded());
    EXPECT_EQ(pane_->Raw().FileName(), pathB);
    EXPECT_EQ(Subject(), "SUBJECT: about a") << "the structure stays";
    EXPECT_EQ(seen_, QStringList(pathA));
}

TEST_F(ContentsPaneTest, TheViewerShowsTheTextAndIsUsedAgain) {
    ShowInViewer(pathA);
    frmView* viewer = Viewer();
    ASSERT_NE(viewer, nullptr);
    EXPECT_EQ(viewer->windowTitle(), pathA);
    EXPECT_EQ(pane_->Raw().FileName(), pathA);
    ShowInViewer(pathB);
    EXPECT_EQ(Viewer(), viewer);
    EXPECT_EQ(viewer->windowTitle(), pathB);
    pane_->CloseViewer();
    EXPECT_EQ(Viewer(), nullptr);
    ShowInViewer(pathA);
    ASSERT_NE(Viewer(), nullptr);
    EXPECT_EQ(Viewer()->windowTitle(), pathA);
    pane_.reset();
    EXPECT_EQ(Viewer(), nullptr);
}

TEST_F(ContentsPaneTest, AClosedPaneOpensNoViewerLate) {
    Make(1ms);
    Stall();
    pane_->ShowInViewer(pathA);
    EXPECT_TRUE(pane_->IsLoading());
    pane_->Close();
    EXPECT_FALSE(pane_->IsLoading());
    LetGo();
    pool_.WaitForDone();
    QCoreApplication::processEvents();
    EXPECT_EQ(Viewer(), nullptr);
}

TEST_F(ContentsPaneTest, WhatTakesLongComesLaterAndNothingOldIsLeftMeanwhile) {
    Make(1ms);
    pane_->Show(pathA);
    ASSERT_TRUE(WaitUntilLoaded());
    seen_.clear();
    Stall();
    pane_->Show(pathB);
    EXPECT_TRUE(QTest::qWaitFor([this] { return IsEmpty(); }, 10'000));
    EXPECT_TRUE(seen_.isEmpty());
    LetGo();
    ASSERT_TRUE(WaitUntilLoaded());
    EXPECT_EQ(pane_->Raw().FileName(), pathB);
    EXPECT_EQ(Subject(), "SUBJECT: about b");
    EXPECT_EQ(seen_, QStringList(pathB));
}

TEST_F(ContentsPaneTest, WhatIsForgottenNeverComes) {
    Make(1ms);
    Stall();
    pane_->Show(pathA);
    pane_->ReadHeaders(pathB);
    const QSignalSpy headers(pane_.get(), &ContentsPane::HeadersRead);
    pane_->Forget();
    EXPECT_FALSE(pane_->IsLoading());
    LetGo();
    pool_.WaitForDone();
    QCoreApplication::processEvents();
    EXPECT_TRUE(IsEmpty());
    EXPECT_EQ(headers.count(), 0);
    EXPECT_TRUE(seen_.isEmpty());
}

TEST_F(ContentsPaneTest, HeadersComeWithTheirPathAndShowNothing) {
    HeaderFields read;
    QString path;
    QObject::connect(pane_.get(), &ContentsPane::HeadersRead, [&](const QString& of, const HeaderFields& headers) {
        path = of;
        read = headers;
    });
    pane_->ReadHeaders(pathB);
    ASSERT_TRUE(WaitUntilLoaded());
    EXPECT_EQ(path, pathB);
    EXPECT_EQ(read.subject.toStdString(), "about b");
    EXPECT_TRUE(IsEmpty());
}

TEST_F(ContentsPaneTest, TheServersProfileDecidesWhatIsRead) {
    files_.Add(pathB,
               "Return-Path: <a@x.org>\r\nX-Spamd-Result: default: True [12.3 / 15.0]\r\nSubject: s\r\n\r\nb\r\n");
    HeaderFields read;
    QObject::connect(pane_.get(), &ContentsPane::HeadersRead,
                     [&](const QString&, const HeaderFields& headers) { read = headers; });
    const auto lines = [this] { return pane_->Tree().topLevelItem(0)->childCount(); };
    pane_->ReadHeaders(pathB);
    Show(pathB);
    EXPECT_EQ(read.subject.toStdString(), "s");
    EXPECT_EQ(read.rating.toStdString(), "");
    EXPECT_EQ(read.xSender.toStdString(), "");
    EXPECT_EQ(lines(), 1);
    state_.ServerProfile = QStringLiteral("rspamd");
    pane_->ReadHeaders(pathB);
    ShowNext(pathB);
    EXPECT_EQ(read.rating.toStdString(), "12.3");
    EXPECT_EQ(read.xSender.toStdString(), "a@x.org");
    ASSERT_EQ(lines(), 2);
    EXPECT_EQ(pane_->Tree().topLevelItem(0)->child(1)->text(0).toStdString(),
              "X-SPAMD-RESULT: default: True [12.3 / 15.0]");
}

TEST_F(ContentsPaneTest, HeadersThatWereAskedForBeforeTheProfileChangedAreDropped) {
    const QSignalSpy headers(pane_.get(), &ContentsPane::HeadersRead);
    Stall();
    pane_->ReadHeaders(pathB);
    state_.ServerProfile = QStringLiteral("rspamd");
    LetGo();
    ASSERT_TRUE(WaitUntilLoaded());
    EXPECT_EQ(headers.count(), 0);
}

TEST_F(ContentsPaneTest, APackedMessageIsShownUnpacked) {
    files_.Add(pathB, Gzip("Subject: packed\r\nTo: b@x.org\r\n\r\nbody\r\n"));
    Show(pathB);
    EXPECT_FALSE(pane_->Raw().toPlainText().contains(QStringLiteral("body"))) << "the default packs nothing";
    state_.ServerProfile = QStringLiteral("amavis");
    ShowNext(pathB);
    EXPECT_TRUE(pane_->Raw().toPlainText().contains(QStringLiteral("body")));
    EXPECT_EQ(Subject(), "SUBJECT: packed");
}

TEST_F(ContentsPaneTest, ADamagedPackedMessageSaysSoInItsPlace) {
    state_.ServerProfile = QStringLiteral("amavis");
    files_.Add(pathB, Gzip("Subject: packed\r\n\r\nbody\r\n").chopped(9));
    Show(pathA);
    Show(pathB);
    EXPECT_EQ(pane_->Raw().toPlainText(), QStringLiteral("The packed file is damaged"));
    EXPECT_EQ(pane_->Tree().topLevelItemCount(), 0);
    Show(pathA);
    EXPECT_EQ(pane_->Raw().FileName(), pathA);
}

TEST_F(ContentsPaneTest, TheButtonsExpandWhatIsShownAndWhatComesNext) {
    Show(pathA);
    const auto isExpanded = [this] { return pane_->Tree().topLevelItem(1)->isExpanded(); };
    EXPECT_FALSE(isExpanded());
    pane_->tlbContents_ButtonClick(QStringLiteral("collapse"), true);
    EXPECT_TRUE(isExpanded());
    Show(pathB);
    EXPECT_TRUE(isExpanded());
    pane_->tlbContents_ButtonClick(QStringLiteral("other"), false);
    EXPECT_TRUE(isExpanded());
    pane_->SetToggles({false, false});
    EXPECT_FALSE(isExpanded());
}

TEST_F(ContentsPaneTest, WhatReadingThrowsLateIsTold) {
    Make(1ms);
    files_.SetReadHook([this](const QString&) {
        release_.acquire();
        throw std::length_error("too long");
    });
    pane_->Show(pathA);
    EXPECT_TRUE(failures_.isEmpty());
    release_.release();
    ASSERT_TRUE(QTest::qWaitFor([this] { return !failures_.isEmpty(); }, 10'000));
    EXPECT_EQ(failures_, QStringList(QStringLiteral("too long")));
    EXPECT_FALSE(pane_->IsLoading());
}

TEST_F(ContentsPaneTest, AMessageThatIsShownIsSeenAgainWhenItIsWantedAgain) {
    Show(pathA);
    seen_.clear();
    const int opened = files_.OpenCount();
    Show(pathA);
    EXPECT_EQ(seen_, QStringList(pathA));
    EXPECT_EQ(files_.OpenCount(), opened) << "it is not read again";
}

} // namespace
} // namespace quellbox
