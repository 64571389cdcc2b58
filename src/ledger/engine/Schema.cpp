#include "ledger/engine/Schema.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <stdexcept>

static void initEngineResources() {
    Q_INIT_RESOURCE(engine);
}

namespace tillbook::engine {

namespace {

QJsonObject readJson(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error("The ledger's view definitions are missing: " + path.toStdString());
    return QJsonDocument::fromJson(file.readAll()).object();
}

// "String*12", "BCD*10.3", "Integer", "Date"; null, "None", "???" and "Binary*n" are kept as opaque text.
void parseType(const QJsonValue& type, FieldDef& field) {
    static const QRegularExpression pattern(QStringLiteral("^(\\w+)(?:\\*(\\d+)(?:\\.(\\d+))?)?$"));
    const auto match = pattern.match(type.toString());
    if (!match.hasMatch()) {
        field.kind = FieldKind::Opaque;
        return;
    }
    const QString base = match.captured(1);
    field.size = match.captured(2).toInt();
    field.scale = match.captured(3).toInt();
    if (base == QLatin1String("String"))
        field.kind = FieldKind::Text;
    else if (base == QLatin1String("Integer"))
        field.kind = FieldKind::Integer;
    else if (base == QLatin1String("Long"))
        field.kind = FieldKind::Long;
    else if (base == QLatin1String("Boolean"))
        field.kind = FieldKind::Boolean;
    else if (base == QLatin1String("BCD"))
        field.kind = FieldKind::Decimal;
    else if (base == QLatin1String("Date"))
        field.kind = FieldKind::Date;
    else
        field.kind = FieldKind::Opaque;
}

FieldDef parseField(const QJsonObject& json) {
    FieldDef field;
    field.name = json.value(QLatin1String("name")).toString().toUpper();
    field.title = json.value(QLatin1String("title")).toString();
    parseType(json.value(QLatin1String("type")), field);
    const QJsonObject list = json.value(QLatin1String("list")).toObject();
    for (auto it = list.begin(); it != list.end(); ++it)
        field.allowed << it.key();
    return field;
}

void indexFields(ViewDef& view) {
    view.byUpperName.clear();
    for (int i = 0; i < int(view.fields.size()); ++i)
        view.byUpperName.insert(view.fields[size_t(i)].name, i);
}

ViewDef parseView(const QString& id, const QJsonObject& json, const QJsonArray& additions,
                  const QJsonObject& references) {
    ViewDef view;
    view.id = id;
    view.title = json.value(QLatin1String("title")).toString();
    view.table = json.value(QLatin1String("table")).toString();
    view.protocol = json.value(QLatin1String("protocol")).toString();
    for (const auto& c : json.value(QLatin1String("compositions")).toArray())
        view.compositions << c.toString();
    for (const auto& f : json.value(QLatin1String("fields")).toArray())
        view.fields.push_back(parseField(f.toObject()));
    indexFields(view);
    for (const auto& f : additions) {
        FieldDef extra = parseField(f.toObject());
        if (!view.byUpperName.contains(extra.name))
            view.fields.push_back(extra);
    }
    indexFields(view);
    for (auto it = references.begin(); it != references.end(); ++it) {
        const int index = view.fieldIndex(it.key());
        if (index >= 0)
            view.fields[size_t(index)].referencedView = it.value().toString();
    }
    for (const auto& k : json.value(QLatin1String("keys")).toArray()) {
        const QJsonObject key = k.toObject();
        KeyDef def;
        def.unique = !key.value(QLatin1String("flags")).toString().split(u' ').contains(QLatin1String("D"));
        for (const auto& name : key.value(QLatin1String("fields")).toArray())
            def.fields.push_back(view.fieldIndex(name.toString()));
        view.keys.push_back(def);
    }
    return view;
}

} // namespace

int ViewDef::fieldIndex(const QString& name) const {
    // Names are nearly always given as stored: found without making a new string.
    const auto exact = byUpperName.constFind(name);
    if (exact != byUpperName.constEnd())
        return exact.value();
    return byUpperName.value(name.trimmed().toUpper(), -1);
}

Schema::Schema() {
    initEngineResources();
    const QJsonObject reference = readJson(QStringLiteral(":/tillbook/ledger/views.json"));
    const QJsonObject additions = readJson(QStringLiteral(":/tillbook/ledger/view_additions.json"));
    const QJsonObject extraFields = additions.value(QLatin1String("fields")).toObject();
    const QJsonObject references = additions.value(QLatin1String("references")).toObject();
    const QJsonArray openOnFirst = additions.value(QLatin1String("opensOnFirstRecord")).toArray();
    for (auto it = reference.begin(); it != reference.end(); ++it) {
        m_byId.emplace(it.key().toUpper(), int(m_views.size()));
        m_views.push_back(parseView(it.key().toUpper(), it.value().toObject(),
                                    extraFields.value(it.key()).toArray(),
                                    references.value(it.key()).toObject()));
        m_views.back().opensOnFirstRecord = openOnFirst.contains(QJsonValue(it.key()));
    }
}

const Schema& Schema::instance() {
    static const Schema schema;
    return schema;
}

const ViewDef* Schema::view(const QString& id) const {
    const auto it = m_byId.find(id.trimmed().toUpper());
    return it == m_byId.end() ? nullptr : &m_views[size_t(it->second)];
}

} // namespace tillbook::engine
