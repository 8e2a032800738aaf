#pragma once

#include "messages/FileFailure.h"

#include <QDateTime>
#include <QLocale>
#include <QObject>

namespace quellbox {

/// What the user reads of a failure.
struct FailureText {
    QString message; ///< the file
    QString reason;
    QString advice; ///< what to do about it; may be empty

    bool operator==(const FailureText&) const = default;
};

/// What failed in the last action on messages. Nothing interrupts the user for it: the list keeps it until somebody
/// looks, or until the next action has ended.
class FailureList : public QObject {
    Q_OBJECT

public:
    /// An action of the user has ended at `now`, with these failures or with none.
    void TakeAction(const std::vector<FileFailure>& failures, const QDateTime& now);

    /// The same for what the program has done by itself. Without a failure it leaves the list alone.
    void TakeRefresh(const std::vector<FileFailure>& failures, const QDateTime& now);

    int Count() const { return static_cast<int>(failures_.size()); }

    /// One line for each, in the order of the list.
    std::vector<FailureText> Texts(const QLocale& locale) const;

Q_SIGNALS:
    void Changed();

private:
    FailureText TextOf(const FileFailure& failure, const QLocale& locale) const;

    std::vector<FileFailure> failures_;
    QDateTime noAnswerSince_; // invalid while servers answer
};

} // namespace quellbox
