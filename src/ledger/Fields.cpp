#include "ledger/Fields.h"

#include "ledger/engine/Guarded.h"
#include "ledger/engine/ValueCodec.h"
#include "ledger/engine/ViewCore.h"

namespace tillbook {

Field::Field(engine::ViewCore& core, int index) : m_core(&core), m_index(index) {}

const engine::FieldDef& Field::def() const {
    return m_core->def().fields[size_t(m_index)];
}

QString Field::name() const {
    return def().name;
}
QString Field::title() const {
    return def().label();
}
int Field::size() const {
    return def().size;
}
int Field::scale() const {
    return def().scale;
}
QStringList Field::allowedValues() const {
    return def().allowed;
}

FieldType Field::type() const {
    switch (def().kind) {
    case engine::FieldKind::Text:
        return FieldType::Text;
    case engine::FieldKind::Integer:
        return FieldType::Integer;
    case engine::FieldKind::Long:
        return FieldType::Long;
    case engine::FieldKind::Boolean:
        return FieldType::Boolean;
    case engine::FieldKind::Decimal:
        return FieldType::Decimal;
    case engine::FieldKind::Date:
        return FieldType::Date;
    case engine::FieldKind::Opaque:
        return FieldType::Opaque;
    }
    return FieldType::Opaque;
}

const QVariant& Field::value() const {
    if (const QVariant* loaded = m_core->loadedValue(m_index))
        return *loaded;
    // A column the page left out: read now, and then held like the others.
    engine::guarded(m_core->errors(), [&] { m_core->value(m_index); });
    return *m_core->loadedValue(m_index);
}

QString Field::text() const {
    return engine::displayText(def(), value());
}

Warnings Field::setValue(const QVariant& value) {
    return engine::guarded(m_core->errors(), [&] { m_core->put(m_index, value, true); });
}

Warnings Field::putWithoutVerification(const QVariant& value) {
    return engine::guarded(m_core->errors(), [&] { m_core->put(m_index, value, false); });
}

FieldCollection::FieldCollection(engine::ViewCore& core) : m_core(&core) {
    const int n = int(core.def().fields.size());
    m_fields.reserve(size_t(n));
    for (int i = 0; i < n; ++i)
        m_fields.emplace_back(core, i);
}

Field* FieldCollection::find(const QString& name) {
    const int index = m_core->findField(name);
    return index < 0 ? nullptr : &m_fields[size_t(index)];
}

Field& FieldCollection::item(const FieldName& name) {
    if (m_core->def().id.compare(name.view.text(), Qt::CaseInsensitive) != 0)
        throw ProgrammingError(QStringLiteral("Field %1 of view %2 was asked of view %3.")
                                   .arg(name.text(), name.view.text(), m_core->def().id));
    return item(name.text());
}

Field& FieldCollection::item(const QString& name) {
    if (Field* field = find(name))
        return *field;
    return m_fields[size_t(m_core->requireField(name))];
}

} // namespace tillbook
