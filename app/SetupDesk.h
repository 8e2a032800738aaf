#pragma once

#include "app/WindowParts.h"

#include <QObject>

#include <functional>

namespace quellbox {

class ListDesk;
class RefreshDesk;

/// Where the user sets up the program: the options and the two directories.
class SetupDesk : public QObject {
    Q_OBJECT

public:
    /// `maintainWhitelist` opens the whitelist, for which the options have a button.
    SetupDesk(const WindowParts& parts, ListDesk& list, RefreshDesk& refresh, std::function<void()> maintainWhitelist);

    /// Lets the user choose the archive (0) or pickup (1) directory, and stores it. Returns the one in force.
    QString SelectDirectory(qint16 index);

    void mnuOpenFolderSelect_Click(qint16 index);
    void mnuToolsOptions_Click();

    /// The button "filter" has been toggled.
    void ToggleFilter();

    void stbBottom_PanelClick(const QString& key);

Q_SIGNALS:
    /// The archive was chosen, which is this one now.
    void ArchiveChosen();

    /// The password for the mail server is another one.
    void PasswordEntered();

private:
    bool AskForDirectory(const QString& title);
    void ShowOptions();
    void KeepPassword(const QString& password);
    void ShowOptionsOn(int tab);

    WindowParts parts_;
    ListDesk& list_;
    RefreshDesk& refresh_;
    std::function<void()> maintainWhitelist_;
};

} // namespace quellbox
