#pragma once

// A receipt template: a mustache HTML file that the user may edit. Its partials ({{> Name}}, read from
// Name.html beside it) are its sub-reports, each a report of its own bound to a data set; the report's own
// text is rendered from the fields of its data set:
//   {{Field Name}}                   the value of the first row (header values are the same on every row)
//   {{#rows}}...{{/rows}}            once per row, with that row's values
//   {{^rows}}...{{/rows}}            when there is no row
//   {{#money}}{{Field}}{{/money}}    an amount as "#,###,##0.00"
//   {{#total}}Field{{/total}}        the sum of a column, as "#,###,##0.00"
//   {{copy}}                         the copy's label ("Customer", "Office", ...)
// <meta name="copies" content="Customer,Office"> names the copies printed on one page.

#include "ledger/LedgerError.h"
#include "printing/data/DataSet.h"

#include <QString>
#include <QStringList>
#include <map>
#include <memory>
#include <stdexcept>

namespace tillbook {

class Report {
public:
    // Reads and parses the template and its sub-reports. Throws InputError, whose message names the file.
    static std::unique_ptr<Report> open(const QString& path);
    ~Report();

    QString path() const { return m_path; }
    QStringList subreportNames() const { return m_subreportNames; }
    Report& subreport(const QString& name);

    // Binds the data set; the report and its sub-reports render nothing of an unbound data set.
    void setDataSource(std::shared_ptr<const DataSet> data) { m_data = std::move(data); }
    bool isBound() const { return m_data != nullptr; }

    // The copy labels the template asks for; empty when it does not say.
    QStringList copyLabels() const { return m_copies; }

    // The finished HTML of one copy. Throws InputError.
    QString render(const QString& copyLabel) const;

private:
    Report() = default;
    static std::unique_ptr<Report> openNested(const QString& path, int depth);

    QString m_path;
    std::string m_text; // with each partial replaced by an unescaped placeholder
    QStringList m_subreportNames;
    std::map<QString, std::unique_ptr<Report>> m_subreports;
    QStringList m_copies;
    std::shared_ptr<const DataSet> m_data;
};

} // namespace tillbook
