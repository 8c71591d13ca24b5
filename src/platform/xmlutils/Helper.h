/* Small helpers on texts from documents. */
#ifndef ZUV_PLATFORM_XMLUTILS_HELPER_H
#define ZUV_PLATFORM_XMLUTILS_HELPER_H

#ifdef __cplusplus
extern "C" {
#endif

/* Cut the white space of XML (space, tab, line feed, carriage return; XML 1.0, 2.3) off both ends of `text`, in
 * place. Returns the start of what is left, which lies in `text`; NULL for NULL, after a report. */
char *ZUVXMLHelper_strTrim(char *text);

#ifdef __cplusplus
}
#endif

#endif
