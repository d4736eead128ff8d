// SPDX-License-Identifier: Apache-2.0
// Handles of widgets that are deleted by the toolkit.
#include "gui/GuiFixture.h"
#include "gui/Handle.h"

namespace {

using ZOLT::GUI::Handle;
using ZOLT::GUI::setToolkitLost;

class HandleTest : public support::GuiFixture {
  protected:
    void SetUp() override {
        GuiFixture::SetUp();
        m_window = elm_win_util_standard_add("handle", "handle");
    }
    void TearDown() override {
        setToolkitLost(false);
        evas_object_del(m_window);
        GuiFixture::TearDown();
    }
    Evas_Object* label() const { return elm_label_add(m_window); }

    Evas_Object* m_window = nullptr;  // deleted by TearDown, or by a test
};

TEST_F(HandleTest, IsNullOnceItsWidgetIsDeleted) {
    Handle handle;
    handle = label();
    EXPECT_NE(nullptr, handle);
    evas_object_del(handle);
    EXPECT_EQ(nullptr, handle);
}

TEST_F(HandleTest, IsNullOnceTheWindowOfItsWidgetIsDeleted) {
    Handle handle;
    handle = label();
    evas_object_del(m_window);
    m_window = nullptr;
    settle();
    EXPECT_EQ(nullptr, handle);
}

TEST_F(HandleTest, DestroyDeletesTheWidget) {
    Handle handle;
    Handle other;
    other = label();
    handle = static_cast<Evas_Object*>(other);
    handle.destroy();
    EXPECT_EQ(nullptr, handle);
    EXPECT_EQ(nullptr, other);
    handle.destroy();
}

TEST_F(HandleTest, LeavesItsWidgetAliveWhenItEndsOrTakesAnother) {
    Handle other;
    other = label();
    Evas_Object* const first = other;
    {
        Handle handle;
        handle = first;
        Evas_Object* const second = label();
        handle = second;
        evas_object_del(second);
        EXPECT_EQ(nullptr, handle);
        handle = first;
    }
    EXPECT_EQ(first, other);
    evas_object_del(first);
    EXPECT_EQ(nullptr, other);
}

TEST_F(HandleTest, ReadsAsNullAndDeletesNothingOnceTheToolkitIsLost) {
    Handle handle;
    handle = label();
    Evas_Object* const widget = handle;
    Handle other;
    other = widget;
    setToolkitLost(true);
    EXPECT_EQ(nullptr, handle);
    handle.destroy();
    setToolkitLost(false);
    EXPECT_EQ(nullptr, handle);
    EXPECT_EQ(widget, other);
    evas_object_del(widget);  // while the handle exists: it cannot unregister from a lost toolkit
}

}  // namespace
