#include "mail/Charset.h"

#include "mail/GMimeStart.h"

#include <gmime/gmime.h>

#include <QHash>
#include <QThreadStorage>

#include <array>
#include <cerrno>

namespace quellbox {

namespace {

// A handful of character sets covers any real archive. A hostile message may name thousands: then the handles are
// closed and collecting begins anew.
constexpr qsizetype kMaximumHandles = 64;
constexpr qsizetype kMaximumNameLength = 40;

constexpr std::array<char16_t, 32> kWindows1252 = {
    0x20AC, 0xFFFD, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0xFFFD, 0x017D, 0xFFFD, 0xFFFD, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0xFFFD, 0x017E, 0x0178,
};

QString DecodeWindows1252(QByteArrayView bytes) {
    QString text = QString::fromLatin1(bytes);
    for (QChar& unit : text) {
        if (unit.unicode() >= 0x80 && unit.unicode() < 0xA0)
            unit = kWindows1252[unit.unicode() - 0x80U];
    }
    return text;
}

const GIConv kNoHandle = reinterpret_cast<GIConv>(-1); // what g_iconv_open() returns for an unknown name

/// The conversion handles of one thread. Opening one costs several times a conversion.
class HandleCache {
public:
    HandleCache() { StartGMime(); }
    ~HandleCache() { Clear(); }
    HandleCache(const HandleCache&) = delete;
    HandleCache& operator=(const HandleCache&) = delete;

    GIConv Handle(const QByteArray& name) {
        const auto found = handles_.constFind(name);
        if (found != handles_.constEnd())
            return *found;
        if (handles_.size() >= kMaximumHandles)
            Clear();
        const GIConv handle = g_iconv_open("UTF-8", g_mime_charset_iconv_name(name.constData()));
        handles_.insert(name, handle);
        return handle;
    }

private:
    void Clear() {
        for (const GIConv handle : std::as_const(handles_)) {
            if (handle != kNoHandle)
                g_iconv_close(handle);
        }
        handles_.clear();
    }

    QHash<QByteArray, GIConv> handles_;
};

/// Not thread_local: GCC for Windows frees such an object before its destructor runs. The storage itself stays, for
/// threads that end after main().
HandleCache& CacheOfThread() {
    static auto* const caches = new QThreadStorage<HandleCache*>;
    if (!caches->hasLocalData()) {
        caches->setLocalData(new HandleCache);
    }
    return *caches->localData();
}

QString Convert(GIConv handle, QByteArrayView bytes) {
    static constexpr char kReplacement[] = "\xEF\xBF\xBD";
    QByteArray utf8;
    std::array<char, 4096> buffer{};
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
    return QString::fromUtf8(utf8);
}

bool IsPlainName(QByteArrayView name) {
    // A slash would reach the converter as an option or a path.
    return !name.isEmpty() && name.size() <= kMaximumNameLength && std::all_of(name.begin(), name.end(), [](char c) {
        return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || c == '-' || c == '_' || c == '.' || c == ':' ||
               c == '+';
    });
}

QByteArray LargerCharset(const QByteArray& name) {
    static const QHash<QByteArray, QByteArray> larger = {
        {"gb2312", "gb18030"},       {"gb_2312-80", "gb18030"}, {"gbk", "gb18030"},       {"euc-kr", "cp949"},
        {"ks_c_5601-1987", "cp949"}, {"shift_jis", "cp932"},    {"shift-jis", "cp932"},   {"x-sjis", "cp932"},
        {"iso-8859-9", "cp1254"},    {"tis-620", "cp874"},      {"iso-8859-11", "cp874"}, {"big5", "big5-hkscs"},
    };
    return larger.value(name, name);
}

} // namespace

QString DecodeUndeclared(QByteArrayView bytes) {
    return QUtf8StringView(bytes.data(), bytes.size()).isValidUtf8() ? QString::fromUtf8(bytes)
                                                                     : DecodeWindows1252(bytes);
}

QString DecodeCharset(QByteArrayView bytes, QByteArrayView charset) {
    const QByteArray name = charset.trimmed().toByteArray().toLower();
    if (name == "utf-8" || name == "utf8")
        return QString::fromUtf8(bytes);
    if (name == "iso-8859-1" || name == "latin1" || name == "windows-1252" || name == "cp1252")
        return DecodeWindows1252(bytes);
    if (name == "us-ascii" || name == "ascii" || !IsPlainName(name))
        return DecodeUndeclared(bytes);
    HandleCache& cache = CacheOfThread();
    GIConv handle = cache.Handle(LargerCharset(name));
    if (handle == kNoHandle)
        handle = cache.Handle(name); // not every system knows the larger one
    return handle == kNoHandle ? DecodeUndeclared(bytes) : Convert(handle, bytes);
}

} // namespace quellbox
