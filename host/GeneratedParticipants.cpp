#include "host/GeneratedParticipants.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace Corvanta::Host {
namespace {

constexpr std::array<std::string_view, 100> kNames{
    "Alva",    "Bruno",  "Chiyo",  "Dario",   "Elif",  "Farid",  "Greta",  "Hamza",  "Ines",  "Jonas",
    "Kaia",    "Luca",   "Mira",   "Nuno",    "Olga",  "Pavel",  "Quinn",  "Rosa",   "Samir", "Tessa",
    "Umar",    "Vera",   "Wanda",  "Xenia",   "Yusuf", "Zora",   "Aiko",   "Bela",   "Celia", "Dmitri",
    "Esther",  "Femi",   "Gina",   "Hugo",    "Ida",   "Jamal",  "Karin",  "Leon",   "Marta", "Nils",
    "Oksana",  "Pia",    "Rafael", "Sofia",   "Tariq", "Ursula", "Viktor", "Wei",    "Yara",  "Zeno",
    "Anouk",   "Bashir", "Carmen", "Diego",   "Ebba",  "Felix",  "Gloria", "Hana",   "Ivan",  "Jana",
    "Kofi",    "Lena",   "Malik",  "Nadia",   "Otto",  "Priya",  "Rahel",  "Stefan", "Thea",  "Ugo",
    "Valeria", "Willem", "Ximena", "Yannick", "Zita",  "Abeni",  "Boris",  "Clara",  "Deniz", "Elena",
    "Freya",   "Goran",  "Heidi",  "Imran",   "Julia", "Kenji",  "Lilia",  "Mateo",  "Nora",  "Oscar",
    "Petra",   "Rania",  "Silas",  "Tomas",   "Uma",   "Vito",   "Wojtek", "Yuki",   "Zahra", "Amadou",
};

std::string NameAt(std::size_t index) {
    std::string name(kNames[index % kNames.size()]);
    const std::size_t round = index / kNames.size();
    if (round > 0) {
        name += ' ';
        name += std::to_string(round + 1);
    }
    return name;
}

}  // namespace

std::vector<ParticipantOption> GenerateParticipants(int count, std::span<const ParticipantOption> others) {
    std::vector<ParticipantOption> participants;
    for (std::size_t index = 0; std::ssize(participants) < count; ++index) {
        std::string name = NameAt(index);
        const auto sameName = [&](const ParticipantOption& other) { return other.name == name; };
        if (std::ranges::none_of(others, sameName)) participants.push_back({std::move(name), "clip"});
    }
    return participants;
}

}  // namespace Corvanta::Host
