#include "files/VornAudioFile.h"

#include "log/Log.h"

VornAudioFile::VornAudioFile(const std::string& path) {
    m_status = AudioFileOpenURL(path, AudioFilePermissions::read, 0, &m_file);
    Log::status(m_status);
    StreamDescription format;
    dataFormat(&format);
    m_packetSize = format.mBytesPerPacket;
    if (format.mBytesPerPacket == 0 || format.mFramesPerPacket == 0) {
        m_variablePackets = true;
        std::uint32_t size = sizeof(m_packetSize);
        Log::status(AudioFileGetProperty(m_file, kAudioFilePropertyPacketSizeUpperBound, &size,
                                         &m_packetSize));
    }
}

VornAudioFile::~VornAudioFile() {
    Log::status(m_file ? AudioFileClose(m_file) : noErr);
}

void VornAudioFile::dataFormat(StreamDescription* into) const {
    *into = {};
    std::uint32_t size = sizeof(StreamDescription);
    Log::status(AudioFileGetProperty(m_file, kAudioFilePropertyDataFormat, &size, into));
}

std::uint64_t VornAudioFile::packetCount() const {
    return number(kAudioFilePropertyAudioDataPacketCount);
}

std::uint64_t VornAudioFile::byteCount() const {
    return number(kAudioFilePropertyAudioDataByteCount);
}

std::uint64_t VornAudioFile::number(AudioFilePropertyID property) const {
    std::uint64_t value = 0;
    std::uint32_t size = sizeof(value);
    Log::status(AudioFileGetProperty(m_file, property, &size, &value));
    return value;
}

std::uint32_t VornAudioFile::readPackets(void* buffer, std::uint32_t startingPacket,
                                         std::uint32_t* ioByteCount,
                                         AudioStreamPacketDescription* descriptions) {
    std::uint32_t packets = m_packetSize ? *ioByteCount / m_packetSize : 0;
    const OSStatus status = AudioFileReadPackets(m_file, false, ioByteCount, descriptions,
                                                 startingPacket, &packets, buffer);
    Log::status(status);
    return status == noErr ? packets : 0;
}

bool VornAudioFile::ReadIntoBuffer(void* buffer, std::uint32_t* ioByteCount) {
    const OSStatus status = AudioFileReadBytes(m_file, false, 0, ioByteCount, buffer);
    Log::status(status);
    return status == noErr;
}
