// Shells and services at once, for a while: soak SECONDS SHELLS [SERVICES].
//
// Each shell sends commands of all kinds to all services, and is replaced by a new one now and then. In a longer run the
// last service is shut down and started again from time to time. Fails when a command to a service that was up all the
// time gets no answer or another one than it must, when a service's memory, files or threads grow, when a process does not
// end as it should, and when too few commands were answered to tell anything; for these it goes on beyond its time.
#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <memory>
#include <mutex>
#include <random>
#include <thread>

#include "endurance/Service.h"
#include "shell/Session.h"
#include "support/Eventually.h"

namespace
{

using namespace zuv_test;
using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr int kRouteCount = 50;
constexpr int kTimeout = 20; // of a shell, in seconds
constexpr milliseconds kLongestPause{150};
// What the middleware keeps of each port that it has sent to, at the most, and how many of them there are.
constexpr long kPortKiB = 64;
constexpr long kPorts = 256;
constexpr long kLeastAnswers = 20; // that tell something, for each shell at once
// How long it goes on for these, at the most: a sanitizer's shell takes seconds to start.
constexpr seconds kPatience{150};
constexpr seconds kDiscovery{5}; // after which a service that was started is known to all
// What runs at least so long has its last service restarted, and is expected to be flat within narrow bounds.
constexpr seconds kLongRun{60};

#if defined(__SANITIZE_THREAD__) || defined(__SANITIZE_ADDRESS__)
constexpr bool isSanitized = true; // memory tells nothing then
#else
constexpr bool isSanitized = false;
#endif

// What has gone wrong, for the end. Any thread.
class Failures
{
public:
    void add(const std::string &what)
    {
        const std::lock_guard lock(mutex_);
        if (++count_ <= 20) {
            std::printf("FAILED: %s\n", what.c_str());
        }
    }
    int count()
    {
        const std::lock_guard lock(mutex_);
        return count_;
    }

private:
    std::mutex mutex_;
    int count_ = 0;
};

Failures failures;
std::atomic<bool> isOver{false};

std::string firstLine(const std::string &text)
{
    return text.substr(0, text.find('\n'));
}

// One that shells know by its name. The main thread alone looks after its process.
class Service
{
public:
    Service(int number, const TemporaryFolder &folder)
        : name_("S" + std::to_string(number)), path_(folder.path(name_ + ".xml"))
    {
        folder.write(name_ + ".xml", documentOf(name_, path_, kRouteCount));
        start();
    }

    const std::string &name() const { return name_; }
    // The time of the start that shells can rely on; 0 while there is none.
    Clock::rep reliableSince() const
    {
        const Clock::rep since = upSince_;
        const bool isKnown =
            since != 0 && Clock::now() - Clock::time_point(Clock::duration(since)) >= kDiscovery;
        return isKnown ? since : 0;
    }

    void start()
    {
        process_ = std::make_unique<Process>(serviceCommand(name_, path_));
        if (!process_->waitForOutput("ready\n")) {
            failures.add(name_ + " did not start: " + process_->errors());
        }
        upSince_ = Clock::now().time_since_epoch().count();
    }
    void shutDown(Session &shell)
    {
        upSince_ = 0;
        const std::string answer = shell.run("shutdown " + name_).value_or("(no shell)");
        if (!answer.starts_with("Result: ")) {
            failures.add("shutdown " + name_ + ": " + firstLine(answer));
        }
        const int status = process_->wait().value_or(-1);
        if (status != 0) {
            failures.add(name_ + " ended with " + std::to_string(status) + ": " +
                         process_->errors());
        }
        if (process_->errors().find("Sanitizer") != std::string::npos) {
            failures.add(name_ + ": " + process_->errors());
        }
    }

    // Read what it says, or it would wait for that in the end.
    void watch(milliseconds duration) { process_->watch(duration); }
    void takeSample() { samples_.push_back(usageOf(process_->id())); }
    void forgetSamples() { samples_.clear(); }
    const std::vector<Usage> &samples() const { return samples_; }

private:
    std::string name_;
    std::string path_;
    std::unique_ptr<Process> process_;
    std::atomic<Clock::rep> upSince_{0};
    std::vector<Usage> samples_;
};

using Services = std::vector<std::unique_ptr<Service>>;

// -- Shells ----------------------------------------------------------------------------------------------------

struct Tally {
    std::atomic<long> sent{0};
    std::atomic<long> answered{0};
    std::atomic<long> excused{0};  // no answer, but the service was not up all the time
    std::atomic<long> tooEarly{0}; // no answer, but the shell had just started
    std::atomic<long> shells{0};
    std::atomic<long> slowestMilliseconds{0};

