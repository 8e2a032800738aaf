#include "delivery/SmtpConnection.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QSysInfo>

#include <curl/curl.h>

#include <algorithm>
#include <array>
#include <mutex>

namespace quellbox {

namespace {

using std::chrono::milliseconds;

// Within this time a program that wants no more is heard.
constexpr milliseconds waitSlice(100);
constexpr qsizetype mostSentAtOnce = 64 * 1024;

bool IsLibraryReady() {
    static std::once_flag once;
    static bool isReady = false;
    std::call_once(once, [] { isReady = curl_global_init(CURL_GLOBAL_DEFAULT) == CURLE_OK; });
    return isReady;
}

/// What the client calls itself: the name of the computer, or an address where that is no name of a domain (RFC 5321,
/// section 4.1.4).
QByteArray HelloName() {
    const QByteArray name = QSysInfo::machineHostName().toUtf8();
    const bool isName = !name.isEmpty() && name.size() <= 255 && std::all_of(name.begin(), name.end(), [](char byte) {
        return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || (byte >= '0' && byte <= '9') ||
               byte == '-' || byte == '.';
    });
    return isName ? name : QByteArrayLiteral("[127.0.0.1]");
}

/// The host as it stands in an address: one of version 6 in brackets.
QByteArray HostPart(const QString& host) {
    const QByteArray name = host.toUtf8();
    return name.contains(':') && !name.startsWith('[') ? "[" + name + "]" : name;
}

QString Place(const SmtpServer& server) {
    return QStringLiteral("%1:%2").arg(server.host).arg(server.port);
}

DeliveryOutcome FailedAt(const QString& words) {
    return {DeliveryFate::Failed, words};
}

} // namespace

QString TextOfEnd(SmtpEnd end, const SmtpServer& server) {
    switch (end) {
    case SmtpEnd::None:
        break;
    case SmtpEnd::Closed:
        return QCoreApplication::translate("quellbox", "The connection to %1 ended before the message was sent.")
            .arg(Place(server));
    case SmtpEnd::TimedOut:
        return QCoreApplication::translate("quellbox", "The server %1 did not answer in time.").arg(Place(server));
    case SmtpEnd::Stopped:
        return QCoreApplication::translate("quellbox", "The message was not sent, as the program was told to stop.");
    case SmtpEnd::Junk:
        return QCoreApplication::translate("quellbox", "What the server %1 answered cannot be understood.")
            .arg(Place(server));
    }
    return {};
}

/// All that has to do with the library that makes the connection.
class SmtpConnection::Link {
public:
    Link(SmtpServer server, std::function<bool()> goOn) : server_(std::move(server)), goOn_(std::move(goOn)) {}
    ~Link() {
        if (isAdded_) {
            // This also ends the connection.
            curl_multi_remove_handle(multi_.get(), easy_.get());
        }
    }
    Link(const Link&) = delete;
    Link& operator=(const Link&) = delete;

    std::optional<DeliveryOutcome> Open();
    SmtpEnd Send(QByteArrayView bytes);
    SmtpEnd Receive(SmtpReply& reply, milliseconds limit, milliseconds grace);
    std::optional<SmtpReply> TakeWaiting() { return reader_.Take(); }
    bool IsQuiet() { return ReadWhatIsThere() == SmtpEnd::None && reader_.IsEmpty(); }

    bool GoesOn() const { return !goOn_ || goOn_(); }
    const SmtpCapabilities& Capabilities() const { return capabilities_; }

private:
    /// A handle of the library, which `free` gives back.
    template <class Handle, auto free>
    struct CurlDeleter {
        void operator()(Handle* handle) const { free(handle); }
    };
    template <class Handle, auto free>
    using CurlHandle = std::unique_ptr<Handle, CurlDeleter<Handle, free>>;

    bool Prepare();
    bool SetAddress();
    template <class Value>
    void Set(CURLoption option, Value value);

    SmtpEnd Connect(CURLcode& result);
    std::optional<DeliveryOutcome> OutcomeOf(SmtpEnd end, CURLcode result) const;
    SmtpEnd AwaitRoom(CURLcode result, const QDeadlineTimer& deadline);
    SmtpEnd ReadWhatIsThere();
    void Wait(milliseconds most, bool isForSending);

