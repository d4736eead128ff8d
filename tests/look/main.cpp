#include <chrono>
#include <cstdio>

#include <sys/wait.h>
#include <unistd.h>

#include <Elementary.h>

#include "common/ZoltConfig.h"
#include "look/Scene.h"
#include "look/Stage.h"
#include "support/BufferToolkit.h"
int main(int argc, char** argv) {
    std::string theme = argv[1], cats = argv[2], out = argv[3];
    support::BufferToolkit tk(theme + "/gui.edj");
    tk.SetUp();
    support::TemporaryFolder f;
    ZoltConfig::initialize(
        f.write("config.xml", "<config><item name=\"LayoutPath\">" + theme +
                                  "</item><item name=\"SourceVersion\">1.2.3</item></config>"));
    ZoltConfig::load();
    look::Mode m;
    for (int i = 4; i < argc; ++i) {
        std::string a = argv[i];
        if (a == "c")
            m.contrast = true;
        else if (a == "e")
            m.enlarged = true;
        else
            m.language = a;
    }
    m.apply(cats);
    for (const auto& s : look::scenes()) {
        auto t0 = std::chrono::steady_clock::now();
        look::Stage st(s, m);
        auto t1 = std::chrono::steady_clock::now();
        look::Frame fr = st.draw();
        auto t2 = std::chrono::steady_clock::now();
        look::Frame r = fr.reduced(3);
        Evas_Object* o = evas_object_image_filled_add(st.canvas());
        evas_object_image_size_set(o, r.width(), r.height());
        evas_object_image_data_copy_set(o, const_cast<look::Pixel*>(r.row(0)));
        evas_object_image_save(o, (out + "/" + s.name + ".jpg").c_str(), nullptr, "quality=85");
        evas_object_del(o);
        std::printf("%-24s make %4ld draw %4ld focus %s\n", s.name.c_str(),
                    (long)std::chrono::duration_cast<std::chrono::milliseconds>(t1 - t0).count(),
                    (long)std::chrono::duration_cast<std::chrono::milliseconds>(t2 - t1).count(),
                    st.focused() ? evas_object_type_get(st.focused()) : "-");
        fflush(stdout);
    }
    return 0;
}