    void note(Clock::duration time)
    {
        ++answered;
        const long taken = std::chrono::duration_cast<milliseconds>(time).count();
        long known = slowestMilliseconds;
        while (taken > known && !slowestMilliseconds.compare_exchange_weak(known, taken)) {
        }
    }
};
Tally tally;

struct CommandKind {
    const char *before; // of the service's name
    const char *behind;
    const char *answer; // how it begins
};

// Shells disturb each other, so that what becomes of a state is not known.
constexpr CommandKind kKinds[] = {
    {"get ", "", "Result: <"},
    {"get ", " dr::s::t7", "Result: <topic_route"},
    {"get ", " topic_route.t49", "Result: <topic_route"},
    {"get ", " dr::nothing", "Error: "},
    {"update ", " dr::s::t3 topic_route.publish_with_original_info=true", "Result: updated"},
    {"update ",
     " dr::s::t4 str://\"<topic_route><propagate_dispose>false</propagate_dispose></topic_route>\"",
     "Result: updated"},
    {"update ", " dr::s::t5 topic_route.nonsense=true", "Error: "},
    {"disable ", " dr::s::t1", "Result: "},
    {"enable ", " dr::s::t1", "Result: "},
    {"pause ", " dr::s::t2", "Result: "},
    {"resume ", " dr::s::t2", "Result: "},
    {"pause ", "", "Error: "},
    {"add_peer ", " left 127.0.0.1", "Error: "},
    {"load ", " x file:///nowhere", "Error: "},
    {"save ", "", "Result: saved"},
};

class Shell
{
public:
    Shell(int index, const Services &services)
        : random_(static_cast<unsigned>(index)), services_(services)
    {
    }

    // Until the soak is over, in as many sessions as come to it.
    void run(seconds sessionLength)
    {
        while (!isOver) {
            runSession(sessionLength);
        }
    }

private:
    void runSession(seconds length)
    {
        Session session(kTimeout);
        ++tally.shells;
        number_ = 0;
        session.letDiscover();
        meetAll(session);
        const auto end = Clock::now() + length + milliseconds(pick(2000));
        while (!isOver && Clock::now() < end) {
            const Service &service = *services_[pick(services_.size())];
            const std::size_t which = pick(std::size(kKinds) + 1);
            if (which == std::size(kKinds)) {
                createAndDelete(session, service);
            } else {
                const CommandKind &kind = kKinds[which];
                send(session, service, kind.before + service.name() + kind.behind, kind.answer);
            }
            session.watch(milliseconds(pick(kLongestPause.count())));
        }
        session.write("exit\n");
        const auto status = session.wait();
        if (status != 0) {
            failures.add("a shell ended with " + std::to_string(status.value_or(-1)) + ": " +
                         session.errors());
        }
    }

    // A shell sends at once, whether or not it has found the service: what it sends before is not sent again.
    void meetAll(Session &session)
    {
        for (const auto &service : services_) {
            for (int attempt = 0; !isOver && attempt < 3 && service->reliableSince() != 0;
                 ++attempt) {
                if (session.run("get " + service->name() + " dr", seconds(3 * kTimeout))
                        .value_or("")
                        .starts_with("Result: ")) {
                    break;
                }
                ++tally.tooEarly;
            }
        }
    }

    // An entity that is nobody else's.
    void createAndDelete(Session &session, const Service &service)
    {
        const std::string answer = send(
            session, service, "create " + service.name() + " session dr x", "Result: created ");
        constexpr std::string_view kCreated = "Result: created ";
        if (answer.starts_with(kCreated)) {
            const std::string name =
                answer.substr(kCreated.size(), answer.find(',') - kCreated.size());
            send(session, service, "delete " + service.name() + " " + name, "Result: deleted");
        }
    }

    std::string send(Session &session, const Service &service, const std::string &line,
                     const std::string &expected)
    {
        const Clock::rep before = service.reliableSince();
        const auto start = Clock::now();
        const std::string answer =
            session.run(line, seconds(3 * kTimeout)).value_or("(the shell does not prompt)");
        const bool isReliable = before != 0 && before == service.reliableSince();
        ++tally.sent;
        ++number_;
        if (answer.starts_with(expected)) {
            tally.note(Clock::now() - start);
        } else if (isReliable || !answer.starts_with("No response received")) {
            failures.add(line + ": " + firstLine(answer) + " (command " + std::to_string(number_) +
                         " of its shell)");
        } else {
            ++tally.excused;
        }
        return answer;
    }

    std::size_t pick(std::size_t count)
    {
        return std::uniform_int_distribution<std::size_t>(0, count - 1)(random_);
    }

