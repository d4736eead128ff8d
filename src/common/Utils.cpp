// SPDX-License-Identifier: Apache-2.0
// Text conversion, base64 and storage paths.
#include "common/Utils.h"

#include <algorithm>
#include <climits>
#include <cstdarg>
#include <cstdio>
#include <memory>
#include <sstream>

#include <pthread.h>
#include <sys/stat.h>

#include <boost/algorithm/string/replace.hpp>
#include <boost/locale/encoding_utf.hpp>
#include <openssl/bio.h>
#include <openssl/buffer.h>
#include <openssl/evp.h>

#include "common/Exception.h"
#include "common/Logger.h"
#include "common/ZoltConfig.h"
#include "usb.h"

namespace ZOLT {

std::mutex m_Utilslock;

namespace {

constexpr size_t FORMATTED_SIZE = 256;

struct BioDeleter {
    void operator()(BIO* bio) const { BIO_free_all(bio); }
};
using Bio = std::unique_ptr<BIO, BioDeleter>;

struct DeviceListDeleter {
    void operator()(usb_device_list_h list) const { usb_device_free_device_list(list); }
};
using DeviceList = std::unique_ptr<usb_device_list, DeviceListDeleter>;

// In pieces, because one call takes no more than an int can count.
void writeAll(BIO* bio, const void* data, unsigned int size) {
    const char* bytes = static_cast<const char*>(data);
    while (size > 0) {
        const int written = BIO_write(bio, bytes, static_cast<int>(std::min(size, INT_MAX + 0U)));
        if (written <= 0) {
            return;
        }
        bytes += written;
        size -= static_cast<unsigned int>(written);
    }
}

DeviceList storageDevices() {
    usb_device_list_h list = nullptr;
    if (usb_get_connected_device_number(USB_DEVICE_CLASS_MASS_STORAGE) <= 0 ||
        usb_device_get_device_list(USB_DEVICE_CLASS_MASS_STORAGE, &list) != 0) {
        return nullptr;
    }
    return DeviceList(list);
}

}  // namespace

std::string Utils::formatString(const char* format, ...) {
    ZOLT_TRACE();
    if (format == nullptr) {
        return "";  // not every C library accepts it
    }
    char text[FORMATTED_SIZE];
    va_list arguments;
    va_start(arguments, format);
    const int length = std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    return length < 0 ? "" : text;
}

std::string Utils::htmlEncode(std::string text) {
    ZOLT_TRACE();
    // The ampersand first, or the ampersands of the other replacements would be encoded again.
    static const struct {
        const char* character;
        const char* replacement;
    } table[] = {
        {"&", "&amp;"}, {"\"", "&quot;"}, {"'", "&apos;"}, {"<", "&lt;"}, {">", "&gt;"},
    };
    for (const auto& entry : table) {
        boost::replace_all(text, entry.character, entry.replacement);
    }
    return text;
}

std::wstring Utils::StrToWStr(const std::string& text) {
    ZOLT_TRACE();
    return boost::locale::conv::utf_to_utf<wchar_t>(text);
}

std::string Utils::WStrToStr(const std::wstring& text) {
    ZOLT_TRACE();
    return boost::locale::conv::utf_to_utf<char>(text);
}

std::string Utils::encodeBase64(const void* data, unsigned int size) {
    ZOLT_TRACE();
    Bio base64(BIO_new(BIO_f_base64()));
    if (base64 == nullptr) {
        throw Exception("Could not allocate OpenSSL BIO", GENERIC_ERROR);
    }
    BIO* memory = BIO_new(BIO_s_mem());  // freed with the chain
    if (memory == nullptr) {
        throw Exception("Could not allocate memory for BIO", GENERIC_ERROR);
    }
    BIO_push(base64.get(), memory);
    BIO_set_flags(base64.get(), BIO_FLAGS_BASE64_NO_NL);
    writeAll(base64.get(), data, size);
    BIO_ctrl(base64.get(), BIO_CTRL_FLUSH, 0, nullptr);

    BUF_MEM* buffer = nullptr;  // belongs to MEMORY
    BIO_ctrl(memory, BIO_C_GET_BUF_MEM_PTR, 0, static_cast<void*>(&buffer));
    return buffer->length == 0 ? "" : std::string(buffer->data, buffer->length);
}

bool Utils::getFileSize(const std::string& path, unsigned int& size) {
    ZOLT_TRACE();
    struct stat status = {};
    if (path.empty() || stat(path.c_str(), &status) != 0) {
        return false;
    }
    size = static_cast<unsigned int>(status.st_size);
    return true;
}

std::set<std::string> Utils::getAvailableDownloadPaths() {
    ZOLT_TRACE();
    std::set<std::string> paths;
    if (const DeviceList devices = storageDevices()) {
        for (usb_device_h device = usb_device_list_get_first(devices.get()); device != nullptr;
             device = usb_device_list_get_next(devices.get())) {
            const char* mountPath = usb_device_get_mountpath(device);
            if (mountPath == nullptr) {
                continue;  // plugged in but not mounted
            }
            const std::string path = mountPath + ZoltConfig::get("USBContentDownloadPath");
            paths.insert(path);
            ZOLT_LOG(LOG_ID_MAIN, DLOG_DEBUG, "Added download path: %s", path.c_str());
        }
    }
    const std::string flashPath = ZoltConfig::get("TVFlashContentDownloadPath");
    paths.insert(flashPath);
    ZOLT_LOG(LOG_ID_MAIN, DLOG_DEBUG, "Added download path: %s", flashPath.c_str());
    return paths;
}

std::string Utils::getDownloadPath() {
    ZOLT_TRACE();
    return *getAvailableDownloadPaths().begin();
}

std::string Utils::getCurrentThreadId() {
    const std::lock_guard<std::mutex> lock(m_Utilslock);
    ZOLT_TRACE();
    std::ostringstream text;
    text << pthread_self();
    return text.str();
}

}  // namespace ZOLT
