// SPDX-License-Identifier: Apache-2.0
// The object "/zolt/gui" on the bus and what its methods do.
#include "daemon/Service.h"

#include <cstdlib>
#include <stdexcept>
#include <utility>

#include "daemon/ShopListDocument.h"

namespace standin {
namespace {

// The signal of each method without arguments; requestRegistrationShopInfo's handler takes one
// more.
const char* const HANDLERS[] = {
    "handle-request-pincode",
    "handle-get-pincode",
    "handle-request-pincode-verification",
    "handle-check-shop-registration",
    "handle-request-shop-info-list",
    "handle-get-shop-info-list",
    "handle-get-registered-shop-info",
    "handle-check-shop-mode",
    "handle-application-cancelled",
    "handle-unregister",
    "handle-delete-registration-info",
};

}  // namespace

struct Service::Call {
    const Method& method;
    GDBusMethodInvocation* invocation;  // taken over by the reply
    std::string document;               // the argument, of requestRegistrationShopInfo alone
    MethodScript script;
};

Service::Service(GDBusConnection* connection, const Scenario& scenario,
                 const Registration& registration, Journal& journal)
    : m_scenario(scenario),
      m_registration(registration),
      m_journal(journal),
      m_manager(g_dbus_object_manager_server_new(MANAGER_PATH)),
      m_gui(zolt_gui_skeleton_new()),
      m_served(scenario.shopList) {
    for (const char* handler : HANDLERS) {
        g_signal_connect(m_gui, handler, G_CALLBACK(onCall), this);
    }
    g_signal_connect(m_gui, "handle-request-registration-shop-info", G_CALLBACK(onRegistration),
                     this);
    ZOLTObjectSkeleton* object = zolt_object_skeleton_new(GUI_PATH);
    zolt_object_skeleton_set_gui(object, m_gui);
    g_dbus_object_manager_server_export(m_manager, G_DBUS_OBJECT_SKELETON(object));
    g_object_unref(object);
    g_dbus_object_manager_server_set_connection(m_manager, connection);
}

Service::~Service() {
    g_dbus_object_manager_server_set_connection(m_manager, nullptr);
    g_signal_handlers_disconnect_by_data(m_gui, this);
    g_object_unref(m_manager);
    g_object_unref(m_gui);
}

void Service::start() {
    for (const TimedEvent& event : m_scenario.startEvents) {
        plan(event, "start", m_scenario.hold);
    }
}

void Service::releaseNext() {
    if (!m_events.releaseNext()) {
        m_journal.write("nothing-due");
    }
}

gboolean Service::onCall(ZOLTGUI* object, GDBusMethodInvocation* invocation, gpointer data) {
    return onRegistration(object, invocation, "", data);
}

gboolean Service::onRegistration(ZOLTGUI* /*object*/, GDBusMethodInvocation* invocation,
                                 const gchar* document, gpointer data) {
    auto* self = static_cast<Service*>(data);
    const std::string name = g_dbus_method_invocation_get_method_name(invocation);
    self->m_journal.write("call", document[0] != '\0' ? name + " " + document : name);
    self->take({*findMethod(name), invocation, document,
                self->m_scenario.scriptFor(name, self->m_journal.calls(name))});
    return TRUE;
}

void Service::take(const Call& call) {
    if (call.script.abort) {
        m_journal.write("abort", call.method.name);
        std::abort();
    }
    if (call.script.noReply) {
        m_journal.write("no-reply", call.method.name);
        g_object_unref(call.invocation);
        return;
    }
    if (call.script.replyDelayMs > 0) {
        m_replies.after(call.script.replyDelayMs, [this, call] { answer(call); });
        return;
    }
    answer(call);
}

void Service::answer(const Call& call) {
    if (!call.script.error.empty()) {
        refuse(call, call.script.error, call.script.errorMessage);
        return;
    }
    if (call.method.name == std::string("requestRegistrationShopInfo")) {
        const auto fault = registrationFault(call.document, m_served);
        if (fault) {
            refuse(call, INVALID_DOCUMENT, "The registration document is refused: " + *fault);
            return;
        }
    }
    reply(call);
    follow(call);
}

void Service::reply(const Call& call) {
    const std::string name = call.method.name;
    if (call.script.wrongType) {
        replyWrongType(call);
    } else if (call.method.reply == ReplyType::TEXT) {
        replyText(call, call.script.reply.value_or(textFor(name)));
    } else if (call.method.reply == ReplyType::TRUTH) {
        replyTruth(call, call.script.reply ? *call.script.reply == "true" : truthFor(name));
    } else {
        m_journal.write("reply", name);
        g_dbus_method_invocation_return_value(call.invocation, nullptr);
    }
}

void Service::replyText(const Call& call, const std::string& text) {
    // A shop list may have megabytes, so the journal gets only its size.
    const bool isList = call.method.name == std::string("getShopInfoList");
    const std::string shown = isList ? std::to_string(text.size()) : text;
    if (isList) {
        m_served = text;
    }
    m_journal.write("reply", std::string(call.method.name) + " " + shown);
    g_dbus_method_invocation_return_value(call.invocation, g_variant_new("(s)", text.c_str()));
}

void Service::replyTruth(const Call& call, bool truth) {
    m_journal.write("reply", std::string(call.method.name) + (truth ? " true" : " false"));
    g_dbus_method_invocation_return_value(call.invocation, g_variant_new("(b)", truth));
}

// Sends the message directly, because the invocation checks the type of its reply.
void Service::replyWrongType(const Call& call) {
    m_journal.write("reply", std::string(call.method.name) + " 0");
    GDBusMessage* message =
        g_dbus_message_new_method_reply(g_dbus_method_invocation_get_message(call.invocation));
    g_dbus_message_set_body(message, g_variant_new("(i)", 0));
    g_dbus_connection_send_message(g_dbus_method_invocation_get_connection(call.invocation),
                                   message, G_DBUS_SEND_MESSAGE_FLAGS_NONE, nullptr, nullptr);
    g_object_unref(message);
    g_object_unref(call.invocation);
}

void Service::refuse(const Call& call, const std::string& error, const std::string& message) {
    m_journal.write("error", std::string(call.method.name) + " " + error + " " + message);
    g_dbus_method_invocation_return_dbus_error(call.invocation, error.c_str(), message.c_str());
}

std::string Service::textFor(const std::string& method) {
    if (method == "getPincode") {
        return m_scenario.pincode;
    }
    if (method == "getShopInfoList") {
        return m_scenario.shopList;
    }
    try {
        return m_registration.document();
    } catch (const std::runtime_error& error) {
        m_journal.write("fault", error.what());
        return "null";
    }
}

bool Service::truthFor(const std::string& method) const {
    return method == "checkShopMode" || m_registration.exists();
}

void Service::follow(const Call& call) {
    const std::string name = call.method.name;
    if (name == "applicationCancelled") {
        leave();
    }
    const bool held = m_scenario.hold || call.script.hold;
    for (const TimedEvent& event : call.script.events) {
        plan(event, name, held);
    }
    if (!call.method.success || call.script.silent) {
        return;
    }
    const int delay = call.script.delayMs.value_or(m_scenario.delayOf(name));
    const std::string document = call.document;
    const Event planned = resultOf(call);
    const int success = *call.method.success;
    schedule(delay, name, held, [this, planned, success, document] {
        const bool succeeds = planned.event == ZOLT::EVENT_STEP_DONE && planned.reason == success;
        send(succeeds ? finish(success, document) : planned);
    });
}

// The user has left: events that are still due must not reach the next user.
void Service::leave() {
    const size_t dropped = m_events.cancel();
    m_pincodeVerified = false;
    m_journal.write("cancelled", std::to_string(dropped));
}

Event Service::resultOf(const Call& call) const {
    if (call.script.outcome) {
        return *call.script.outcome;
    }
    const int success = *call.method.success;
    if (success == ZOLT::REASON_PINCODE_VERIFIED && m_scenario.pincodeExpires) {
        return {ZOLT::EVENT_CLOSE_GUI, ZOLT::REASON_PIN_TIME_EXPIRED};
    }
    if (success == ZOLT::REASON_SHOP_LIST_READY && !m_scenario.foundInLan && !m_pincodeVerified) {
        return {ZOLT::EVENT_CLOSE_GUI, ZOLT::REASON_NOT_FOUND_IN_LAN};
    }
    return {ZOLT::EVENT_STEP_DONE, success};
}

Event Service::finish(int success, const std::string& document) {
    try {
        work(success, document);
    } catch (const std::runtime_error& error) {
        m_journal.write("fault", error.what());
        return {ZOLT::EVENT_CLOSE_GUI, ZOLT::REASON_NETWORK_UNSTABLE};
    }
    return {ZOLT::EVENT_STEP_DONE, success};
}

void Service::work(int success, const std::string& document) {
    switch (success) {
        case ZOLT::REASON_PINCODE_VERIFIED:
            m_pincodeVerified = true;
            break;
        case ZOLT::REASON_REGISTRATION_DONE:
            m_registration.store(document);
            m_pincodeVerified = false;
            break;
        case ZOLT::REASON_DEREGISTRATION_DONE:
        case ZOLT::REASON_REGISTRATION_INFO_DELETED:
            m_registration.remove();
            break;
        default:
            break;
    }
}

void Service::plan(const TimedEvent& timed, const std::string& cause, bool held) {
    const Event event = timed.event;
    schedule(timed.delayMs, cause, held, [this, event] { send(event); });
}

void Service::schedule(int delayMs, const std::string& cause, bool held,
                       std::function<void()> action) {
    if (!held) {
        m_events.after(delayMs, std::move(action));
        return;
    }
    m_events.hold(std::move(action));
    m_journal.write("held", cause);
}

void Service::send(Event event) {
    m_journal.write("event", std::to_string(event.event) + " " + std::to_string(event.reason));
    zolt_gui_emit_send_event(m_gui, event.event, event.reason);
}

}  // namespace standin
