#include "mail/HeaderFields.h"
#include "mail/MailMessage.h"

#include <QDirIterator>
#include <QFile>

#include <gtest/gtest.h>

namespace quellbox {

TEST(Corpus, ScannerFindsWhatTheFullParserFinds) {
    const QString folder = QStringLiteral(QUELLBOX_SOURCE_DIR "/../shared/corpus");
    QDirIterator files(folder, {QStringLiteral("*.eml")}, QDir::Files, QDirIterator::Subdirectories);
    if (!files.hasNext())
        GTEST_SKIP() << "no corpus";
    while (files.hasNext()) {
        QFile file(files.next());
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        const QByteArray bytes = file.readAll();
        const HeaderFields fields = ParseHeaderFields(bytes);
        MailMessage message;
        const auto name = file.fileName().toStdString();
        EXPECT_EQ(fields.errorCode, message.LoadBytes(bytes)) << name;
        EXPECT_EQ(fields.recipient, message.Recipient()) << name;
        EXPECT_EQ(fields.sender, message.Sender()) << name;
        EXPECT_EQ(fields.subject, message.Subject()) << name;
        const QByteArrayList others{"X-SCL", "X-SMSMSE-SCL", "X-Spam-Status", "Return-Path", "Received"};
        const auto values = FieldValues(bytes, WantedFields(others));
        for (qsizetype other = 0; other < others.size(); ++other) {
            EXPECT_EQ(values[static_cast<size_t>(other)], message.Header(QString::fromLatin1(others[other])))
                << name << others[other].toStdString();
        }
        EXPECT_EQ(fields.xSender, message.Header(QStringLiteral("X-Sender")).value_or(QString())) << name;
    }
}

} // namespace quellbox
