#include "PresetListing.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>
#include <cstdio>

#include "parameters/GrainModes.h"
#include "text/CNumber.h"

namespace {

QString text(const std::string& utf8) {
    return QString::fromStdString(utf8);
}

void print(const QJsonObject& object) {
    std::fputs(QJsonDocument(object).toJson().constData(), stdout);
}

/// Dates and blocks of bytes, which only a newer version could have put there, by their type.
QJsonValue asJson(const PropertyListValue& value) {
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

QJsonObject asJson(const Preset& preset) {
    const PropertyListValue list = preset.toPropertyList();
    QJsonObject object;
    for (const auto& [key, value] : *list.dictionary())
        object.insert(text(key), asJson(value));
    return object;
}

/// In characters, not bytes.
std::size_t lengthOf(const std::string& name) {
    return std::size_t(
        std::count_if(name.begin(), name.end(), [](char c) { return (c & 0xC0) != 0x80; }));
}

std::string padded(const std::string& name, std::size_t width) {
    return name + std::string(width - std::min(width, lengthOf(name)), ' ');
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
        width = std::max(width, lengthOf(preset.name));
    for (const auto& [key, preset] : store.presets()) {
        if (!json) {
            std::printf("%c %s  %s\n", preset.isProtected ? '*' : ' ',
                        padded(preset.name, width).c_str(), preset.wave.value_or("").c_str());
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
        return print(asJson(preset));
    const auto line = [](const std::string& key, const std::string& value,
                         const std::string& more = "") {
        std::printf("%-18s%-14s%s\n", key.c_str(), value.c_str(), more.c_str());
    };
    line("name", preset.name);
    line("wave", preset.wave.value_or("(the one in use)"));
    line("protected", preset.isProtected ? "true" : "false");
    for (const Parameter& parameter : kParameters)
        line(std::string(parameter.key), stored(preset, parameter), shown(preset, parameter));
    for (const auto& [key, value] : preset.unknown)
        line(oneLine(key), "(not known to this version)");
}
