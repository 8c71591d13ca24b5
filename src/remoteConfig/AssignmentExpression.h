/* Assignment expressions: a setting's path and its new value, in place of an XML document. */
#ifndef ZUV_REMOTE_CONFIG_ASSIGNMENT_EXPRESSION_H
#define ZUV_REMOTE_CONFIG_ASSIGNMENT_EXPRESSION_H

#ifdef __cplusplus
extern "C" {
#endif

/* Turn an assignment into inline XML: "topic_route.a=1" becomes
 * str://"<topic_route><a>1</a></topic_route>".
 *
 * The path is up to 31 names with dots between them, and begins with the name of a configuration element.
 * A key in brackets behind the last name addresses one entry of a property list. The value is all behind
 * the first equal sign, but for one pair of double quotes around it, which become blanks; in the XML it is
 * escaped, the names and the key are not.
 *
 * The result is a text of its own, to be released with DDS_String_free. It is NULL when the expression is
 * no assignment or is malformed, which is not reported; when there is no memory, after a report; and for
 * NULL, a failed precondition. Any thread. */
char *BRELRemoteConfigClient_convertAssignmentToXmlSnippet(const char *assignmentExpression);

#ifdef __cplusplus
}
#endif

#endif
