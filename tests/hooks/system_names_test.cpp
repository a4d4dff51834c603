#include <platform/cim_hooks.h>

#include <sysroot_fixture.h>

namespace {

class SystemNames : public SysrootFixture {
protected:
    void configure(const std::string& text) { write("/conf/system_names.ini", text); }

    char host[256] = {};
    char sp[256] = {};
};

TEST_F(SystemNames, mayBeMissing) {
    EXPECT_NE(OEM_GetHostSystemName(host), 0) << "no file";
    configure("[names]\nhost =\n");
    EXPECT_NE(OEM_GetHostSystemName(host), 0) << "empty";
    EXPECT_NE(OEM_GetSPSystemName(sp), 0) << "no such key";
    configure("no section, no value");
    EXPECT_NE(OEM_GetHostSystemName(host), 0) << "not a configuration file";
    EXPECT_NE(OEM_GetHostSystemName(nullptr), 0);
}

TEST_F(SystemNames, areCutAtTheWidthOfTheField) {
    configure("[names]\nhost = " + std::string(400, 'n') + "\n");
    char field[257];
    field[256] = '#';
    EXPECT_EQ(OEM_GetHostSystemName(field), 0);
    EXPECT_STREQ(field, std::string(255, 'n').c_str());
    EXPECT_EQ(field[256], '#');
}

} // namespace
