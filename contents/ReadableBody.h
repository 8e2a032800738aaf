#pragma once

#include "mail/HtmlText.h"
#include "mail/MessageOutline.h"

#include <QString>

#include <functional>
#include <vector>

namespace quellbox {

/// A place where links lead.
struct LinkPlace {
    QString address;
    bool isMarked = false; ///< its number stands in the text
    QString text;          ///< what a link to it shows
};

/// The texts of a message, one after the other, and what its pages link to.
struct ReadableBody {
    /// With LF line ends, not cleansed. Lines of attached messages begin with "| ", behind that the lines of the
    /// message with two blanks, as those of the program never do. Of the message there is a backslash before each "[".
    QString text;
    std::vector<HtmlLink> links;   ///< of all pages, also of those that are not shown
    std::vector<LinkPlace> places; ///< by number, from 1 on
    bool areLinksMissing = false;  ///< there were more places than are numbered
};

/// Puts together what a reader of the message reads. The head of an attached message stands above its text. What goes
/// beyond a bound on the size of all texts is not there, and the text says so; nor is what comes after `goOn` says no.
ReadableBody ReadBody(const MessageOutline& outline, const std::function<bool()>& goOn = {});

/// The lines that head a message or an attached one: From, To, Date and Subject, as far as they are there.
QString HeadLines(const RawFieldList& fields, const CharsetEvidence& evidence);

} // namespace quellbox
