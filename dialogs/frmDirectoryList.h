#pragma once

#include "dialogs/FolderList.h"

#include <QListView>

namespace quellbox {

class FolderListModel;

/// The list of directories: the folders from the root down to the one that is open, then its sub folders, each
/// indented by its depth. One entry is always selected, first the open folder.
class DirectoryList : public QListView {
    Q_OBJECT

public:
    explicit DirectoryList(QWidget* parent = nullptr);

    /// Shows a folder and selects it.
    void SetFolders(FolderList folders);
    const FolderList& Folders() const;

    /// The selected entry; -1 in an empty list.
    int ListIndex() const { return currentIndex().row(); }

Q_SIGNALS:
    /// The user selected an entry.
    void Click();

    /// The user wants to open the selected entry, with a double click or the Enter key.
    void Open();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void ShowOpenFolder();

    FolderListModel* folders_;
};

} // namespace quellbox
