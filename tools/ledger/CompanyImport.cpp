#include "CompanyImport.h"

#include "Csv.h"
#include "ledger/LedgerError.h"
#include "ledger/LedgerNames.h"
#include "ledger/Money.h"
#include "ledger/engine/AuditTrail.h"
#include "ledger/engine/PostedTotalsRules.h"
#include "ledger/engine/Transaction.h"
#include "ledger/engine/ViewCore.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QSet>
#include <algorithm>

namespace tillbook::tool {

namespace {

// Problems listed per file; past this, only counted.
constexpr int ProblemsPerFile = 20;
constexpr qint64 ProgressEveryMs = 3000;

// A figure of a customer as a file states it, compared with the ledger's once every file is in.
struct StatedFigure {
    int line = 0;
    QString customer;
    QString field;
    QString stated;
};

class FileImport {
public:
    FileImport(Session& session, const QString& viewId, ImportResult& result, QTextStream& progress)
        : m_session(session), m_viewId(viewId), m_fileName(viewId + QStringLiteral(".csv")), m_result(result),
          m_progress(progress) {}

    void run(QIODevice& device, std::vector<StatedFigure>& figures);
    const ImportedFile& summary() const { return m_summary; }

private:
    bool readHeader(const CsvRecord& header);
    bool isSecondProfile();
    void loadRecord(const CsvRecord& record, std::vector<StatedFigure>& figures);
    bool putChanged(Field& field, const QString& value, int line, bool& changed);
    // Whether a write was done without a warning; a warning is reported as a problem of the line.
    bool written(const Warnings& warnings, int line);
    void problem(int line, const QString& field, const QString& message, bool byLedger = false);
    void showProgress(qint64 rows);

