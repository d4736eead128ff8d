// SPDX-License-Identifier: Apache-2.0
// The daemon's methods, and the script that applies to a call.
#include "daemon/Scenario.h"

#include <algorithm>
#include <stdexcept>

namespace standin {

const std::vector<Method>& methods() {
    static const std::vector<Method> all = {
        {"requestPincode", ReplyType::NOTHING, ZOLT::REASON_PINCODE_READY},
        {"getPincode", ReplyType::TEXT, std::nullopt},
        {"requestPincodeVerification", ReplyType::NOTHING, ZOLT::REASON_PINCODE_VERIFIED},
        {"checkShopRegistration", ReplyType::TRUTH, std::nullopt},
        {"requestShopInfoList", ReplyType::NOTHING, ZOLT::REASON_SHOP_LIST_READY},
        {"getShopInfoList", ReplyType::TEXT, std::nullopt},
        {"requestRegistrationShopInfo", ReplyType::NOTHING, ZOLT::REASON_REGISTRATION_DONE},
        {"getRegisteredShopInfo", ReplyType::TEXT, std::nullopt},
        {"checkShopMode", ReplyType::TRUTH, std::nullopt},
        {"applicationCancelled", ReplyType::NOTHING, std::nullopt},
        {"unregister", ReplyType::NOTHING, ZOLT::REASON_DEREGISTRATION_DONE},
        {"deleteRegistrationInfo", ReplyType::NOTHING, ZOLT::REASON_REGISTRATION_INFO_DELETED},
    };
    return all;
}

const Method* findMethod(const std::string& name) {
    const auto found = std::find_if(methods().begin(), methods().end(),
                                    [&](const Method& entry) { return name == entry.name; });
    return found != methods().end() ? &*found : nullptr;
}

int Scenario::delayOf(const std::string& method) const {
    return method == "requestPincodeVerification" ? verificationMs : delayMs;
}

MethodScript Scenario::scriptFor(const std::string& method, int call) const {
    const auto script = scripts.find(method);
    if (script == scripts.end() || call <= script->second.skip) {
        return {};
    }
    const bool ended =
        script->second.first > 0 && call - script->second.skip > script->second.first;
    return ended ? MethodScript{} : script->second;
}

}  // namespace standin
