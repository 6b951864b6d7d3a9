// What the participant of the gallery's tile with the open panel reports about connection and machine. Any
// thread.
#pragma once

#include "platform/RESTfulAPI.h"

namespace Corvanta::Gallery {

[[nodiscard]] Model::API::ConnectivityLogResponse FixedReport();

}  // namespace Corvanta::Gallery
