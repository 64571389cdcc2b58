#include "printing/Report.h"

#include "ledger/Formats.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <kainjow/mustache.hpp>

namespace tillbook {

namespace mus = kainjow::mustache;

namespace {

// Sub-reports may use sub-reports of their own, but a template that includes itself must not loop.
constexpr int MaxNesting = 4;

QString placeholder(int index) {
    return QStringLiteral("{{{tillbook_subreport_%1}}}").arg(index);
}

std::string utf8(const QString& text) {
    return text.toStdString();
}

Money columnTotal(const DataSet& data, const QString& field) {
    Money total;
    const int column = data.column(field);
    if (column < 0)
        return total;
    for (const QStringList& row : data.rows)
        total += Strip_Commas(row.value(column));
    return total;
}

mus::data rowObject(const DataSet& data, const QStringList& row) {
    mus::data object{mus::data::type::object};
    // An empty value is false, so that {{#Field}}...{{/Field}} leaves out what goes with a blank field.
    for (int i = 0; i < data.fields.size(); ++i) {
        const QString value = row.value(i);
        if (value.isEmpty())
            object.set(utf8(data.fields[i]), mus::data::type::bool_false);
        else
            object.set(utf8(data.fields[i]), utf8(value));
    }
    return object;
}

} // namespace

Report::~Report() = default;

std::unique_ptr<Report> Report::open(const QString& path) {
    return openNested(path, 0);
}

std::unique_ptr<Report> Report::openNested(const QString& path, int depth) {
    if (depth > MaxNesting)
        throw InputError(QStringLiteral("The receipt template %1 includes itself.").arg(path));
    QFile file(path);
    if (!file.exists())
        throw InputError(QStringLiteral("The receipt template %1 is missing.").arg(path));
    if (!file.open(QIODevice::ReadOnly))
        throw InputError(
            QStringLiteral("The receipt template %1 could not be read: %2").arg(path, file.errorString()));
    QString text = QString::fromUtf8(file.readAll());

    std::unique_ptr<Report> report(new Report);
    report->m_path = path;

    static const QRegularExpression metaCopies(
        QStringLiteral(R"re(<meta\s+name\s*=\s*"copies"\s+content\s*=\s*"([^"]*)")re"),
        QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch copies = metaCopies.match(text);
    if (copies.hasMatch())
        for (const QString& label : copies.captured(1).split(u',', Qt::SkipEmptyParts))
            report->m_copies << label.trimmed();

    // Each partial becomes a placeholder filled with its sub-report's own rendering.
    static const QRegularExpression partial(QStringLiteral(R"(\{\{>\s*([^}]+?)\s*\}\})"));
    QString rewritten;
    qsizetype from = 0;
    for (QRegularExpressionMatchIterator it = partial.globalMatch(text); it.hasNext();) {
        const QRegularExpressionMatch match = it.next();
        const QString subName = match.captured(1);
        if (!report->m_subreports.count(subName)) {
            const QString subPath = QFileInfo(path).dir().filePath(subName + QStringLiteral(".html"));
            report->m_subreports[subName] = openNested(subPath, depth + 1);
            report->m_subreportNames << subName;
        }
        rewritten += text.mid(from, match.capturedStart() - from) +
                     placeholder(int(report->m_subreportNames.indexOf(subName)));
        from = match.capturedEnd();
    }
    rewritten += text.mid(from);
    report->m_text = utf8(rewritten);

    const mus::mustache parsed(report->m_text);
    if (!parsed.is_valid())
        throw InputError(QStringLiteral("The receipt template %1 cannot be used: %2")
                             .arg(path, QString::fromStdString(parsed.error_message())));
    return report;
}

Report& Report::subreport(const QString& name) {
    const auto found = m_subreports.find(name);
    if (found == m_subreports.end())
        throw InputError(QStringLiteral("The receipt template %1 has no sub-report %2.").arg(m_path, name));
    return *found->second;
}

QString Report::render(const QString& copyLabel) const {
    static const DataSet unbound;
    const DataSet& data = m_data ? *m_data : unbound;

    mus::data context = data.rows.empty() ? rowObject(data, data.header) : rowObject(data, data.rows.front());
    mus::data rows{mus::data::type::list};
    for (const QStringList& row : data.rows)
        rows.push_back(rowObject(data, row));
    context.set("rows", rows);
    context.set("copy", utf8(copyLabel));
    context.set("money", mus::lambda2{[](const std::string& text, const mus::renderer& render) {
                    return utf8(
                        FormatAmount(Strip_Commas(QString::fromStdString(render(text, false)).trimmed())));
                }});
    context.set("total", mus::lambda{[&data](const std::string& field) {
                    return utf8(FormatAmount(columnTotal(data, QString::fromStdString(field).trimmed())));
                }});
    for (int i = 0; i < m_subreportNames.size(); ++i)
        context.set(utf8(QStringLiteral("tillbook_subreport_%1").arg(i)),
                    utf8(m_subreports.at(m_subreportNames[i])->render(copyLabel)));

    mus::mustache tmpl(m_text);
    const std::string html = tmpl.render(context);
    if (!tmpl.is_valid())
        throw InputError(QStringLiteral("The receipt template %1 cannot be used: %2")
                             .arg(m_path, QString::fromStdString(tmpl.error_message())));
    return QString::fromStdString(html);
}

} // namespace tillbook
