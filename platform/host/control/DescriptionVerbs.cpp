// SPDX-License-Identifier: Apache-2.0
// Reads and changes a description.
#include "host/control/DescriptionVerbs.h"

#include <stdexcept>

#include "host/description/Languages.h"

namespace host {

namespace {

std::string oneLine(const std::string& value) {
    std::string line;
    for (const char character : value) {
        switch (character) {
            case '\\':
                line += "\\\\";
                break;
            case '\n':
                line += "\\n";
                break;
            case '\r':
                line += "\\r";
                break;
            default:
                line += character;
        }
    }
    return line;
}

ControlReply unknownValue(const std::vector<std::string>& words) {
    return {CONTROL_USAGE_ERROR, "a set has no value " + words[1] + " " + words[2]};
}

ControlReply answer(const std::string& path, const std::vector<std::string>& words,
                    std::vector<std::string>* remarks) {
    if (words.front() == "set") {
        return setValue(words, [&](Field field, const std::string& value) {
            writeDescription(path, field, value);
        });
    }
    const DescriptionValues values = readDescription(path);
    *remarks = values.remarks;
    return words.front() == "get" ? getValue(values, words) : describe(values);
}

}  // namespace

ControlReply describe(const DescriptionValues& values) {
    std::string text;
    for (std::size_t index = 0; index < FIELD_COUNT; ++index) {
        const FieldName name = nameOf(static_cast<Field>(index));
        text +=
            std::string(name.group) + " " + name.key + "=" + oneLine(values.texts[index]) + "\n";
    }
    text += std::string("Language Direction=") + (readsRightToLeft(values) ? "rtl" : "ltr") + "\n";
    return {CONTROL_DONE, text};
}

ControlReply getValue(const DescriptionValues& values, const std::vector<std::string>& words) {
    const auto field = findField(words[1], words[2]);
    return field ? ControlReply{CONTROL_DONE, values.text(*field)} : unknownValue(words);
}

ControlReply setValue(const std::vector<std::string>& words,
                      const std::function<void(Field, const std::string&)>& write) {
    const auto field = findField(words[1], words[2]);
    if (!field) {
        return unknownValue(words);
    }
    try {
        write(*field, words[3]);
    } catch (const std::runtime_error& failure) {
        return {CONTROL_FAILED, failure.what()};
    }
    return {CONTROL_DONE, ""};
}

ControlReply runVerbOnFile(const std::string& path, const std::vector<std::string>& words,
                           std::vector<std::string>* remarks) {
    const std::string& verb = words.front();
    if (verb != "get" && verb != "set" && verb != "describe") {
        return {CONTROL_USAGE_ERROR,
                verb + " needs a running set; a file answers get, set and describe"};
    }
    try {
        return answer(path, words, remarks);
    } catch (const std::runtime_error& failure) {
        return {CONTROL_FAILED, failure.what()};
    }
}

}  // namespace host
