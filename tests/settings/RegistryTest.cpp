// The settings store: defaults on a fresh machine, the exact stored texts, slots, and what is never deleted.
#include "settings/Registry.h"

#include "settings/SettingsStore.h"
#include "support/TempSettings.h"

#include <QFile>
#include <gtest/gtest.h>
#include <sys/stat.h>

using namespace tillbook;

namespace {

class RegistryTest : public ::testing::Test {
protected:
    void SetUp() override {
        saved.CurrentBatch = 77; // what no read may touch
        saved.BatchListIndex = 5;
    }
    test::TempSettings settings;
    SavedSlots saved;
};

} // namespace

TEST_F(RegistryTest, FreshMachineReadsEveryDefault) {
    Load_DatabaseIDs(saved);
    EXPECT_EQ(saved.DatabaseIDs, (std::array<QString, 3>{}));
    const ConnectInfo info = Load_ConnectInfo(saved);
    EXPECT_EQ(saved.CurrentDatabase, 0);
    EXPECT_EQ(saved.CurrentUser, 0);
    EXPECT_FALSE(info.savePassword);
    EXPECT_EQ(info.savedPassword, "");
    const ReceiptStyle style = Load_ReceiptStyle();
    EXPECT_FALSE(style.twoPanel);
    EXPECT_TRUE(style.threePanel);
    saved.CurrentDatabase = 1;
    Load_BatchInfo(saved);
    EXPECT_EQ(saved.CurrentBatch, 0);
    EXPECT_EQ(saved.BatchListIndex, -1);
    // Reading writes nothing.
    EXPECT_FALSE(QFile::exists(settings.fileName()));
}

TEST_F(RegistryTest, ValuesAreWrittenAsTextExactlyAndReadBack) {
    Save_ConnectInfo(1, 9, true, "SECRET");
    EXPECT_EQ(settings.raw("ConnectInfo/Database"), "2");
    EXPECT_EQ(settings.raw("ConnectInfo/User"), "10");
    EXPECT_EQ(settings.raw("ConnectInfo/Save"), "True");
    EXPECT_EQ(settings.raw("ConnectInfo/SavedPWD"), "SECRET");
    const ConnectInfo info = Load_ConnectInfo(saved);
    EXPECT_EQ(saved.CurrentDatabase, 2);
    EXPECT_EQ(saved.CurrentUser, 10);
    EXPECT_TRUE(info.savePassword);
    EXPECT_EQ(info.savedPassword, "SECRET");

    Save_ConnectInfo(-1, -1, false, "SECRET");
    EXPECT_EQ(settings.raw("ConnectInfo/Database"), "0");
    EXPECT_EQ(settings.raw("ConnectInfo/User"), "0");
    EXPECT_EQ(settings.raw("ConnectInfo/Save"), "False");
    // Unticked: the saved password is erased, not deleted.
    EXPECT_TRUE(settings.contains("ConnectInfo/SavedPWD"));
    EXPECT_EQ(settings.raw("ConnectInfo/SavedPWD"), "");

    Save_ReceiptStyle({true, false});
    EXPECT_EQ(settings.raw("ReceiptStyle/2panel"), "True");
    EXPECT_EQ(settings.raw("ReceiptStyle/3panel"), "False");
    const ReceiptStyle style = Load_ReceiptStyle();
    EXPECT_TRUE(style.twoPanel);
    EXPECT_FALSE(style.threePanel);
}

TEST_F(RegistryTest, UsersBelongToTheSlotNotToTheId) {
    settings.set("Database1/DB1", "SAMINC");
    settings.set("Database3/DB3", "OTHER");
    settings.set("Database2/DB2", QString(33, u'X')); // longer than any company ID: refused
    settings.set("Database3/Users/User1", "CLERK");
    settings.set("Database3/Users/Password1", "PW3");
    settings.set("Database2/Users/User1", "STRAY");
    Load_DatabaseIDs(saved);
    EXPECT_EQ(saved.DatabaseIDs[0], "SAMINC");
    EXPECT_EQ(saved.DatabaseIDs[1], "");
    EXPECT_EQ(saved.DatabaseIDs[2], "OTHER");
    saved.CurrentDatabase = 3;
    Load_Users(saved);
    EXPECT_EQ(saved.Users[0].UserName, "CLERK");
    EXPECT_EQ(saved.Users[0].Password, "PW3");
    EXPECT_EQ(saved.Users[1].UserName, "");
}

