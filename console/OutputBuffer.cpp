#include "console/OutputBuffer.h"

#include <QCoreApplication>
#include <QStringEncoder>

#include <utility>

namespace quellbox {

namespace {

constexpr qsizetype enoughToWrite = 1 << 16;
constexpr qint64 longestMs = 200;

} // namespace

OutputBuffer::OutputBuffer(Session& session) : session_(session) {
    sinceWritten_.start();
}

OutputBuffer::~OutputBuffer() {
    try {
        Flush();
    } catch (const CommandError& error) {
        session_.Tell(error.Text());
    }
}

void OutputBuffer::Append(QByteArrayView bytes) {
    pending_.append(bytes);
    if (pending_.size() >= enoughToWrite || sinceWritten_.hasExpired(longestMs)) {
        Flush();
    }
}

// Half of a surrogate pair, which UTF-8 does not have, becomes U+FFFD.
void OutputBuffer::Append(const QString& text) {
    QStringEncoder encoder(QStringEncoder::Utf8, QStringEncoder::Flag::Stateless);
    const QByteArray bytes = encoder(text);
    Append(QByteArrayView(bytes));
}

void OutputBuffer::Flush() {
    sinceWritten_.restart();
    const QByteArray bytes = std::exchange(pending_, {});
    if (bytes.isEmpty() || session_.HasOutputEnded() || WriteOutput(bytes)) {
        return;
    }
    session_.EndOutput();
    if (!IsOutputClosed()) {
        throw CommandError(ExitCode::SomeFailed,
                           QCoreApplication::translate("quellbox", "The output cannot be written."));
    }
}

} // namespace quellbox
