// SPDX-License-Identifier: Apache-2.0
// USB devices that are plugged into the set.
#pragma once

#ifdef __cplusplus
extern "C" {
#endif

enum { USB_DEVICE_CLASS_MASS_STORAGE = 8 };

typedef struct usb_device_list* usb_device_list_h;
typedef struct usb_device* usb_device_h;

// The number of connected devices of a class, or a negative value.
int usb_get_connected_device_number(int device_class);

// Returns the list of connected devices of a class, released with usb_device_free_device_list.
// Devices and their texts belong to the list. Returns 0 on success.
int usb_device_get_device_list(int device_class, usb_device_list_h* list);
usb_device_h usb_device_list_get_first(usb_device_list_h list);
usb_device_h usb_device_list_get_next(usb_device_list_h list);
const char* usb_device_get_mountpath(usb_device_h device);
int usb_device_free_device_list(usb_device_list_h list);

#ifdef __cplusplus
}
#endif