    static size_t TakeLine(char* bytes, size_t size, size_t count, void* link);

    const SmtpServer server_;
    const std::function<bool()> goOn_;
    CurlHandle<CURLU, curl_url_cleanup> address_;
    CurlHandle<CURL, curl_easy_cleanup> easy_;
    CurlHandle<CURLM, curl_multi_cleanup> multi_;
    bool isAdded_ = false;
    bool areOptionsSet_ = true;
    curl_socket_t socket_ = CURL_SOCKET_BAD;
    std::array<char, CURL_ERROR_SIZE> errorText_{};

    SmtpReplyReader reader_;
    SmtpReply lastReply_; ///< while connecting
    bool isLoggedIn_ = false;
    SmtpCapabilities capabilities_;
};

template <class Value>
void SmtpConnection::Link::Set(CURLoption option, Value value) {
    areOptionsSet_ = curl_easy_setopt(easy_.get(), option, value) == CURLE_OK && areOptionsSet_;
}

/// Gets the lines that the server says while the library connects.
size_t SmtpConnection::Link::TakeLine(char* bytes, size_t size, size_t count, void* link) {
    auto& self = *static_cast<Link*>(link);
    self.reader_.Feed(QByteArrayView(bytes, static_cast<qsizetype>(size * count)));
    while (auto reply = self.reader_.Take()) {
        self.lastReply_ = *std::move(reply);
        if (self.lastReply_.code == 250) {
            // Only what is said after TLS has begun counts (RFC 3207, section 4.2): the last one.
            self.capabilities_ = ParseCapabilities(self.lastReply_);
        }
        self.isLoggedIn_ = self.isLoggedIn_ || self.lastReply_.code == 235;
    }
    return self.reader_.IsJunk() ? 0 : size * count;
}

bool SmtpConnection::Link::SetAddress() {
    address_.reset(curl_url());
    const auto set = [this](CURLUPart part, const QByteArray& text, unsigned int flags = 0) {
        return curl_url_set(address_.get(), part, text.constData(), flags) == CURLUE_OK;
    };
    return address_ && !server_.host.isEmpty() &&
           set(CURLUPART_SCHEME, server_.security == SmtpSecurity::Tls ? "smtps" : "smtp") &&
           set(CURLUPART_HOST, HostPart(server_.host)) && set(CURLUPART_PORT, QByteArray::number(server_.port)) &&
           set(CURLUPART_PATH, "/" + HelloName(), CURLU_URLENCODE);
}

bool SmtpConnection::Link::Prepare() {
    if (!IsLibraryReady() || !SetAddress()) {
        return false;
    }
    easy_.reset(curl_easy_init());
    multi_.reset(curl_multi_init());
    if (!easy_ || !multi_) {
        return false;
    }
    Set(CURLOPT_ERRORBUFFER, errorText_.data());
    Set(CURLOPT_CURLU, address_.get());
    Set(CURLOPT_PROTOCOLS_STR, "smtp,smtps");
    Set(CURLOPT_CONNECT_ONLY, 1L);
    Set(CURLOPT_NOSIGNAL, 1L); // There are several threads.
    Set(CURLOPT_PROXY, "");    // None that a variable of the environment names.
    Set(CURLOPT_TCP_KEEPALIVE, 1L);
    Set(CURLOPT_QUICK_EXIT, 1L); // Whoever stops does not wait for the name to be found.
    Set(CURLOPT_HEADERFUNCTION, &Link::TakeLine);
    Set(CURLOPT_HEADERDATA, static_cast<void*>(this));
    const auto limitMs = static_cast<long>(std::clamp<qint64>(server_.timeLimit.count(), 1, 86'400'000));
    Set(CURLOPT_CONNECTTIMEOUT_MS, limitMs);
    Set(CURLOPT_SERVER_RESPONSE_TIMEOUT, limitMs / 1000 + 1);
    if (server_.security != SmtpSecurity::None) {
        Set(CURLOPT_USE_SSL, static_cast<long>(CURLUSESSL_ALL));
        Set(CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2));
        Set(CURLOPT_SSL_VERIFYPEER, 1L);
        Set(CURLOPT_SSL_VERIFYHOST, 2L);
        if (server_.caFile.isEmpty()) {
            Set(CURLOPT_SSL_OPTIONS, static_cast<long>(CURLSSLOPT_NATIVE_CA));
        } else {
            Set(CURLOPT_CAINFO, server_.caFile.toUtf8().constData());
            Set(CURLOPT_CAPATH, static_cast<const char*>(nullptr));
        }
    }
    if (!server_.user.isEmpty()) {
        Set(CURLOPT_USERNAME, server_.user.toUtf8().constData());
        Set(CURLOPT_PASSWORD, server_.password.toUtf8().constData());
        // What a name and a password are enough for; others would ask a domain controller.
        Set(CURLOPT_LOGIN_OPTIONS, "AUTH=PLAIN;AUTH=LOGIN;AUTH=CRAM-MD5");
    }
    isAdded_ = areOptionsSet_ && curl_multi_add_handle(multi_.get(), easy_.get()) == CURLM_OK;
    return isAdded_;
}

