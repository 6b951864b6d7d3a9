// What is logged while the object lives. One thread.
#pragma once

#include <string>

#include "engine/logger/Logger.h"
#include "platform/Logger.h"
#include "tests/engine/Eventually.h"
#include "tests/engine/TemporaryFolder.h"

namespace Corvanta::Engine {

class LogLines final {
public:
    LogLines() { ConfigureLog(kLogInformation, folder.File("log")); }
    ~LogLines() { ConfigureLog(kLogInformation, {}); }
    LogLines(const LogLines&) = delete;
    LogLines& operator=(const LogLines&) = delete;

    // How often the text was logged up to this call.
    [[nodiscard]] int Count(const std::string& text) {
        // Lines are written by a thread of their own, in order.
        std::string mark = "log mark ";
        mark += std::to_string(++marks);
        mark += '.';
        LOG(kLogInformation, "%s", mark.c_str());
        if (!Eventually([&] { return folder.Read("log").find(mark) != std::string::npos; })) return -1;
        const std::string log = folder.Read("log");
        int count = 0;
        for (auto place = log.find(text); place != std::string::npos; place = log.find(text, place + 1))
            ++count;
        return count;
    }

private:
    TemporaryFolder folder;
    int marks = 0;
};

}  // namespace Corvanta::Engine
