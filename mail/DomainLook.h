#pragma once

#include <QString>

namespace quellbox {

/// What about the letters of a domain can deceive a reader.
struct DomainLook {
    enum class Kind {
        Plain,        ///< nothing
        MixedScripts, ///< letters of scripts that no language writes in one word
        LookAlike     ///< its letters look like those of another domain
    };

    Kind kind = Kind::Plain;
    QString domain; ///< as it is read
    QString seenAs; ///< what a reader takes it for, in ASCII where there is such a letter
};

/// Judges a domain, in ASCII or not. Scripts may be mixed in a label as UTS 39 calls it "highly restrictive": Latin
/// beside those of Japanese, Chinese or Korean. A label of another script is suspicious where each of its letters looks
/// like one of ASCII, unless the top-level domain is of that script too.
DomainLook JudgeDomain(const QString& domain);

} // namespace quellbox
