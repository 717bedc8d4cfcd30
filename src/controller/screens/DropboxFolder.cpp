#include "screens/DropboxFolder.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <filesystem>

#include "storage/WholeFile.h"

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kLargestInfo = 1 << 20;  // bytes; a few hundred are usual

std::string line(const char* text) {
    return QCoreApplication::translate("DropboxFolder", text).toStdString();
}

/// The "path" of an account's entry; empty for none.
std::string pathOf(const QJsonObject& accounts, const char* account) {
    return accounts.value(QLatin1String(account)).toObject().value("path").toString().toStdString();
}

}  // namespace

std::string DropboxFolder::find(const std::string& home, std::string& error) {
    std::string ignored;
    const auto bytes = readWholeFile(home + "/.dropbox/info.json", kLargestInfo, ignored);
    const auto text = bytes ? QByteArray(reinterpret_cast<const char*>(bytes->data()),
                                         static_cast<qsizetype>(bytes->size()))
                            : QByteArray();
    const QJsonObject accounts = QJsonDocument::fromJson(text).object();
    error = line(
        "No Dropbox folder is set up on this device: install Dropbox and sign in, then "
        "send the recording again.");
    for (const char* account : {"personal", "business"}) {
        const std::string path = pathOf(accounts, account);
        std::error_code unknown;
        if (path.empty())
            continue;
        if (fs::path(path).is_absolute() && fs::is_directory(path, unknown))
            return path;
        error = path + ": " + line("the Dropbox folder is not there; start Dropbox to mend that");
    }
    return "";
}
