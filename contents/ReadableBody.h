#pragma once

#include "mail/HtmlText.h"
#include "mail/MessageOutline.h"

#include <QString>

#include <vector>

namespace quellbox {

/// The texts of a message, one after the other, and what its pages link to.
struct ReadableBody {
    QString text;                ///< with LF line ends, not cleansed; attached messages are set off with "| "
    std::vector<HtmlLink> links; ///< of all pages, also of those that are not shown
    QStringList targets;         ///< by number, from 1 on
    std::vector<bool> isMarked;  ///< of each target, whether its number stands in the text
};

/// Puts together what a reader of the message reads. The head of an attached message stands above its text.
ReadableBody ReadBody(const MessageOutline& outline);

/// The lines that head a message or an attached one: From, To, Date and Subject, as far as they are there.
QString HeadLines(const RawFieldList& fields);

} // namespace quellbox
