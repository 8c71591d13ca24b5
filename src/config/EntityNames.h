/* Full names of entities, such as ::service::domain_route::session::route, carried over to a service of
 * another name. */
#ifndef ZUV_CONFIG_ENTITY_NAMES_H
#define ZUV_CONFIG_ENTITY_NAMES_H

#ifdef __cplusplus
extern "C" {
#endif

/* The name that the session of a route has in the service `serviceName`: of "::a::dr::ses::r" in "b" it is
 * "::b::dr::ses". NULL for a full name without a route, which is not reported, and NULL after a report when
 * there is no memory or an argument is not allowed: NULL, or a full name that does not begin with ":". The
 * result is released with DDS_String_free. */
char *BRELUtils_makeSessionName(const char *serviceName, const char *routeFullName);

/* The same for the domain route of a session: of "::a::dr::ses" in "b" it is "::b::dr", and NULL for a full
 * name without a session. */
char *BRELUtils_makeDomainRouteName(const char *serviceName, const char *sessionFullName);

/* What both come down to: keep the first `segments` names, 1 or 2, behind that of the service. */
char *BRELUtils_makeNameI(const char *serviceName, const char *entityFullName, int segments);

#ifdef __cplusplus
}
#endif

#endif
