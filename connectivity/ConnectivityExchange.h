// One panel's talk with the connectivity log: sends the own figures and asks for a participant's last report,
// each in a task of its own, at most one of either kind at a time. Render thread; no operation waits for a
// request, but the destructor does.
#pragma once

#include <future>
#include <memory>
#include <optional>
#include <string>

#include "platform/RESTfulAPI.h"

namespace Corvanta::Connectivity {

class ConnectionStats;

class ConnectivityExchange final {
public:
    struct Identity {
        std::string sessionName;
        std::string profileId;
        std::string streamId;
    };

    enum class Answer {
        // Not there yet.
        None,
        Failed,
        Report,
    };

    ConnectivityExchange(Identity identity, std::shared_ptr<const ConnectionStats> stats);

    // Reports this machine's facts and the newest figures, unless the report before is still on its way. Its
    // failure goes unnoticed: the next one follows soon.
    void Send();

    // Fills `report` when the answer to the previous request is there, and then asks anew. The first call
    // only asks.
    [[nodiscard]] Answer Receive(Model::API::ConnectivityLogResponse& report);

    // A request is on its way, for which the destructor would wait.
    [[nodiscard]] bool IsBusy() const;

private:
    using Report = std::optional<Model::API::ConnectivityLogResponse>;

    void Ask();

    // Never changed, so that the tasks may read it.
    const std::shared_ptr<const Identity> identity_;
    const std::shared_ptr<const ConnectionStats> stats_;
    std::future<void> sending_;
    // Empty in the end when the request failed.
    std::future<Report> receiving_;
};

}  // namespace Corvanta::Connectivity
