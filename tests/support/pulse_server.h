// SPDX-License-Identifier: GPL-3.0-or-later
// Starts a PulseAudio server that only the test uses. The server's null sink consumes samples at
// the rate of a sound card. The class PulseServer also writes an ALSA configuration with two
// devices: "default" plays into this sink, and "monitor" records what the sink plays. The user's
// server and configuration are not used.
#pragma once

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

#include <csignal>
#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/linux/sound/sample_source.h"
#include "support/temp_folder.h"
#include "support/waiting.h"

namespace sonarith::fakes {

/// A program in a child process. The destructor kills it, and so does the end of the test process.
/// The standard output of the program is written to the file `output`.
class ChildProcess {
  public:
    ChildProcess(std::vector<std::string> arguments, std::vector<std::string> environment,
                 const std::filesystem::path& output) {
        std::vector<char*> argv = pointersTo(arguments);
        std::vector<char*> envp = pointersTo(environment);
        pid_ = ::fork();
        if (pid_ < 0) {
            throw std::runtime_error("cannot start a process for " + arguments.front());
        }
        if (pid_ == 0) { // only calls that are safe after fork()
            ::prctl(PR_SET_PDEATHSIG, SIGKILL);
            const int out = ::open(output.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
            const int null = ::open("/dev/null", O_RDWR);
            ::dup2(null, STDIN_FILENO);
            ::dup2(out, STDOUT_FILENO);
            ::dup2(null, STDERR_FILENO);
            ::execvpe(argv[0], argv.data(), envp.data());
            ::_exit(127);
        }
    }
    ~ChildProcess() { kill(); }
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    void signal(int number) const {
        if (pid_ > 0) {
            ::kill(pid_, number);
        }
    }
    /// Kills the program and waits until it has ended.
    void kill() {
        if (pid_ > 0) {
            signal(SIGKILL);
            ::waitpid(pid_, nullptr, 0);
            pid_ = -1;
        }
    }

  private:
    static std::vector<char*> pointersTo(std::vector<std::string>& texts) {
        std::vector<char*> pointers;
        for (std::string& text : texts) {
            pointers.push_back(text.data());
        }
        pointers.push_back(nullptr);
        return pointers;
    }

    pid_t pid_ = -1;
};

class PulseServer {
  public:
    /// Writes the ALSA configuration and makes this process use it. Does not start the server.
    PulseServer() {
        const std::string server = "server \"" + address() + "\"";
        std::ofstream(file("asound.conf"))
            << "</usr/share/alsa/alsa.conf>\n"
            << "pcm.!default { type pulse " << server
            << " fallback \"\" hint.description \"Test\" }\n"
            << "ctl.!default { type pulse " << server << " }\n"
            << "pcm.monitor { type pulse " << server << " device \"" << sinkName
            << ".monitor\" hint.description \"Monitor\" }\n";
        ::setenv("ALSA_CONFIG_PATH", file("asound.conf").c_str(), 1);
    }
    ~PulseServer() { ::unsetenv("ALSA_CONFIG_PATH"); }
    PulseServer(const PulseServer&) = delete;
    PulseServer& operator=(const PulseServer&) = delete;

    /// Starts the server. Returns true when its socket exists, or false after half a minute.
    bool start() {
        std::filesystem::remove(file("native"));
        // Without "norewinds", the sink would rewind when a stream begins: it would render the next
        // moments again, now with the stream. The sink's monitor would already have delivered these
        // moments without the stream. So listen() would miss the first frames of every stream.
        server_ = std::make_unique<ChildProcess>(
            std::vector<std::string>{
                "pulseaudio", "--daemonize=no", "--exit-idle-time=-1", "-n", "--use-pid-file=no",
                "--log-target=file:" + file("pulse.log").string(), "-L",
                std::string("module-null-sink sink_name=") + sinkName +
                    " format=s16le rate=44100 channels=2 norewinds=1",
                "-L",
                "module-native-protocol-unix auth-anonymous=1 socket=" + file("native").string()},
            environment(), file("pulse.out"));
        return eventually([this] { return std::filesystem::exists(file("native")); });
    }
    /// Kills the server.
    void kill() { server_.reset(); }
    /// Stops the server's process, so that the server does not respond, as if it hung.
    void freeze() { server_->signal(SIGSTOP); }

    /// Starts to record what the sink plays. Returns true when the first samples have arrived, or
    /// false after half a minute.
    bool listen() {
        listener_ = std::make_unique<ChildProcess>(
            std::vector<std::string>{"parec", "--server=" + address(), "--raw", "--format=s16le",
                                     "--rate=44100", "--channels=2", "--latency-msec=20",
                                     std::string("--device=") + sinkName + ".monitor"},
            environment(), file("played.raw"));
        return eventually([this] {
            std::error_code error;
            const auto size = std::filesystem::file_size(file("played.raw"), error);
            return !error && size > 0;
        });
    }
    /// The frames that the sink has played since listen(), including silence.
    [[nodiscard]] std::vector<sound::StereoFrame> played() const {
        std::ifstream in(file("played.raw"), std::ios::binary);
        const std::vector<char> bytes{std::istreambuf_iterator<char>(in), {}};
        std::vector<sound::StereoFrame> frames(bytes.size() / sizeof(sound::StereoFrame));
        std::copy_n(bytes.data(), frames.size() * sizeof(sound::StereoFrame),
                    reinterpret_cast<char*>(frames.data()));
        return frames;
    }

    [[nodiscard]] std::string address() const { return "unix:" + file("native").string(); }

  private:
    static constexpr const char* sinkName = "sonarith";

    [[nodiscard]] std::filesystem::path file(const char* name) const {
        return folder_.path() / name;
    }
    /// The environment variables with which pulseaudio and parec store all of their files in the
    /// test's folder.
    [[nodiscard]] std::vector<std::string> environment() const {
        const std::string folder = folder_.path().string();
        const char* path = std::getenv("PATH");
        return {std::string("PATH=") + (path != nullptr ? path : "/usr/bin:/bin"),
                "HOME=" + folder,
                "XDG_RUNTIME_DIR=" + folder,
                "XDG_CONFIG_HOME=" + folder,
                "PULSE_RUNTIME_PATH=" + folder,
                "PULSE_STATE_PATH=" + folder};
    }

    TempFolder folder_;
    std::unique_ptr<ChildProcess> server_;
    std::unique_ptr<ChildProcess> listener_;
};

} // namespace sonarith::fakes
