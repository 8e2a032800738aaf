#pragma once

#include "app/WindowParts.h"

#include <QLabel>
#include <QLineEdit>
#include <QObject>
#include <QTimer>

namespace quellbox {

class ListDesk;
class PanesLayout;

/// The field above the list that narrows it, while the user types, to the rows that hold all the typed words.
class QuickDesk : public QObject {
    Q_OBJECT

public:
    QuickDesk(const WindowParts& parts, ListDesk& list, PanesLayout& panes);

    /// The command shows the field, or takes it away.
    void mnuEditQuick_Click();

    /// Takes the field away and shows all rows again. The list gets the focus.
    void Close();

    /// True when Escape closes the field: it is there, and the focus is in it or in the list.
    bool ClosesNow() const;

    /// Whether a widget is the field, in which keys are for its text.
    bool IsField(const QObject& widget) const { return &widget == txtQuick; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void MakeRow(PanesLayout& panes);
    void Open();
    void GoToList();
    void txtQuick_Change();
    void Narrow();
    void NarrowIfDue();
    void PrepareSlice();
    void ShowStatus();
    void ShowCounts();

    WindowParts parts_;
    ListDesk& list_;
    QWidget* fraQuick;
    QLineEdit* txtQuick;
    QLabel* lblQuick;
    QTimer prepare_;
    QString counts_;     // as told last
    bool isDue_ = false; // what was typed while a job ran
};

} // namespace quellbox
