#include "PulseServer.h"

#include <signal.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <thread>

PulseServer::PulseServer() {
    const std::string folder = m_runtime.path().string();
    setenv("XDG_RUNTIME_DIR", folder.c_str(), 1);
    setenv("HOME", folder.c_str(), 1);
    setenv("PULSE_SERVER", ("unix:" + folder + "/native").c_str(), 1);
}

PulseServer::~PulseServer() {
    if (m_process) {
        m_process->signal(SIGCONT);
        m_process->terminate();
    }
}

// Without norewinds the null sink sleeps for seconds at a time and loses the start of a stream.
void PulseServer::start(int rate) {
    const auto sink = [&](const std::string& name) {
        return "module-null-sink norewinds=1 channels=2 rate=" + std::to_string(rate) +
               " sink_name=" + name + " sink_properties=device.description=" + name + "-sink";
    };
    m_process = std::make_unique<Process>(
        std::vector<std::string>{
            "pulseaudio", "-n", "--daemonize=no", "--exit-idle-time=-1", "--use-pid-file=no",
            "--disable-shm=yes", "--log-target=stderr", "-L",
            "module-native-protocol-unix auth-anonymous=1 socket=" + m_runtime.file("native"), "-L",
            sink("out"), "-L", sink("feed"), "-L",
            "module-remap-source source_name=mic master=feed.monitor "
            "source_properties=device.description=mic"},
        m_runtime.file("pulse.log"));
    for (int i = 0; runProgram({"pactl", "info"}) != 0; ++i) {
        if (i == 200)
            throw std::runtime_error("the PulseAudio server did not start");
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    runProgram({"pactl", "set-default-sink", "out"});
    runProgram({"pactl", "set-default-source", "mic"});
}

Recording PulseServer::record(const std::string& sink, int seconds) {
    const std::string file = m_runtime.file("take" + std::to_string(m_recordings++) + ".wav");
    Process recorder({"parec", "-d", sink + ".monitor", "--latency-msec=20", "--file-format=wav",
                      "--format=float32le", "--rate=44100", "--channels=2", file});
    std::this_thread::sleep_for(std::chrono::seconds(seconds));
    recorder.terminate();
    return readRecording(file);
}
