/* Character set conversion for what is linked with libiconv. Debian has none for Windows, so the functions are those
 * that GLib has for its own use, under the names that libiconv gives them: static GLib exports the plain ones. */
#ifndef QUELLBOX_ICONV_H
#define QUELLBOX_ICONV_H

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef void* iconv_t;

#define iconv_open libiconv_open
#define iconv_close libiconv_close
#define iconv libiconv

iconv_t iconv_open(const char* tocode, const char* fromcode);
int iconv_close(iconv_t descriptor);
size_t iconv(iconv_t descriptor, char** inbuf, size_t* inbytesleft, char** outbuf, size_t* outbytesleft);

#ifdef __cplusplus
}
#endif

#endif
