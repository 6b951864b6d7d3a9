// The connectivity log that the gallery's panel asks. Linked into the program, these stand before the
// engine's, whose room service is not there without a room, and tell the same on every machine.
#include "platform/RESTfulAPI.h"
#include "tools/gallery/FixedReport.h"

Model::API::ConnectivityLogResponse* RESTApi_ReceiveParticipantsConnectivityLog(
    const std::string& /*sessionName*/, const std::string& /*streamId*/) {
    static auto report = Corvanta::Gallery::FixedReport();
    return &report;
}

int32_t RESTApi_ResponseGetStatus(const Model::API::ConnectivityLogResponse* /*response*/) {
    return Model::API::kResponseSuccess;
}
