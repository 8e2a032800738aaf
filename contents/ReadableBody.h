#pragma once

#include "mail/HtmlText.h"
#include "mail/MessageOutline.h"

#include <QString>

#include <vector>

namespace quellbox {

/// A place where links lead.
struct LinkPlace {
    QString address;
    bool isMarked = false; ///< its number stands in the text
    QString text;          ///< else: what a link to it shows, in a page in the place of which the plain text is shown
};

/// The texts of a message, one after the other, and what its pages link to.
struct ReadableBody {
    QString text;                  ///< with LF line ends, not cleansed; attached messages are set off with "| "
    std::vector<HtmlLink> links;   ///< of all pages, also of those that are not shown
    std::vector<LinkPlace> places; ///< by number, from 1 on
};

/// Puts together what a reader of the message reads. The head of an attached message stands above its text.
ReadableBody ReadBody(const MessageOutline& outline);

/// The lines that head a message or an attached one: From, To, Date and Subject, as far as they are there.
QString HeadLines(const RawFieldList& fields, const CharsetEvidence& evidence);

} // namespace quellbox
