#include "files/VornExtAudioFile.h"

#include "log/Log.h"

VornExtAudioFile::VornExtAudioFile(const std::string& path, std::uint32_t fileType,
                                   const StreamDescription& format)
    : m_path(path) {
    keep(ExtAudioFileCreateWithURL(path, fileType, &format, nullptr, kAudioFileFlags_EraseFile,
                                   &m_file));
    if (!m_file)
        return;
    std::uint32_t size = sizeof(StreamDescription);
    keep(ExtAudioFileGetProperty(m_file, kExtAudioFileProperty_FileDataFormat, &size,
                                 &m_fileFormat));
    m_clientFormat = m_fileFormat;
}

VornExtAudioFile::~VornExtAudioFile() {
    close();
}

void VornExtAudioFile::keep(OSStatus status) {
    Log::status(status);
    if (m_report.problem.empty())
        m_report.problem = extAudioFileProblem(m_path, status);
}

void VornExtAudioFile::setClientFormat(const StreamDescription& format) {
    m_clientFormat = format;
    keep(ExtAudioFileSetProperty(m_file, kExtAudioFileProperty_ClientDataFormat, sizeof(format),
                                 &format));
}

void VornExtAudioFile::primeAsyncWriting() {
    m_asyncPrimed = true;
    keep(writeAsync(nullptr, 0));
}

OSStatus VornExtAudioFile::writeAsync(const AudioBufferList* data, std::uint32_t frames) noexcept {
    return ExtAudioFileWriteAsync(m_file, frames, data);
}

VornExtAudioFile::Report VornExtAudioFile::report() const {
    if (!m_file)
        return m_report;
    Report report = ExtAudioFileGetReport(m_file);
    if (!m_report.problem.empty())
        report.problem = m_report.problem;
    return report;
}

VornExtAudioFile::Report VornExtAudioFile::close() {
    if (m_file) {
        ExtAudioFileFinish(m_file);
        m_report = report();
        Log::status(ExtAudioFileDispose(m_file));
        m_file = nullptr;
    }
    return m_report;
}
