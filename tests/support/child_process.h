#pragma once
// A program run as a child process with its standard output and error collected, for the few
// tests and benchmarks that run the real programs (zentavia-packsim on a pseudo-terminal,
// zentavia-cli). Every wait is on the child's output or exit, bounded by a deadline.

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

extern char** environ;

namespace zv::test {

class ChildProcess {
public:
    ChildProcess(const std::string& program, const std::vector<std::string>& arguments)
    {
        int out[2];
        int err[2];
        if (::pipe2(out, O_CLOEXEC) != 0 || ::pipe2(err, O_CLOEXEC) != 0)
            return;
        posix_spawn_file_actions_t actions;
        ::posix_spawn_file_actions_init(&actions);
        ::posix_spawn_file_actions_adddup2(&actions, out[1], STDOUT_FILENO);
        ::posix_spawn_file_actions_adddup2(&actions, err[1], STDERR_FILENO);
        std::vector<std::string> words { program };
        words.insert(words.end(), arguments.begin(), arguments.end());
        std::vector<char*> argv;
        for (auto& word : words)
            argv.push_back(word.data());
        argv.push_back(nullptr);
        if (::posix_spawn(&pid_, program.c_str(), &actions, nullptr, argv.data(), environ) != 0)
            pid_ = -1;
        ::posix_spawn_file_actions_destroy(&actions);
        ::close(out[1]);
        ::close(err[1]);
        out_ = out[0];
        err_ = err[0];
    }
    ~ChildProcess()
    {
        terminate();
        closePipe(out_);
        closePipe(err_);
    }
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    [[nodiscard]] bool started() const { return pid_ > 0; }
    [[nodiscard]] const std::string& output() const { return output_; }
    [[nodiscard]] const std::string& errors() const { return errors_; }

    // The first line of standard output that contains `text`, once it has arrived.
    [[nodiscard]] std::optional<std::string> waitForLine(std::string_view text, int timeoutMs)
    {
        const auto deadline = Clock::now() + std::chrono::milliseconds(timeoutMs);
        while (true) {
            if (auto line = findLine(text))
                return line;
            if (!readSome(deadline))
                return std::nullopt;
        }
    }

    // The exit status once the child has ended and closed its output; nothing at the deadline.
    [[nodiscard]] std::optional<int> waitForExit(int timeoutMs)
    {
        const auto deadline = Clock::now() + std::chrono::milliseconds(timeoutMs);
        while (out_ >= 0 || err_ >= 0)
            if (!readSome(deadline))
                return std::nullopt;
        int status = 0;
        if (pid_ <= 0 || ::waitpid(pid_, &status, 0) != pid_)
            return std::nullopt;
        pid_ = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    }

    // Sends a signal without waiting for the child.
    void sendSignal(int signal)
    {
        if (pid_ > 0)
            ::kill(pid_, signal);
    }

    // Asks the child to stop (SIGTERM) and reaps it.
    void terminate()
    {
        if (pid_ <= 0)
            return;
        ::kill(pid_, SIGTERM);
        int status = 0;
        ::waitpid(pid_, &status, 0);
        pid_ = -1;
    }

private:
    using Clock = std::chrono::steady_clock;

    std::optional<std::string> findLine(std::string_view text) const
    {
        const auto at = output_.find(text);
        if (at == std::string::npos)
            return std::nullopt;
        const auto end = output_.find('\n', at);
        if (end == std::string::npos)
            return std::nullopt;
        const auto begin = output_.rfind('\n', at);
        const auto from = begin == std::string::npos ? 0 : begin + 1;
        return output_.substr(from, end - from);
    }

    // Blocks until one of the pipes has data or closes; false at the deadline or with both closed.
    bool readSome(Clock::time_point deadline)
    {
        pollfd fds[2] { { out_, POLLIN, 0 }, { err_, POLLIN, 0 } };
        const auto left
            = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
        if ((out_ < 0 && err_ < 0) || left <= 0 || ::poll(fds, 2, static_cast<int>(left)) <= 0)
            return false;
        drain(fds[0], out_, output_);
        drain(fds[1], err_, errors_);
        return true;
    }

    static void drain(const pollfd& fd, int& pipe, std::string& into)
    {
        if (pipe < 0 || fd.revents == 0)
            return;
        char buffer[4096];
        const auto n = ::read(pipe, buffer, sizeof buffer);
        if (n > 0)
            into.append(buffer, static_cast<std::size_t>(n));
        else
            closePipe(pipe);
    }

    static void closePipe(int& pipe)
    {
        if (pipe >= 0)
            ::close(pipe);
        pipe = -1;
    }

    pid_t pid_ = -1;
    int out_ = -1;
    int err_ = -1;
    std::string output_;
    std::string errors_;
};

} // namespace zv::test
