// SPDX-License-Identifier: Apache-2.0
// The shape of a log line, and the text of the entry trace.
#include "common/Logger.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <memory>
#include <new>
#include <stdexcept>
#include <vector>

#include <boost/regex.hpp>

namespace ZOLT {

namespace {

constexpr size_t USUAL_MESSAGE_SIZE = 1024;

const char* baseName(const char* path) {
    const char* slash = std::strrchr(path, '/');
    return slash == nullptr ? path : slash + 1;
}

// Expressions are kept between calls. Matching against a constant one is safe on any thread.
const boost::regex& parameterListExpression() {
    static const boost::regex expression("^[^\\(]+\\((.+)\\)$");
    return expression;
}

const boost::regex& separatorExpression() {
    static const boost::regex expression("\\s*,\\s*");
    return expression;
}

const boost::regex& specialCharacterExpression() {
    static const boost::regex expression("([\\*\\(\\)])");
    return expression;
}

enum class ValueType { SIGNED, UNSIGNED, TEXT, OTHER };

// The type text is searched and not matched whole, in this order. Whatever contains "int" is
// therefore read as an int: an unsigned one prints as signed, and even "gpointer" is taken.
ValueType valueType(const std::string& parameter) {
    static const struct {
        boost::regex expression;
        ValueType type;
    } types[] = {
        {boost::regex("(const )?(unsigned )?g?int"), ValueType::SIGNED},
        {boost::regex("(const )?size_t"), ValueType::UNSIGNED},
        {boost::regex("(const )?(std::)?string&?"), ValueType::TEXT},
        {boost::regex("(const )?g?char\\*"), ValueType::TEXT},
    };
    for (const auto& entry : types) {
        if (boost::regex_search(parameter, entry.expression)) {
            return entry.type;
        }
    }
    return ValueType::OTHER;
}

// Thrown here, because what becomes of a null is up to the C++ library.
std::string toString(const char* text) {
    if (text == nullptr) {
        throw std::logic_error("basic_string::_S_construct null not valid");
    }
    return text;
}

std::vector<std::string> splitParameters(const std::string& list) {
    boost::sregex_token_iterator part(list.begin(), list.end(), separatorExpression(), -1);
    return std::vector<std::string>(part, boost::sregex_token_iterator());
}

// Replaces types by the values that ARGUMENTS holds, up to the first type that has no form here:
// what follows in ARGUMENTS cannot be read then. A position that the list does not have ends it
// too.
void putValues(std::vector<std::string>& parameters, int count, va_list arguments) {
    for (int pass = 0; pass < count; ++pass) {
        const size_t index = static_cast<size_t>(va_arg(arguments, int)) - 1;
        if (index >= parameters.size()) {
            return;
        }
        std::string& parameter = parameters[index];
        switch (valueType(parameter)) {
            case ValueType::SIGNED:
                parameter = std::to_string(va_arg(arguments, int));
                break;
            case ValueType::UNSIGNED:
                parameter = std::to_string(va_arg(arguments, unsigned));
                break;
            case ValueType::TEXT:
                parameter = "\"" + toString(va_arg(arguments, const char*)) + "\"";
                break;
            case ValueType::OTHER:
                return;
        }
    }
}

std::string join(const std::vector<std::string>& parameters) {
    std::string text;
    const char* separator = "";
    for (const std::string& parameter : parameters) {
        text += separator + parameter;
        separator = ", ";
    }
    return text;
}

}  // namespace

std::string Logger::logger(const char* signature, int count, ...) {
    const std::string caller = toString(signature);
    boost::smatch match;
    if (count == 0 || !boost::regex_search(caller, match, parameterListExpression())) {
        return "Called " + caller;
    }
    const std::string list = match[1];
    std::vector<std::string> parameters = splitParameters(list);

    va_list arguments;
    va_start(arguments, count);
    try {
        putValues(parameters, count, arguments);
    } catch (...) {
        va_end(arguments);
        throw;
    }
    va_end(arguments);

    // The values go in as a replacement format, so a "$" or a backslash in one is expanded. That
    // is wanted: readers of the log know the lines in this form.
    const boost::regex literalList(
        boost::regex_replace(list, specialCharacterExpression(), "\\\\$1"));
    return "Called " + boost::regex_replace(caller, literalList, join(parameters));
}

void Logger::printVersion(std::string appName, std::string version) {
    ZOLT_LOG(LOG_ID_MAIN, DLOG_INFO, "Compilation timestamp:    %s", __DATE__ " " __TIME__);
    ZOLT_LOG(LOG_ID_MAIN, DLOG_INFO, "Version:          %s", ("ZOLT-" + version).c_str());
    ZOLT_LOG(LOG_ID_MAIN, DLOG_INFO, "AppName:          %s", appName.c_str());
}

void Logger::write(log_id_t buffer, log_priority priority, const char* path, const char* function,
                   int line, const char* format, ...) {
    char usual[USUAL_MESSAGE_SIZE];
    va_list arguments;
    va_start(arguments, format);
    va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(usual, sizeof usual, format, arguments);
    va_end(arguments);

    // Where memory is short the line goes out cut, and where the text cannot be made its format
    // does: a log line must never be what ends a function.
    const char* message = length < 0 ? format : usual;
    std::unique_ptr<char[]> longer;
    if (length >= static_cast<int>(sizeof usual)) {
        const size_t size = static_cast<size_t>(length) + 1;
        longer.reset(new (std::nothrow) char[size]);
        if (longer != nullptr && std::vsnprintf(longer.get(), size, format, again) >= 0) {
            message = longer.get();
        }
    }
    va_end(again);
    __dlog_print(buffer, priority, "ZOLT", "%s: %s(%d) > %s", baseName(path), function, line,
                 message);
}

}  // namespace ZOLT
