#include "messages/FailureList.h"

#include "mail/DisplayText.h"

#include <QCoreApplication>

#include <algorithm>

namespace quellbox {

namespace {

QString Translated(const char* text) {
    return QCoreApplication::translate("quellbox", text);
}

/// The length of a path without the name at its end; either separator may stand in it.
qsizetype FolderLength(const QString& path) {
    return std::max(path.lastIndexOf(QLatin1Char('/')), path.lastIndexOf(QLatin1Char('\\'))) + 1;
}

bool IsUnanswered(const FileFailure& failure) {
    return failure.problem == FileProblem::NoAnswer;
}

} // namespace

void FailureList::TakeAction(const std::vector<FileFailure>& failures, const QDateTime& now) {
    LogFailures(failures);
    if (std::none_of(failures.begin(), failures.end(), IsUnanswered)) {
        noAnswerSince_ = {};
    } else if (!noAnswerSince_.isValid()) {
        noAnswerSince_ = now;
    }
    if (failures_.empty() && failures.empty()) {
        return;
    }
    failures_ = failures;
    Q_EMIT Changed();
}

void FailureList::TakeRefresh(const std::vector<FileFailure>& failures, const QDateTime& now) {
    if (!failures.empty()) {
        TakeAction(failures, now);
    }
}

std::vector<FailureText> FailureList::Texts(const QLocale& locale) const {
    std::vector<FailureText> texts;
    texts.reserve(failures_.size());
    for (const FileFailure& failure : failures_) {
        texts.push_back(TextOf(failure, locale));
    }
    return texts;
}

FailureText FailureList::TextOf(const FileFailure& failure, const QLocale& locale) const {
    const qsizetype length = FolderLength(failure.path);
    const QString folder = CleanseForDisplay(failure.path.left(length));
    const QString name = CleanseForDisplay(failure.path.mid(length));
    switch (failure.problem) {
    case FileProblem::Missing:
        return {name, Translated(QT_TRANSLATE_NOOP("quellbox", "The file or its folder is gone: %1")).arg(folder),
                Translated(QT_TRANSLATE_NOOP("quellbox", "Nothing, if another program has taken the message."))};
    case FileProblem::Exists:
        return {name,
                Translated(QT_TRANSLATE_NOOP("quellbox", "The pickup directory holds a message of this name already.")),
                Translated(QT_TRANSLATE_NOOP("quellbox", "Wait until the mail server has taken that one, then try "
                                                         "again. If it stays there, the server does not deliver."))};
    case FileProblem::NoRight:
        return {name, Translated(QT_TRANSLATE_NOOP("quellbox", "No right to change or delete in %1")).arg(folder),
                Translated(QT_TRANSLATE_NOOP("quellbox", "Ask whoever manages the server for that right."))};
    case FileProblem::NoRoom:
        return {name, Translated(QT_TRANSLATE_NOOP("quellbox", "There is no room left in %1")).arg(folder),
                Translated(QT_TRANSLATE_NOOP("quellbox", "Make room there, then try again."))};
    case FileProblem::InUse:
        return {name, Translated(QT_TRANSLATE_NOOP("quellbox", "Another program uses the file.")),
                Translated(QT_TRANSLATE_NOOP("quellbox", "Try again later."))};
    case FileProblem::NoAnswer:
        return {name,
                Translated(QT_TRANSLATE_NOOP("quellbox", "The server has not answered since %1: %2"))
                    .arg(locale.toString(noAnswerSince_.time(), QLocale::ShortFormat), folder),
                Translated(QT_TRANSLATE_NOOP("quellbox", "Try again when the server can be reached."))};
    case FileProblem::NotTaken:
        return {name, CleanseForDisplay(failure.reason),
                Translated(QT_TRANSLATE_NOOP("quellbox", "It was not delivered, and is still in the archive."))};
    case FileProblem::Uncertain:
        return {
            name, CleanseForDisplay(failure.reason),
            Translated(QT_TRANSLATE_NOOP("quellbox", "Ask the recipient, or look into the mail server's log, before "
                                                     "it is sent again: it is in the archive, and is not sent by "
                                                     "itself."))};
    case FileProblem::Packed:
        return {name, CleanseForDisplay(failure.reason),
                Translated(QT_TRANSLATE_NOOP("quellbox", "Let the server that has packed it release the message."))};
    case FileProblem::Other:
        break;
    }
    return {name, CleanseForDisplay(failure.reason), {}};
}

} // namespace quellbox
