#pragma once

// The company's views as data: every view's table, fields, keys and compositions, read from the
// reference (views.json) with our own additions merged in. One schema serves every store.

#include <QHash>
#include <QString>
#include <QStringList>
#include <map>
#include <vector>

namespace tillbook::engine {

enum class FieldKind { Text, Integer, Long, Boolean, Decimal, Date, Opaque };

struct FieldDef {
    QString name;
    QString title;
    FieldKind kind = FieldKind::Text;
    int size = 0;           // text length, or the decimal's precision
    int scale = 0;          // decimals of a Decimal
    QStringList allowed;    // the values a verified put accepts (as text); empty = any
    QString referencedView; // a code that must exist in this view, checked by a verified put

    // How a clerk reads the field's name in a message: its title, or its name when it has none.
    const QString& label() const { return title.isEmpty() ? name : title; }
};

struct KeyDef {
    std::vector<int> fields; // indexes into ViewDef::fields
    bool unique = true;
};

struct ViewDef {
    QString id;
    QString title;
    QString table;
    QString protocol;
    QStringList compositions;
    std::vector<FieldDef> fields;
    std::vector<KeyDef> keys;        // keys[0] is the primary key
    bool opensOnFirstRecord = false; // a one-record view (the company profile) stands on it when opened

    int fieldIndex(const QString& name) const; // any case, blanks around ignored; -1 when there is none
    bool isHeader() const { return protocol.contains(QLatin1String("Header")); }
    const KeyDef& primaryKey() const { return keys.front(); }

    QHash<QString, int> byUpperName;
};

class Schema {
public:
    // The schema of every company, loaded once.
    static const Schema& instance();

    const ViewDef* view(const QString& id) const; // any case; nullptr when unknown
    const std::vector<ViewDef>& views() const { return m_views; }

private:
    Schema();
    std::vector<ViewDef> m_views;
    std::map<QString, int> m_byId;
};

} // namespace tillbook::engine
