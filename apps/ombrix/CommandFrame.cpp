#include "CommandFrame.h"

#include <cmath>
#include <cstdio>

#include "Commands.h"
#include "InstrumentRequest.h"
#include "log/Log.h"
#include "text/CNumber.h"

namespace {

std::vector<OptionRow> withCommonOptions(std::vector<OptionRow> rows) {
    rows.push_back({"verbose", nullptr, "show the program's log"});
    rows.push_back({"help", nullptr, "show this"});
    return rows;
}

}  // namespace

CommandFrame::CommandFrame(std::span<char*> words, const CommandText& text,
                           const std::vector<OptionRow>& options) {
    const auto rows = withCommonOptions(options);
    std::string error;
    m_arguments.emplace(words, rows, error);
    if (!error.empty()) {
        m_exitCode = refuse(error + "; see ombrix " + words[0] + " --help");
    } else if (m_arguments->has("help")) {
        std::printf("Usage: %s\n\n%s\n\n%s", text.usage, text.purpose, helpText(rows).c_str());
        m_exitCode = kExitDone;
    }
    Log::setVerbose(m_arguments->has("verbose"));
}

int CommandFrame::refuse(const std::string& error) const {
    tellUser("%s", error.c_str());
    return kExitBadUse;
}

int CommandFrame::fail(const std::string& error) const {
    tellUser("%s", error.c_str());
    return kExitFailed;
}

std::vector<OptionRow> withInstrumentOptions(std::vector<OptionRow> own) {
    const auto shared = instrumentOptions();
    own.insert(own.end(), shared.begin(), shared.end());
    return own;
}

std::optional<double> decimalNumber(const std::string& text) {
    const auto number = numberFromText(text);
    return number && std::isfinite(*number) ? number : std::nullopt;
}
