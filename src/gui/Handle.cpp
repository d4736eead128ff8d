// SPDX-License-Identifier: Apache-2.0
// A widget handle that is null once the toolkit has deleted the widget.
#include "gui/Handle.h"

namespace ZOLT::GUI {

namespace {

bool lostForGood = false;

}  // namespace

bool toolkitLost() {
    return lostForGood;
}

void setToolkitLost(bool lost) {
    lostForGood = lost;
}

Handle::~Handle() {
    *this = nullptr;
}

Handle& Handle::operator=(Evas_Object* widget) {
    if (m_widget != nullptr && !toolkitLost()) {
        evas_object_event_callback_del_full(m_widget, EVAS_CALLBACK_DEL, forget, this);
    }
    m_widget = widget;
    if (m_widget != nullptr && !toolkitLost()) {
        evas_object_event_callback_add(m_widget, EVAS_CALLBACK_DEL, forget, this);
    }
    return *this;
}

Handle::operator Evas_Object*() const {
    return toolkitLost() ? nullptr : m_widget;
}

void Handle::destroy() {
    Evas_Object* const widget = *this;
    *this = nullptr;
    if (widget != nullptr) {
        evas_object_del(widget);
    }
}

void Handle::forget(void* data, Evas* /*canvas*/, Evas_Object* /*object*/, void* /*eventInfo*/) {
    static_cast<Handle*>(data)->m_widget = nullptr;
}

}  // namespace ZOLT::GUI
