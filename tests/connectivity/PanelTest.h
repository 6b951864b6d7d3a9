// A test with a connectivity panel over the fake platform and a clock that the test turns. One thread, but
// for the panel's tasks.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "connectivity/ConnectionStats.h"
#include "connectivity/ThumbnailConnectivityPanel.h"
#include "tests/ui/ToolkitTest.h"

namespace Corvanta::Testing {

inline const std::string kSendCall = "RESTApi_SendConnectivityLog";
inline const std::string kReceiveCall = "RESTApi_ReceiveParticipantsConnectivityLog";

class PanelTest : public ToolkitTest {
protected:
    static constexpr SDL_Rect kArea{10, 14, 300, 210};
    static constexpr int kFontSize = 8;

    PanelTest();
    ~PanelTest() override;

    Connectivity::ThumbnailConnectivityPanel& MakeLocal();
    Connectivity::ThumbnailConnectivityPanel& MakeRemote();
    [[nodiscard]] Connectivity::ThumbnailConnectivityPanel& Panel() const { return *panel_; }
    void DeletePanel() { panel_.reset(); }

    static void TurnMs(int64_t milliseconds) { nowNs_ += milliseconds * 1'000'000; }
    static void TurnNs(int64_t nanoseconds) { nowNs_ += nanoseconds; }

    void Update() { Update(kArea); }
    void Update(const SDL_Rect& area, int fontSize = kFontSize);
    // Values by label, as they are drawn at this moment. Refreshes nothing.
    [[nodiscard]] std::map<std::string, std::string> Shown();
    // Lets refreshes pass until the panel has taken the answer to its request and has asked anew.
    void TakeAnswer();
    static void WaitForSends(size_t count);
    static void WaitForRequests(size_t count);
    // Until no task of the panel's runs any more.
    void WaitUntilIdle() const;

private:
    static inline int64_t nowNs_ = 0;
    std::unique_ptr<Connectivity::ThumbnailConnectivityPanel> panel_;
};

// Waits in real time for what another thread does.
[[nodiscard]] bool Eventually(const std::function<bool()>& condition);

// Holds those who come until it opens.
class Barrier final {
public:
    void Pass();
    void Open();

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    // guards: isOpen_
    bool isOpen_ = false;
};

}  // namespace Corvanta::Testing
