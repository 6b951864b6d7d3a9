// The cookie that proves who connects. It is neither stored nor logged.
#pragma once

#include <string>

#include "platform/GraphQLClient.h"

namespace Corvanta::Interface {

[[nodiscard]] inline std::string ConnectionCookie() {
    return "__Host-jwt=" + GraphQLClient_GetStoredToken();
}

}  // namespace Corvanta::Interface
