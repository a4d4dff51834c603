// CIM_ListenerDestinationCIMXML on the database.
#include "indications_fixture.h"

namespace {

using broker::Instance;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* url = "http://192.0.2.9:5988/listener";
constexpr const char* invalidDestination = "Empty/Invalid value for property 'Destination'";

class CimxmlDestinations : public Indications {
protected:
    static Instance destination(const std::string& name, const std::string& value = url) {
        return instance(cimxml, name, {{"Destination", text(value)}});
    }
    static std::string stored(const char* name) {
        CimxmlDestinationRow row{};
        std::strcpy(row.name, name);
        bool isFound = false;
        onDatabase([&](SMASH_DB_HANDLE handle) { isFound = db_get_listener_destination(handle, &row) == 0; });
        return isFound ? row.destination : "(none)";
    }
};

TEST(CimxmlUrl, hasAnAddressAndAPort) {
    for (const char* good : {"http://192.0.2.9:5988/listener", "http://192.0.2.9:5988", "http://0.0.0.0:1"})
        EXPECT_EQ(ValidateCIMXMLDestination(good), 0) << good;
    const std::string longHost = "http://" + std::string(64, '1') + ":5988";
    for (const char* bad : {"", "192.0.2.9:5988", "https://192.0.2.9:5988", "http://192.0.2.9",
                            "http://192.0.2.9:", "http://192.0.2.9:port", "http://listener.example:5988/",
                            "http://[2001:db8::9]:5988/", "http://2001:db8::9:5988/",
                            "http://192.0.2.256:5988", longHost.c_str()})
        EXPECT_EQ(ValidateCIMXMLDestination(bad), -1) << bad;
    EXPECT_EQ(ValidateCIMXMLDestination(nullptr), -1);
}

TEST_F(CimxmlDestinations, liveInTheDatabase) {
    EXPECT_THAT(list(cimxml), IsEmpty());
    const broker::Reply created = create(destination("CIMXML-7"));
    ASSERT_THAT(created, Succeeds());
    EXPECT_THAT(created.paths, ElementsAre(path(cimxml, "CIMXML-7")));
    ASSERT_THAT(create(destination("CIMXML-")), Succeeds());
    EXPECT_THAT(create(destination("CIMXML-7")), Refuses(1, "Instance already exists"));
    EXPECT_EQ(stored("CIMXML-7"), url);

    const auto all = list(cimxml);
    ASSERT_EQ(all.size(), 2U);
    EXPECT_EQ(textOf(all[0], "SystemCreationClassName"), "CIM_SPComputerSystem");
    EXPECT_EQ(textOf(all[0], "CreationClassName"), cimxml);
    EXPECT_EQ(textOf(all[0], "SystemName"), "controller");
    EXPECT_EQ(textOf(all[0], "Name"), "CIMXML-7");
    EXPECT_EQ(textOf(all[0], "ElementName"), "CIMXML WBEM Destination");
    EXPECT_EQ(textOf(all[0], "Destination"), url);
    EXPECT_EQ(textOf(all[0], "Protocol"), "2");
    EXPECT_EQ(textOf(all[0], "PersistenceType"), "3");

    EXPECT_THAT(modify(destination("CIMXML-7", "http://192.0.2.10:80")), Succeeds());
    EXPECT_EQ(stored("CIMXML-7"), "http://192.0.2.10:80");
    EXPECT_THAT(remove(path(cimxml, "CIMXML-7")), Succeeds());
    EXPECT_EQ(stored("CIMXML-7"), "(none)");
    EXPECT_THAT(names(cimxml), ElementsAre("CIMXML-"));
}

TEST_F(CimxmlDestinations, whatCannotBeDoneIsRefusedWithItsReason) {
    ASSERT_THAT(create(destination("CIMXML-7")), Succeeds());
    const char* const badName = "Empty/Invalid value for property 'Name' - Valid Format CIMXML-[ID]";
    EXPECT_THAT(create(destination("cimxml-8")), Refuses(1, badName));
    EXPECT_THAT(create(destination("CIMXML-8", "http://host:80")), Refuses(1, invalidDestination));
    EXPECT_THAT(create(destination("CIMXML-8", "")), Refuses(1, invalidDestination));
    const std::string longName = "CIMXML-" + std::string(249, '8'); // a character more than fits
    const std::string longUrl = url + std::string(256 - std::strlen(url), 'x');
    EXPECT_THAT(create(destination(longName)), Refuses(1, "Create Instance Failed"));
    EXPECT_THAT(create(destination("CIMXML-8", longUrl)), Refuses(1, "Create Instance Failed"));
    EXPECT_THAT(modify(destination("CIMXML-7", longUrl)), Refuses(1, "SetInstance Failed"));
    EXPECT_THAT(modify(destination("CIMXML-7", "http://host:80")), Refuses(7, invalidDestination));
    EXPECT_THAT(modify(destination("CIMXML-8")), Refuses(1, "Given instance does not exist"));
    EXPECT_THAT(remove(path(cimxml, "CIMXML-8")), Refuses(1, "Given instance does not exist"));

    Instance bare = destination("CIMXML-8");
    bare.properties.clear();
    EXPECT_THAT(create(bare), Refuses(1, badName));
    Instance wrong = destination("CIMXML-8");
    wrong.path.keys[2].value = text("another system");
    EXPECT_THAT(
        create(wrong),
        Refuses(4, "Invalid Key Properties : Only 'Name' prop is variable, refer other instances of LD"));
    wrong.path.keys[3].value = text("CIMXML-7"); // the name alone does not find it
    EXPECT_THAT(remove(wrong.path), Refuses(1, "Given instance does not exist"));
    wrong.path.keys.pop_back();
    EXPECT_THAT(create(wrong), Refuses(1, "Key Properties missing"));
    EXPECT_EQ(stored("CIMXML-7"), url);
}

} // namespace
