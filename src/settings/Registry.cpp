#include "settings/Registry.h"

#include "ledger/Formats.h"
#include "ledger/Session.h"
#include "settings/SettingsStore.h"

namespace tillbook {

namespace {

bool isDatabaseSlot(int slot) {
    return slot >= 1 && slot <= DatabaseSlots;
}

QString usersKey(int slot, const QString& value) {
    return QStringLiteral("Database%1/Users/%2").arg(slot).arg(value);
}

QString batchKey(int slot, const QString& value) {
    return QStringLiteral("Database%1/BatchInfo/%2").arg(slot).arg(value);
}

QString databaseKey(int slot) {
    return QStringLiteral("Database%1/DB%1").arg(slot);
}

} // namespace

QString BoolText(bool value) {
    return value ? QStringLiteral("True") : QStringLiteral("False");
}

bool BoolOf(const QString& text, bool defaultValue) {
    const QString t = text.trimmed();
    if (t.compare(QStringLiteral("True"), Qt::CaseInsensitive) == 0)
        return true;
    if (t.compare(QStringLiteral("False"), Qt::CaseInsensitive) == 0)
        return false;
    bool isNumber = false;
    const double number = t.toDouble(&isNumber);
    return isNumber ? number != 0.0 : defaultValue;
}

void Load_DatabaseIDs(SavedSlots& saved) {
    const SettingsStore store;
    for (int slot = 1; slot <= DatabaseSlots; ++slot) {
        // An ID no company can have is refused here, before a list or a message has to carry it.
        const QString id = store.read(databaseKey(slot), QString());
        saved.DatabaseIDs[slot - 1] = id.size() > MaxDatabaseIdLength ? QString() : id;
    }
}

void Save_DatabaseIDs(SavedSlots& saved) {
    SettingsStore store;
    for (int slot = 1; slot <= DatabaseSlots; ++slot)
        store.write(databaseKey(slot), saved.DatabaseIDs[slot - 1]);
}

void Load_Users(SavedSlots& saved) {
    if (!isDatabaseSlot(saved.CurrentDatabase))
        return;
    const SettingsStore store;
    for (int i = 1; i <= UserSlots; ++i) {
        saved.Users[i - 1].UserName =
            store.read(usersKey(saved.CurrentDatabase, QStringLiteral("User%1").arg(i)), QString());
        saved.Users[i - 1].Password =
            store.read(usersKey(saved.CurrentDatabase, QStringLiteral("Password%1").arg(i)), QString());
    }
}

void Save_Users(SavedSlots& saved) {
    if (!isDatabaseSlot(saved.CurrentDatabase))
        return;
    SettingsStore store;
    for (int i = 1; i <= UserSlots; ++i) {
        store.write(usersKey(saved.CurrentDatabase, QStringLiteral("User%1").arg(i)),
                    saved.Users[i - 1].UserName);
        store.write(usersKey(saved.CurrentDatabase, QStringLiteral("Password%1").arg(i)),
                    saved.Users[i - 1].Password);
    }
}

ConnectInfo Load_ConnectInfo(SavedSlots& saved) {
    const SettingsStore store;
    saved.CurrentDatabase = Int16Of(store.read(QStringLiteral("ConnectInfo/Database"), QString()));
    saved.CurrentUser = Int16Of(store.read(QStringLiteral("ConnectInfo/User"), QString()));
    ConnectInfo info;
    info.savePassword =
        BoolOf(store.read(QStringLiteral("ConnectInfo/Save"), QStringLiteral("False")), false);
    info.savedPassword = store.read(QStringLiteral("ConnectInfo/SavedPWD"), QString());
    return info;
}

void Save_ConnectInfo(int databaseListIndex, int userListIndex, bool savePassword, const QString& password) {
    SettingsStore store;
    store.write(QStringLiteral("ConnectInfo/Database"), QString::number(databaseListIndex + 1));
    store.write(QStringLiteral("ConnectInfo/User"), QString::number(userListIndex + 1));
    store.write(QStringLiteral("ConnectInfo/Save"), BoolText(savePassword));
    store.write(QStringLiteral("ConnectInfo/SavedPWD"), savePassword ? password : QString());
}

void Load_BatchInfo(SavedSlots& saved) {
    if (!isDatabaseSlot(saved.CurrentDatabase))
        return;
    const SettingsStore store;
    saved.CurrentBatch =
        store.read(batchKey(saved.CurrentDatabase, QStringLiteral("Batch")), QString()).trimmed().toInt();
    const QString index =
        store.read(batchKey(saved.CurrentDatabase, QStringLiteral("Index")), QStringLiteral("-1"));
    // An index that is no number stands for the first batch, as it always has.
    saved.BatchListIndex = index == u"-1" ? -1 : Int16Of(index);
}

void Save_BatchInfo(SavedSlots& saved) {
    if (!isDatabaseSlot(saved.CurrentDatabase))
        return;
    SettingsStore store;
    // An empty batch is written as no batch at all.
    store.write(batchKey(saved.CurrentDatabase, QStringLiteral("Batch")),
                saved.CurrentBatch > 0 ? QString::number(saved.CurrentBatch) : QString());
    store.write(batchKey(saved.CurrentDatabase, QStringLiteral("Index")),
                QString::number(saved.BatchListIndex));
}

ReceiptStyle Load_ReceiptStyle() {
    const SettingsStore store;
    ReceiptStyle style;
    style.twoPanel =
        BoolOf(store.read(QStringLiteral("ReceiptStyle/2panel"), QStringLiteral("False")), false);
    style.threePanel =
        BoolOf(store.read(QStringLiteral("ReceiptStyle/3panel"), QStringLiteral("True")), true);
    return style;
}

void Save_ReceiptStyle(const ReceiptStyle& style) {
    SettingsStore store;
    store.write(QStringLiteral("ReceiptStyle/2panel"), BoolText(style.twoPanel));
    store.write(QStringLiteral("ReceiptStyle/3panel"), BoolText(style.threePanel));
}

PrinterSettings Load_PrinterSettings() {
    const SettingsStore store;
    PrinterSettings printer;
    printer.useDefault = BoolOf(store.read(QStringLiteral("Printer/Default"), QStringLiteral("True")), true);
    printer.driver = store.read(QStringLiteral("Printer/Driver"), QString());
    printer.name = store.read(QStringLiteral("Printer/Name"), QString());
    printer.port = store.read(QStringLiteral("Printer/Port"), QString());
    return printer;
}

void Save_PrinterSettings(const PrinterSettings& printer) {
    SettingsStore store;
    store.write(QStringLiteral("Printer/Default"), BoolText(printer.useDefault));
    store.write(QStringLiteral("Printer/Driver"), printer.driver);
    store.write(QStringLiteral("Printer/Name"), printer.name);
    store.write(QStringLiteral("Printer/Port"), printer.port);
}

} // namespace tillbook
