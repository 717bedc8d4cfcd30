#include "archives/ZipReader.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>

#include "archives/ZipLibrary.h"
#include "text/CNumber.h"

namespace {

constexpr std::size_t kLongestName = 255;

std::string inMebibytes(std::uint64_t bytes) {
    return std::to_string(bytes >> 20) + " MiB";
}

std::string textOf(int code, const ZipLibrary& zip) {
    zip_error_t error;
    zip.zip_error_init_with_code(&error, code);
    const std::string text = zip.zip_error_strerror(&error);
    zip.zip_error_fini(&error);
    return text;
}

/// The open regular file; -1 and a reason for anything else, without waiting for it.
int openRegular(const std::string& path, std::uint64_t limit, std::string& reason) {
    const int file = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
    struct stat status {};
    if (file < 0 || ::fstat(file, &status) != 0)
        reason = std::strerror(errno);
    else if (!S_ISREG(status.st_mode))
        reason = "is not a regular file";
    else if (static_cast<std::uint64_t>(status.st_size) > limit)
        reason = "is larger than " + inMebibytes(limit);
    if (reason.empty())
        return file;
    if (file >= 0)
        ::close(file);
    return -1;
}

/// File permissions of the system that made the archive, in the upper half, say what an entry is.
bool isSpecial(std::uint32_t attributes) {
    const std::uint32_t type = attributes >> 16 & S_IFMT;
    return type != 0 && type != S_IFREG && type != S_IFDIR;
}

bool isSafePart(std::string_view part) {
    return !part.empty() && part != "." && part != "..";
}

}  // namespace

struct ZipReader::Archive {
    const ZipLibrary& zip;
    zip_t* handle = nullptr;
    ~Archive() {
        if (handle)
            zip.zip_discard(handle);
    }
};

bool ZipReader::isSafeName(const std::string& name) {
    if (name.empty() || name.size() > kLongestName)
        return false;
    for (const char c : name) {
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F || c == '\\')
            return false;
    }
    for (std::size_t from = 0; from < name.size();) {
        const std::size_t end = std::min(name.find('/', from), name.size());
        if (!isSafePart(std::string_view(name).substr(from, end - from)))
            return false;
        from = end + 1;
    }
    return true;
}

ZipReader::ZipReader(std::string path, std::uint64_t budget)
    : m_path(std::move(path)), m_budget(budget) {}

ZipReader::~ZipReader() = default;

std::unique_ptr<ZipReader> ZipReader::open(const std::string& path, const ZipLimits& limits,
                                           std::string& error) {
    const auto refuse = [&](const std::string& why) {
        error = path + ": " + why;
        return nullptr;
    };
    const ZipLibrary* const zip = ZipLibrary::get();
    if (!zip)
        return refuse(kNoZipLibrary);
    std::string why;
    const int file = openRegular(path, limits.archiveBytes, why);
    if (file < 0)
        return refuse(why);
    std::unique_ptr<ZipReader> reader(new ZipReader(path, limits.unpackedBytes));
    int failure = 0;
    reader->m_archive.reset(new Archive{*zip, zip->zip_fdopen(file, 0, &failure)});
    if (!reader->m_archive->handle) {
        ::close(file);
        return refuse("is damaged, or no zip archive: " + textOf(failure, *zip));
    }
    why = reader->readDirectory(limits.entries);
    return why.empty() ? std::move(reader) : refuse(why);
}

std::string ZipReader::readDirectory(std::size_t limit) {
    const auto count = m_archive->zip.zip_get_num_entries(m_archive->handle, 0);
    if (count < 0 || static_cast<std::uint64_t>(count) > limit)
        return "holds " + std::to_string(count) + " entries; the limit is " + std::to_string(limit);
    for (std::uint64_t i = 0; i < static_cast<std::uint64_t>(count); ++i) {
        if (std::string why = addEntry(i); !why.empty())
            return why;
    }
    return "";
}

std::string ZipReader::addEntry(std::uint64_t index) {
    const ZipLibrary& zip = m_archive->zip;
    zip_stat_t status{};
    std::uint8_t system = 0;
    std::uint32_t attributes = 0;
    if (zip.zip_stat_index(m_archive->handle, index, 0, &status) != 0 || !status.name ||
        zip.zip_file_get_external_attributes(m_archive->handle, index, 0, &system, &attributes))
        return "has a damaged list of entries";
    const std::string name = status.name;
    if (!isSafeName(name))
        return "holds an entry with the name " + inQuotes(name) + ", which is not allowed";
    if (status.encryption_method != ZIP_EM_NONE)
        return "holds " + inQuotes(name) + " encrypted, which cannot be read";
    if (isSpecial(attributes))
        return "holds " + inQuotes(name) + ", which is a link or a device, not a file";
    if (indexOf(name))
        return "holds " + inQuotes(name) + " twice";
    m_entries.push_back(
        {name, status.comp_method == ZIP_CM_STORE || status.comp_method == ZIP_CM_DEFLATE});
    return "";
}

std::optional<std::uint64_t> ZipReader::indexOf(const std::string& name) const {
    const auto found =
        std::find_if(m_entries.begin(), m_entries.end(), [&](auto& e) { return e.name == name; });
    if (found == m_entries.end())
        return std::nullopt;
    return static_cast<std::uint64_t>(found - m_entries.begin());
}

bool ZipReader::unpack(const std::string& name, std::uint64_t limit, const Sink& sink,
                       std::string& error) {
    const auto refuse = [&](const std::string& why) {
        error = m_path + ": " + inQuotes(name) + ' ' + why;
        return false;
    };
    const auto index = indexOf(name);
    if (!index || name.ends_with('/'))
        return refuse("is not in it");
    if (!m_entries[*index].stored)
        return refuse("is packed in a way that cannot be read");
    const ZipLibrary& zip = m_archive->zip;
    const auto close = [&](zip_file_t* file) { zip.zip_fclose(file); };
    const std::unique_ptr<zip_file_t, decltype(close)> file(
        zip.zip_fopen_index(m_archive->handle, *index, 0), close);
    if (!file)
        return refuse("is damaged");
    limit = std::min(limit, m_budget);
    std::array<std::uint8_t, 65536> part;
    for (std::uint64_t total = 0;;) {
        const auto count = zip.zip_fread(file.get(), part.data(), part.size());
        if (count < 0)
            return refuse("is damaged");
        if (count == 0)
            return true;
        total += static_cast<std::uint64_t>(count);
        m_budget -= std::min(m_budget, static_cast<std::uint64_t>(count));
        if (total > limit)
            return refuse("is larger than " + inMebibytes(limit));
        if (!sink({part.data(), static_cast<std::size_t>(count)}))
            return false;
    }
}

std::optional<std::vector<std::uint8_t>> ZipReader::unpack(const std::string& name,
                                                           std::uint64_t limit,
                                                           std::string& error) {
    std::vector<std::uint8_t> bytes;
    const auto keep = [&](std::span<const std::uint8_t> part) {
        bytes.insert(bytes.end(), part.begin(), part.end());
        return true;
    };
    return unpack(name, limit, keep, error) ? std::optional(std::move(bytes)) : std::nullopt;
}
