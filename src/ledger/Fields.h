#pragma once

// The fields of an open view: each one's name, type and the current record's value.

#include "ledger/ErrorList.h"
#include "ledger/LedgerNames.h"

#include <QString>
#include <QStringList>
#include <QVariant>
#include <memory>
#include <vector>

namespace tillbook {

namespace engine {
class ViewCore;
struct FieldDef;
} // namespace engine

enum class FieldType { Text, Integer, Long, Boolean, Decimal, Date, Opaque };

class Field {
public:
    QString name() const;
    QString title() const;
    FieldType type() const;
    int size() const;                  // characters of text, precision of a decimal
    int scale() const;                 // decimal places of a decimal
    QStringList allowedValues() const; // empty = any

    // Text → QString; Integer, Long, Boolean → int; Decimal → qlonglong (no decimals), Money (1 to 3)
    // or exact decimal text (more); Date → QDate, null when there is none. The reference holds until the
    // view's next operation: a caller that keeps the value keeps a copy.
    const QVariant& value() const;
    // The value as plain text: amounts with the field's decimals, dates yyyy-mm-dd (empty when none).
    QString text() const;
    // Verified put: the value must be of the field's type, fit it, be one of its allowed values and name
    // codes that exist. Throws LedgerError (also on the session's list); returns the warnings of the put.
    Warnings setValue(const QVariant& value);
    // Stores the value as given, made to fit the field's type.
    Warnings putWithoutVerification(const QVariant& value);

    Field(engine::ViewCore& core, int index);

private:
    const engine::FieldDef& def() const;
    engine::ViewCore* m_core;
    int m_index;
};

class FieldCollection {
public:
    explicit FieldCollection(engine::ViewCore& core);
    Field& item(const QString& name);   // any case; unknown → LedgerError
    Field& item(const FieldName& name); // a constant of another view → ProgrammingError
    Field* find(const QString& name);   // any case; nullptr when unknown
    int count() const { return int(m_fields.size()); }
    Field& at(int i) { return m_fields.at(size_t(i)); }

private:
    engine::ViewCore* m_core;
    std::vector<Field> m_fields;
};

} // namespace tillbook
