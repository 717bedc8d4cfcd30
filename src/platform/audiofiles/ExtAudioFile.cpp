#include "audiofiles/ExtAudioFile.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <new>

#include "audiofiles/AsyncWriter.h"
#include "audiounits/RenderScope.h"

struct OpaqueExtAudioFile {
    std::string path;
    std::unique_ptr<WavOutput> output;
    StreamDescription client;
    std::unique_ptr<AsyncWriter> writer;  // null until primed
    bool finished = false;
    OSStatus status = noErr;  // of finishing

    OSStatus firstFailure() const {
        return writer && writer->status() != noErr ? writer->status() : status;
    }
};

namespace {

template <typename Work>
OSStatus guardedFile(Work work) noexcept {
    try {
        return work();
    } catch (...) {  // memory and threads are all that can be wanting
        return kAudioFileOutOfMemoryError;
    }
}

OSStatus prime(OpaqueExtAudioFile& file) {
    if (file.writer)
        return noErr;
    if (RenderScope::active())
        return kExtAudioFileError_InvalidOperationOrder;
    return guardedFile([&] {
        file.writer = std::make_unique<AsyncWriter>(*file.output, file.client);
        return noErr;
    });
}

}  // namespace

OSStatus ExtAudioFileCreateWithURL(const std::string& path, std::uint32_t fileType,
                                   const StreamDescription* format, const void* channelLayout,
                                   std::uint32_t flags, ExtAudioFileRef* file) {
    *file = nullptr;
    if (channelLayout || !format)
        return kAudio_ParamError;
    if (fileType != kAudioFileWAVEType)
        return kAudioFileUnsupportedFileTypeError;
    return guardedFile([&] {
        auto made = std::make_unique<OpaqueExtAudioFile>();
        made->path = path;
        made->client = *format;
        OSStatus status = kAudioFileUnspecifiedError;
        made->output =
            WavOutput::create(path, *format, (flags & kAudioFileFlags_EraseFile) != 0, &status);
        if (made->output)
            *file = made.release();
        return status;
    });
}

OSStatus ExtAudioFileSetProperty(ExtAudioFileRef file, ExtAudioFilePropertyID property,
                                 std::uint32_t size, const void* data) {
    if (!file)
        return kAudioFileNotOpenError;
    if (property != kExtAudioFileProperty_ClientDataFormat)
        return kAudioFileUnsupportedPropertyError;
    if (size != sizeof(StreamDescription))
        return kAudioFileBadPropertySizeError;
    if (file->writer || file->finished)
        return kExtAudioFileError_InvalidOperationOrder;
    return guardedFile([&] {
        StreamDescription client;
        std::memcpy(static_cast<void*>(&client), data, sizeof(client));
        const OSStatus status = FormatChange(client, file->output->format()).status();
        if (status == noErr)
            file->client = client;
        return status;
    });
}

OSStatus ExtAudioFileGetProperty(ExtAudioFileRef file, ExtAudioFilePropertyID property,
                                 std::uint32_t* ioSize, void* data) {
    if (!file)
        return kAudioFileNotOpenError;
    if (property != kExtAudioFileProperty_FileDataFormat &&
        property != kExtAudioFileProperty_ClientDataFormat)
        return kAudioFileUnsupportedPropertyError;
    if (*ioSize != sizeof(StreamDescription))
        return kAudioFileBadPropertySizeError;
    const bool clients = property == kExtAudioFileProperty_ClientDataFormat;
    std::memcpy(data, clients ? &file->client : &file->output->format(), sizeof(StreamDescription));
    return noErr;
}

OSStatus ExtAudioFileWriteAsync(ExtAudioFileRef file, std::uint32_t frames,
                                const AudioBufferList* data) noexcept {
    if (!file)
        return kAudioFileNotOpenError;
    if (file->finished)
        return kExtAudioFileError_InvalidOperationOrder;
    if (frames == 0)
        return prime(*file);
    if (!file->writer)
        return kExtAudioFileError_InvalidOperationOrder;
    return data ? file->writer->write(frames, *data) : kAudio_ParamError;
}

ExtAudioFileReport ExtAudioFileGetReport(ExtAudioFileRef file) {
    ExtAudioFileReport report;
    if (!file)
        return report;
    if (file->writer) {
        report.framesWritten = file->writer->framesWritten();
        report.framesDropped = file->writer->framesDropped();
    }
    report.problem = extAudioFileProblem(file->path, file->firstFailure(), report.framesWritten,
                                         file->output->format().mSampleRate);
    return report;
}

OSStatus ExtAudioFileFinish(ExtAudioFileRef file) {
    if (!file)
        return kAudioFileNotOpenError;
    if (!file->finished) {
        file->finished = true;
        file->status = guardedFile([&] {
            if (file->writer)
                file->writer->finish();
            return noErr;
        });
        const OSStatus closing = file->output->close();
        if (file->status == noErr)
            file->status = closing;
    }
    return file->firstFailure();
}

OSStatus ExtAudioFileDispose(ExtAudioFileRef file) {
    const OSStatus status = ExtAudioFileFinish(file);
    delete file;
    return status;
}

std::string extAudioFileProblem(const std::string& path, OSStatus status, std::uint64_t frames,
                                double rate) {
    if (status == noErr)
        return "";
    std::string line = path + " " + audioFileWriteProblem(status);
    if (frames == 0)
        return line;
    std::array<char, 64> end;
    std::snprintf(end.data(), end.size(), "; the recording ends after %.1f s",
                  static_cast<double>(frames) / rate);
    // Between the reason and what to do about it.
    return line.insert(std::min(line.find(';', path.size()), line.size()), end.data());
}
