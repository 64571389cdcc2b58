#pragma once

// CSV as spreadsheets and books write it (RFC 4180, UTF-8), read and written through libcsv.

#include <QIODevice>
#include <QString>
#include <QStringList>
#include <deque>
#include <memory>
#include <vector>

struct csv_parser;

namespace tillbook::tool {

// One CSV line: fields with a comma, quote or line break are quoted, quotes doubled.
QString csvLine(const QStringList& fields);

struct CsvRecord {
    int line = 0; // where the record begins (a quoted field may hold line breaks)
    QStringList fields;
};

struct CsvProblem {
    int line = 0;
    QString message;
};

// Reads the records of a device one by one. A byte-order mark at the start is skipped; blank lines are
// passed over. A malformed line (a stray or missing quote, bytes that are not UTF-8) is reported and the
// reader goes on at the next line.
class CsvReader {
public:
    explicit CsvReader(QIODevice& device);
    ~CsvReader();
    CsvReader(const CsvReader&) = delete;
    CsvReader& operator=(const CsvReader&) = delete;

    // The next record; false at the end. Problems met on the way are appended to `problems`.
    bool next(CsvRecord& record, std::vector<CsvProblem>& problems);

private:
    friend struct CsvCallbacks;
    void restart();
    bool feedLine(std::vector<CsvProblem>& problems);

    QIODevice& m_device;
    std::unique_ptr<csv_parser> m_parser;
    int m_line = 0;
    int m_recordLine = 0;
    bool m_betweenRecords = true;
    bool m_badText = false;
    bool m_ended = false;
    QStringList m_fields;
    std::deque<CsvRecord> m_ready;
};

} // namespace tillbook::tool
