// One persisted value each: the boolean bias, numbers that are no numbers,
// and what a write stores.

#include "settings/IniStore.h"
#include "settings/clsVar.h"
#include "support/testsupport.h"

#include <gtest/gtest.h>

using tvtest::readFile;
using tvtest::writeFile;
using namespace std::string_literals;

namespace {

class PersistedValueTest : public ::testing::Test {
protected:
    tvtest::TempDir dir;
    QString ini = dir.qpath() + "/Tallyvane.INI";
    std::string iniPath = ini.toStdString();
};

TEST_F(PersistedValueTest, OnlyFalseInAnyCaseReadsAsFalse)
{
    writeFile(iniPath, "[S]\nempty=\nzero=0\nno=No\nf=F\nlower=false\nmixed=False\nupper=FALSE\n"
                       "padded=  false  \nnul=false\0x\n"s);
    const std::pair<const char*, bool> cases[] = {
        {"empty", true}, {"zero", true}, {"no", true}, {"f", true},
        {"lower", false}, {"mixed", false}, {"upper", false}, {"padded", false}, {"nul", false},
    };
    for (const auto& [key, expected] : cases) {
        clsVarBoolean b(key, !expected);
        b.LoadStateFromFile(ini, "S");
        EXPECT_EQ(b.Data(), expected) << key;
    }
    clsVarBoolean missing("missing", false);
    missing.setData(true);
    missing.LoadStateFromFile(ini, "S");
    EXPECT_FALSE(missing.Data());
}

TEST_F(PersistedValueTest, LongThatIsNoNumberFailsAndKeepsItsValue)
{
    writeFile(iniPath, "[S]\nbad=12abc\nempty=\n");
    for (const char* key : {"bad", "empty"}) {
        clsVarLong l(key, 1);
        l = 55;
        EXPECT_THROW(l.LoadStateFromFile(ini, "S"), SettingTypeError) << key;
        EXPECT_EQ(l.Data(), 55);
    }
    // A default that was never set is the text "Not Initialized".
    clsVarLong unset;
    unset.setName("missing");
    try {
        unset.LoadStateFromFile(ini, "S");
        FAIL() << "no failure";
    } catch (const SettingTypeError& e) {
        EXPECT_EQ(e.key(), "missing");
        EXPECT_EQ(e.text(), "Not Initialized");
    }
}

TEST_F(PersistedValueTest, WritesUseTheStoredSpelling)
{
    clsVarBoolean yes("bIgnoreCase", false), no("bQuickCompare", true);
    yes = true;
    no = false;
    clsVarLong l("lLineBracket", 1);
    l = -2147483647 - 1;
    clsVarString s("sExtension", "*.*");
    s = "*.txt";
    for (const clsVarBase* v : std::initializer_list<const clsVarBase*>{&yes, &no, &l, &s})
        v->SaveStateToFile(ini, "S");
    EXPECT_EQ(readFile(iniPath), "[S]\nbIgnoreCase=TRUE\nbQuickCompare=FALSE\nlLineBracket=-2147483648\n"
                                 "sExtension=*.txt\n");
    clsVarLong back("lLineBracket", 1);
    back.LoadStateFromFile(ini, "S");
    EXPECT_EQ(back.Data(), l.Data());
}

} // namespace
