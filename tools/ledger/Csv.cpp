#include "Csv.h"

#include <QStringDecoder>
#include <csv.h>

namespace tillbook::tool {

QString csvLine(const QStringList& fields) {
    QStringList out;
    for (const QString& field : fields) {
        if (!field.contains(u',') && !field.contains(u'"') && !field.contains(u'\n') &&
            !field.contains(u'\r')) {
            out << field;
            continue;
        }
        const QByteArray raw = field.toUtf8();
        QByteArray quoted(qsizetype(raw.size() * 2 + 2), Qt::Uninitialized);
        quoted.truncate(
            qsizetype(csv_write(quoted.data(), size_t(quoted.size()), raw.constData(), size_t(raw.size()))));
        out << QString::fromUtf8(quoted);
    }
    return out.join(u',') + QStringLiteral("\r\n");
}

// libcsv's callbacks: a field ends, a record ends.
struct CsvCallbacks {
    static void field(void* data, size_t length, void* reader) {
        auto& self = *static_cast<CsvReader*>(reader);
        QStringDecoder utf8(QStringDecoder::Utf8);
        self.m_fields << utf8(QByteArrayView(static_cast<const char*>(data), qsizetype(length)));
        self.m_badText = self.m_badText || utf8.hasError();
    }
    static void record(int, void* reader) {
        auto& self = *static_cast<CsvReader*>(reader);
        self.m_ready.push_back({self.m_recordLine, self.m_fields});
        self.m_fields.clear();
        self.m_betweenRecords = true;
    }
};

namespace {
// Blanks around a field are part of it, as RFC 4180 has it.
int noSpace(unsigned char) {
    return 0;
}
} // namespace

CsvReader::CsvReader(QIODevice& device) : m_device(device) {
    restart();
}

CsvReader::~CsvReader() {
    if (m_parser)
        csv_free(m_parser.get());
}

void CsvReader::restart() {
    if (m_parser)
        csv_free(m_parser.get());
    else
        m_parser = std::make_unique<csv_parser>();
    csv_init(m_parser.get(), CSV_STRICT | CSV_STRICT_FINI);
    csv_set_space_func(m_parser.get(), noSpace);
    m_fields.clear();
    m_betweenRecords = true;
}

// Feeds one physical line; false when the device has no more.
bool CsvReader::feedLine(std::vector<CsvProblem>& problems) {
    QByteArray line = m_device.readLine();
    if (line.isEmpty()) {
        if (csv_fini(m_parser.get(), CsvCallbacks::field, CsvCallbacks::record, this) != 0)
            problems.push_back(
                {m_recordLine, QStringLiteral("a quoted field is not closed before the end of the file.")});
        m_fields.clear();
        return false;
    }
    ++m_line;
    if (m_line == 1 && line.startsWith("\xEF\xBB\xBF"))
        line.remove(0, 3);
    if (m_betweenRecords && !line.trimmed().isEmpty()) {
        m_recordLine = m_line;
        m_betweenRecords = false;
        m_badText = false;
    }
    const size_t done = csv_parse(m_parser.get(), line.constData(), size_t(line.size()), CsvCallbacks::field,
                                  CsvCallbacks::record, this);
    if (done != size_t(line.size())) {
        problems.push_back(
            {m_line, QStringLiteral("the line is not well-formed CSV (a quote inside an unquoted "
                                    "field, or text after a closing quote).")});
        restart();
        m_ready.clear();
    } else if (m_badText && m_betweenRecords) {
        problems.push_back({m_recordLine, QStringLiteral("the line is not UTF-8 text.")});
        m_ready.clear();
        m_badText = false;
    }
    return true;
}

bool CsvReader::next(CsvRecord& record, std::vector<CsvProblem>& problems) {
    while (m_ready.empty() && !m_ended)
        m_ended = !feedLine(problems);
    if (m_ready.empty())
        return false;
    record = std::move(m_ready.front());
    m_ready.pop_front();
    return true;
}

} // namespace tillbook::tool