    std::mt19937 random_;
    const Services &services_;
    int number_ = 0; // of commands in this session
};

// -- Flatness --------------------------------------------------------------------------------------------------

long medianOf(const std::vector<Usage> &samples, std::size_t begin, std::size_t end,
              long Usage::*member)
{
    std::vector<long> values;
    for (std::size_t index = begin; index < end; ++index) {
        values.push_back(samples[index].*member);
    }
    std::nth_element(values.begin(), values.begin() + static_cast<long>(values.size() / 2),
                     values.end());
    return values[values.size() / 2];
}

// The second quarter of the time beside the last one.
void compare(const Service &service, const char *what, long Usage::*member, double tolerance,
             long slack)
{
    const std::vector<Usage> &samples = service.samples();
    const std::size_t count = samples.size();
    const long early = medianOf(samples, count / 4, count / 2, member);
    const long late = medianOf(samples, count * 3 / 4, count, member);
    std::printf("%s %-12s %8ld -> %8ld\n", service.name().c_str(), what, early, late);
    if (static_cast<double>(late) >
        static_cast<double>(early) * (1 + tolerance) + static_cast<double>(slack)) {
        failures.add(service.name() + " grows: " + what);
    }
}

void report(const Services &services, bool isLong)
{
    for (const auto &service : services) {
        if (service->samples().size() < 8) {
            failures.add(service->name() + " was not looked at often enough");
            continue;
        }
        const double tolerance = isSanitized ? 10 : isLong ? 0.05 : 0.25;
        compare(*service, "memory, KiB", &Usage::memoryKiB, tolerance, 1024);
        compare(*service, "shared, KiB", &Usage::sharedKiB, 0,
                1024 + kPortKiB * std::min(kPorts, tally.shells.load()));
        compare(*service, "files", &Usage::files, 0, 2);
        compare(*service, "threads", &Usage::threads, 0, 1);
    }
}

} // namespace

int main(int argc, char **argv)
{
    if (argc < 3) {
        std::fputs("soak SECONDS SHELLS [SERVICES]\n", stderr);
        return EXIT_FAILURE;
    }
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    const seconds length{std::atoi(argv[1])};
    const int shellCount = std::atoi(argv[2]);
    const int serviceCount = argc > 3 ? std::atoi(argv[3]) : 3;
    const bool isLong = length >= kLongRun;

    const TemporaryFolder folder;
    Services services;
    for (int number = 1; number <= serviceCount; ++number) {
        services.push_back(std::make_unique<Service>(number, folder));
    }
    Session control(kTimeout);
    control.letDiscover();
    std::this_thread::sleep_for(kDiscovery);
    std::vector<std::thread> shells;
    for (int index = 0; index < shellCount; ++index) {
        shells.emplace_back([&services, index, isLong] {
            Shell(index, services).run(isLong ? seconds(30) : seconds(4));
        });
    }

    const auto end = Clock::now() + length;
    const long leastAnswers = kLeastAnswers * shellCount;
    auto restart = Clock::now() + kLongRun / 2;
    auto sample = Clock::now();
    const milliseconds interval = isLong ? milliseconds(1000) : milliseconds(300);
    while (Clock::now() < end ||
           (tally.answered < leastAnswers && Clock::now() < end + kPatience)) {
        for (const auto &service : services) {
            service->watch(milliseconds(20));
        }
        if (Clock::now() >= sample) {
            sample += interval;
            for (const auto &service : services) {
                service->takeSample();
            }
        }
        if (isLong && Clock::now() >= restart && end - Clock::now() > kLongRun / 2) {
            restart += kLongRun / 2;
            services.back()->shutDown(control);
            services.back()->start();
            services.back()->forgetSamples();
        }
    }
    isOver = true;
    std::atomic<bool> areShellsGone{false};
    std::thread joiner([&] {
        for (std::thread &shell : shells) {
            shell.join();
        }
        areShellsGone = true;
    });
    while (!areShellsGone) {
        for (const auto &service : services) {
            service->watch(milliseconds(20));
        }
    }
    joiner.join();
    for (const auto &service : services) {
        service->shutDown(control);
    }
    control.write("exit\n");
    if (control.wait() != 0) {
        failures.add("the last shell did not end");
    }

    report(services, isLong);
    if (tally.answered < leastAnswers) {
        failures.add("only " + std::to_string(tally.answered) + " commands were answered");
    }
    std::printf("%ld commands of %ld shells, slowest answer %ld ms, %ld unanswered while their "
                "service was down, %ld a second after a shell's start, %d failures\n",
                tally.sent.load(), tally.shells.load(), tally.slowestMilliseconds.load(),
                tally.excused.load(), tally.tooEarly.load(), failures.count());
    return failures.count() == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