TEST_F(RegistryTest, EmptiedSlotsAreOverwrittenNeverDeleted) {
    saved.CurrentDatabase = 2;
    saved.Users[0] = {"ANNA", "A1"};
    saved.Users[1] = {"BOB", "B2"};
    Save_Users(saved);
    saved.Users[1] = {};
    Save_Users(saved);
    EXPECT_EQ(settings.raw("Database2/Users/User1"), "ANNA");
    EXPECT_TRUE(settings.contains("Database2/Users/User2"));
    EXPECT_EQ(settings.raw("Database2/Users/User2"), "");
    EXPECT_EQ(settings.raw("Database2/Users/Password10"), "");

    saved.DatabaseIDs = {"A", "", "C"};
    Save_DatabaseIDs(saved);
    EXPECT_EQ(settings.raw("Database2/DB2"), "");
    EXPECT_TRUE(settings.contains("Database2/DB2"));
    EXPECT_EQ(settings.raw("Database3/DB3"), "C");
}

TEST_F(RegistryTest, ADatabaseSlotOutsideOneToThreeReadsAndWritesNothing) {
    settings.set("ConnectInfo/Database", "7");
    settings.set("Database1/Users/User1", "ANNA");
    Load_ConnectInfo(saved);
    EXPECT_EQ(saved.CurrentDatabase, 7);
    saved.Users[0] = {"KEPT", "X"};
    Load_Users(saved);
    EXPECT_EQ(saved.Users[0].UserName, "KEPT");
    Save_Users(saved);
    Load_BatchInfo(saved);
    EXPECT_EQ(saved.CurrentBatch, 77);
    Save_BatchInfo(saved);
    EXPECT_FALSE(settings.contains("Database7/Users/User1"));
    EXPECT_FALSE(settings.contains("Database7/BatchInfo/Batch"));
    EXPECT_FALSE(settings.contains("Database1/BatchInfo/Batch"));
}

TEST_F(RegistryTest, BatchInfoPerDatabaseSlot) {
    saved.CurrentDatabase = 2;
    saved.CurrentBatch = 41;
    saved.BatchListIndex = 3;
    Save_BatchInfo(saved);
    EXPECT_EQ(settings.raw("Database2/BatchInfo/Batch"), "41");
    EXPECT_EQ(settings.raw("Database2/BatchInfo/Index"), "3");
    saved.CurrentDatabase = 1;
    Load_BatchInfo(saved);
    EXPECT_EQ(saved.CurrentBatch, 0);
    EXPECT_EQ(saved.BatchListIndex, -1);
}

TEST_F(RegistryTest, LenientReadingOfStoredNumbersAndBooleans) {
    settings.set("ConnectInfo/Database", "2abc");
    settings.set("ConnectInfo/User", "junk");
    settings.set("ConnectInfo/Save", "true");
    const ConnectInfo info = Load_ConnectInfo(saved);
    EXPECT_EQ(saved.CurrentDatabase, 2);
    EXPECT_EQ(saved.CurrentUser, 0);
    EXPECT_TRUE(info.savePassword);
    EXPECT_FALSE(BoolOf("maybe", false));
    EXPECT_TRUE(BoolOf("maybe", true));
}

namespace {

mode_t modeOf(const QString& path) {
    struct stat info {};
    return stat(QFile::encodeName(path).constData(), &info) == 0 ? info.st_mode & 0777 : 0;
}

} // namespace

TEST_F(RegistryTest, TheSettingsFileIsTheOwnersOnlyFromItsFirstByte) {
    const mode_t previous = umask(0); // a file made without explicit permissions would be open to all
    {
        SettingsStore store;
        store.write("ConnectInfo/SavedPWD", "SECRET");
        // Made owner-only before the value reaches it, not narrowed afterwards.
        ASSERT_TRUE(QFile::exists(settings.fileName()));
        EXPECT_EQ(modeOf(settings.fileName()), 0600u);
    }
    EXPECT_EQ(modeOf(settings.fileName()), 0600u);
    EXPECT_EQ(settings.raw("ConnectInfo/SavedPWD"), "SECRET");

    // A file an earlier version left open to all is narrowed before the next value is written.
    QFile::setPermissions(settings.fileName(), QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup |
                                                   QFile::ReadOther | QFile::WriteOther);
    {
        SettingsStore store;
        store.write("ConnectInfo/SavedPWD", "OTHER");
        EXPECT_EQ(modeOf(settings.fileName()), 0600u);
    }
    EXPECT_EQ(modeOf(settings.fileName()), 0600u);
    umask(previous);
}