    Session& m_session;
    QString m_viewId;
    QString m_fileName;
    ImportResult& m_result;
    QTextStream& m_progress;
    std::unique_ptr<View> m_view;
    std::vector<Field*> m_columns;  // the file's columns, in its order
    std::vector<int> m_keyColumns;  // columns of the view's primary key, in key order
    std::vector<char> m_isFigure;   // columns that state a figure the ledger keeps
    QHash<QString, int> m_keysSeen; // key -> its line
    ImportedFile m_summary;
    int m_problems = 0;
    QElapsedTimer m_clock;
    qint64 m_lastShown = 0;
};

void FileImport::problem(int line, const QString& field, const QString& message, bool byLedger) {
    m_session.errors().clear();
    if (++m_problems > ProblemsPerFile) {
        ++m_result.problemsLeftOut;
        return;
    }
    m_result.problems.push_back({m_fileName, line, field, message, byLedger});
}

bool FileImport::readHeader(const CsvRecord& header) {
    m_view = m_session.openView(m_viewId);
    const QStringList figures =
        m_viewId == names::Customers.text() ? engine::customerFigures() : QStringList();
    for (const QString& rawName : header.fields) {
        const QString name = rawName.trimmed();
        Field* field = m_view->fields().find(name);
        if (!field)
            problem(header.line, name,
                    QStringLiteral("view %1 (%2) has no such field.").arg(m_viewId, m_view->title()));
        else if (std::find(m_columns.begin(), m_columns.end(), field) != m_columns.end())
            problem(header.line, name, QStringLiteral("the field is named twice."));
        m_columns.push_back(field);
        m_isFigure.push_back(field && figures.contains(field->name()));
    }
    return m_problems == 0;
}

// The company profile is one record: a file may change it, not add a second one.
bool FileImport::isSecondProfile() {
    if (m_viewId != names::CompanyProfile.text())
        return false;
    auto profile = m_session.openView(m_viewId);
    profile->browse(QString(), true);
    return profile->fetch();
}

// A value put only where it differs from the record's: a second import of the same file puts nothing,
// and a field left at its default is not checked against a list it is not in.
bool FileImport::putChanged(Field& field, const QString& value, int line, bool& changed) {
    if (field.text() == value)
        return true;
    const QVariant before = field.value();
    QString refused;
    try {
        const Warnings warnings = field.setValue(value);
        if (!warnings.empty())
            refused = warnings.first().description;
    } catch (const LedgerError& e) {
        if (e.priority() == ErrorPriority::Severe)
            throw;
        refused = e.description();
    }
    if (!refused.isNull()) {
        problem(line, field.name(), refused);
        return false;
    }
    changed = changed || field.value() != before;
    return true;
}

void FileImport::loadRecord(const CsvRecord& record, std::vector<StatedFigure>& figures) {
    if (record.fields.size() != qsizetype(m_columns.size())) {
        problem(record.line, QString(),
                QStringLiteral("the line has %1 fields; the first line names %2.")
                    .arg(record.fields.size())
                    .arg(m_columns.size()));
        return;
    }
    QStringList key;
    for (int column : m_keyColumns)
        key << record.fields[column].trimmed();
    const QString keyText = key.join(QStringLiteral(", "));
    const auto seen = m_keysSeen.constFind(keyText);
    if (seen != m_keysSeen.constEnd()) {
        problem(record.line, QString(),
                QStringLiteral("the key \"%1\" is on line %2 already.").arg(keyText).arg(seen.value()));
        return;
    }
    m_keysSeen.insert(keyText, record.line);
    if (std::any_of(key.begin(), key.end(), [](const QString& part) { return part.isEmpty(); })) {
        problem(record.line, QString(), QStringLiteral("the key is blank."));
        return;
    }

    // A new record with its defaults and the key: what an insert writes when no record has the key, and
    // what read replaces when one has.
    bool ok = true;
    bool changed = false;
    m_view->init();
    for (int column : m_keyColumns)
        ok = putChanged(*m_columns[size_t(column)], record.fields[column], record.line, changed) && ok;
    if (!ok)
        return;
    const bool exists = m_view->read();
    if (!exists && isSecondProfile()) {
        problem(
            record.line, m_columns[size_t(m_keyColumns.front())]->name(),
            QStringLiteral("the company has a profile already; this file may change it, not add another."));
        return;
    }
    changed = false;
    for (size_t column = 0; column < m_columns.size(); ++column) {
        if (std::find(m_keyColumns.begin(), m_keyColumns.end(), int(column)) != m_keyColumns.end())
            continue;
        if (m_isFigure[column]) {
            figures.push_back(
                {record.line, key.join(QString()), m_columns[column]->name(), record.fields[int(column)]});
            continue;
        }
        ok = putChanged(*m_columns[column], record.fields[int(column)], record.line, changed) && ok;
    }
    if (!ok)
        return;
    // A record written with a warning is not counted.
    try {
        if (!exists) {
            if (written(m_view->insert(), record.line))
                ++m_summary.inserted;
        } else if (changed) {
            if (written(m_view->update(), record.line))
                ++m_summary.updated;
        } else {
            ++m_summary.unchanged;
        }
    } catch (const LedgerError& e) {
        if (e.priority() == ErrorPriority::Severe)
            throw;
        problem(record.line, QString(), e.description(), true);
    }
}

bool FileImport::written(const Warnings& warnings, int line) {
    if (warnings.empty())
        return true;
    problem(line, QString(), warnings.first().description, true);
    return false;
}

void FileImport::showProgress(qint64 rows) {
    const qint64 now = m_clock.elapsed();
    if (now - m_lastShown < ProgressEveryMs)
        return;
    m_lastShown = now;
    m_progress << QStringLiteral("%1: %2 rows, %3 rows a second\n")
                      .arg(m_fileName)
                      .arg(rows)
                      .arg(now > 0 ? rows * 1000 / now : rows);
    m_progress.flush();
}

void FileImport::run(QIODevice& device, std::vector<StatedFigure>& figures) {
    m_summary.file = m_fileName;
    m_clock.start();
    CsvReader reader(device);
    std::vector<CsvProblem> csvProblems;
    CsvRecord record;
    const auto reportCsv = [&] {
        for (const CsvProblem& p : csvProblems)
            problem(p.line, QString(), p.message);
        csvProblems.clear();
    };
    if (!reader.next(record, csvProblems)) {
        reportCsv();
        problem(0, QString(), QStringLiteral("the file is empty: its first line must name the fields."));
        return;
    }
    reportCsv();
    if (!readHeader(record))
        return;
    // The key must be named: it says which record a line is.
    for (int field : m_view->core().def().primaryKey().fields) {
        const QString name = m_view->fields().at(field).name();
        const auto at = std::find(m_columns.begin(), m_columns.end(), &m_view->fields().at(field));
        if (at == m_columns.end())
            problem(record.line, name, QStringLiteral("the key field is missing; every line needs it."));
        else
            m_keyColumns.push_back(int(at - m_columns.begin()));
    }
    if (m_problems > 0)
        return;
    qint64 rows = 0;
    while (reader.next(record, csvProblems)) {
        reportCsv();
        loadRecord(record, figures);
        if (++rows % 1024 == 0)
            showProgress(rows);
    }
    reportCsv();
}

// The figures the files state for customers, against what the ledger made of the documents.
void compareFigures(Session& session, const std::vector<StatedFigure>& figures, ImportResult& result) {
    if (figures.empty())
        return;
    auto customers = session.openView(names::Customers);
    for (const StatedFigure& figure : figures) {
        customers->clear();
        customers->fields().item(names::CustomerNumber).putWithoutVerification(figure.customer);
        if (!customers->read())
            continue; // the customer's own line was refused, and says so
        Field& field = customers->fields().item(figure.field);
        const std::optional<Money> stated = Money::parse(figure.stated.trimmed());
        const std::optional<Money> kept = Money::parse(field.text());
        if (stated && kept && *stated == *kept)
            continue;
        result.problems.push_back(
            {QStringLiteral("AR0024.csv"), figure.line, figure.field,
             QStringLiteral(
                 "the file states %1, but the ledger keeps this figure from the customer's documents, "
                 "which make %2.")
                 .arg(figure.stated, field.text())});
    }
}

} // namespace

QString ImportProblem::text() const {
    QString where = file;
    if (line > 0)
        where += QStringLiteral(" line %1").arg(line);
    if (!field.isEmpty())
        where += QStringLiteral(", field %1").arg(field);
    return where + QStringLiteral(": ") + message;
}

const QStringList& importViews() {
    static const QStringList views{names::CompanyProfile.text(),    names::FiscalCalendar.text(),
                                   names::Accounts.text(),          names::Banks.text(),
                                   names::DistributionCodes.text(), names::Customers.text(),
                                   names::Documents.text()};
    return views;
}

ImportResult importCompany(Session& session, const QString& folder, bool dryRun, QTextStream& progress) {
    ImportResult result;
    const auto transaction = session.beginTransaction();
    std::vector<StatedFigure> figures;
    const QDir dir(folder);
    for (const QString& viewId : importViews()) {
        QFile file(dir.filePath(viewId + QStringLiteral(".csv")));
        if (!file.exists())
            continue;
        if (!file.open(QIODevice::ReadOnly)) {
            result.problems.push_back({file.fileName(), 0, QString(), file.errorString()});
            continue;
        }
        FileImport import(session, viewId, result, progress);
        import.run(file, figures);
        result.files.push_back(import.summary());
    }
    compareFigures(session, figures, result);
    if (result.problems.empty() && result.problemsLeftOut == 0 && !dryRun) {
        QStringList views;
        qint64 lines = 0;
        for (const ImportedFile& file : result.files) {
            views << QFileInfo(file.file).completeBaseName();
            lines += file.inserted + file.updated + file.unchanged;
        }
        engine::auditImported(transaction->store(), session.userId(), views, lines);
        transaction->commit();
        result.written = true;
    }
    return result;
}

} // namespace tillbook::tool
