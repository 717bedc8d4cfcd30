#include "archives/ZipWriter.h"

#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>

#include "archives/ZipLibrary.h"
#include "storage/AsideFile.h"

struct ZipWriter::Archive {
    const ZipLibrary& zip;
    zip_source_t* packed = nullptr;  // the archive's bytes
    zip_t* handle = nullptr;

    ~Archive() {
        if (handle)
            zip.zip_discard(handle);
        if (packed)
            zip.zip_source_free(packed);
    }

    std::string failure() const { return zip.zip_error_strerror(zip.zip_get_error(handle)); }

    /// The archive owns the source when it has taken it.
    bool add(const std::string& name, zip_source_t* source) {
        if (source && zip.zip_file_add(handle, name.c_str(), source, ZIP_FL_ENC_UTF_8) >= 0)
            return true;
        if (source)
            zip.zip_source_free(source);
        return false;
    }
};

ZipWriter::ZipWriter() {
    const ZipLibrary* const zip = ZipLibrary::get();
    if (!zip) {
        fail(std::string("zip archives ") + kNoZipLibrary);
        return;
    }
    m_archive.reset(new Archive{*zip});
    m_archive->packed = zip->zip_source_buffer_create(nullptr, 0, 0, nullptr);
    if (!m_archive->packed) {
        fail("not enough memory for a zip archive");
        return;
    }
    zip->zip_source_keep(m_archive->packed);
    m_archive->handle = zip->zip_open_from_source(m_archive->packed, ZIP_TRUNCATE, nullptr);
    if (!m_archive->handle) {
        zip->zip_source_free(m_archive->packed);  // what it would have owned
        fail("cannot make a zip archive");
    }
}

ZipWriter::~ZipWriter() = default;

bool ZipWriter::fail(const std::string& why) {
    if (m_error.empty())
        m_error = why;
    return false;
}

bool ZipWriter::add(const std::string& name, std::string bytes) {
    if (!m_error.empty())
        return false;
    const std::string& kept = m_contents.emplace_back(std::move(bytes));
    zip_source_t* const source =
        m_archive->zip.zip_source_buffer_create(kept.data(), kept.size(), 0, nullptr);
    return m_archive->add(name, source) || fail("cannot pack " + name);
}

bool ZipWriter::addFile(const std::string& name, const std::string& path, std::uint64_t limit) {
    if (!m_error.empty())
        return false;
    const auto refuse = [&](const std::string& why) { return fail(path + ": " + why); };
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
    if (descriptor < 0)
        return refuse(std::strerror(errno));
    FILE* const file = ::fdopen(descriptor, "rb");
    struct stat status {};
    if (!file || ::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode) ||
        static_cast<std::uint64_t>(status.st_size) > limit) {
        file ? ::fclose(file) : ::close(descriptor);
        return refuse("is no regular file of at most " + std::to_string(limit >> 20) + " MiB");
    }
    zip_source_t* const source = m_archive->zip.zip_source_filep_create(file, 0, -1, nullptr);
    if (!source)
        ::fclose(file);
    return m_archive->add(name, source) || refuse("cannot be packed");
}

bool ZipWriter::finish(AsideFile& into) {
    if (!m_error.empty())
        return false;
    if (m_archive->zip.zip_close(m_archive->handle) != 0)
        return fail("cannot pack: " + m_archive->failure());
    m_archive->handle = nullptr;
    return copy(into) || fail(into.error());
}

bool ZipWriter::copy(AsideFile& into) {
    const ZipLibrary& zip = m_archive->zip;
    if (zip.zip_source_open(m_archive->packed) != 0)
        return fail("cannot read the packed archive");
    std::array<std::uint8_t, 65536> part;
    std::int64_t count = 0;
    while ((count = zip.zip_source_read(m_archive->packed, part.data(), part.size())) > 0) {
        if (!into.write({part.data(), static_cast<std::size_t>(count)}))
            break;
    }
    zip.zip_source_close(m_archive->packed);
    return count == 0;
}
