#include "SystemBus.h"

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <thread>

SystemBus::SystemBus(std::string path) : m_path(std::move(path)) {
    std::ofstream(m_folder.file("bus.conf"))
        << "<busconfig><type>system</type><listen>unix:path=" << m_path
        << "</listen><auth>EXTERNAL</auth><policy context=\"default\"><allow user=\"*\"/>"
           "<allow own=\"*\"/><allow send_destination=\"*\" eavesdrop=\"true\"/>"
           "<allow eavesdrop=\"true\"/></policy></busconfig>";
    setenv("DBUS_SYSTEM_BUS_ADDRESS", ("unix:path=" + m_path).c_str(), 1);
}

SystemBus::~SystemBus() {
    m_daemon.reset();
    std::filesystem::remove(m_path);
}

void SystemBus::start() {
    m_daemon = std::make_unique<Process>(std::vector<std::string>{
        "dbus-daemon", "--nofork", "--nopidfile", "--config-file=" + m_folder.file("bus.conf")});
    for (int i = 0; i < 500 && !std::filesystem::exists(m_path); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
}
