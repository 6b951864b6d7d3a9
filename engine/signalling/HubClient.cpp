#include "engine/signalling/HubClient.h"

#include <utility>

#include "engine/signalling/HubStay.h"

namespace Corvanta::Engine {

HubClient::HubClient(GMainContext* mainContext, HubClientEvents clientEvents)
    : context(mainContext), events(std::make_shared<const HubClientEvents>(std::move(clientEvents))) {}

HubClient::~HubClient() {
    Leave();
}

void HubClient::Join(const std::string& room, const std::string& name, const std::filesystem::path& product) {
    Leave();
    RoomFolder folder = product.empty() ? UserRoomFolder(room) : RoomFolderIn(product, room);
    stay = std::make_shared<Stay>(context, events, std::move(folder), name);
    stay->Begin();
}

void HubClient::Leave() {
    if (const auto left = std::exchange(stay, nullptr)) left->End();
}

bool HubClient::Send(const std::string& memberId, std::string_view payload) {
    return stay && stay->Send(memberId, payload);
}

const std::string& HubClient::OwnId() const {
    static const std::string nobody;
    return stay ? stay->OwnId() : nobody;
}

const std::vector<RoomMember>& HubClient::Members() const {
    static const std::vector<RoomMember> none;
    return stay ? stay->Members() : none;
}

bool HubClient::HasHub() const {
    return stay && stay->HasHub();
}

}  // namespace Corvanta::Engine
