#include "PresetListing.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>
#include <cstdio>
#include <initializer_list>
#include <vector>

#include "parameters/GrainModes.h"
#include "text/CNumber.h"
#include "text/UnicodeText.h"

namespace {

QString text(const std::string& utf8) {
    return QString::fromStdString(utf8);
}

void print(const QJsonObject& object) {
    std::fputs(QJsonDocument(object).toJson().constData(), stdout);
}

/// Dates and blocks of bytes, which only a newer version could have put there, by their type.
QJsonValue asJson(const PropertyListValue& value) {
    if (const auto* dictionary = value.dictionary()) {
        QJsonObject object;
        for (const auto& [key, entry] : *dictionary)
            object.insert(text(key), asJson(entry));
        return object;
    }
    if (const auto* array = value.array()) {
        QJsonArray list;
        for (const PropertyListValue& entry : *array)
            list.append(asJson(entry));
        return list;
    }
    if (const auto* string = value.string())
        return text(*string);
    if (const auto* flag = value.boolean())
        return *flag;
    if (const auto* integer = value.integer())
        return qint64(*integer);
    if (const auto* real = value.real())
        return *real;
    return text(std::string(value.typeName()));
}

/// Cells of text in columns of these widths, two apart; the last column is as wide as it is.
void printRow(std::string start, const std::vector<std::string>& cells,
              std::initializer_list<std::size_t> widths) {
    const auto* width = widths.begin();
    for (const std::string& cell : cells) {
        start += cell;
        if (width != widths.end()) {
            start.append(2 + *width - std::min(*width, UnicodeText::columns(cell)), ' ');
            ++width;
        }
    }
    start.resize(start.find_last_not_of(' ') + 1);
    std::printf("%s\n", start.c_str());
}

/// What a dial would show; a preset's own numbers are for units.
std::string shown(const Preset& preset, const Parameter& parameter) {
    if (parameter.kind == ParameterKind::flag)
        return preset.syncSpeed ? "on" : "off";
    if (parameter.kind == ParameterKind::choice)
        return std::string(kGrainModes[std::size_t(preset.grainMotion)].name);
    return dialText(parameter.id, dialValue(parameter.id, preset.number(parameter.id)), false);
}

std::string stored(const Preset& preset, const Parameter& parameter) {
    if (parameter.kind == ParameterKind::flag)
        return preset.syncSpeed ? "true" : "false";
    if (parameter.kind == ParameterKind::choice)
        return std::to_string(preset.grainMotion);
    return formattedNumber("%.6g", double(preset.number(parameter.id)));
}

}  // namespace

void PresetListing::printAll(const PresetStore& store, bool json) {
    QJsonArray list;
    std::size_t width = 0;
    for (const auto& [key, preset] : store.presets())
        width = std::max(width, UnicodeText::columns(preset.name));
    for (const auto& [key, preset] : store.presets()) {
        if (!json) {
            printRow(preset.isProtected ? "* " : "  ", {preset.name, preset.wave.value_or("")},
                     {width});
            continue;
        }
        QJsonObject row{{"name", text(preset.name)}, {"protected", preset.isProtected}};
        if (preset.wave)
            row.insert("wave", text(*preset.wave));
        list.append(row);
    }
    if (json)
        print({{"presets", list}});
}

void PresetListing::printOne(const Preset& preset, bool json) {
    if (json)
        return print(asJson(preset.toPropertyList()).toObject());
    const auto line = [](const std::string& key, const std::string& value,
                         const std::string& more = "") {
        printRow("", {key, value, more}, {16, 12});
    };
    line("name", preset.name);
    line("wave", preset.wave.value_or("(the one in use)"));
    line("protected", preset.isProtected ? "true" : "false");
    for (const Parameter& parameter : kParameters)
        line(std::string(parameter.key), stored(preset, parameter), shown(preset, parameter));
    for (const auto& [key, value] : preset.unknown)
        line(oneLine(key), "(not known to this version)");
}
