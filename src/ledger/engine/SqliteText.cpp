#include "ledger/engine/SqliteText.h"

#include "ledger/engine/StoreFailure.h"

#include <QSqlDatabase>
#include <QSqlDriver>
#include <algorithm>
#include <memory>
#include <sqlite3.h>

namespace tillbook::engine {

namespace {

struct Finalizer {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using Statement = std::unique_ptr<sqlite3_stmt, Finalizer>;

LedgerError failure(sqlite3* db) {
    if (sqlite3_errcode(db) == SQLITE_BUSY || sqlite3_errcode(db) == SQLITE_LOCKED)
        return storeFailure(QStringLiteral("The company is busy. Try again in a moment."));
    return storeFailure(QStringLiteral("The ledger could not complete the operation: %1")
                            .arg(QString::fromUtf8(sqlite3_errmsg(db))));
}

// As the Qt driver binds a value: whole numbers and truth as integers, text as text, nothing as NULL.
int bind(sqlite3_stmt* statement, int at, const QVariant& value) {
    if (value.isNull())
        return sqlite3_bind_null(statement, at);
    switch (value.typeId()) {
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
        return sqlite3_bind_int64(statement, at, value.toLongLong());
    case QMetaType::Double:
        return sqlite3_bind_double(statement, at, value.toDouble());
    case QMetaType::QByteArray: {
        const QByteArray bytes = value.toByteArray();
        return sqlite3_bind_blob(statement, at, bytes.constData(), int(bytes.size()), SQLITE_TRANSIENT);
    }
    default: {
        const QString text = value.toString();
        return sqlite3_bind_text16(statement, at, text.utf16(), int(text.size() * 2), SQLITE_TRANSIENT);
    }
    }
}

// Resets a statement however its read ends, so that it holds no read lock after it.
struct Running {
    explicit Running(sqlite3_stmt* running) : statement(running) {}
    ~Running() { sqlite3_reset(statement); }
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;
    sqlite3_stmt* statement;
};

} // namespace

sqlite3* sqliteHandle(const QSqlDatabase& db) {
    const QVariant handle = db.driver()->handle();
    if (qstrcmp(handle.typeName(), "sqlite3*") != 0)
        return nullptr;
    return *static_cast<sqlite3* const*>(handle.constData());
}

TextRows readSqliteText(sqlite3* db, const QString& sql, const QVariantList& parameters, int width) {
    sqlite3_stmt* prepared = nullptr;
    const QByteArray text = sql.toUtf8();
    if (sqlite3_prepare_v2(db, text.constData(), int(text.size()), &prepared, nullptr) != SQLITE_OK)
        throw failure(db);
    const Statement statement(prepared);
    for (int i = 0; i < parameters.size(); ++i)
        if (bind(prepared, i + 1, parameters[i]) != SQLITE_OK)
            throw failure(db);
    TextRows rows(width);
    int step;
    while ((step = sqlite3_step(prepared)) == SQLITE_ROW) {
        for (int i = 0; i < width; ++i) {
            const auto* cell = reinterpret_cast<const char*>(sqlite3_column_text(prepared, i));
            rows.append(cell ? cell : "", size_t(sqlite3_column_bytes(prepared, i)));
        }
    }
    if (step != SQLITE_DONE)
        throw failure(db);
    return rows;
}

SqliteStatements::~SqliteStatements() {
    for (sqlite3_stmt* statement : std::as_const(m_statements))
        sqlite3_finalize(statement);
}

sqlite3_stmt* SqliteStatements::started(const QString& sql, const QVariantList& parameters) {
    sqlite3_stmt* statement = prepared(sql);
    for (int i = 0; i < parameters.size(); ++i)
        if (bind(statement, i + 1, parameters[i]) != SQLITE_OK) {
            sqlite3_reset(statement);
            throw failure(m_db);
        }
    return statement;
}

void SqliteStatements::readEach(const QString& sql, const QVariantList& parameters, const RowReader& each) {
    class StatementRow final : public StoredRow {
    public:
        explicit StatementRow(sqlite3_stmt* statement) : m_statement(statement) {}
        qint64 integer(int column) const override { return sqlite3_column_int64(m_statement, column); }
        QString text(int column) const override {
            const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(m_statement, column));
            if (!text)
                return QString();
            return QString::fromUtf8(text, sqlite3_column_bytes(m_statement, column));
        }
        void textInto(int column, QString& into) const override {
            const auto* text =
                reinterpret_cast<const unsigned char*>(sqlite3_column_text(m_statement, column));
            if (!text) {
                into = QString();
                return;
            }
            const qsizetype size = sqlite3_column_bytes(m_statement, column);
            // Plain ASCII is widened where the string stands, without a new block; anything else is decoded
            // here, from the cell already fetched (falling back to text() would fetch it again, for every
            // blank cell of a list).
            if (!into.isDetached() ||
                std::any_of(text, text + size, [](unsigned char c) { return c >= 0x80; })) {
                into = QString::fromUtf8(reinterpret_cast<const char*>(text), size);
                return;
            }
            into.resize(size);
            std::copy(text, text + size, reinterpret_cast<char16_t*>(into.data()));
        }

    private:
        sqlite3_stmt* m_statement;
    };
    sqlite3_stmt* statement = started(sql, parameters);
    const Running running(statement);
    const StatementRow row(statement);
    int step;
    while ((step = sqlite3_step(statement)) == SQLITE_ROW)
        each(row);
    if (step != SQLITE_DONE)
        throw failure(m_db);
}

sqlite3_stmt* SqliteStatements::prepared(const QString& sql) {
    const auto found = m_statements.constFind(sql);
    if (found != m_statements.constEnd())
        return found.value();
    sqlite3_stmt* statement = nullptr;
    const QByteArray text = sql.toUtf8();
    if (sqlite3_prepare_v2(m_db, text.constData(), int(text.size()), &statement, nullptr) != SQLITE_OK)
        throw failure(m_db);
    m_statements.insert(sql, statement);
    return statement;
}

std::vector<QVariant> SqliteStatements::readCells(const QString& sql, const QVariantList& parameters,
                                                  int width) {
    sqlite3_stmt* statement = started(sql, parameters);
    const Running running(statement);
    std::vector<QVariant> cells;
    int step;
    while ((step = sqlite3_step(statement)) == SQLITE_ROW) {
        for (int i = 0; i < width; ++i) {
            switch (sqlite3_column_type(statement, i)) {
            case SQLITE_INTEGER:
                cells.emplace_back(qlonglong(sqlite3_column_int64(statement, i)));
                break;
            case SQLITE_FLOAT:
                cells.emplace_back(sqlite3_column_double(statement, i));
                break;
            case SQLITE_NULL:
                cells.emplace_back(QMetaType::fromType<QString>());
                break;
            case SQLITE_BLOB: {
                const auto* bytes = static_cast<const char*>(sqlite3_column_blob(statement, i));
                cells.emplace_back(QByteArray(bytes, sqlite3_column_bytes(statement, i)));
                break;
            }
            default: {
                const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, i));
                cells.emplace_back(QString::fromUtf8(text, sqlite3_column_bytes(statement, i)));
            }
            }
        }
    }
    if (step != SQLITE_DONE)
        throw failure(m_db);
    return cells;
}

} // namespace tillbook::engine
