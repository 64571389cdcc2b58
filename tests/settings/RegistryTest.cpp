// The settings store: defaults on a fresh machine, the exact stored texts, slots, and what is never deleted.
#include "settings/Registry.h"

#include "settings/SettingsStore.h"
#include "support/TempSettings.h"

#include <QFile>
#include <QPoint>
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
    // The stored texts of `keys`, "-" for a missing one, joined by "|".
    QString stored(const QStringList& keys) const {
        QStringList values;
        for (const QString& key : keys)
            values << (settings.contains(key) ? settings.raw(key) : QStringLiteral("-"));
        return values.join(u'|');
    }
    test::TempSettings settings;
    SavedSlots saved;
};

} // namespace

TEST_F(RegistryTest, FreshMachineReadsEveryDefaultAndWritesNothing) {
    Load_DatabaseIDs(saved);
    const ConnectInfo info = Load_ConnectInfo(saved);
    const ReceiptStyle style = Load_ReceiptStyle();
    EXPECT_EQ(saved.DatabaseIDs, (std::array<QString, 3>{}));
    EXPECT_EQ(QPoint(saved.CurrentDatabase, saved.CurrentUser), QPoint(0, 0));
    EXPECT_EQ(std::tuple(info.savePassword, info.savedPassword, style.twoPanel, style.threePanel),
              std::tuple(false, QString(), false, true));
    saved.CurrentDatabase = 1;
    Load_BatchInfo(saved);
    EXPECT_EQ(QPoint(saved.CurrentBatch, saved.BatchListIndex), QPoint(0, -1));
    EXPECT_FALSE(QFile::exists(settings.fileName()));
}

TEST_F(RegistryTest, ValuesAreWrittenAsTextExactlyAndReadBack) {
    Save_ConnectInfo(1, 9, true, "SECRET");
    Save_ReceiptStyle({true, false});
    const QStringList keys{"ConnectInfo/Database", "ConnectInfo/User",    "ConnectInfo/Save",
                           "ConnectInfo/SavedPWD", "ReceiptStyle/2panel", "ReceiptStyle/3panel"};
    EXPECT_EQ(stored(keys), "2|10|True|SECRET|True|False");
    const ConnectInfo info = Load_ConnectInfo(saved);
    const ReceiptStyle style = Load_ReceiptStyle();
    EXPECT_EQ(std::tuple(saved.CurrentDatabase, saved.CurrentUser, info.savePassword, info.savedPassword,
                         style.twoPanel, style.threePanel),
              std::tuple(2, 10, true, QString("SECRET"), true, false));
    // Unticked: the saved password is erased, not deleted.
    Save_ConnectInfo(-1, -1, false, "SECRET");
    EXPECT_EQ(stored(keys.mid(0, 4)), "0|0|False|");

    // Read leniently: a number's leading digits, Booleans in any case.
    settings.set("ConnectInfo/Database", "2abc");
    settings.set("ConnectInfo/User", "junk");
    settings.set("ConnectInfo/Save", "true");
    EXPECT_TRUE(Load_ConnectInfo(saved).savePassword);
    EXPECT_EQ(QPoint(saved.CurrentDatabase, saved.CurrentUser), QPoint(2, 0));
    EXPECT_EQ(QPoint(BoolOf("maybe", false), BoolOf("maybe", true)), QPoint(0, 1));
}

TEST_F(RegistryTest, UsersAndBatchesBelongToTheSlotAndEmptiedSlotsAreOverwritten) {
    settings.set("Database1/DB1", "SAMINC");
    settings.set("Database2/DB2", QString(33, u'X')); // longer than any company ID: refused
    settings.set("Database3/DB3", "OTHER");
    settings.set("Database3/Users/User1", "CLERK");
    settings.set("Database3/Users/Password1", "PW3");
    Load_DatabaseIDs(saved);
    EXPECT_EQ(saved.DatabaseIDs, (std::array<QString, 3>{"SAMINC", "", "OTHER"}));
    saved.CurrentDatabase = 3;
    Load_Users(saved);
    EXPECT_EQ(saved.Users[0].UserName + saved.Users[0].Password + saved.Users[1].UserName, "CLERKPW3");

    saved.CurrentDatabase = 2;
    saved.Users[0] = {"ANNA", "A1"};
    saved.Users[1] = {};
    saved.CurrentBatch = 41;
    saved.BatchListIndex = 3;
    Save_Users(saved);
    Save_BatchInfo(saved);
    saved.DatabaseIDs = {"A", "", "C"};
    Save_DatabaseIDs(saved);
    EXPECT_EQ(
        stored({"Database2/Users/User1", "Database2/Users/User2", "Database2/Users/Password10",
                "Database2/DB2", "Database3/DB3", "Database2/BatchInfo/Batch", "Database2/BatchInfo/Index"}),
        "ANNA||||C|41|3");
    saved.CurrentBatch = 0; // no batch is written as none, not as batch 0
    Save_BatchInfo(saved);
    EXPECT_EQ(stored({"Database2/BatchInfo/Batch"}), "");
    saved.CurrentDatabase = 1; // another slot's batch is not this one's
    Load_BatchInfo(saved);
    EXPECT_EQ(QPoint(saved.CurrentBatch, saved.BatchListIndex), QPoint(0, -1));
}

TEST_F(RegistryTest, ADatabaseSlotOutsideOneToThreeReadsAndWritesNothing) {
    settings.set("ConnectInfo/Database", "7");
    settings.set("Database1/Users/User1", "ANNA");
    Load_ConnectInfo(saved);
    EXPECT_EQ(saved.CurrentDatabase, 7);
    saved.Users[0] = {"KEPT", "X"};
    Load_Users(saved);
    Load_BatchInfo(saved);
    EXPECT_EQ(saved.Users[0].UserName, "KEPT");
    EXPECT_EQ(saved.CurrentBatch, 77);
    Save_Users(saved);
    Save_BatchInfo(saved);
    EXPECT_EQ(stored({"Database7/Users/User1", "Database7/BatchInfo/Batch", "Database1/BatchInfo/Batch"}),
              "-|-|-");
}

TEST_F(RegistryTest, TheSettingsFileIsTheOwnersOnlyFromItsFirstByte) {
    const auto mode = [this] {
        struct stat info {};
        return stat(QFile::encodeName(settings.fileName()).constData(), &info) == 0 ? info.st_mode & 0777 : 0;
    };
    const mode_t previous = umask(0); // a file made without explicit permissions would be open to all
    {
        SettingsStore store;
        store.write("ConnectInfo/SavedPWD", "SECRET");
        EXPECT_EQ(mode(), 0600u); // before the value reaches it, not narrowed afterwards
    }
    EXPECT_EQ(mode(), 0600u);
    // A file an earlier version left open to all is narrowed before the next value is written.
    QFile::setPermissions(settings.fileName(), QFile::ReadOwner | QFile::WriteOwner | QFile::ReadOther);
    SettingsStore().write("ConnectInfo/SavedPWD", "OTHER");
    EXPECT_EQ(mode(), 0600u);
    EXPECT_EQ(settings.raw("ConnectInfo/SavedPWD"), "OTHER");
    umask(previous);
}
