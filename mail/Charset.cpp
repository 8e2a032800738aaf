#include "mail/Charset.h"

#include "mail/GMimeStart.h"
#include "platform/AnsiText.h"

#include <gmime/gmime.h>

#include <QHash>
#include <QMutex>
#include <QMutexLocker>
#include <QScopeGuard>

#include <algorithm>
#include <array>
#include <cerrno>

namespace quellbox {

namespace {

// A handful of character sets covers any real archive. A hostile message may name thousands: then the idle handles are
// closed and collecting begins anew.
constexpr qsizetype kMaximumHandles = 64;
constexpr qsizetype kMaximumNameLength = 40;

QString DecodeWindows1252(QByteArrayView bytes) {
    QString text = QString::fromLatin1(bytes);
    for (QChar& unit : text) {
        if (unit.unicode() >= 0x80 && unit.unicode() < 0xA0)
            unit = Windows1252Character(static_cast<unsigned char>(unit.unicode()));
    }
    return text;
}

const GIConv kNoHandle = reinterpret_cast<GIConv>(-1); // what g_iconv_open() returns for an unknown name

/// The conversion handles that are not in use. Opening one costs several times a conversion, and each has some 30 KiB
/// of buffers: the many readers of a share are not to have one each for every character set.
class HandlePool {
public:
    HandlePool() { StartGMime(); }

    /// A handle for the caller alone, until it gives it back.
    GIConv Take(const QByteArray& name) {
        {
            const QMutexLocker lock(&mutex_);
            const auto found = idle_.constFind(name);
            if (found != idle_.constEnd()) {
                const GIConv handle = *found;
                if (handle != kNoHandle)
                    idle_.erase(found);
                return handle;
            }
        }
        const GIConv handle = g_iconv_open("UTF-8", g_mime_charset_iconv_name(name.constData()));
        if (handle == kNoHandle)
            GiveBack(name, handle); // nor is an unknown name to be looked for again and again
        return handle;
    }

    void GiveBack(const QByteArray& name, GIConv handle) {
        const QMutexLocker lock(&mutex_);
        if (idle_.size() >= kMaximumHandles)
            Clear();
        idle_.insert(name, handle);
    }

private:
    void Clear() {
        for (const GIConv handle : std::as_const(idle_)) {
            if (handle != kNoHandle)
                g_iconv_close(handle);
        }
        idle_.clear();
    }

    QMutex mutex_;
    QMultiHash<QByteArray, GIConv> idle_;
};

/// It is never destroyed, for threads that end after main().
HandlePool& Handles() {
    static auto* const pool = new HandlePool;
    return *pool;
}

struct Conversion {
    QString text;
    int errors = 0; ///< bytes that are no character, each of which has become U+FFFD
};

Conversion Convert(GIConv handle, QByteArrayView bytes) {
    static constexpr char kReplacement[] = "\xEF\xBF\xBD";
    QByteArray utf8;
    int errors = 0;
    std::array<char, 4096> buffer; // is only read where it was written
    // g_iconv() does not write to its input, it only lacks the const.
    char* in = const_cast<char*>(bytes.data());
    gsize inLeft = static_cast<gsize>(bytes.size());
    g_iconv(handle, nullptr, nullptr, nullptr, nullptr); // a handle may be left in a shifted state
    while (inLeft > 0) {
        char* out = buffer.data();
        gsize outLeft = buffer.size();
        const gsize result = g_iconv(handle, &in, &inLeft, &out, &outLeft);
        const int reason = result == static_cast<gsize>(-1) ? errno : 0;
        utf8.append(buffer.data(), out - buffer.data());
        if (reason == E2BIG && out != buffer.data())
            continue;
        if (reason != 0) {
            utf8.append(kReplacement);
            ++errors;
            if (reason != EILSEQ)
                break; // an unfinished character at the end
            ++in;
            --inLeft;
        }
    }
    char* out = buffer.data();
    gsize outLeft = buffer.size();
    g_iconv(handle, nullptr, nullptr, &out, &outLeft); // what a stateful character set still holds
    utf8.append(buffer.data(), out - buffer.data());
    return {QString::fromUtf8(utf8), errors};
}

/// The character set that senders who name the smaller one may have used; or another name of the same.
QByteArray LargerCharset(const QByteArray& name) {
    static const QHash<QByteArray, QByteArray> larger = {
        {"gb2312", "gb18030"},
        {"gb_2312-80", "gb18030"},
        {"gbk", "gb18030"},
        {"euc-kr", "cp949"},
        {"ks_c_5601-1987", "cp949"},
        {"shift_jis", "cp932"},
        {"shift-jis", "cp932"},
        {"x-sjis", "cp932"},
        {"iso-8859-9", "cp1254"},
        {"tis-620", "cp874"},
        {"iso-8859-11", "cp874"},
        {"big5", "big5-hkscs"},
        {"x-mac-cyrillic", "mac-cyrillic"},
    };
    return larger.value(name, name);
}

/// Nothing for a name that says nothing about bytes beyond ASCII, or that nobody knows.
std::optional<Conversion> ConvertFrom(const QByteArray& name, QByteArrayView bytes) {
    if (name == "us-ascii" || name == "ascii" || !IsCharsetName(name))
        return std::nullopt;
    // Not every system knows the larger character set.
    for (const QByteArray& known : {LargerCharset(name), name}) {
        const GIConv handle = Handles().Take(known);
        if (handle != kNoHandle) {
            const auto giveBack = qScopeGuard([&] { Handles().GiveBack(known, handle); });
            return Convert(handle, bytes);
        }
    }
    return std::nullopt;
}

} // namespace

bool IsCharsetName(QByteArrayView name) {
    // A slash would reach the converter as an option or a path.
    return !name.isEmpty() && name.size() <= kMaximumNameLength && std::all_of(name.begin(), name.end(), [](char c) {
        return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || c == '-' || c == '_' || c == '.' || c == ':' ||
               c == '+';
    });
}

QString DecodeUndeclared(QByteArrayView bytes) {
    return QUtf8StringView(bytes.data(), bytes.size()).isValidUtf8() ? QString::fromUtf8(bytes)
                                                                     : DecodeWindows1252(bytes);
}

std::optional<QString> DecodeNamed(QByteArrayView bytes, QByteArrayView charset) {
    const QByteArray name = charset.trimmed().toByteArray().toLower();
    if (name == "utf-8" || name == "utf8")
        return QString::fromUtf8(bytes);
    if (name == "iso-8859-1" || name == "latin1" || name == "windows-1252" || name == "cp1252")
        return DecodeWindows1252(bytes);
    const auto conversion = ConvertFrom(name, bytes);
    return conversion ? std::optional(conversion->text) : std::nullopt;
}

std::optional<QString> DecodeStrictly(QByteArrayView bytes, const QByteArray& charset) {
    auto conversion = ConvertFrom(charset, bytes);
    // The bytes of Windows' quotation marks and dashes are control characters in the sets of ISO 8859.
    const auto isControl = [](QChar c) { return c.unicode() >= 0x80 && c.unicode() < 0xA0; };
    if (!conversion || conversion->errors > 0 ||
        std::any_of(conversion->text.cbegin(), conversion->text.cend(), isControl))
        return std::nullopt;
    return std::move(conversion->text);
}

QString DecodeCharset(QByteArrayView bytes, QByteArrayView charset) {
    auto text = DecodeNamed(bytes, charset);
    return text ? *std::move(text) : DecodeUndeclared(bytes);
}

} // namespace quellbox
