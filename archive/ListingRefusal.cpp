#include "archive/ListingRefusal.h"

#include <QCoreApplication>

namespace quellbox {

std::optional<ListingRefusal> ListingCheck::Refusal(const Folder& archive, const FolderState& state) {
    if (!state.exists) {
        return ListingRefusal{
            true, QCoreApplication::translate("quellbox", "Archive %1 not found").arg(archive.Text().toUpper())};
    }
    if (state.isUnanswered) {
        return ListingRefusal{
            false,
            QCoreApplication::translate("quellbox", "The server of the archive does not answer: %1").arg(state.error)};
    }
    if (!state.error.isEmpty()) {
        return ListingRefusal{false, UnreadableArchive(state.error)};
    }
    if (IsNoLongerMounted(archive, state)) {
        return ListingRefusal{
            false, QCoreApplication::translate("quellbox", "The share of the archive is not mounted any more: %1")
                       .arg(archive.Text())};
    }
    return std::nullopt;
}

bool ListingCheck::IsNoLongerMounted(const Folder& archive, const FolderState& state) {
    if (state.isMountPoint) {
        mounted_ = archive;
    }
    return !state.isMountPoint && mounted_ == archive;
}

QString UnreadableArchive(const QString& error) {
    return QCoreApplication::translate("quellbox", "Archive cannot be read: %1").arg(error);
}

} // namespace quellbox
