// SPDX-License-Identifier: Apache-2.0
// What is looked at: every screen and every popup, as the flow makes them, with good and bad input.
#include "look/Scene.h"

#include <memory>
#include <queue>

#include "common/ShopListParser.h"
#include "gui/EventHandler.h"
#include "gui/MainMenuRegisteredScreen.h"
#include "gui/MainMenuUnregisteredScreen.h"
#include "gui/PinDisplayingScreen.h"
#include "gui/PinRequestingScreen.h"
#include "gui/Popup.h"
#include "gui/RegistrationChangeScreen.h"
#include "gui/RegistrationInfoScreen.h"
#include "gui/SearchRegInfoScreen.h"
#include "gui/SelectionPopup.h"
#include "gui/ShopListScreen.h"
#include "look/Stage.h"

namespace look {

namespace {

using ZOLT::Shop;
using ZOLT::ShopList;
using ZOLT::GUI::EventHandler;
using ZOLT::GUI::Popup;
using ZOLT::GUI::Screen;
using ZOLT::GUI::ShopListScreen;

using Names = std::vector<std::string>;

const Names SHOPS = {"Seoul Gangnam Flagship",
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

std::string repeated(const std::string& text, int times) {
    std::string all;
    for (int time = 0; time < times; ++time) {
        all += text;
    }
    return all;
}

// Names as no tidy person would enter them.
const Names ODD_NAMES = {
    repeated("Northern Branch Office ", 8) + "with two hundred",
    repeated("Unbroken", 25),
    "Ze\xCC\x81\xCC\x82\xCC\xA3n\xCC\x83\xCC\x84 Sto\xCC\x88\xCC\x81re",
    "Corner 🛒 Shop 📺🎉",
    "Shop فرع 12 שלום 34 end",
    "Marks & Spencer <b>",
    "Tab\tand <br/> &amp; 100%s",
};

template <typename Kind>
std::function<Screen*(Stage&)> simple() {
    return
        [](Stage& stage) -> Screen* { return new Kind(stage.mode().width, stage.mode().height); };
}

std::function<Screen*(Stage&)> pin(const std::string& code, const std::string& registration) {
    return [=](Stage& stage) -> Screen* {
        return new ZOLT::GUI::PinDisplayingScreen(code, registration, stage.mode().width,
                                                  stage.mode().height);
    };
}

// --- the levels of the shop list

ShopListScreen* level(Stage& stage, std::string name, const Names& chosen) {
    std::queue<std::string> values;
    for (const std::string& value : chosen) {
        values.push(value);
    }
    return new ShopListScreen(name, values, stage.mode().width, stage.mode().height, "");
}

std::function<Screen*(Stage&)> firstLevel(const std::string& name) {
    return [=](Stage& stage) -> Screen* {
        ShopListScreen* screen = level(stage, name, {});
        screen->addButton("singleBtn", "SID_NEXT", EventHandler::nextSelectionScreenRequested,
                          nullptr, false, false);
        return screen;
    };
}

std::function<Screen*(Stage&)> laterLevel(const std::string& name, const Names& chosen) {
    return [=](Stage& stage) -> Screen* {
        ShopListScreen* screen = level(stage, name, chosen);
        screen->addButton("prevBtn", "SID_PREVIOUS", EventHandler::prevSelectionScreenRequested,
                          nullptr, true, false);
        screen->addButton("nextBtn", "SID_NEXT", EventHandler::nextSelectionScreenRequested,
                          nullptr, false, false);
        return screen;
    };
}

// What a confirmed pick does to the screen.
std::function<void(Stage&)> pick(const std::string& shop, bool first, bool last) {
    return [=](Stage& stage) {
        auto& screen = dynamic_cast<ShopListScreen&>(stage.screen());
        screen.modifyButtonText("selectBtn", shop.c_str());
        screen.removeButtons();
        const char* const text = last ? "SID_REGISTER" : "SID_NEXT";
        const Evas_Smart_Cb callback = last ? EventHandler::registrationConfirmationScreenRequested
                                            : EventHandler::nextSelectionScreenRequested;
        if (first) {
            screen.addButton("singleBtn", text, callback, nullptr, true, true);
            return;
        }
        screen.addButton("prevBtn", "SID_PREVIOUS", EventHandler::prevSelectionScreenRequested,
                         nullptr, true, false);
        screen.addButton("nextBtn", text, callback, nullptr, true, true);
    };
}

std::function<void(Stage&)> choose(const Names& names, int downs = 0, bool select = false) {
    return [=](Stage& stage) {
        auto shops = stage.shops(names);
        dynamic_cast<ShopListScreen&>(stage.screen()).addSelectionPopup(shops)->show();
        stage.settle();
        for (int press = 0; press < downs; ++press) {
            stage.press("Down");
        }
        if (select) {
            stage.press("Return");
        }
    };
}

Names numbered(int count) {
    Names names;
    for (int number = 1; number <= count; ++number) {
        names.push_back("Shop number " + std::to_string(number));
    }
    return names;
}

// The row of a long list is reached as a held key reaches it, without a look at each on the way.
std::function<void(Stage&)> chooseFar(const Names& names, int row) {
    return [=](Stage& stage) {
        auto shops = stage.shops(names);
        auto& screen = dynamic_cast<ShopListScreen&>(stage.screen());
        Popup* popup = screen.addSelectionPopup(shops);
        popup->show();
        stage.settle();
        Evas_Object* list = dynamic_cast<ZOLT::GUI::SelectionPopup&>(*popup).m_list;
        Elm_Object_Item* item = elm_genlist_nth_item_get(list, static_cast<unsigned>(row));
        elm_genlist_item_show(item, ELM_GENLIST_ITEM_SCROLLTO_IN);
        stage.settle();
        elm_object_item_focus_set(item, EINA_TRUE);
    };
}

// --- the table of a registration

using Rows = std::vector<std::pair<std::string, std::string>>;

const Rows TWO_ROWS = {{"Country", "Korea"}, {"Shop", "Seoul Gangnam Flagship"}};

Rows manyRows(std::size_t count) {
    Rows rows;
    for (std::size_t row = 0; row < count; ++row) {
        rows.emplace_back("Level " + std::to_string(row + 1), SHOPS[row % SHOPS.size()]);
    }
    return rows;
}

Rows oddRows() {
    Rows rows;
    for (const std::string& name : ODD_NAMES) {
        rows.emplace_back(name, name);
    }
    rows.emplace_back("", "");
    return rows;
}

Names namesOf(const Rows& rows) {
    Names names;
    for (const auto& [left, right] : rows) {
        names.push_back(left);
        names.push_back(right);
    }
    return names;
}

constexpr char SHOP_CODE[] = "KR-SEL-0417";

ZOLT::GUI::RegistrationInfoScreen* table(Stage& stage, const Rows& rows) {
    std::vector<ShopList> records;
    std::vector<std::unique_ptr<Shop>> shops;
    for (const auto& [levelName, shopName] : rows) {
        shops.push_back(std::make_unique<Shop>());
        shops.back()->name = shopName;
        shops.back()->code = SHOP_CODE;
        ShopList record;
        record.name = levelName;
        record.shops = {shops.back().get()};
        records.push_back(record);
    }
    return new ZOLT::GUI::RegistrationInfoScreen(records, stage.mode().width, stage.mode().height);
}

std::function<Screen*(Stage&)> information(const Rows& rows) {
    return [=](Stage& stage) -> Screen* {
        auto* screen = table(stage, rows);
        screen->addButton("singleBtn", "SID_OK", EventHandler::goBackRequested, nullptr, true,
                          true);
        return screen;
    };
}

std::function<Screen*(Stage&)> confirmation(const Rows& rows, bool fromShopList) {
    return [=](Stage& stage) -> Screen* {
        auto* screen = table(stage, rows);
        if (fromShopList) {
            screen->addButton("prevBtn", "SID_PREVIOUS", EventHandler::prevSelectionScreenRequested,
                              nullptr, true, false);
            screen->addButton("regBtn", "SID_REGISTER", EventHandler::shopRegistrationRequested,
                              nullptr, true, true);
        } else {
            screen->addButton("singleBtn", "SID_REGISTER", EventHandler::shopRegistrationRequested,
                              nullptr, true, true);
        }
        return screen;
    };
}

void scrollToEnd(Stage& stage) {
    for (int press = 0; press < 3; ++press) {
        stage.press("Up");
    }
    for (int press = 0; press < 60; ++press) {
        Evas_Object* before = stage.focused();
        if (before == nullptr || std::string(evas_object_type_get(before)) != "elm_scroller") {
            break;
        }
        stage.press("Down");
    }
}

// --- the popups

std::function<void(Stage&)> popup(const std::function<Popup*(Screen&)>& make, bool focusFirst) {
    return [=](Stage& stage) {
        Popup* made = make(stage.screen());
        made->show();
        if (focusFirst) {
            made->focusButton("button1");
        }
    };
}

std::function<void(Stage&)> failure(ZOLT::ZOLTEventsReasonType reason) {
    return popup(
        [=](Screen& screen) {
            return screen.addNetworkFailurePopup(ZOLT::ZOLTEventsType::EVENT_CLOSE_GUI, reason);
        },
        true);
}

std::function<void(Stage&)> loading(const char* text) {
    return popup([=](Screen& screen) { return screen.addLoadingPopup(text); }, false);
}

Names with(const Names& some, const Names& more) {
    Names all = some;
    all.insert(all.end(), more.begin(), more.end());
    return all;
}

void addMenus(std::vector<Scene>& all) {
    const auto unregistered = simple<ZOLT::GUI::MainMenuUnregisteredScreen>();
    const auto registered = simple<ZOLT::GUI::MainMenuRegisteredScreen>();
    all.push_back({"unregistered", unregistered, nullptr, {}, {}});
    all.push_back({"registered", registered, nullptr, {}, {}});
    all.push_back({"change", simple<ZOLT::GUI::RegistrationChangeScreen>(), nullptr, {}, {}});
    all.push_back({"pin-waiting",
                   simple<ZOLT::GUI::PinRequestingScreen>(),
                   nullptr,
                   {},
                   {},
                   /*waits*/ true});
    all.push_back({"search-waiting",
                   simple<ZOLT::GUI::SearchRegInfoScreen>(),
                   nullptr,
                   {},
                   {},
                   /*waits*/ true});
    const std::string present = "Seoul Gangnam Flagship : KR-SEL-0417";
    all.push_back({"pin", pin("12345678", ""), nullptr, {}, {"12345678"}});
    all.push_back({"pin-registered",
                   pin("12345678", present),
                   nullptr,
                   {present},
                   {"12345678"},
                   false,
                   false});
    all.push_back({"pin-nine", pin("123456789", ""), nullptr, {}, {"123456789"}, false, false});
    for (std::size_t place = 0; place < ODD_NAMES.size(); ++place) {
        const std::string odd = ODD_NAMES[place] + " : " + SHOP_CODE;
        // The screen takes what others have named as it is, and the toolkit reads it as markup.
        all.push_back({"pin-odd-" + std::to_string(place + 1),
                       pin("12345678", odd),
                       nullptr,
                       {odd},
                       {"12345678"},
                       false,
                       false});
    }
}

void addLevels(std::vector<Scene>& all) {
    const std::string& busan = SHOPS[1];
    const std::string region = "Korea South Eastern Region, Gyeongsang Province and Ulsan";
    all.push_back({"level-first", firstLevel("Country"), nullptr, {"Country"}, {}});
    all.push_back({"level-first-picked",
                   firstLevel("Country"),
                   pick("Korea", true, false),
                   {"Country", "Korea"},
                   {},
                   false,
                   false});
    all.push_back({"level-later", laterLevel("Shop", {region}), nullptr, {"Shop", region}, {}});
    all.push_back({"level-later-picked",
                   laterLevel("Shop", {region}),
                   pick(busan, false, false),
                   {"Shop", region, busan},
                   {},
                   false,
                   false});
    all.push_back({"level-last",
                   laterLevel("Shop", {region}),
                   pick(busan, false, true),
                   {"Shop", region, busan},
                   {}});
    Names ten;
    for (int number = 1; number <= 10; ++number) {
        ten.push_back("Chosen value number " + std::to_string(number));
    }
    all.push_back({"level-ten-values",
                   laterLevel("Shop", ten),
                   nullptr,
                   with({"Shop"}, ten),
                   {},
                   false,
                   false});
    for (std::size_t place = 0; place < ODD_NAMES.size(); ++place) {
        const std::string& odd = ODD_NAMES[place];
        all.push_back({"level-odd-" + std::to_string(place + 1),
                       laterLevel(odd, {odd}),
                       pick(odd, false, true),
                       {odd},
                       {},
                       false,
                       false});
    }
    all.push_back(
        {"level-empty-names", laterLevel("", {""}), pick("", false, true), {""}, {}, false, false});

    const auto shop = laterLevel("Shop", {region});
    const Names base = {"Shop", region};
    all.push_back({"selection", shop, choose(SHOPS), with(base, SHOPS), {}});
    all.push_back(
        {"selection-made", shop, choose(SHOPS, 1, true), with(base, SHOPS), {}, false, false});
    all.push_back({"selection-empty", shop, choose({}), base, {}, false, false});
    all.push_back(
        {"selection-one", shop, choose({"Seoul"}), with(base, {"Seoul"}), {}, false, false});
    const Names many = numbered(500);
    all.push_back(
        {"selection-500-middle", shop, chooseFar(many, 250), with(base, many), {}, false, false});
    all.push_back(
        {"selection-500-end", shop, chooseFar(many, 499), with(base, many), {}, false, false});
    all.push_back(
        {"selection-odd", shop, choose(ODD_NAMES), with(base, ODD_NAMES), {}, false, false});
}

void addTables(std::vector<Scene>& all) {
    const Rows four = manyRows(4);
    const Rows twelve = manyRows(12);
    all.push_back(
        {"information-2", information(TWO_ROWS), nullptr, namesOf(TWO_ROWS), {SHOP_CODE}});
    all.push_back(
        {"information-4", information(four), nullptr, namesOf(four), {SHOP_CODE}, false, false});
    all.push_back({"information-12",
                   information(twelve),
                   nullptr,
                   namesOf(twelve),
                   {SHOP_CODE},
                   false,
                   false});
    all.push_back({"information-12-end",
                   information(twelve),
                   scrollToEnd,
                   namesOf(twelve),
                   {SHOP_CODE},
                   false,
                   false});
    all.push_back({"information-none", information({}), nullptr, {}, {}, false, false});
    all.push_back(
        {"confirmation-2", confirmation(TWO_ROWS, true), nullptr, namesOf(TWO_ROWS), {SHOP_CODE}});
    all.push_back({"confirmation-single",
                   confirmation(TWO_ROWS, false),
                   nullptr,
                   namesOf(TWO_ROWS),
                   {SHOP_CODE},
                   false,
                   false});
    all.push_back({"confirmation-12",
                   confirmation(twelve, true),
                   nullptr,
                   namesOf(twelve),
                   {SHOP_CODE},
                   false,
                   false});
    all.push_back({"confirmation-12-end",
                   confirmation(twelve, true),
                   scrollToEnd,
                   namesOf(twelve),
                   {SHOP_CODE},
                   false,
                   false});
    all.push_back({"information-odd",
                   information(oddRows()),
                   nullptr,
                   namesOf(oddRows()),
                   {SHOP_CODE},
                   false,
                   false});
}

void addPopups(std::vector<Scene>& all) {
    const auto unregistered = simple<ZOLT::GUI::MainMenuUnregisteredScreen>();
    const auto registered = simple<ZOLT::GUI::MainMenuRegisteredScreen>();
    all.push_back({"popup-deregistered",
                   registered,
                   popup(
                       [](Screen& screen) {
                           return screen.addMessagePopup("COM_SID_DEREGISTERED_SUCCESSFULLY");
                       },
                       true),
                   {},
                   {}});
    using ZOLT::ZOLTEventsReasonType;
    const std::vector<std::pair<std::string, ZOLTEventsReasonType>> failures = {
        {"unstable", ZOLTEventsReasonType::REASON_NETWORK_UNSTABLE},
        {"no-network", ZOLTEventsReasonType::REASON_NO_NETWORK},
        {"no-server", ZOLTEventsReasonType::REASON_NO_SERVER},
        {"pin-expired", ZOLTEventsReasonType::REASON_PIN_TIME_EXPIRED},
        {"not-found", ZOLTEventsReasonType::REASON_NOT_FOUND_IN_LAN}};
    for (const auto& [name, reason] : failures) {
        all.push_back({"popup-" + name, unregistered, failure(reason), {}, {}});
    }
    all.push_back({"popup-connecting",
                   unregistered,
                   loading("SID_CONNECTING_TO_NETWORK_SERVER"),
                   {},
                   {},
                   /*waits*/ true});
    all.push_back({"popup-searching",
                   unregistered,
                   loading("TV_SID_SEARCHING_FOR_REGISTRATION_INFORMATION_WAIT"),
                   {},
                   {},
                   /*waits*/ true});
    all.push_back({"popup-deregistration",
                   registered,
                   popup([](Screen& screen) { return screen.addDeregistrationPopup(); }, false),
                   {},
                   {}});
    all.push_back(
        {"popup-deletion",
         registered,
         popup([](Screen& screen) { return screen.RegistrationInfoDeletionPopup(); }, false),
         {},
         {}});
    all.push_back({"popup-completed",
                   confirmation(TWO_ROWS, true),
                   popup([](Screen& screen) { return screen.addCompletionPopup(); }, true),
                   namesOf(TWO_ROWS),
                   {SHOP_CODE}});
    // What a function holds goes with the scene that holds the function, which the checks do not
    // see.
}  // NOLINT(clang-analyzer-cplusplus.NewDeleteLeaks)

std::vector<Scene> makeScenes() {
    std::vector<Scene> all;
    addMenus(all);
    addLevels(all);
    addTables(all);
    addPopups(all);
    return all;
}

}  // namespace

const std::vector<Scene>& scenes() {
    static const std::vector<Scene> all = makeScenes();
    return all;
}

}  // namespace look
