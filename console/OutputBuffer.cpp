#include "console/OutputBuffer.h"

#include "messages/TableLines.h"

#include <utility>

namespace quellbox {

namespace {

constexpr qsizetype enoughToWrite = 1 << 16;
constexpr qint64 longestMs = 200;

} // namespace

OutputBuffer::OutputBuffer(Session& session) : session_(session) {
    sinceWritten_.start();
}

void OutputBuffer::Append(QByteArrayView bytes) {
    pending_.append(bytes);
    if (pending_.size() >= enoughToWrite || sinceWritten_.hasExpired(longestMs)) {
        Flush();
    }
}

void OutputBuffer::Append(const QString& text) {
    const QByteArray bytes = TableBytes(text);
    Append(QByteArrayView(bytes));
}

void OutputBuffer::Flush() {
    sinceWritten_.restart();
    const QByteArray bytes = std::exchange(pending_, {});
    if (bytes.isEmpty() || session_.HasOutputEnded() || WriteOutput(bytes)) {
        return;
    }
    session_.EndOutput(IsOutputClosed());
}

} // namespace quellbox
