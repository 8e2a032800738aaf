#pragma once

#include <QLineEdit>
#include <QListWidget>

namespace quellbox {

/// A combo box whose list is always open: an entry field on top of the list of entries.
class EntryCombo : public QWidget {
    Q_OBJECT

public:
    explicit EntryCombo(QWidget* parent = nullptr);

    QString Text() const { return edit_->text(); }

    /// Puts a text into the entry field as if it had been typed.
    void SetText(const QString& text) { edit_->setText(text); }

    /// Replaces the entries. None is selected afterwards, and the list stays scrolled to where it was.
    void SetEntries(const QStringList& entries);

    /// Scrolls no further than it takes to see an entry.
    void BringIntoView(int index);

    int Count() const { return list_->count(); }

    /// Index of the selected entry, whose text the entry field shows, or -1.
    int ListIndex() const;

    /// Selects an entry as a click does: the entry field takes over its text.
    void Pick(int index);

    /// A locked combo box can be read, but neither typed nor picked in.
    void SetLocked(bool locked);
    bool IsLocked() const { return edit_->isReadOnly(); }

Q_SIGNALS:
    void GotFocus();
    /// The entry field has another text, but not by picking an entry.
    void Change();
    /// An entry was picked.
    void Click();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool MoveInList(int key);

    QLineEdit* edit_;
    QListWidget* list_;
    bool picking_ = false;
};

} // namespace quellbox
