// SPDX-License-Identifier: Apache-2.0
// Asking and changing a description.
#include "host/DescriptionVerbs.h"

#include <stdexcept>

namespace Host {

namespace {

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
    return words.front() == "get" ? getValue(values, words)
                                  : ControlReply{CONTROL_DONE, describe(values)};
}

}  // namespace

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

ControlReply obeyForFile(const std::string& path, const std::vector<std::string>& words,
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

}  // namespace Host
