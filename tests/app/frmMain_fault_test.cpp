#include "app/MessageListView.h"
#include "tests/support/MainWindowFixture.h"

#include <map>

namespace quellbox {
namespace {

const QStringList names{QStringLiteral("a.eml"), QStringLiteral("b.eml"), QStringLiteral("c.eml"),
                        QStringLiteral("d.eml"), QStringLiteral("e.eml"), QStringLiteral("f.eml")};

/// The main window while one call after the other of its file system fails.
class MainFault : public MainWindowTest {
protected:
    static QString Archive(const QString& name) { return QStringLiteral("/archive/") + name; }
    static QString Pickup(const QString& name) { return QStringLiteral("/pickup/") + name; }

    /// Every message is in the archive and listed, newest first: f.eml to a.eml.
    void Restore() {
        for (const QString& path : files_.Paths()) {
            files_.Remove(path);
        }
        for (int number = 0; number < names.size(); ++number) {
            const QByteArray sender = number % 3 == 1 ? "bob@friend.example" : "eve@spam.example";
            const QByteArray bytes = "X-Sender: " + sender + "\nSubject: " + names[number].toLatin1() + "\n\nbody\n";
            files_.Add(Archive(names[number]), bytes, noon_.addSecs(60 * number).toMSecsSinceEpoch() * 1'000'000);
            written_[names[number]] = bytes;
        }
        window_->State().TolerationLevel = 0;
        window_->mnuAcRefresh_Click();
        ASSERT_EQ(Keys(), "f.eml e.eml d.eml c.eml b.eml a.eml");
    }

    /// In how many of the two folders a message lies, whole.
    int Copies(const QString& name) const {
        int copies = 0;
        for (const QString& path : {Archive(name), Pickup(name)}) {
            if (files_.Paths().contains(path)) {
                EXPECT_EQ(files_.Bytes(path), written_.at(name)) << path.toStdString();
                ++copies;
            }
        }
        return copies;
    }

    /// The list and the window answer as ever, and a refresh shows what there is.
    void ExpectUsable() {
        EXPECT_TRUE(List()->isEnabled());
        EXPECT_EQ(QApplication::overrideCursor(), nullptr);
        EXPECT_FALSE(Find<QWidget>("prbFiles")->isVisible());
        EXPECT_TRUE(errors_.isEmpty()) << errors_.join(QLatin1Char('\n')).toStdString();
        window_->State().TolerationLevel = 0;
        window_->mnuAcRefresh_Click();
        QStringList left;
        for (const QString& name : names) {
            if (files_.Paths().contains(Archive(name))) {
                left.prepend(name);
            }
        }
        ASSERT_EQ(Keys(), left.join(QLatin1Char(' ')).toStdString());
        if (!left.isEmpty()) {
            ClickRow(0);
            EXPECT_EQ(Panel("info"), left.first().toStdString());
            EXPECT_TRUE(Action("mnuActionsDelete")->isEnabled());
        }
    }

    /// Runs `act` again and again, with another call failing each time, and looks at all messages with `expect`.
    void FailEachCall(const std::function<void()>& act, const std::function<void(const QString&)>& expect) {
        Open();
        Find<QTimer>("tmrRefresh")->stop();
        Restore();
        const int before = files_.CallCount();
        act();
        pool_.waitForDone();
        const int calls = files_.CallCount() - before;
        ASSERT_GT(calls, 3);
        for (int call = 1; call <= calls; ++call) {
            SCOPED_TRACE(call);
            Restore();
            files_.FailCall(call);
            act();
            pool_.waitForDone();
            files_.FailCall(0);
            for (const QString& name : names) {
                expect(name);
            }
            ExpectUsable();
        }
    }

    void SelectRows(int first, int last) {
        ClickRow(first);
        ClickRow(last, Qt::ShiftModifier);
        ASSERT_EQ(window_->State().SelectedCount, last - first + 1);
    }

    std::map<QString, QByteArray> written_;
};

TEST_F(MainFault, OfARefreshThatToleratesLosesNoMessage) {
    store_.SetValue(QStringLiteral("Tolerate"), QStringLiteral("@friend.example"), QStringLiteral("0"));
    const auto act = [this] {
        window_->State().TolerationLevel = 2;
        window_->mnuAcRefresh_Click();
    };
    FailEachCall(act, [this](const QString& name) { EXPECT_EQ(Copies(name), 1) << name.toStdString(); });
}

TEST_F(MainFault, OfAnUnblockLosesNoMessage) {
    const auto act = [this] {
        SelectRows(1, 4);
        Action("mnuActionsUnblock")->trigger();
        EXPECT_EQ(Keys(), "f.eml a.eml") << "the rows go in any case";
    };
    FailEachCall(act, [this](const QString& name) { EXPECT_EQ(Copies(name), 1) << name.toStdString(); });
}

TEST_F(MainFault, OfADeleteLosesNoOtherMessage) {
    const auto act = [this] {
        SelectRows(1, 4);
        Action("mnuActionsDelete")->trigger();
        EXPECT_EQ(Keys(), "f.eml a.eml");
    };
    const auto expect = [this](const QString& name) {
        const bool kept = name == names.first() || name == names.last();
        EXPECT_FALSE(files_.FileExists(Pickup(name)));
        EXPECT_GE(Copies(name), kept ? 1 : 0) << name.toStdString();
    };
    FailEachCall(act, expect);
}

TEST_F(MainFault, AReadOnlyPickupFolderKeepsTheArchiveFiles) {
    Open();
    Restore();
    for (const QString& name : names) {
        files_.FailPath(Pickup(name), QStringLiteral("Permission denied"));
    }
    SelectRows(0, 5);
    Action("mnuActionsUnblock")->trigger();
    EXPECT_EQ(Keys(), "");
    EXPECT_EQ(Panel("count"), "0 messages");
    for (const QString& name : names) {
        EXPECT_EQ(files_.Bytes(Archive(name)), written_.at(name));
    }
    EXPECT_EQ(files_.Paths().size(), names.size());
    window_->mnuAcRefresh_Click();
    EXPECT_EQ(window_->Messages().Count(), names.size());
}

} // namespace
} // namespace quellbox
