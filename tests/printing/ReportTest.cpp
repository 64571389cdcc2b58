// The report engine on templates of the test's own: fields, rows, amounts, totals, copies, and templates that
// cannot be used (sub-reports bound to the receipt's data set are printed by the receipt tests).

#include "printing/Report.h"

#include "support/QtPrinters.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace tillbook {
namespace {

class ReportEngine : public ::testing::Test {
protected:
    void write(const QString& name, const QByteArray& text) {
        QFile file(dir.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
    }
    std::shared_ptr<DataSet> lines() {
        auto data = std::make_shared<DataSet>();
        data->fields = {"Invoice Number", "Amount Paid", "Customer Name", "Customer Address2"};
        data->rows = {{"IN1", "1000.500", "Smith & <Sons>", ""}, {"IN2", "-0.250", "Smith & <Sons>", ""}};
        data->header = {"", "", "Smith & <Sons>", ""};
        return data;
    }
    QTemporaryDir dir;
};

TEST_F(ReportEngine, FieldsRowsAmountsAndTotalsRender) {
    write("R.html", "<meta name=\"copies\" content=\"Customer, Office ,File\">"
                    "[{{Customer Name}}]{{#Customer Address2}}<br>{{Customer Address2}}{{/Customer Address2}}"
                    "{{#rows}}<{{Invoice Number}}={{#money}}{{Amount Paid}}{{/money}}>{{/rows}}"
                    "{{^rows}}none{{/rows}} total {{#total}}Amount Paid{{/total}} {{copy}}");
    auto report = Report::open(dir.filePath("R.html"));
    EXPECT_EQ(report->copyLabels(), QStringList({"Customer", "Office", "File"}));
    report->setDataSource(lines());
    const QString html = report->render("Office");
    // Values are escaped for HTML, and an empty field leaves out what goes with it.
    EXPECT_TRUE(html.contains("[Smith &amp; &lt;Sons&gt;]"));
    EXPECT_FALSE(html.contains("<br>"));
    EXPECT_TRUE(html.contains("<IN1=1,000.50><IN2=-0.25>"));
    EXPECT_TRUE(html.endsWith("total 1,000.25 Office"));

    auto empty = lines();
    empty->rows.clear();
    report->setDataSource(empty);
    const QString none = report->render("File");
    EXPECT_TRUE(none.contains("[Smith &amp; &lt;Sons&gt;]")); // the header still prints
    EXPECT_TRUE(none.contains("none total 0.00 File"));
}

TEST_F(ReportEngine, TemplateThatCannotBeUsedIsNamed) {
    write("Loop.html", "{{> Loop}}");
    write("Open.html", "{{#rows}}never closed");
    for (const char* name : {"Loop.html", "Open.html", "Gone.html"}) {
        try {
            Report::open(dir.filePath(name));
            ADD_FAILURE() << name << " opened";
        } catch (const InputError& error) {
            EXPECT_TRUE(error.message().contains(dir.filePath(name))) << error.message().toStdString();
        }
    }
}

} // namespace
} // namespace tillbook
