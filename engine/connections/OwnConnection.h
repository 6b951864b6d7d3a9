// What this program tells the room service of its own connection, so that the others' panels can show it.
#pragma once

#include <string>

#include "engine/webrtc/ConnectionStatsFeed.h"

namespace Corvanta::Engine {

// As often as a client with a panel reports.
inline constexpr int kSecondsPerReport = 5;

// To whole seconds, with zeros for what is finer: as the service's reports bear their times.
[[nodiscard]] std::string ReportTime();

// Under the stream's id, with this machine's and this process's figures. Any thread that may wait for the
// service. False when the service does not take it.
bool ReportOwnConnection(const std::string& session, const std::string& streamId,
                         const LocalConnectionFigures& figures);

}  // namespace Corvanta::Engine
