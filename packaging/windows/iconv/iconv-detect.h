/* How win_iconv.c wants the names of character sets written; GMime finds that out by a program only when it is built
 * for the computer that builds it. */
#define ICONV_ISO_INT_FORMAT "iso-%u-%u"
#define ICONV_ISO_STR_FORMAT "iso-%u-%s"
#define ICONV_SHIFT_JIS "shift-jis"
#define ICONV_10646 "UCS-4BE"
