#include "dialogs/frmDirectoryList.h"

#include <QKeyEvent>
#include <QSignalBlocker>
#include <QStyledItemDelegate>

#include <algorithm>

namespace quellbox {

class FolderListModel : public QAbstractListModel {
public:
    using QAbstractListModel::QAbstractListModel;

    int rowCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : folders_.Count(); }

    QVariant data(const QModelIndex& index, int role) const override {
        return role == Qt::DisplayRole ? folders_.Label(index.row()) : QVariant();
    }

    void SetFolders(FolderList folders) {
        beginResetModel();
        folders_ = std::move(folders);
        endResetModel();
    }

    const FolderList& Folders() const { return folders_; }

private:
    FolderList folders_;
};

namespace {

/// Draws an entry with its depth and with a folder that is open or closed.
class EntryDelegate : public QStyledItemDelegate {
public:
    explicit EntryDelegate(DirectoryList* list) : QStyledItemDelegate(list), list_(list) {}

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        QStyleOptionViewItem indented(option);
        // However deep a folder lies, its name keeps half of the width.
        const int step = option.decorationSize.width() * 3 / 4;
        const int indent = std::min(list_->Folders().Depth(index.row()) * step, option.rect.width() / 2);
        option.direction == Qt::RightToLeft ? indented.rect.adjust(0, 0, -indent, 0)
                                            : indented.rect.adjust(indent, 0, 0, 0);
        QStyledItemDelegate::paint(painter, indented, index);
    }

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
        QStyledItemDelegate::initStyleOption(option, index);
        const bool isOpen = index.row() <= list_->Folders().Opened();
        option->icon = list_->style()->standardIcon(isOpen ? QStyle::SP_DirOpenIcon : QStyle::SP_DirClosedIcon);
        option->features |= QStyleOptionViewItem::HasDecoration;
    }

private:
    DirectoryList* list_;
};

} // namespace

DirectoryList::DirectoryList(QWidget* parent) : QListView(parent), folders_(new FolderListModel(this)) {
    setModel(folders_);
    setItemDelegate(new EntryDelegate(this));
    setUniformItemSizes(true);
    setTextElideMode(Qt::ElideMiddle);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setEditTriggers(NoEditTriggers);
    connect(selectionModel(), &QItemSelectionModel::currentChanged, this, &DirectoryList::Click);
    // The selected entry may be clicked again.
    connect(this, &QListView::clicked, this, &DirectoryList::Click);
    connect(this, &QListView::doubleClicked, this, &DirectoryList::Open);
}

void DirectoryList::SetFolders(FolderList folders) {
    const QSignalBlocker noClick(this);
    folders_->SetFolders(std::move(folders));
    setCurrentIndex(folders_->index(folders_->Folders().Opened()));
    ShowOpenFolder();
}

// In the middle, so that what stands above and what stands below it is in sight too.
void DirectoryList::ShowOpenFolder() {
    scrollTo(folders_->index(folders_->Folders().Opened()), PositionAtCenter);
}

void DirectoryList::showEvent(QShowEvent* event) {
    QListView::showEvent(event);
    ShowOpenFolder(); // only now the size of the list is known
}

const FolderList& DirectoryList::Folders() const {
    return folders_->Folders();
}

// The Enter key is not for the dialog's default button here.
void DirectoryList::keyPressEvent(QKeyEvent* event) {
    if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter) {
        QListView::keyPressEvent(event);
    } else if (ListIndex() >= 0 && !event->isAutoRepeat()) {
        Q_EMIT Open();
    }
}

} // namespace quellbox