SmtpEnd SmtpConnection::Link::Connect(CURLcode& result) {
    const QDeadlineTimer deadline(server_.timeLimit);
    for (;;) {
        int running = 0;
        int waiting = 0;
        curl_multi_perform(multi_.get(), &running);
        if (const CURLMsg* message = curl_multi_info_read(multi_.get(), &waiting)) {
            result = message->data.result;
            return SmtpEnd::None;
        }
        if (!GoesOn()) {
            return SmtpEnd::Stopped;
        }
        if (deadline.hasExpired()) {
            return SmtpEnd::TimedOut;
        }
        curl_multi_poll(multi_.get(), nullptr, 0, static_cast<int>(waitSlice.count()), nullptr);
    }
}

std::optional<DeliveryOutcome> SmtpConnection::Link::OutcomeOf(SmtpEnd end, CURLcode result) const {
    if (reader_.IsJunk()) {
        end = SmtpEnd::Junk;
    }
    if (end != SmtpEnd::None) {
        return FailedAt(TextOfEnd(end, server_));
    }
    if (result != CURLE_OK && lastReply_.IsRefusal()) {
        return DeliveryOutcome{DeliveryFate::Refused, lastReply_.Words()};
    }
    if (result == CURLE_OPERATION_TIMEDOUT) {
        return FailedAt(TextOfEnd(SmtpEnd::TimedOut, server_));
    }
    if (result != CURLE_OK) {
        const QString reason =
            QString::fromLocal8Bit(errorText_.front() != '\0' ? errorText_.data() : curl_easy_strerror(result));
        return FailedAt(QCoreApplication::translate("quellbox", "The server %1 cannot be used: %2")
                            .arg(Place(server_), reason.trimmed()));
    }
    if (!server_.user.isEmpty() && !isLoggedIn_) {
        return FailedAt(
            QCoreApplication::translate("quellbox", "The server %1 does not let anybody log in.").arg(Place(server_)));
    }
    return std::nullopt;
}

std::optional<DeliveryOutcome> SmtpConnection::Link::Open() {
    if (!server_.user.isEmpty() && server_.security == SmtpSecurity::None) {
        return FailedAt(QCoreApplication::translate(
            "quellbox", "The password is not sent, as the connection to the server is not encrypted."));
    }
    if (!Prepare()) {
        return FailedAt(QCoreApplication::translate("quellbox", "This is no server that can be connected to: %1")
                            .arg(Place(server_)));
    }
    CURLcode result = CURLE_OK;
    const SmtpEnd end = Connect(result);
    auto outcome = OutcomeOf(end, result);
    if (!outcome && curl_easy_getinfo(easy_.get(), CURLINFO_ACTIVESOCKET, &socket_) != CURLE_OK) {
        outcome = FailedAt(TextOfEnd(SmtpEnd::Closed, server_));
    }
    return outcome;
}

void SmtpConnection::Link::Wait(milliseconds most, bool isForSending) {
    curl_waitfd wait{};
    wait.fd = socket_;
    wait.events = CURL_WAIT_POLLIN;
    if (isForSending) {
        wait.events |= CURL_WAIT_POLLOUT;
    }
    const auto slice = std::clamp(most, milliseconds(1), waitSlice);
    curl_multi_poll(multi_.get(), &wait, 1, static_cast<int>(slice.count()), nullptr);
}

