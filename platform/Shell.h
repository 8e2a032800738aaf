#pragma once

#include <QString>

namespace quellbox {

/// The commands of the system's help viewer, as it numbers them.
enum class HelpCommand : unsigned {
    DisplayTopic = 0, ///< the topic in the file's name, else the default topic; data is 0
    Context = 15      ///< the topic whose context id is the data
};

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

    /// Whether the system itself shows compiled help files. Where it does not, ShowHelp() does nothing.
    virtual bool HasHelpViewer() const;

    /// Asks the system's help viewer to show `helpFile`, to whose path "::/" and the name of a topic may be appended.
    /// `owner` is the number of the window above which help stands. False when there is no viewer;
    /// what the viewer cannot show it reports itself.
    virtual bool ShowHelp(quintptr owner, const QString& helpFile, HelpCommand command, quintptr data) const;
};

} // namespace quellbox
