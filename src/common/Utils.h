// SPDX-License-Identifier: Apache-2.0
// Small operations on text, files and storage paths.
#pragma once

#include <mutex>
#include <set>
#include <string>

namespace ZOLT {

extern std::mutex m_Utilslock;  // held while getCurrentThreadId runs

class Utils {
  public:
    Utils() = delete;

    // As printf, cut at 255 bytes. Empty for a null FORMAT or a text that cannot be made.
    static std::string formatString(const char* format, ...) __attribute__((format(printf, 1, 2)));

    // Makes TEXT safe for XML and for label markup: encodes & " ' < and >, also an & that already
    // begins an encoded character.
    static std::string htmlEncode(std::string text);

    // UTF-8 to code points and back; invalid sequences are skipped.
    static std::wstring StrToWStr(const std::string& text);
    static std::string WStrToStr(const std::wstring& text);

    // SIZE bytes at DATA in base64 on one line. Throws ZOLT::Exception without memory.
    static std::string encodeBase64(const void* data, unsigned int size);

    // Sets SIZE to the file's size in bytes, cut to 32 bits. False, with SIZE untouched, for an
    // empty path or when the size cannot be read.
    static bool getFileSize(const std::string& path, unsigned int& size);

    // Where downloads may go: a folder on each USB storage device, and one in the flash memory.
    // Throws std::out_of_range without the configuration's keys for them.
    static std::set<std::string> getAvailableDownloadPaths();

    // The first of these paths in their order.
    static std::string getDownloadPath();

    // The calling thread's id in decimal. Any thread.
    static std::string getCurrentThreadId();
};

}  // namespace ZOLT
