#include "files/VornOutputAudioFile.h"

#include "log/Log.h"

VornOutputAudioFile::VornOutputAudioFile(const std::string& path, std::uint32_t fileType,
                                         const StreamDescription& format) {
    m_packetSize = format.mBytesPerPacket;
    keep(AudioFileCreateWithURL(path, fileType, &format, kAudioFileFlags_EraseFile, &m_file));
}

bool VornOutputAudioFile::keep(OSStatus status) {
    Log::status(status);
    if (m_status == noErr)
        m_status = status;
    return status == noErr;
}

std::uint32_t VornOutputAudioFile::writePackets(const void* buffer, std::uint32_t startingPacket,
                                                std::uint32_t* ioByteCount,
                                                const AudioStreamPacketDescription* descriptions) {
    const std::uint32_t packets = m_packetSize ? *ioByteCount / m_packetSize : 0;
    std::uint32_t written = packets;
    keep(AudioFileWritePackets(m_file, false, packets * m_packetSize, descriptions, startingPacket,
                               &written, buffer));
    *ioByteCount = written * m_packetSize;
    return packets;
}

bool VornOutputAudioFile::writeBytes(const void* buffer, std::uint32_t* ioByteCount,
                                     std::uint32_t startingByte) {
    return keep(AudioFileWriteBytes(m_file, false, startingByte, ioByteCount, buffer));
}

OSStatus VornOutputAudioFile::close() {
    if (m_file)
        keep(AudioFileClose(m_file));
    m_file = nullptr;
    return m_status;
}

bool VornOutputAudioFile::ReadIntoBuffer(void*, std::uint32_t*) {
    Log::line("Can't read from an output file");
    stopProgram("Can't read from an output file", "ReadIntoBuffer",
                "Audio Common/Vornery/VornOutputAudioFile", 40);
}
