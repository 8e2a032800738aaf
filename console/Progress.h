#pragma once

#include <QElapsedTimer>
#include <QtGlobal>

namespace quellbox {

/// Shows on a terminal how far a command is, if it takes long. Elsewhere it shows nothing.
class Progress {
public:
    /// `maximum` is how many there are; 0 when that is not known.
    explicit Progress(qint64 maximum = 0);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    void SetMaximum(qint64 maximum) { maximum_ = maximum; }
    void Show(qint64 done);

    /// Removes the line, so that another text may follow.
    void Clear();

private:
    qint64 maximum_;
    qsizetype shown_ = 0; ///< columns of the line
    const bool isWanted_;
    QElapsedTimer sinceShown_;
};

} // namespace quellbox
