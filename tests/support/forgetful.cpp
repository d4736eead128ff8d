// SPDX-License-Identifier: Apache-2.0
// Leaks memory in a button's callback, deep inside the toolkit's main loop: the leak check must
// report it despite the suppressions.
#include <cstdlib>
#include <cstring>

#include <Elementary.h>

#include "support/BufferToolkit.h"

namespace {

void forgetSomething(void* /*data*/, Evas_Object* /*object*/, void* /*eventInfo*/) {
    auto* piece = static_cast<char*>(std::malloc(12345));
    std::memset(piece, 1, 12345);
    elm_exit();  // NOLINT(clang-analyzer-unix.Malloc): the leak is the point
}

void click(void* button) {
    evas_object_smart_callback_call(static_cast<Evas_Object*>(button), "clicked", nullptr);
}

}  // namespace

int main() {
    support::BufferToolkit toolkit("");
    toolkit.SetUp();
    Evas_Object* const window = elm_win_util_standard_add("forgetful", "forgetful");
    Evas_Object* const button = elm_button_add(window);
    evas_object_smart_callback_add(button, "clicked", forgetSomething, nullptr);
    evas_object_show(window);
    ecore_job_add(click, button);
    elm_run();
    evas_object_del(window);
    toolkit.TearDown();
}
