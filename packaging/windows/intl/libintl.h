/* Translation for GLib, which does not build without it. Debian has no libintl for Windows, and the program shows none
 * of GLib's texts: these functions return what they are given. */
#ifndef QUELLBOX_LIBINTL_H
#define QUELLBOX_LIBINTL_H

#include <locale.h>

#ifndef LC_MESSAGES
#define LC_MESSAGES 1729
#endif

#ifdef __cplusplus
extern "C" {
#endif

#define LIBINTL_FORMAT(argument) __attribute__((format_arg(argument)))

char* gettext(const char* text) LIBINTL_FORMAT(1);
char* dgettext(const char* domain, const char* text) LIBINTL_FORMAT(2);
char* dcgettext(const char* domain, const char* text, int category) LIBINTL_FORMAT(2);
char* ngettext(const char* one, const char* many, unsigned long count) LIBINTL_FORMAT(1) LIBINTL_FORMAT(2);
char* dngettext(const char* domain, const char* one, const char* many, unsigned long count) LIBINTL_FORMAT(2)
    LIBINTL_FORMAT(3);
char* dcngettext(const char* domain, const char* one, const char* many, unsigned long count, int category)
    LIBINTL_FORMAT(2) LIBINTL_FORMAT(3);
char* textdomain(const char* domain);
char* bindtextdomain(const char* domain, const char* folder);
char* bind_textdomain_codeset(const char* domain, const char* codeset);

#ifdef __cplusplus
}
#endif

#endif
