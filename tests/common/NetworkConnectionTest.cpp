// SPDX-License-Identifier: Apache-2.0
// The facts about the network connection, with and without a network.
#include <climits>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/FailingCall.h"
#include "common/NetworkConnection.h"
#include "common/Thrown.h"
#include "support/ScriptedPlatform.h"
#include "support/TestSupport.h"

using support::Handout;
using support::Network;
using support::NetworkProfile;
using support::ScriptedPlatform;
using testing::ElementsAre;
using testing::IsEmpty;

namespace ZOLT {

namespace {

class NetworkConnectionTest : public testing::Test {
  protected:
    void SetUp() override { platform.reset(); }

    // A network of TYPE with profiles of these types; each gateway ends in the profile's index.
    void connect(int type, const std::vector<int>& profileTypes) {
        Network network;
        network.type = type;
        network.profiles.clear();
        for (const int profileType : profileTypes) {
            NetworkProfile profile;
            profile.type = profileType;
            profile.gateway = "gateway " + std::to_string(network.profiles.size());
            network.profiles.push_back(profile);
        }
        platform.setNetwork(network);
    }

    // All lines but the traces, which have the same buffer and priority as the failures here.
    std::vector<std::string> failures() const {
        std::vector<std::string> found;
        for (const auto& message : platform.messages(LOG_ID_MAIN, DLOG_INFO)) {
            if (message.rfind("Called ", 0) != 0) {
                found.push_back(message);
            }
        }
        return found;
    }

