#pragma once

#include "tests/support/KeptProcess.h"

#include <QTemporaryDir>

namespace quellbox {

/// A session that is the test's own: a bus on which nobody else is, folders of a user who has nothing yet, and, if
/// wanted, GNOME Keyring, whose one collection is open. From its making on, this process belongs to that session, until
/// it ends; libraries that once have found a bus stay with it.
class SecretSession {
public:
    enum class Keeper {
        None,        ///< nobody keeps passwords
        GnomeKeyring ///< started by the bus at the first call
    };

    explicit SecretSession(Keeper keeper);

    /// The session of this process, which its tests work with.
    static SecretSession& Current() { return *current; }
    static void MakeCurrent(SecretSession& session) { current = &session; }

    /// Why there can be no session; empty when there is one.
    QString WhyNot() const { return whyNot_; }

    /// Locks the collection, as the user would by hand. False when nobody does it.
    bool Lock() const;

    /// Ends the keeper, which the bus starts again at the next call, with what it has stored. False when it does not
    /// end.
    bool EndKeeper() const;

    /// Every file of the session in which these bytes are, but for those from which the keeper starts.
    QStringList FilesWith(const QByteArray& bytes) const;

private:
    QString Path(const char* name) const { return place_.filePath(QLatin1String(name)); }
    bool MakeFolders() const;
    bool Write(const char* name, const QByteArray& bytes) const;
    bool WriteKeeper() const;
    void Join() const;

    inline static SecretSession* current = nullptr;

    QTemporaryDir place_;
    KeptProcess bus_{place_.path()};
    QString whyNot_;
};

} // namespace quellbox
