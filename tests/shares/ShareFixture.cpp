#include "tests/shares/ShareFixture.h"

#include "tests/support/RunUntil.h"

#include <algorithm>
#include <numeric>

namespace quellbox {

namespace {

/// A folder name that no other test of this run has.
QString NextName() {
    static int number = 0;
    return QStringLiteral("test%1").arg(++number);
}

QByteArray Message(const QString& name, qsizetype size, const QByteArray& sender) {
    QByteArray bytes = "To: <joe@example.com>\r\nFrom: Eve <eve@spam.example>\r\nSubject: About " + name.toUtf8() +
                       "\r\nX-SENDER: " + sender + "\r\nX-SCL: 7 70.00%\r\n\r\n";
    for (int line = 0; bytes.size() < size; ++line) {
        bytes += "Line " + QByteArray::number(line) + " of " + name.toUtf8() + ".\r\n";
    }
    return bytes;
}

} // namespace

ShareTest::ShareTest(ShareWorld& world) : world_(world), name_(NextName()) {}

// The readers of a test must not outlive its file system.
ShareTest::~ShareTest() {
    refresh_.reset();
    pool_.WaitForDone();
}

void ShareTest::SetUp() {
    if (!world_.WhyNot().isEmpty()) {
        GTEST_SKIP() << world_.WhyNot().toStdString();
    }
    if (!world_.Mount().RuntimeFolder().isEmpty()) {
        runtimeFolder_.emplace("XDG_RUNTIME_DIR", world_.Mount().RuntimeFolder().toUtf8());
    }
    for (const char* share : {"archive", "pickup"}) {
        ASSERT_TRUE(QDir().mkpath(Behind(share)));
    }
    Use(Mounted("archive"), Mounted("pickup"));
}

QString ShareTest::Local(const char* name) {
    QDir(local_.path()).mkdir(Text(name));
    return local_.filePath(Text(name)) + QLatin1Char('/');
}

void ShareTest::Use(const QString& archive, const QString& pickup) {
    state_.ArchiveDir = archive;
    state_.PickupDir = pickup;
    state_.LastAddedFile.clear();
    model_.Clear();
    refresh_ = std::make_unique<RefreshTask>(RefreshPorts{*files_, store_, clock_, pool_}, state_, model_);
}

void ShareTest::Deliver(const QString& folder, const QString& name, qsizetype size, const QByteArray& sender) {
    const QByteArray bytes = Message(name, size, sender);
    const qint64 second = static_cast<qint64>(delivered_.size());
    delivered_[name] = bytes;
    QFile file(folder + name);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << file.fileName().toStdString();
    ASSERT_EQ(file.write(bytes), bytes.size());
    ASSERT_TRUE(file.flush());
    ASSERT_TRUE(file.setFileTime(clock_.Now().addSecs(second - 10'000), QFileDevice::FileModificationTime));
}

void ShareTest::DeliverMany(const QString& folder, int count) {
    for (int message = 0; message < count; ++message) {
        ASSERT_NO_FATAL_FAILURE(
            Deliver(folder, QStringLiteral("%1.EML").arg(delivered_.size(), 5, 10, QLatin1Char('0'))));
    }
}

RefreshResult ShareTest::Refresh(bool markNew) {
    RefreshResult result;
    bool hasEnded = false;
    const auto connection = QObject::connect(refresh_.get(), &RefreshTask::Ended, [&](const RefreshResult& ended) {
        result = ended;
        hasEnded = true;
    });
    refresh_->Start(markNew, false);
    EXPECT_TRUE(WaitLong([&hasEnded] { return hasEnded; }));
    QObject::disconnect(connection);
    return result;
}

DisposalResult ShareTest::Dispose(qint16 action, const std::vector<int>& rows) {
    DisposalTask task(*files_, pool_, model_);
    DisposalResult result;
    QObject::connect(&task, &DisposalTask::Ended, [&result](const DisposalResult& ended) { result = ended; });
    task.Start(action, {state_.ArchiveDir, state_.PickupDir}, rows);
    EXPECT_TRUE(WaitLong([&task] { return !task.IsRunning(); }));
    return result;
}

DisposalResult ShareTest::DisposeOfAll(qint16 action) {
    std::vector<int> rows(static_cast<size_t>(model_.Count()));
    std::iota(rows.begin(), rows.end(), 0);
    return Dispose(action, rows);
}

CleansingResult ShareTest::Cleanse(qint16 days) {
    CleansingTask task(*files_, pool_);
    CleansingResult result;
    QObject::connect(&task, &CleansingTask::Ended, [&result](const CleansingResult& ended) { result = ended; });
    task.Start(state_.ArchiveDir, days, clock_.Now().date());
    EXPECT_TRUE(WaitLong([&task] { return !task.IsRunning(); }));
    return result;
}

QStringList ShareTest::Keys() const {
    QStringList keys;
    for (int row = 0; row < model_.Count(); ++row) {
        keys += model_.Row(row).Key();
    }
    return keys;
}

void ShareTest::ExpectExactly(const QString& folder, QStringList names) const {
    const std::unique_ptr<FileSystem> files = MakeLocalFileSystem();
    QStringList found = FileNames(*files, folder);
    found.sort();
    names.sort();
    EXPECT_EQ(found.join(QLatin1Char('\n')).toStdString(), names.join(QLatin1Char('\n')).toStdString());
    for (const QString& name : found) {
        if (const auto message = delivered_.find(name); message != delivered_.end()) {
            EXPECT_TRUE(ReadWhole(*files, folder + name) == message->second) << name.toStdString();
        }
    }
}

std::string ShareTest::Reasons(const std::vector<FileFailure>& failures) {
    std::string reasons;
    for (const FileFailure& failure : failures) {
        reasons += failure.path.toStdString() + ": " + failure.reason.toStdString() + '\n';
    }
    return reasons;
}

QString ShareTest::NameCharacters() {
    const QString refused = QStringLiteral("\\/:*?\"<>|");
    QString characters = QStringLiteral("\u00e4\u00df\u00e9\u0142\u044f\u03b1\u05d0\u0639\u6f22\u3042\uac00\u20ac");
    for (ushort code = ' '; code < 127; ++code) {
        if (!refused.contains(QChar(code))) {
            characters += QChar(code);
        }
    }
    return characters;
}

bool ShareTest::WaitLong(const std::function<bool()>& holds) {
    return RunUntil(holds, std::chrono::minutes(4));
}

} // namespace quellbox
