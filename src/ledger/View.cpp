#include "ledger/View.h"

#include "ledger/engine/Guarded.h"
#include "ledger/engine/ViewCore.h"

namespace tillbook {

View::View(std::shared_ptr<engine::SessionState> session, const engine::ViewDef& def)
    : m_core(std::make_unique<engine::ViewCore>(std::move(session), def)), m_fields(*m_core) {}

View::~View() = default;

QString View::id() const {
    return m_core->def().id;
}
QString View::title() const {
    return m_core->def().title;
}

void View::order(int keyNumber) {
    engine::guarded(m_core->errors(), [&] { m_core->order(keyNumber); });
}

void View::compose(const std::vector<View*>& views) {
    std::vector<engine::ViewCore*> cores;
    for (View* view : views)
        cores.push_back(view ? view->m_core.get() : nullptr);
    engine::guarded(m_core->errors(), [&] { m_core->compose(cores); });
}

void View::browse(const QString& filter, bool ascending) {
    engine::guarded(m_core->errors(), [&] { m_core->browse(filter, ascending); });
}

bool View::fetch() {
    return engine::guarded(m_core->errors(), [&] { return m_core->fetch(); });
}

TextRows View::readAllText(const QStringList& fields, const QString& collatedBy) {
    return engine::guarded(m_core->errors(), [&] { return m_core->readAllText(fields, collatedBy); });
}

void View::clear() {
    engine::guarded(m_core->errors(), [&] { m_core->clear(); });
}

Warnings View::process() {
    return engine::guarded(m_core->errors(), [&] { m_core->process(); });
}

Warnings View::init() {
    return engine::guarded(m_core->errors(), [&] { m_core->init(); });
}

bool View::read() {
    return engine::guarded(m_core->errors(), [&] { return m_core->read(); });
}

Warnings View::readAllKept(const QStringList& fields,
                           const std::function<void(const std::vector<QVariant>& values)>& row) {
    return engine::guarded(m_core->errors(), [&] { m_core->readAllKept(fields, row); });
}

Warnings View::update() {
    return engine::guarded(m_core->errors(), [&] { m_core->update(); });
}

Warnings View::insert() {
    return engine::guarded(m_core->errors(), [&] { m_core->insert(); });
}

} // namespace tillbook
