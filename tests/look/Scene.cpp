// SPDX-License-Identifier: Apache-2.0
// The scenes: every screen and popup, as the flow makes them, with good and bad input.
#include "look/Scene.h"

#include "look/SceneSources.h"

namespace look {

namespace {

std::string repeated(const std::string& text, int times) {
    std::string all;
    for (int time = 0; time < times; ++time) {
        all += text;
    }
    return all;
}

std::vector<Scene> makeScenes() {
    std::vector<Scene> all;
    addMenuScenes(all);
    addLevelScenes(all);
    addTableScenes(all);
    addPopupScenes(all);
    return all;
}

}  // namespace

const Names& shopNames() {
    static const Names names = {"Seoul Gangnam Flagship",
                                "Busan Haeundae Department Store, 4th floor, television hall",
                                "서울 강남 본점",
                                "فرع القاهرة الجديدة",
                                "R&D <Corner> \"Outlet\"",
                                "Daegu",
                                "Incheon Airport",
                                "Gwangju",
                                "Daejeon",
                                "Ulsan",
                                "Suwon",
                                "Changwon",
                                "Jeju"};
    return names;
}

const Names& oddNames() {
    static const Names names = {
        repeated("Northern Branch Office ", 8) + "with two hundred",
        repeated("Unbroken", 25),
        "Ze\xCC\x81\xCC\x82\xCC\xA3n\xCC\x83\xCC\x84 Sto\xCC\x88\xCC\x81re",
        "Corner 🛒 Shop 📺🎉",
        "Shop فرع 12 שלום 34 end",
        "Marks & Spencer <b>",
        "Tab\tand <br/> &amp; 100%s",
    };
    return names;
}

const std::vector<Scene>& scenes() {
    static const std::vector<Scene> all = makeScenes();
    return all;
}

}  // namespace look
