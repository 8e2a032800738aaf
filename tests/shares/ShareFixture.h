#pragma once

#include "archive/RefreshTask.h"
#include "dialogs/CleansingTask.h"
#include "messages/DisposalTask.h"
#include "platform/ShareFileSystem.h"
#include "platform/Volumes.h"
#include "tests/shares/ShareWorld.h"
#include "tests/support/FixedClock.h"
#include "tests/support/MemorySettingsStore.h"
#include "tests/support/RealFiles.h"

#include <QDir>

#include <map>

namespace quellbox {

/// A folder of a test's own in each share, on the server and as the client shows it, and what the program does there.
/// Messages are laid into the folders behind the client's back, as a mail server does.
class ShareTest : public testing::TestWithParam<ShareClient> {
protected:
    ShareTest();
    ~ShareTest() override;
    void SetUp() override;

    /// The test's folder in a share: as the client shows it, by its name on the network, and on the server.
    QString Mounted(const char* share) const { return world_.Mount().Folder(Text(share)) + name_ + u'/'; }
    QString Unc(const char* share) const { return world_.Mount().UncFolder(Text(share)) + name_ + u'\\'; }
    QString Behind(const char* share) const { return world_.Server().RealFolder(Text(share)) + name_ + u'/'; }

    /// A folder on this computer.
    QString Local(const char* name);

    /// Lets the program work with these folders.
    void Use(const QString& archive, const QString& pickup);

    /// Lays a message into a folder, a second later than the one before. Each has contents of its own.
    void Deliver(const QString& folder, const QString& name, qsizetype size = 500,
                 const QByteArray& sender = "eve@spam.example");
    void DeliverMany(const QString& folder, int count);

    RefreshResult Refresh(bool markNew = false);
    DisposalResult Dispose(qint16 action, const std::vector<int>& rows);
    DisposalResult DisposeOfAll(qint16 action);
    CleansingResult Cleanse(qint16 days);

    QStringList Keys() const;

    /// Expects the delivered messages of these names in the folder, byte for byte, and nothing else there; folders on
    /// the server or this computer.
    void ExpectExactly(const QString& folder, QStringList names) const;

    static std::string Reasons(const std::vector<FileFailure>& failures);

    /// The characters that a server allows in names: of ASCII all that Windows allows, of others some.
    static QString NameCharacters();

    /// Runs events until `holds`, which may take its time on a share.
    static bool WaitLong(const std::function<bool()>& holds);

    ShareWorld& world_;
    const QString name_;
    QTemporaryDir local_;
    std::optional<ChangedVariable> runtimeFolder_;
    std::unique_ptr<Volumes> volumes_ = MakeVolumes();
    std::unique_ptr<FileSystem> files_ = MakeFileSystem(*volumes_);
    ThreadWorkPool pool_;
    MemorySettingsStore store_;
    FixedClock clock_{QDateTime(QDate(2026, 6, 15), QTime(12, 0))};
    AppState state_;
    MessageListModel model_;
    std::unique_ptr<RefreshTask> refresh_;
    std::map<QString, QByteArray> delivered_;
};

/// "SmbNetFs" or "Desktop" before the name of each test.
#define QUELLBOX_ON_EACH_CLIENT(suite)                                                                                 \
    INSTANTIATE_TEST_SUITE_P(SmbNetFs, suite, testing::Values(ShareClient::SmbNetFs));                                 \
    INSTANTIATE_TEST_SUITE_P(Desktop, suite, testing::Values(ShareClient::Desktop))

} // namespace quellbox
