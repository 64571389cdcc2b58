#include "ledger/engine/NameOrder.h"

#include <memory>
#include <sqlite3.h>
#include <unicode/ucol.h>

namespace tillbook::engine {

namespace {

struct CollatorCloser {
    void operator()(UCollator* collator) const { ucol_close(collator); }
};
using Collator = std::unique_ptr<UCollator, CollatorCloser>;

// One collator per thread: ICU's collators are not to be shared between threads.
UCollator& collator() {
    thread_local const Collator made = [] {
        UErrorCode status = U_ZERO_ERROR;
        Collator c(ucol_open("en_US", &status));
        // As QCollator sets it up for a case-insensitive comparison.
        ucol_setAttribute(c.get(), UCOL_NORMALIZATION_MODE, UCOL_ON, &status);
        ucol_setAttribute(c.get(), UCOL_STRENGTH, UCOL_SECONDARY, &status);
        ucol_setAttribute(c.get(), UCOL_NUMERIC_COLLATION, UCOL_OFF, &status);
        ucol_setAttribute(c.get(), UCOL_ALTERNATE_HANDLING, UCOL_NON_IGNORABLE, &status);
        if (U_FAILURE(status))
            qFatal("The collation of customer names is not available: %s", u_errorName(status));
        return c;
    }();
    return *made;
}

void nameKeyFunction(sqlite3_context* context, int, sqlite3_value** arguments) {
    if (sqlite3_value_type(arguments[0]) == SQLITE_NULL) {
        sqlite3_result_null(context);
        return;
    }
    const auto* text = static_cast<const char16_t*>(sqlite3_value_text16(arguments[0]));
    const int bytes = sqlite3_value_bytes16(arguments[0]);
    const QByteArray key = nameOrderKey(QStringView(text, bytes / 2));
    sqlite3_result_blob(context, key.constData(), int(key.size()), SQLITE_TRANSIENT);
}

} // namespace

QByteArray nameOrderKey(QStringView name) {
    UCollator& c = collator();
    const auto* text = reinterpret_cast<const UChar*>(name.utf16());
    const int length = int(name.size());
    QByteArray key(qMax<qsizetype>(32, 3 * name.size() + 8), Qt::Uninitialized);
    int needed = ucol_getSortKey(&c, text, length, reinterpret_cast<uint8_t*>(key.data()), int(key.size()));
    if (needed > key.size()) {
        key.resize(needed);
        needed = ucol_getSortKey(&c, text, length, reinterpret_cast<uint8_t*>(key.data()), int(key.size()));
    }
    key.truncate(needed > 0 ? needed - 1 : 0); // without the closing zero byte
    return key;
}

void registerNameOrder(sqlite3* db) {
    sqlite3_create_function_v2(db, "tb_namekey", 1, SQLITE_UTF16 | SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS,
                               nullptr, nameKeyFunction, nullptr, nullptr, nullptr);
}

} // namespace tillbook::engine
