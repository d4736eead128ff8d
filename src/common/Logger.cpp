// SPDX-License-Identifier: Apache-2.0
// The format of a log line, and the text of the entry trace.
#include "common/Logger.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <memory>
#include <mutex>
#include <new>
#include <shared_mutex>
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

enum class ValueType { SIGNED, UNSIGNED, TEXT, OTHER };

// The constant expressions, compiled once. Matching against them is safe on any thread.
struct Expressions {
    const boost::regex parameterList{"^[^\\(]+\\((.+)\\)$"};
    const boost::regex separator{"\\s*,\\s*"};
    const boost::regex specialCharacter{"([\\*\\(\\)])"};
    const struct {
        boost::regex expression;
        ValueType type;
    } types[4] = {
        {boost::regex("(const )?(unsigned )?g?int"), ValueType::SIGNED},
        {boost::regex("(const )?size_t"), ValueType::UNSIGNED},
        {boost::regex("(const )?(std::)?string&?"), ValueType::TEXT},
        {boost::regex("(const )?g?char\\*"), ValueType::TEXT},
    };
};

// Guards the pointer. Neither has a destructor, so both can be used for as long as any thread runs.
std::shared_mutex expressionsMutex;
const Expressions* expressions = nullptr;

// Boost.Regex keeps caches in static objects, so a job that outlives main must not use an
// expression once those are destroyed. This object's construction creates them, so it is destroyed
// before them, and its destructor waits for the threads that still use an expression.
struct ExpressionsLifetime {
    ExpressionsLifetime() {
        boost::regex_search("f(int)", m_all.parameterList);
        expressions = &m_all;
    }
    ~ExpressionsLifetime() {
        const std::lock_guard<std::shared_mutex> guard(expressionsMutex);
        expressions = nullptr;
    }
    ExpressionsLifetime(const ExpressionsLifetime&) = delete;
    ExpressionsLifetime& operator=(const ExpressionsLifetime&) = delete;

    const Expressions m_all;
};

// The type text is searched and not matched whole, in this order. Whatever contains "int" is
// therefore read as an int: an unsigned one prints as signed, and even "gpointer" is taken.
ValueType valueType(const std::string& parameter) {
    for (const auto& entry : expressions->types) {
        if (boost::regex_search(parameter, entry.expression)) {
            return entry.type;
        }
    }
    return ValueType::OTHER;
}

// Thrown here, because what a null does is up to the C++ library.
std::string toString(const char* text) {
    if (text == nullptr) {
        throw std::logic_error("basic_string::_S_construct null not valid");
    }
    return text;
}

std::vector<std::string> splitParameters(const std::string& list) {
    boost::sregex_token_iterator part(list.begin(), list.end(), expressions->separator, -1);
    return std::vector<std::string>(part, boost::sregex_token_iterator());
}

// Replaces types by the values that ARGUMENTS holds. Stops at the first type of another kind, since
// the rest of ARGUMENTS cannot be read then, and at a position that the list does not have.
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

// SIGNATURE with the values that ARGUMENTS holds. Called with expressionsMutex shared.
std::string withValues(const std::string& signature, int count, va_list arguments) {
    boost::smatch match;
    if (!boost::regex_search(signature, match, expressions->parameterList)) {
        return signature;
    }
    const std::string list = match[1];
    std::vector<std::string> parameters = splitParameters(list);
    putValues(parameters, count, arguments);

    // The values go in as a replacement format, so a "$" or a backslash in one is expanded.
    // Deliberate: readers of the log know the lines in this form.
    const boost::regex literalList(
        boost::regex_replace(list, expressions->specialCharacter, "\\\\$1"));
    return boost::regex_replace(signature, literalList, join(parameters));
}

}  // namespace

std::string Logger::logger(const char* signature, int count, ...) {
    const std::string caller = toString(signature);
    if (count == 0) {
        return "Called " + caller;
    }
    static const ExpressionsLifetime lifetime;
    const std::shared_lock<std::shared_mutex> use(expressionsMutex);
    if (expressions == nullptr) {
        return "Called " + caller;  // the process ends
    }
    va_list arguments;
    va_start(arguments, count);
    try {
        std::string text = "Called " + withValues(caller, count, arguments);
        va_end(arguments);
        return text;
    } catch (...) {
        va_end(arguments);
        throw;
    }
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

    // Without memory for it the line is written cut, and if the text cannot be made its format is
    // written: logging must never make a function fail.
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