    ScriptedPlatform& platform = ScriptedPlatform::get();
};

using TextGetter = std::string (NetworkConnection::*)();

struct Text {
    const char* function;
    TextGetter getter;
    std::string (*staticForm)();
};

const Text TEXTS[] = {
    {"connection_get_mac_address", &NetworkConnection::GetMacAddress,
     NetworkConnection::IGetMacAddress},
    {"connection_get_ip_address", &NetworkConnection::GetIPAddress,
     NetworkConnection::IGetIPAddress},
    {"connection_profile_get_dns_address", &NetworkConnection::GetDNSAddress,
     NetworkConnection::IGetDNSAddress},
    {"connection_profile_get_gateway_address", &NetworkConnection::GetGatewayAddress,
     NetworkConnection::IGetGatewayAddress},
    {"connection_profile_get_subnet_mask", &NetworkConnection::GetSubnetMaskAddress,
     NetworkConnection::IGetSubnetMaskAddress},
};

struct Error {
    int code;
    const char* name;
};

const Error ERRORS[] = {
    {-29425663, "CONNECTION_ERROR_OPERATION_FAILED"},
    {-29425662, "CONNECTION_ERROR_ITERATOR_END"},
    {-29425661, "CONNECTION_ERROR_NO_CONNECTION"},
    {-29425660, "CONNECTION_ERROR_ALREADY_EXISTS"},
    {-29425659, "CONNECTION_ERROR_OPERATION_ABORTED"},
    {-29425658, "CONNECTION_ERROR_DHCP_FAILED"},
    {-29425657, "CONNECTION_ERROR_INVALID_KEY"},
    {-29425656, "CONNECTION_ERROR_NO_REPLY"},
    {-29425655, "CONNECTION_ERROR_NO_KEYWORD"},
    {-29425654, "CONNECTION_ERROR_TCP_RST"},
    {-29425653, "CONNECTION_ERROR_TCP_SYN_TIMEOUT"},
    {-29425652, "CONNECTION_ERROR_NETWORK_MONITOR_FAILURE"},
    {-29425651, "CONNECTION_ERROR_OFFLINE"},
    {-29425650, "CONNECTION_ERROR_INVALID_GATEWAY"},
    {-29425649, "CONNECTION_ERROR_INVALID_MACADDRESS"},
    {-115, "CONNECTION_ERROR_NOW_IN_PROGRESS"},
    {-22, "CONNECTION_ERROR_INVALID_PARAMETER"},
    {-97, "CONNECTION_ERROR_ADDRESS_FAMILY_NOT_SUPPORTED"},
    {-38, "CONNECTION_ERROR_INVALID_OPERATION"},
    {-12, "CONNECTION_ERROR_OUT_OF_MEMORY"},
};

TEST_F(NetworkConnectionTest, GoodConnectionGivesEverything) {
    NetworkConnection connection;
    EXPECT_EQ(connection.GetConnectionType(), CONNECTION_TYPE_ETHERNET);
    EXPECT_EQ(connection.GetMacAddress(), "00:11:22:33:44:55");
    EXPECT_EQ(connection.GetIPAddress(), "192.168.0.10");
    EXPECT_EQ(connection.GetDNSAddress(), "192.168.0.2");
    EXPECT_EQ(connection.GetGatewayAddress(), "192.168.0.1");
    EXPECT_EQ(connection.GetSubnetMaskAddress(), "255.255.255.0");
    EXPECT_EQ(connection.GetIPConfigType(), CONNECTION_IP_CONFIG_TYPE_DYNAMIC);
    EXPECT_THAT(failures(), IsEmpty());
    EXPECT_THAT(
        platform.calls(),
        ElementsAre(
            "connection_create()", "connection_get_profile_iterator(0)",
            "connection_profile_iterator_has_next()", "connection_profile_iterator_next()",
            "connection_profile_get_type()", "connection_get_type()",
            "connection_get_mac_address(3)", "connection_get_ip_address(0)",
            "connection_profile_get_dns_address(1, 0)", "connection_profile_get_gateway_address(0)",
            "connection_profile_get_subnet_mask(0)", "connection_profile_get_ip_config_type(0)"));
}

TEST_F(NetworkConnectionTest, StaticFormsAskAnObjectOfTheirOwn) {
    EXPECT_EQ(NetworkConnection::IGetConnectionType(), CONNECTION_TYPE_ETHERNET);
    EXPECT_EQ(NetworkConnection::IGetMacAddress(), "00:11:22:33:44:55");
    EXPECT_EQ(NetworkConnection::IGetIPAddress(), "192.168.0.10");
    EXPECT_EQ(NetworkConnection::IGetDNSAddress(), "192.168.0.2");
    EXPECT_EQ(NetworkConnection::IGetGatewayAddress(), "192.168.0.1");
    EXPECT_EQ(NetworkConnection::IGetSubnetMaskAddress(), "255.255.255.0");
    EXPECT_EQ(NetworkConnection::IGetIPConfigType(), CONNECTION_IP_CONFIG_TYPE_DYNAMIC);
    EXPECT_EQ(platform.handedOut(Handout::Connection), 7);
    EXPECT_EQ(platform.outstanding(Handout::Connection), 0);
}

TEST_F(NetworkConnectionTest, EachObjectLeavesOneIteratorBehind) {
    NetworkConnection::IGetIPAddress();
    NetworkConnection::IGetIPAddress();
    EXPECT_EQ(platform.outstanding(Handout::ProfileIterator), 2);
    EXPECT_EQ(platform.countCalls("connection_destroy_profile_iterator"), 0);
}

TEST_F(NetworkConnectionTest, HandleIsDestroyedOnceAndThenForgotten) {
    {
        NetworkConnection connection;
        connection.DestroyHandle();
        connection.DestroyHandle();
    }
    EXPECT_EQ(platform.countCalls("connection_destroy"), 1);
    std::make_unique<NetworkConnection>().reset();
    EXPECT_EQ(platform.countCalls("connection_destroy"), 2);
}

TEST_F(NetworkConnectionTest, LiveConnectionDecidesAndTheProfilesTypeIsNotAsked) {
    connect(CONNECTION_TYPE_WIFI, {CONNECTION_PROFILE_TYPE_ETHERNET});
    NetworkConnection connection;
    EXPECT_EQ(connection.GetConnectionType(), CONNECTION_TYPE_WIFI);
    // Asked once, by the search for the profile.
    EXPECT_EQ(platform.countCalls("connection_profile_get_type"), 1);
}

TEST_F(NetworkConnectionTest, ProfileTellsTheTypeWhileNothingIsConnected) {
    connect(CONNECTION_TYPE_DISCONNECTED, {CONNECTION_PROFILE_TYPE_ETHERNET});
    EXPECT_EQ(NetworkConnection::IGetConnectionType(), CONNECTION_TYPE_ETHERNET);
    connect(CONNECTION_TYPE_DISCONNECTED, {CONNECTION_PROFILE_TYPE_WIFI});
    EXPECT_EQ(NetworkConnection::IGetConnectionType(), CONNECTION_TYPE_WIFI);
    EXPECT_THAT(failures(), IsEmpty());
}

TEST_F(NetworkConnectionTest, LoneCellularProfileIsUsedAndItsTypeFailsWithMapAt) {
    connect(CONNECTION_TYPE_DISCONNECTED, {CONNECTION_PROFILE_TYPE_CELLULAR});
    NetworkConnection connection;
    EXPECT_THAT(failures(), ElementsAre("map::at"));
    EXPECT_EQ(platform.findLine("map::at")->function, "NetworkConnection");
    EXPECT_EQ(connection.GetConnectionType(), CONNECTION_TYPE_DISCONNECTED);
    EXPECT_EQ(connection.GetGatewayAddress(), "gateway 0");
    EXPECT_EQ(thrownBy([&] { connection.GetConnectionTypeByProfile(); }), "map::at");
}

TEST_F(NetworkConnectionTest, FirstSuitableProfileIsTaken) {
    connect(CONNECTION_TYPE_WIFI, {CONNECTION_PROFILE_TYPE_BT, CONNECTION_PROFILE_TYPE_WIFI,
                                   CONNECTION_PROFILE_TYPE_ETHERNET});
    NetworkConnection connection;
    EXPECT_EQ(connection.GetGatewayAddress(), "gateway 1");
}

TEST_F(NetworkConnectionTest, CellularProfileIsAsSuitableAsThoseAfterIt) {
    connect(CONNECTION_TYPE_CELLULAR,
            {CONNECTION_PROFILE_TYPE_CELLULAR, CONNECTION_PROFILE_TYPE_WIFI});
    NetworkConnection connection;
    EXPECT_EQ(connection.GetGatewayAddress(), "gateway 0");
    EXPECT_EQ(connection.GetConnectionType(), CONNECTION_TYPE_CELLULAR);
    EXPECT_THAT(failures(), IsEmpty());
}

TEST_F(NetworkConnectionTest, LastProfileStaysWhenNoneIsSuitable) {
    connect(CONNECTION_TYPE_WIFI, {CONNECTION_PROFILE_TYPE_BT, CONNECTION_PROFILE_TYPE_BT});
    NetworkConnection connection;
    EXPECT_EQ(connection.GetGatewayAddress(), "gateway 1");
    EXPECT_THAT(failures(), IsEmpty());
}

TEST_F(NetworkConnectionTest, WithoutAProfileTheConnectionAloneTellsTheType) {
    connect(CONNECTION_TYPE_WIFI, {});
    NetworkConnection connection;
    EXPECT_EQ(connection.GetConnectionType(), CONNECTION_TYPE_WIFI);
    EXPECT_THAT(failures(), IsEmpty());
    EXPECT_EQ(connection.GetDNSAddress(), "");
}

TEST_F(NetworkConnectionTest, WithoutAProfileAndAConnectionTheProfilesTypeFails) {
    connect(CONNECTION_TYPE_DISCONNECTED, {});
    NetworkConnection connection;
    EXPECT_THAT(failures(), ElementsAre("failed getting profile type"));
    EXPECT_EQ(connection.GetConnectionType(), CONNECTION_TYPE_DISCONNECTED);
}

TEST_F(NetworkConnectionTest, FailedHandleLeavesAnObjectThatGivesNothing) {
    platform.answer("connection_create", -38);
    NetworkConnection connection;
    EXPECT_THAT(failures(), ElementsAre("Failed to connection_create"));
    EXPECT_EQ(platform.countCalls("connection_get_profile_iterator"), 0);
    platform.clearLog();
    EXPECT_EQ(connection.GetIPAddress(), "");
    EXPECT_EQ(connection.GetConnectionType(), CONNECTION_TYPE_DISCONNECTED);
    EXPECT_THAT(failures(), ElementsAre("Error connection_get_ip_address"));
}

TEST_F(NetworkConnectionTest, ObjectWithoutAHandleDestroysNone) {
    platform.answer("connection_create", -38);
    NetworkConnection::IGetIPAddress();
    EXPECT_EQ(platform.countCalls("connection_destroy"), 0);
}

TEST_F(NetworkConnectionTest, ConnectionsTypeThatCannotBeReadIsLogged) {
    platform.answer("connection_get_type", -38);
    NetworkConnection connection;
    EXPECT_THAT(failures(), ElementsAre("Failed to get connection type"));
    EXPECT_EQ(thrownBy([&] { connection.GetConnectionTypeByHandle(); }),
              "Failed to get connection type");
}

TEST_F(NetworkConnectionTest, FailureThatIsNoExceptionOfOursIsUnhandled) {
    platform.whenCalled("connection_get_type", [] { throw 1; });
    EXPECT_NO_THROW(NetworkConnection());
    EXPECT_THAT(failures(), ElementsAre("unhandled exception"));
}

TEST_F(NetworkConnectionTest, IteratorThatCannotBeHadIsLoggedWhereItFailsAndWhereItEnds) {
    platform.answer("connection_get_profile_iterator", -38);
    NetworkConnection connection;
    EXPECT_THAT(failures(),
                ElementsAre("Failed to Get Profile iterator", "Failed to Get Profile iterator"));
    EXPECT_EQ(platform.findLine("Failed to Get Profile iterator")->function, "FindProfile");
}

TEST_F(NetworkConnectionTest, IteratorIsDestroyedWhenItCannotGoOn) {
    platform.answer("connection_profile_iterator_next", -38);
    NetworkConnection connection;
    EXPECT_THAT(failures(),
                ElementsAre("Failed to Get Profile iterator", "Failed to Get Profile iterator"));
    EXPECT_EQ(platform.outstanding(Handout::ProfileIterator), 0);
}

TEST_F(NetworkConnectionTest, IteratorIsDestroyedWhenAProfileHasNoType) {
    platform.answer("connection_profile_get_type", -38);
    NetworkConnection connection;
    EXPECT_THAT(failures(), ElementsAre("Error : connection_profile_get_type",
                                        "Error : connection_profile_get_type"));
    EXPECT_EQ(platform.outstanding(Handout::ProfileIterator), 0);
}

TEST_F(NetworkConnectionTest, GetterThatFailsLogsItsLineAndGivesNothing) {
    NetworkConnection connection;
    for (const auto& text : TEXTS) {
        for (const auto& error : ERRORS) {
            platform.answer(text.function, error.code);
            platform.clearLog();
            EXPECT_EQ((connection.*text.getter)(), "");
            EXPECT_THAT(failures(), ElementsAre(std::string("Error ") + text.function));
        }
        EXPECT_EQ(text.staticForm(), "");
    }
}

TEST_F(NetworkConnectionTest, TextsMayBeEmptyOrLongAndNullIsAFailure) {
    const auto fill = [this](const std::optional<std::string>& text) {
        Network network;
        network.ip = network.mac = text;
        network.profiles[0].dns = network.profiles[0].gateway = network.profiles[0].mask = text;
        platform.setNetwork(network);
    };
    for (const std::string& value : {std::string(), std::string(1000000, 'x')}) {
        fill(value);
        for (const auto& text : TEXTS) {
            EXPECT_EQ(text.staticForm(), value) << text.function;
        }
    }
    EXPECT_THAT(failures(), IsEmpty());
    fill(std::nullopt);
    for (const auto& text : TEXTS) {
        platform.clearLog();
        EXPECT_EQ(text.staticForm(), "") << text.function;
        EXPECT_THAT(failures(), ElementsAre(std::string("Error ") + text.function));
    }
}

TEST_F(NetworkConnectionTest, ConfigurationThatCannotBeReadIsNoneWithoutALine) {
    for (const auto& error : ERRORS) {
        platform.answer("connection_profile_get_ip_config_type", error.code);
        EXPECT_EQ(NetworkConnection::IGetIPConfigType(), CONNECTION_IP_CONFIG_TYPE_NONE);
    }
    EXPECT_THAT(failures(), IsEmpty());
}

TEST_F(NetworkConnectionTest, EachStepOfTheConstructionFailsWithItsTextForEveryError) {
    const std::pair<const char*, std::vector<std::string>> steps[] = {
        {"connection_create", {"Failed to connection_create"}},
        {"connection_get_profile_iterator",
         {"Failed to Get Profile iterator", "Failed to Get Profile iterator"}},
        {"connection_profile_iterator_next",
         {"Failed to Get Profile iterator", "Failed to Get Profile iterator"}},
        {"connection_profile_get_type",
         {"Error : connection_profile_get_type", "Error : connection_profile_get_type"}},
        {"connection_get_type", {"Failed to get connection type"}},
    };
    for (const auto& [function, lines] : steps) {
        for (const auto& error : ERRORS) {
            platform.reset();
            platform.answer(function, error.code);
            EXPECT_EQ(NetworkConnection::IGetConnectionType(), CONNECTION_TYPE_DISCONNECTED);
            EXPECT_EQ(failures(), lines) << function << " " << error.name;
            EXPECT_EQ(platform.outstanding(Handout::Connection), 0);
        }
    }
}

TEST_F(NetworkConnectionTest, StepsThrowWhenTheyAreCalledDirectly) {
    NetworkConnection connection;
    connection_profile_h profile = nullptr;
    platform.answer("connection_create", -12);
    EXPECT_EQ(thrownBy([&] { connection.CreateHandle(); }), "Failed to connection_create");
    platform.answer("connection_get_type", -12);
    EXPECT_EQ(thrownBy([&] { connection.FindConnectionType(); }), "Failed to get connection type");
    platform.answer("connection_profile_get_type", -12);
    EXPECT_EQ(thrownBy([&] { connection.GetConnectionTypeByProfile(); }),
              "failed getting profile type");
    EXPECT_EQ(thrownBy([&] { connection.FindProfile(&profile); }),
              "Error : connection_profile_get_type");
    platform.answer("connection_get_profile_iterator", -12);
    EXPECT_EQ(thrownBy([&] { connection.FindProfile(&profile); }),
              "Failed to Get Profile iterator");
}

TEST_F(NetworkConnectionTest, SearchLeavesTheProfileInThePlaceThatItIsGiven) {
    connect(CONNECTION_TYPE_WIFI, {CONNECTION_PROFILE_TYPE_BT, CONNECTION_PROFILE_TYPE_WIFI});
    NetworkConnection connection;
    connection_profile_h profile = nullptr;
    connection.FindProfile(&profile);
    auto type = CONNECTION_PROFILE_TYPE_CELLULAR;
    EXPECT_EQ(connection_profile_get_type(profile, &type), CONNECTION_ERROR_NONE);
    EXPECT_EQ(type, CONNECTION_PROFILE_TYPE_WIFI);
}

TEST_F(NetworkConnectionTest, ProfileThatIsNullHasNoType) {
    Network network;
    network.profiles[0].null = true;
    platform.setNetwork(network);
    NetworkConnection connection;
    EXPECT_THAT(failures(), ElementsAre("Error : connection_profile_get_type",
                                        "Error : connection_profile_get_type"));
}

TEST_F(NetworkConnectionTest, SearchWithoutAPlaceFailsAtTheFirstProfile) {
    NetworkConnection connection;
    EXPECT_EQ(thrownBy([&] { connection.FindProfile(nullptr); }), "Failed to Get Profile iterator");
    platform.acceptNullPlaces(true);
    EXPECT_EQ(thrownBy([&] { connection.FindProfile(nullptr); }),
              "Error : connection_profile_get_type");
    EXPECT_EQ(platform.outstanding(Handout::ProfileIterator), 1) << "that of the construction";
}

TEST_F(NetworkConnectionTest, ProfilesTypeWithoutMemoryFailsAsUnknown) {
    connect(CONNECTION_TYPE_WIFI, {CONNECTION_PROFILE_TYPE_WIFI});
    NetworkConnection connection;
    // Not earlier: the platform and the trace allocate memory too.
    std::optional<support::FailingCall> scarcity;
    platform.whenAnswered("connection_profile_get_type",
                          [&scarcity] { scarcity.emplace(support::LibraryCall::New); });
    EXPECT_EQ(thrownBy([&] { connection.GetConnectionTypeByProfile(); }),
              "Unknown exception occured");
}

TEST_F(NetworkConnectionTest, HandleThatCannotBeDestroyedIsForgottenAllTheSame) {
    platform.answer("connection_destroy", -38);
    {
        NetworkConnection connection;
        EXPECT_NO_THROW(connection.DestroyHandle());
    }
    EXPECT_EQ(platform.countCalls("connection_destroy"), 1);
}

TEST_F(NetworkConnectionTest, MacIsAskedOfTheTypeThatWasFound) {
    connect(CONNECTION_TYPE_DISCONNECTED, {CONNECTION_PROFILE_TYPE_WIFI});
    NetworkConnection::IGetMacAddress();
    EXPECT_EQ(platform.countCalls("connection_get_mac_address"), 1);
    EXPECT_EQ(platform.calls("connection_get_mac_address").front(),
              "connection_get_mac_address(1)");
}

TEST_F(NetworkConnectionTest, OnlyItsDestructorIsVirtual) {
    EXPECT_TRUE(std::has_virtual_destructor_v<NetworkConnection>);
    // The table, two handles, the type.
    EXPECT_EQ(sizeof(NetworkConnection), 4 * sizeof(void*));
}

using NetworkConnectionDeathTest = NetworkConnectionTest;

TEST_F(NetworkConnectionDeathTest, MissingPlaceForTheProfileEndsTheProcess) {
    // The process of the death test starts anew and prints its log on standard error.
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    const support::ScopedEnvironment echo("ZOLT_ECHO_LOG", "1");
    EXPECT_DEATH(
        {
            connect(CONNECTION_TYPE_WIFI, {});
            NetworkConnection connection;
            connection.FindProfile(nullptr);
        },
        "Error : m_Profile is not set.*0 && \"m_Profile is not set\"");
}

TEST_F(NetworkConnectionTest, EveryErrorOfThePlatformHasItsName) {
    NetworkConnection::PrintConnectionError(0);
    EXPECT_THAT(failures(), ElementsAre("Connection Error : CONNECTION_ERROR_NONE \n"));
    for (const auto& error : ERRORS) {
        platform.clearLog();
        NetworkConnection::PrintConnectionError(error.code);
        EXPECT_THAT(failures(),
                    ElementsAre(std::string("Connection Error : ") + error.name + " \n"));
    }
}

TEST_F(NetworkConnectionTest, AnyOtherErrorIsUndefined) {
    for (const int error : {1, -1, -29425648, -29425664, INT_MIN, INT_MAX}) {
        platform.clearLog();
        NetworkConnection::PrintConnectionError(error);
        EXPECT_THAT(failures(), ElementsAre("Undefined Connection Error \n"));
    }
    EXPECT_THAT(platform.calls(), IsEmpty());
}

}  // namespace

}  // namespace ZOLT
