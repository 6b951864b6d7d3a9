#include "tools/gallery/FixedReport.h"

namespace Corvanta::Gallery {

Model::API::ConnectivityLogResponse FixedReport() {
    Model::API::ConnectivityLogResponse report;
    report.timestamp = "2024-03-01 12:34:56.1234567 UTC";
    report.download = 781'250;
    report.roundTrip = 42;
    report.upload = 312'500;
    report.jitter = 3;
    report.connectionType = "Ethernet";
    report.cpuType = "A processor of many words at 3.20 GHz";
    report.cpuAppUsage = "12%";
    report.cpuSystemUsage = "37%";
    report.platformVersion = "12.5";
    report.operatingSystem = "Linux";
    return report;
}

}  // namespace Corvanta::Gallery
