#pragma once

#include "app/WindowParts.h"

#include <QObject>

#include <memory>

namespace quellbox {

class ListDesk;
class frmFind;

/// The search in the list, and the dialog that asks what for.
class FindDesk : public QObject {
    Q_OBJECT

public:
    FindDesk(const WindowParts& parts, ListDesk& list);
    ~FindDesk() override;

    /// Gives up the dialog. True when there was one, whose history is now to be flushed.
    bool UnloadFind();

    void mnuEditFind_Click();
    void mnuEditFindNext_Click();
    void mnuEditFindAll_Click();
    void mnuMessageFind_Click();

    /// The toolbar button: the next one of the present search, or a new one.
    void btnFind_Click();

Q_SIGNALS:
    /// A search found nothing; the computer beeps.
    void NothingFound();

private:
    void ShowFindDialog();
    void FindNext();

    WindowParts parts_;
    ListDesk& list_;
    std::unique_ptr<frmFind> find_; // stays hidden after OK
};

} // namespace quellbox
