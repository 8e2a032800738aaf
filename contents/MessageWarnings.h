#pragma once

#include "contents/ReadableBody.h"
#include "mail/MessageOutline.h"
#include "mail/ServerProfile.h"

#include <QByteArray>
#include <QString>

#include <vector>

namespace quellbox {

/// Something in a message that does not fit together.
struct MessageWarning {
    enum class Kind {
        EnvelopeSender,     ///< the envelope sender belongs to another organization than the From
        ReplyTo,            ///< replies go to another organization
        DisplayName,        ///< the name of the sender shows another address or domain
        LinkText,           ///< a link shows another host than it leads to
        LookAlikeDomain,    ///< a domain is written in letters that can be taken for others
        Authentication,     ///< the own server has found the origin false, or not proven
        AttachmentType,     ///< type, name and content of an attachment disagree
        RunnableAttachment, ///< an attachment runs when it is opened
    };

    Kind kind;
    QString text; ///< one sentence, cleansed
};

/// What warnings are drawn from.
struct WarningSource {
    const QByteArray& bytes; ///< the whole message
    const MessageOutline& outline;
    const ReadableBody& body;
    const ServerProfile& profile; ///< says where the envelope sender stands
};

/// What does not fit together in a message, each only where it is so, in the order of the kinds; no more than three of
/// a kind. Domains are compared by the organizations that have registered them.
std::vector<MessageWarning> FindWarnings(const WarningSource& source);

} // namespace quellbox
