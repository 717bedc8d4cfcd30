#include "audiounits/devices/DeviceName.h"

#include <gtest/gtest.h>

TEST(DeviceName, namesOfDevicesAreTakenApart) {
    using Backend = DeviceName::Backend;
    const struct {
        const char* text;
        Backend backend;
        const char* device;
    } cases[] = {
        {"", Backend::automatic, ""},
        {"jack", Backend::jack, ""},
        {"pulse", Backend::pulse, ""},
        {"pulse:alsa_output.pci-0000_00_1f.3", Backend::pulse, "alsa_output.pci-0000_00_1f.3"},
        {"alsa", Backend::alsa, ""},
        {"alsa:hw:CARD=PCH,DEV=0", Backend::alsa, "hw:CARD=PCH,DEV=0"},
        {"clock", Backend::clock, ""}};
    for (const auto& [text, backend, device] : cases) {
        SCOPED_TRACE(text);
        std::string error;
        const auto name = DeviceName::parse(text, error);
        ASSERT_TRUE(name) << error;
        EXPECT_EQ(name->backend, backend);
        EXPECT_EQ(name->device, device);
    }
}

TEST(DeviceName, whatIsNoNameIsRefusedInOneLine) {
    for (const std::string& text :
         {std::string("0"), std::string("Jack"), std::string("jack:system"), std::string("clock:1"),
          std::string("pulse:"), std::string("alsa:"), std::string("oss"), std::string(":"),
          std::string("pulse:a\nb"), std::string("alsa:\0x", 7), std::string(5000, 'x')}) {
        std::string error;
        EXPECT_FALSE(DeviceName::parse(text, error)) << text;
        EXPECT_NE(error.find("no such audio device; use jack, pulse"), std::string::npos);
        EXPECT_EQ(error.find('\n'), std::string::npos);
        EXPECT_LT(error.size(), 300u);
    }
}
