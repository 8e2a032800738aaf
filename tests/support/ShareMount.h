#pragma once

#ifdef __linux__

#include "tests/support/SambaServer.h"

#include <memory>

namespace quellbox {

/// The programs by which a user gets at a share without being root.
enum class ShareClient {
    SmbNetFs, ///< smbnetfs, which shows all servers in one folder
    Desktop   ///< gvfs, which shows the shares that the desktop's file manager has connected
};

/// The shares of a server, mounted by a client that is the test's own, with a home folder of its own and, for the
/// desktop's client, with a session bus of its own. Unmounted by the destructor. Where the client is missing or may not
/// mount, WhyNot() tells why, and everything else must be left alone.
class ShareMount {
public:
    /// The server has to outlive the mount.
    static std::unique_ptr<ShareMount> Make(ShareClient client, const SambaServer& server);

    virtual ~ShareMount() = default;
    ShareMount(const ShareMount&) = delete;
    ShareMount& operator=(const ShareMount&) = delete;

    bool IsMounted() const { return whyNot_.isEmpty(); }
    QString WhyNot() const { return whyNot_; }

    /// Where a share is mounted. Ends with a separator.
    virtual QString Folder(const QString& share) const = 0;

    /// The share as it is called on the network, as in `\\server\share\`.
    virtual QString UncFolder(const QString& share) const = 0;

    /// What XDG_RUNTIME_DIR is in the session in which the share is mounted; empty where that does not matter.
    virtual QString RuntimeFolder() const { return {}; }

    /// Connects the shares anew after the server was ended, as a user would. The first calls afterwards may still fail.
    /// Returns false when the client refuses.
    virtual bool Reconnect() { return true; }

protected:
    /// `place` is a template as QTemporaryDir takes it.
    explicit ShareMount(const QString& place);

    QString Path(const char* name) const { return place_.filePath(QLatin1String(name)); }
    bool MakeFolders(const QStringList& names) const;
    bool Write(const char* name, const QByteArray& bytes) const;
    QProcessEnvironment Environment() const;

    QTemporaryDir place_;
    KeptProcess process_;
    QString whyNot_;
};

} // namespace quellbox

#endif
