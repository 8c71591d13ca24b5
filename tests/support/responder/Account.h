// A readable account of a request.
#ifndef ZUV_TESTS_SUPPORT_RESPONDER_ACCOUNT_H
#define ZUV_TESTS_SUPPORT_RESPONDER_ACCOUNT_H

#include <string>

#include "remoteConfig/ServiceAdmin.h"

namespace responder
{

// One line: who is asked, the action, the resource, and both bodies. Long texts are told by their length and
// checksum.
std::string describe(const ZUV_Service_Admin_CommandRequest &request);

} // namespace responder

#endif
