// SPDX-License-Identifier: Apache-2.0
// Texts of failures, built so that building them cannot fail.
#include "common/Exception.h"

#include <cstdlib>
#include <cstring>

#include <boost/format.hpp>

#include "common/Logger.h"

namespace ZOLT {

namespace {

char* duplicate(const char* text) noexcept {
    return text == nullptr ? nullptr : strdup(text);
}

const char* orEmpty(const char* text) noexcept {
    return text == nullptr ? "" : text;
}

}  // namespace

Exception::Exception(const char* message, GenericErrorCode code) noexcept
    : m_message(duplicate(message)), m_code(code) {}

Exception::Exception(std::string message, GenericErrorCode code) noexcept
    : m_message(duplicate(message.c_str())), m_code(code) {}

// A constructor rather than a function, because the log lines carry the constructor's name.
template <typename Value>
Exception::Exception(Formatted, const char* format, const Value& value,
                     GenericErrorCode code) noexcept
    : m_message(nullptr), m_code(code) {
    try {
        const std::string text = (boost::format(format) % value).str();
        m_message = static_cast<char*>(std::malloc(text.size() + 1));
        if (m_message != nullptr) {
            std::memcpy(m_message, text.c_str(), text.size() + 1);
        }
    } catch (const boost::io::too_many_args& e) {
        ZOLT_WARN("Caught exception: %s", e.what());
    } catch (const boost::io::too_few_args& e) {
        ZOLT_WARN("Caught exception: %s", e.what());
    } catch (const boost::io::bad_format_string& e) {
        ZOLT_WARN("Caught exception: %s", e.what());
    } catch (...) {
        ZOLT_WARN("Caught unknown exception.");
    }
}

Exception::Exception(const char* format, int value, GenericErrorCode code) noexcept
    : Exception(Formatted(), format, value, code) {}

Exception::Exception(const char* format, const char* value, GenericErrorCode code) noexcept
    : Exception(Formatted(), format, orEmpty(value), code) {}

Exception::Exception(const char* format, std::string value, GenericErrorCode code) noexcept
    : Exception(Formatted(), format, value, code) {}

Exception::Exception(const Exception& other) noexcept
    : std::exception(other), m_message(duplicate(other.what())), m_code(other.m_code) {}

Exception::~Exception() {
    std::free(m_message);
}

const char* Exception::what() const noexcept {
    return m_message == nullptr ? "Out of memory" : m_message;
}

}  // namespace ZOLT