SmtpEnd SmtpConnection::Link::ReadWhatIsThere() {
    std::array<char, 16 * 1024> buffer{};
    for (;;) {
        size_t count = 0;
        const CURLcode result = curl_easy_recv(easy_.get(), buffer.data(), buffer.size(), &count);
        if (result == CURLE_AGAIN) {
            return reader_.IsJunk() ? SmtpEnd::Junk : SmtpEnd::None;
        }
        if (result != CURLE_OK || count == 0) {
            return SmtpEnd::Closed;
        }
        if (!reader_.Feed(QByteArrayView(buffer.data(), static_cast<qsizetype>(count)))) {
            return SmtpEnd::Junk;
        }
    }
}

SmtpEnd SmtpConnection::Link::Send(QByteArrayView bytes) {
    QDeadlineTimer deadline(server_.timeLimit);
    while (!bytes.isEmpty()) {
        size_t count = 0;
        const qsizetype part = std::min(bytes.size(), mostSentAtOnce);
        const CURLcode result = curl_easy_send(easy_.get(), bytes.data(), static_cast<size_t>(part), &count);
        if (result == CURLE_OK && count > 0) {
            bytes = bytes.sliced(static_cast<qsizetype>(count));
            deadline = QDeadlineTimer(server_.timeLimit);
        } else if (const SmtpEnd end = AwaitRoom(result, deadline); end != SmtpEnd::None) {
            return end;
        }
        if (!bytes.isEmpty() && !GoesOn()) {
            return SmtpEnd::Stopped;
        }
    }
    return SmtpEnd::None;
}

SmtpEnd SmtpConnection::Link::AwaitRoom(CURLcode result, const QDeadlineTimer& deadline) {
    // A server that cannot get rid of its answers takes nothing more either.
    if (const SmtpEnd end = ReadWhatIsThere(); end != SmtpEnd::None) {
        return end;
    }
    if (result != CURLE_OK && result != CURLE_AGAIN) {
        return SmtpEnd::Closed;
    }
    if (deadline.hasExpired()) {
        return SmtpEnd::TimedOut;
    }
    Wait(milliseconds(deadline.remainingTime()), true);
    return SmtpEnd::None;
}

SmtpEnd SmtpConnection::Link::Receive(SmtpReply& reply, milliseconds limit, milliseconds grace) {
    QDeadlineTimer deadline(limit);
    bool isStopping = false;
    for (;;) {
        const SmtpEnd end = ReadWhatIsThere();
        if (auto next = reader_.Take()) {
            reply = *std::move(next);
            return SmtpEnd::None;
        }
        if (end != SmtpEnd::None) {
            return end;
        }
        if (!isStopping && !GoesOn()) {
            isStopping = true;
            deadline = QDeadlineTimer(std::min(grace, milliseconds(deadline.remainingTime())));
        }
        if (deadline.hasExpired()) {
            return isStopping ? SmtpEnd::Stopped : SmtpEnd::TimedOut;
        }
        Wait(milliseconds(deadline.remainingTime()), false);
    }
}

SmtpConnection::SmtpConnection(SmtpServer server, std::function<bool()> goOn)
    : link_(std::make_unique<Link>(std::move(server), std::move(goOn))) {}

SmtpConnection::~SmtpConnection() = default;

std::optional<DeliveryOutcome> SmtpConnection::Open() {
    return link_->Open();
}

const SmtpCapabilities& SmtpConnection::Capabilities() const {
    return link_->Capabilities();
}

SmtpEnd SmtpConnection::Send(QByteArrayView bytes) {
    return link_->Send(bytes);
}

SmtpEnd SmtpConnection::Receive(SmtpReply& reply, milliseconds limit, milliseconds grace) {
    return link_->Receive(reply, limit, grace);
}

std::optional<SmtpReply> SmtpConnection::TakeWaiting() {
    return link_->TakeWaiting();
}

bool SmtpConnection::GoesOn() const {
    return link_->GoesOn();
}

bool SmtpConnection::IsQuiet() {
    return link_->IsQuiet();
}

} // namespace quellbox
