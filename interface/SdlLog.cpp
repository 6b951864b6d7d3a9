#include "interface/SdlLog.h"

#include <unordered_map>

#include "platform/Logger.h"

namespace Corvanta::Interface {

void SDLLogOutput(void* /*userData*/, int /*category*/, SDL_LogPriority priority, const char* message) {
    static const std::unordered_map<int, int> kLevelOfPriority = {{SDL_LOG_PRIORITY_DEBUG, kLogDebug},
                                                                  {SDL_LOG_PRIORITY_INFO, kLogInformation},
                                                                  {SDL_LOG_PRIORITY_WARN, kLogWarning},
                                                                  {SDL_LOG_PRIORITY_ERROR, kLogError},
                                                                  {SDL_LOG_PRIORITY_CRITICAL, kLogError}};
    // Everything else stands out as a warning, SDL's verbose messages included.
    const auto found = kLevelOfPriority.find(priority);
    LOG(found != kLevelOfPriority.end() ? found->second : kLogWarning, "SDL message: %s",
        message != nullptr ? message : "");
}

}  // namespace Corvanta::Interface
