#include "host/Guests.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <ctime>
#include <string_view>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "host/GeneratedParticipants.h"

namespace Corvanta::Host {
namespace {

using std::chrono::steady_clock;

constexpr int kExitNotStarted = 127;
constexpr unsigned kFirstOwnDescriptor = 3;
// How often it is looked whether those who were asked have gone.
constexpr timespec kLookEvery{.tv_sec = 0, .tv_nsec = 5'000'000};

// A null-terminated list for a system call; the texts must outlive it.
std::vector<char*> PointersTo(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (std::string& text : texts) pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

// This process's environment, with those variables in it. As the system has it: "NAME=VALUE".
std::vector<std::string> EnvironmentWith(const std::vector<Guests::Variable>& variables) {
    std::vector<std::string> settings;
    for (char* const* setting = environ; *setting != nullptr; ++setting) {
        const std::string_view text(*setting);
        const auto names = [&](const Guests::Variable& variable) {
            return text.substr(0, text.find('=')) == variable.first;
        };
        if (std::ranges::none_of(variables, names)) settings.emplace_back(text);
    }
    for (const auto& [name, value] : variables) {
        std::string setting = name;
        setting += '=';
        setting += value;
        settings.push_back(std::move(setting));
    }
    return settings;
}

// Between fork and exec, so system calls alone.
[[noreturn]] void BecomeGuest(const char* program, char* const* arguments, char* const* environment,
                              pid_t host) {
    // In a process group of its own: a Ctrl+C in the terminal goes to the room's program, which ends first.
    ::setpgid(0, 0);
    ::prctl(PR_SET_PDEATHSIG, SIGTERM);
    // It may have gone before that.
    if (::getppid() != host) ::_exit(kExitNotStarted);
    sigset_t none;
    sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
    const int null = ::open("/dev/null", O_RDWR);
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO}) ::dup2(null, stream);
    // A lock or a connection of the room's program must not live on in a guest.
    ::close_range(kFirstOwnDescriptor, ~0U, 0);
    ::execve(program, arguments, environment);
    ::_exit(kExitNotStarted);
}

// Whether the process has gone, and nothing of it is left.
bool HasGone(pid_t process) {
    int status = 0;
    const pid_t ended = ::waitpid(process, &status, WNOHANG);
    return ended == process || (ended < 0 && errno != EINTR);
}

}  // namespace

std::vector<std::vector<std::string>> GuestArguments(const GuestPlan& plan) {
    const std::vector<ParticipantOption> own{{plan.ownName, {}}};
    std::vector<std::vector<std::string>> all;
    for (const ParticipantOption& guest : GenerateParticipants(plan.count, own)) {
        const std::string index = std::to_string(all.size());
        // A value behind '=' may be anything, also what looks like an option.
        std::vector<std::string> arguments{"--name=" + guest.name, "--index=" + index,
                                           "--count=" + std::to_string(plan.count), "--source=clip"};
        if (!plan.server.empty()) arguments.push_back("--server=" + plan.server);
        if (!plan.service.empty()) arguments.push_back("--service=" + plan.service);
        if (!plan.certificateAuthority.empty() && (!plan.server.empty() || !plan.service.empty())) {
            arguments.push_back("--ca=" + plan.certificateAuthority.string());
        }
        if (!plan.drawings) arguments.emplace_back("--draw=never");
        all.push_back(std::move(arguments));
    }
    return all;
}

std::variant<std::unique_ptr<Guests>, Failure> Guests::Start(
    const std::filesystem::path& program, const std::vector<std::vector<std::string>>& arguments,
    const std::vector<Variable>& variables) {
    std::unique_ptr<Guests> guests(new Guests);
    if (!arguments.empty() && ::access(program.c_str(), X_OK) != 0) {
        return Failure{"the guests' program is not there: " + program.string()};
    }
    const pid_t host = ::getpid();
    std::vector<std::string> settings = EnvironmentWith(variables);
    const std::vector<char*> environment = PointersTo(settings);
    for (const std::vector<std::string>& list : arguments) {
        std::vector<std::string> words{program.string()};
        words.insert(words.end(), list.begin(), list.end());
        const std::vector<char*> pointers = PointersTo(words);
        const pid_t guest = ::fork();
        if (guest == 0) BecomeGuest(program.c_str(), pointers.data(), environment.data(), host);
        if (guest < 0) return Failure{"no process for a guest"};
        guests->processes_.push_back(guest);
    }
    return guests;
}

Guests::~Guests() {
    AskToEnd();
    const auto deadline = steady_clock::now() + kLongestGoodbye;
    while (Count() > 0 && steady_clock::now() < deadline) ::nanosleep(&kLookEvery, nullptr);
    for (const pid_t process : processes_) {
        ::kill(process, SIGKILL);
        while (::waitpid(process, nullptr, 0) < 0 && errno == EINTR) {
        }
    }
}

void Guests::AskToEnd() {
    for (const pid_t process : processes_) ::kill(process, SIGTERM);
}

std::size_t Guests::Count() {
    std::erase_if(processes_, HasGone);
    return processes_.size();
}

}  // namespace Corvanta::Host
