#include "archive/OwnServerTrial.h"

#include "delivery/OutgoingMessage.h"
#include "mail/Charset.h"
#include "mail/DisplayText.h"
#include "mail/HeaderFields.h"

#include <memory>

namespace quellbox {

namespace {

/// The beginning of a message, so much of it that a header block which goes on is refused.
QByteArray BeginningOf(const FolderReader& folder, const QString& name, Packing packing) {
    std::unique_ptr<InputFile> file = folder.Open(name);
    if (packing == Packing::Possible) {
        file = std::make_unique<UnpackedFile>(std::move(file), name);
    }
    QByteArray bytes(kMaximumHeaderBytes + 1, Qt::Uninitialized);
    qsizetype filled = 0;
    for (qint64 count = 1; count > 0 && filled < bytes.size(); filled += count) {
        count = file->Read(bytes.data() + filled, bytes.size() - filled);
    }
    bytes.truncate(filled);
    return bytes;
}

} // namespace

OwnServerTrial::OwnServerTrial(const FileSystem& files, WorkPool& pool, const Folder& archive, const OwnServer& server,
                               std::function<void(const Result&)> done)
    : profile_(std::make_shared<const ServerProfile>(MakeOwnProfile(server))), done_(std::move(done)),
      newest_(
          files, pool, archive, profile_->places, 1,
          [profile = profile_](const FolderReader& folder, const QString& name) {
              return Read(folder, name, *profile);
          },
          [this](const Result& result) { result_ = result; }, [this](const QString& error) { End(error); }) {}

OwnServerTrial::Result OwnServerTrial::Read(const FolderReader& folder, const QString& name,
                                            const ServerProfile& profile) {
    Result result;
    result.file = CleanseForDisplay(name);
    try {
        const QByteArray bytes = BeginningOf(folder, name, profile.packing);
        const HeaderFields fields = ParseHeaderFields(bytes, profile);
        result.error = fields.errorText;
        result.rating = fields.rating;
        result.sender = fields.xSender;
        for (const QByteArray& recipient : EnvelopeOf(bytes, profile).recipients) {
            result.recipients.append(CleanseForDisplay(DecodeUndeclared(recipient)));
        }
    } catch (const RuntimeError& error) {
        result.error = CleanseForDisplay(error.Text());
    }
    return result;
}

void OwnServerTrial::End(const QString& error) {
    if (!error.isEmpty()) {
        result_.error = CleanseForDisplay(error);
    }
    const auto done = std::move(done_);
    const Result result = std::move(result_);
    done(result);
}

} // namespace quellbox
