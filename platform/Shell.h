#pragma once

#include <QString>

namespace quellbox {

/// What the program asks of the desktop around it.
class Shell {
public:
    virtual ~Shell() = default;

    /// The network user name (the login name elsewhere than on Windows); empty when the system does not tell.
    virtual QString UserName() const;

    /// Opens a file in the desktop's program for it, or a web page in the browser. `target` is a path or an address
    /// and is handed on as one argument, never through a command shell. False when nothing could be started.
    virtual bool Open(const QString& target) const;

    /// Shows a message file in the mail program: on Windows in the one that takes "/eml:", elsewhere in the desktop's
    /// program for such files. False when nothing could be started.
    virtual bool OpenMessage(const QString& path) const;
};

} // namespace quellbox
