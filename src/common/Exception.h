// SPDX-License-Identifier: Apache-2.0
// The one exception type of the program's own code.
#pragma once

#include <exception>
#include <string>

namespace ZOLT {

enum GenericErrorCode : int { GENERIC_ERROR = -1 };

// A text and a code. No constructor throws once its arguments are made: a text that cannot be
// built is logged and what() says "Out of memory", because an exception that throws while it is
// being built would end the application in place of reporting the first failure.
class Exception : public std::exception {
  public:
    Exception(const char* message, GenericErrorCode code) noexcept;
    Exception(std::string message, GenericErrorCode code) noexcept;

    // Puts VALUE into FORMAT, which must hold exactly one printf directive.
    Exception(const char* format, int value, GenericErrorCode code) noexcept;
    Exception(const char* format, const char* value, GenericErrorCode code) noexcept;
    Exception(const char* format, std::string value, GenericErrorCode code) noexcept;

    // Copies the text of OTHER.what(), so the copy of an object without a text has one.
    Exception(const Exception& other) noexcept;
    Exception& operator=(const Exception&) = delete;

    ~Exception() override;

    // Never null; valid as long as this object.
    const char* what() const noexcept override;
    GenericErrorCode code() const noexcept { return m_code; }

  private:
    struct Formatted {};
    template <typename Value>
    Exception(Formatted, const char* format, const Value& value, GenericErrorCode code) noexcept;

    char* m_message;  // from malloc, freed by the destructor; null when it could not be made
    GenericErrorCode m_code;
};

}  // namespace ZOLT
