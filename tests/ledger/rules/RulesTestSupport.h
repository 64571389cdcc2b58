#pragma once

// A small company of known records on each store, and a till: the receipt views opened and composed as
// the receipt window does, with its posting calls made in the window's order.

#include "ledger/Money.h"
#include "ledger/Session.h"
#include "ledger/engine/CompanyStore.h"
#include "ledger/engine/EngineTestSupport.h" // storeParamName, TILLBOOK_ON_EACH_STORE
#include "support/TestCompany.h"

#include <QVariantHash>
#include <gtest/gtest.h>
#include <memory>
#include <optional>

namespace tillbook::test {

// Customer C1: IN1 100.00 (discount 2.00 until 2025-03-20), IN2 50.00, CN1 -30.00, IN0 paid.
// Customer C2: IN3 80.00. Year 2025 active, 2023 inactive; distribution code RETAIL -> 4000;
// accounts 4000 and 4100100 (4100-100); bank TDOPER. The session date is 2025-03-14.
class RulesTest : public EngineTest {
protected:
    void SetUp() override;
    void TearDown() override;

    engine::CompanyStore& store();
    std::optional<QVariantHash> record(const QString& viewId, const QVariantHash& key,
                                       const QStringList& fields);
    int count(const QString& viewId, const QVariantHash& equal);

    std::unique_ptr<engine::CompanyStore> m_company;
};

class Till {
public:
    explicit Till(Session& session);

    View& view(const QString& id) { return *m_views.at(id); }
    Field& field(const QString& viewId, const QString& name) { return view(viewId).fields().item(name); }
    QString text(const QString& viewId, const QString& name) { return field(viewId, name).text(); }

    qint64 newBatch();
    // The ordinary receipt as the window posts it; `keys` are CNTKEYs of the customer's list.
    void postReceipt(qint64 batch, qint64 expectedEntry, const QString& customer, double amount,
                     const std::vector<int>& keys);
    void postPrepayment(qint64 batch, const QString& customer, const QString& keyedAmount,
                        const QString& applyTo);
    struct Line {
        QString code, account, amount;
    };
    void postMiscReceipt(qint64 batch, double amount, const std::vector<Line>& lines);
    // Builds the customer's list as the apply grid does and reads document `key`.
    bool openDocument(const QString& customer, int key);

private:
    void positionHeader(qint64 batch);

    Session& m_session;
    std::map<QString, std::unique_ptr<View>> m_views;
};

Money money(const QVariant& v);

} // namespace tillbook::test
