// SPDX-License-Identifier: Apache-2.0
// USB storage of the virtual set: the folders that its description lists.
#include "usb.h"

#include <string>
#include <vector>

#include "host/description/Description.h"

struct usb_device {
    std::string mountPath;
};

struct usb_device_list {
    std::vector<usb_device> devices;
    std::size_t position;  // of the device that was returned last
};

namespace {

std::vector<std::string> mountPaths(int deviceClass) {
    if (deviceClass != USB_DEVICE_CLASS_MASS_STORAGE) {
        return {};
    }
    return host::Description::list(host::Field::USB_STORAGE);
}

}  // namespace

extern "C" {

int usb_get_connected_device_number(int device_class) {
    return static_cast<int>(mountPaths(device_class).size());
}

int usb_device_get_device_list(int device_class, usb_device_list_h* list) {
    if (list == nullptr) {
        return -1;
    }
    *list = new usb_device_list{{}, 0};
    for (const std::string& path : mountPaths(device_class)) {
        (*list)->devices.push_back({path});
    }
    return 0;
}

usb_device_h usb_device_list_get_first(usb_device_list_h list) {
    if (list == nullptr) {
        return nullptr;
    }
    list->position = 0;
    return list->devices.empty() ? nullptr : &list->devices.front();
}

usb_device_h usb_device_list_get_next(usb_device_list_h list) {
    if (list == nullptr || list->position + 1 >= list->devices.size()) {
        return nullptr;
    }
    return &list->devices[++list->position];
}

const char* usb_device_get_mountpath(usb_device_h device) {
    return device == nullptr ? nullptr : device->mountPath.c_str();
}

int usb_device_free_device_list(usb_device_list_h list) {
    if (list == nullptr) {
        return -1;
    }
    delete list;
    return 0;
}

}  // extern "C"
