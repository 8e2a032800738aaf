#pragma once

#include <QByteArrayView>
#include <QString>

namespace quellbox {

/// The address that the relative links of a page begin at (its element "base").
class PageBase {
public:
    /// Takes the value of "href". Only the first one of a page counts.
    void Set(QByteArrayView href);

    /// Where the value of a link leads; empty for a place in the page itself. As browsers do (WHATWG URL), line ends
    /// and tabs are passed over, and of an address of the web "\\" is "/". Dots in a path stay as they are.
    QString Resolve(QByteArrayView value) const;

private:
    bool isSet_ = false;
    QString scheme_; // with its colon; all are empty without a base that has a host
    QString origin_; // scheme and host
    QString page_;   // without a query
    QString folder_; // up to the last slash
};

} // namespace quellbox
