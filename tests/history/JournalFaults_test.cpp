// The history on a disk that goes wrong at each of its calls in turn: no action waits for it, nothing is told twice,
// and what was done is there once the disk works again.
#ifdef __linux__

#include "tests/history/JournalFile.h"
#include "tests/support/FaultMount.h"

using namespace quellbox;

namespace {

class JournalFaults : public JournalTest {
protected:
    void SetUp() override {
        mount_ = std::make_unique<FaultMount>(FaultMount::Traits());
        if (!mount_->IsMounted()) {
            GTEST_SKIP() << mount_->WhyNot().toStdString();
        }
    }

    void OpenThere(int number = 0) {
        const QString file = mount_->Folder() + QStringLiteral("history%1.sqlite").arg(number);
        journal_.emplace(*pool_, clock_, Journal::Place{file, QStringLiteral("Jo"), QStringLiteral("pc")});
        told_.clear();
        QObject::connect(&*journal_, &Journal::Troubled, [this](const QString& text) { told_.append(text); });
    }

    std::unique_ptr<FaultMount> mount_;
};

TEST_F(JournalFaults, AFullDiskIsToldOnceAndWhatWasDoneIsWrittenWhenThereIsRoom) {
    OpenThere();
    Act(HistoryAction::Delete, {QStringLiteral("before")});
    EXPECT_EQ(Files(), QStringList({QStringLiteral("before")}));
    mount_->SetRules("fill write * bytes=0\n");
    Act(HistoryAction::Delete, {QStringLiteral("meanwhile")});
    ASSERT_TRUE(RunUntil([this] { return !told_.isEmpty(); }));
    EXPECT_TRUE(told_.front().contains(QStringLiteral("full"))) << told_.front().toStdString();
    Act(HistoryAction::Delete, {QStringLiteral("later")});
    mount_->SetRules({});
    const QStringList all{QStringLiteral("later"), QStringLiteral("meanwhile"), QStringLiteral("before")};
    EXPECT_TRUE(RunUntil([this, all] { return Files() == all; }));
    EXPECT_EQ(told_.size(), 1);
}

TEST_F(JournalFaults, AnErrorOfAnyCallStopsNoAction) {
    int trials = 0;
    for (const char* what : {"fail write", "fail fsync", "fail open,create", "fail read", "cut write", "fail unlink"}) {
        for (const char* which : {"call=1", "call=2", "from=1", "from=3"}) {
            OpenThere(trials);
            Act(HistoryAction::Delete, {QStringLiteral("before")});
            Files();
            mount_->SetRules(QByteArray(what) + " * " + which + "\n");
            Act(HistoryAction::Unblock, {QStringLiteral("a"), QStringLiteral("b")});
            Files();
            EXPECT_LE(told_.size(), 2) << what << ' ' << which << ' ' << told_.join(QLatin1Char('\n')).toStdString();
            mount_->SetRules({});
            Close();
            OpenThere(trials);
            EXPECT_TRUE(Files().size() == 3 || Files().size() == 1 || told_.size() == 1)
                << what << ' ' << which << ": " << Files().join(QLatin1Char(' ')).toStdString();
            Act(HistoryAction::Delete, {QStringLiteral("after")});
            EXPECT_EQ(Files().first(), QStringLiteral("after")) << what << ' ' << which;
            Close();
            ++trials;
        }
    }
    EXPECT_EQ(trials, 24);
}

} // namespace

#endif
